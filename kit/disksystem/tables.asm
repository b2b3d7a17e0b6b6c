; The check of a disk's tables before the first write to it, and the clearing up after a program that did not close its files.

bitmapSector    equ 0FFFFh      ; a buffer with a bit for each cluster goes by this number, which no sector has

; mayWrite: Out: carry when nothing is to be written to the disk in place: it is write-protected and the user or the program gave
; up, or its tables contradict each other. The first time the tables are looked through; buffers change then. Changes all.
mayWrite:
        call    lineOfProtection
        jr      z,_open
        ld      a,1
        ld      (diskWrites),a
        ld      a,errorProtected
        call    diskError
        jr      z,mayWrite
        scf
        ret
_open:
        ld      a,(diskState)
        cp      stateGood
        jr      z,_check
        cp      stateDamaged
        scf
        ret     z
        or      a
        ret
_check:
        ld      a,(filler)
        push    af
        xor     a
        call    lookThrough
        pop     bc
        ld      a,b
        ld      (filler),a
        ld      a,stateChecked
        jr      nc,_set
        ld      a,(diskState)
        cp      stateDamaged
        scf
        ret     nz                      ; the disk could not be read
        ld      hl,damagedText
        call    showText
        scf
        ret
_set:
        ld      (diskState),a
        or      a
        ret

; clearUp: ends the chains of the disk in place where the directory says that the files end, and frees the clusters of no file.
; Changes all.
clearUp:
        ld      a,1
        call    lookThrough
        ret     c
        ld      a,(tableRepairs)
        or      a
        ret     z                       ; there are folders, whose files are not looked through
        ld      hl,0FFFFh
        ld      (diskFree),hl
        ld      hl,2
_cluster:
        push    hl
        call    isMarked
        pop     hl
        ret     c
        jr      nz,_next
        push    hl
        call    getFat
        pop     de
        ret     c
        ld      a,h
        or      l
        ex      de,hl
        jr      z,_next
        push    hl
        ld      hl,0FF7h                ; a bad cluster stays one
        or      a
        sbc     hl,de
        pop     hl
        jr      z,_next
        push    hl
        ld      de,0
        call    putFat
        pop     hl
        ret     c
_next:
        ld      de,(dpbLastCluster)
        or      a
        sbc     hl,de
        add     hl,de
        inc     hl
        jr      nz,_cluster
        jp      flushAll

; lookThrough: In: A = 1 to end chains that are longer than their files, else 0. Goes through all chains of the directory and
; marks their clusters. Out: carry on an error, or when the disk is damaged; diskState says so. tableRepairs = 0 when there are
; folders. Changes all.
lookThrough:
        ld      (tableRepairs),a
        xor     a
        ld      (filler),a
        ld      (tableEntry),a
        ld      de,bitmapSector
        ld      a,kindData
        call    freshSector
        ret     c
_entry:
        ld      hl,0
        call    isMarked                ; keeps the bitmap among the buffers used last
        ret     c
        ld      a,(tableEntry)
        ld      hl,dpbEntries
        cp      (hl)
        ret     nc                      ; NC: all done
        call    fetchEntry
        ret     c
        ld      a,(hl)
        or      a
        ret     z
        call    lookThroughEntry
        ret     c
        ld      hl,tableEntry
        inc     (hl)
        jr      _entry

; lookThroughEntry: In: HL = entry, A = its first byte, tableEntry. Out: carry on an error or a damage. Changes all.
lookThroughEntry:
        cp      entryDeleted
        ret     z
        push    hl
        ld      de,entryAttributes
        add     hl,de
        ld      a,(hl)
        pop     hl
        bit     3,a                     ; the disk's name, or a part of a long one
        jr      z,_file
        or      a
        ret
_file:
        ld      de,entryCluster
        add     hl,de
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        push    de                      ; first cluster
        bit     4,a
        jr      z,_size
        xor     a
        ld      (tableRepairs),a
        ld      bc,0FFFFh
        jr      _sized
_size:
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        ex      de,hl
        call    clustersOf
        ld      a,b
        and     c
        inc     a
        jr      nz,_sized
        dec     bc                      ; more than any disk has, and not a folder's mark
_sized:
        ld      (tableSize),bc
        ld      hl,0
        ld      (tableCount),hl
        pop     hl
        ld      a,h
        or      l
        jr      z,_end
        ld      a,b
        or      c
        jr      nz,_cluster
        ld      a,(tableRepairs)
        or      a
        jr      nz,releaseStart         ; an empty file needs no cluster
_cluster:
        call    isCluster
        jp      c,damaged
        push    hl
        call    isMarked
        pop     hl
        ret     c
        jp      nz,damaged              ; two files have it
        push    hl
        call    mark
        ld      hl,(tableCount)
        inc     hl
        ld      (tableCount),hl
        pop     hl
        push    hl
        call    getFat
        pop     de
        ret     c
        ; DE = cluster, HL = what follows it
        ld      a,h
        cp      0Fh
        jr      nz,_goesOn
        ld      a,l
        cp      0F8h
        jr      nc,_end
_goesOn:
        ld      a,(tableRepairs)
        or      a
        jr      z,_cluster
        push    hl
        ld      hl,(tableCount)
        ld      bc,(tableSize)
        or      a
        sbc     hl,bc
        pop     hl
        jr      nz,_cluster
        ex      de,hl                   ; the file ends here
        ld      de,endOfChain
        jp      putFat
_end:
        ; a folder's size is not known; a file needs as many clusters as its size says
        ld      hl,(tableSize)
        ld      a,h
        and     l
        inc     a
        ret     z
        ex      de,hl
        ld      hl,(tableCount)
        or      a
        sbc     hl,de
        jp      c,damaged
        ret

; releaseStart: the entry at tableEntry, of an empty file, lets go of its cluster. Out: carry on an error. Changes all.
releaseStart:
        ld      a,(tableEntry)
        call    fetchEntry
        ret     c
        ld      de,entryCluster
        add     hl,de
        xor     a
        ld      (hl),a
        inc     hl
        ld      (hl),a
        call    markDirty
        or      a
        ret

; bitOf: In: HL = cluster. Out: HL = byte of the bitmap with its bit, A = the bit; carry when the bitmap is gone. Changes BC, DE, F.
bitOf:
        push    hl
        ld      de,bitmapSector
        call    findHead
        jr      nz,_gone
        call    useHead
        pop     de
        push    de
        ld      b,3
_shift:
        srl     d
        rr      e
        djnz    _shift
        add     hl,de
        pop     de
        ld      a,e
        and     7
        ld      b,a
        inc     b
        ld      a,80h
_rotate:
        rlca
        djnz    _rotate
        or      a
        ret
_gone:
        pop     hl
        scf
        ret

; isMarked: In: HL = cluster. Out: NZ when it is marked; carry as bitOf. mark: marks it. Change all.
isMarked:
        call    bitOf
        ret     c
        and     (hl)
        ret
mark:
        call    bitOf
        ret     c
        or      (hl)
        ld      (hl),a
        ret
