; A file that is cut or extended.

; setLength: the file ends at its random record. Out: carry when the disk is full or on an error. Changes all.
setLength:
        ld      a,(fcbDevice)
        cp      devicePrn
        ccf
        ret     c
        call    mayWrite
        ret     c
        call    blockRecord
        ld      bc,(recordSize)
        call    multiply
        ret     c
        push    hl
        push    de
        call    prepareEnd
        pop     de
        pop     hl
        ret     c
        push    hl
        push    de
        xor     a
        ld      (filler),a
        call    fillGap
        pop     de
        pop     hl
        ret     c
        ld      (fcbFileSize),hl
        ld      (fcbFileSize + 2),de
        call    noteChanged
        call    clustersOfSize
        call    cutChain
        ret     c
        call    trustNone
        ; a file that got shorter is so in the directory at once: its clusters may go to another one
        ld      a,(fcbEntry)
        call    fetchEntry
        ret     c
        call    shortenEntry
        or      a
        ret

; shortenEntry: In: HL = directory entry. Its first cluster becomes that of the block, and its size too where that is less. Changes
; all.
shortenEntry:
        ld      de,entryCluster
        add     hl,de
        ld      de,(fcbCluster)
        ld      (hl),e
        inc     hl
        ld      (hl),d
        inc     hl
        push    hl
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        ld      c,(hl)
        inc     hl
        ld      b,(hl)
        ld      hl,(fcbFileSize)
        or      a
        sbc     hl,de
        ld      hl,(fcbFileSize + 2)
        sbc     hl,bc
        pop     de
        jr      nc,_write
        ld      hl,fcbFileSize
        ld      bc,4
        ldir
_write:
        call    markDirty
        jp      writeEntrySector
