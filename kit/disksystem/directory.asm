; The directory: at most 240 entries of 32 bytes, 16 in a sector.

entryAttributes equ 11
entryTime       equ 22          ; word
entryDate       equ 24          ; word
entryCluster    equ 26          ; word
entrySize       equ 28          ; four bytes
entryBytes      equ 32
entryDeleted    equ 0E5h
attributesHidden equ 1Ah        ; hidden file, volume name, folder: not there for our calls

; fetchEntry: In: A = index of an entry. Out: HL = it, in a buffer; carry on an error. Changes all.
fetchEntry:
        push    af
        rrca
        rrca
        rrca
        rrca
        and     15
        ld      e,a
        ld      d,0
        ld      hl,(dpbFirstEntry)
        add     hl,de
        ex      de,hl
        ld      a,kindDirectory
        call    fetchSector
        pop     bc
        ret     c
        ld      a,b
        and     15
        rrca
        rrca
        rrca
        ld      c,a
        and     1Fh
        ld      b,a                     ; high byte of 32 times the entry in its sector
        ld      a,c
        and     0E0h
        ld      c,a
        add     hl,bc
        or      a
        ret

; findEntry: In: pattern, A = index from which on. Out: HL = the first entry that fits, entryIndex; carry when there is none or
; on an error. Changes all.
findEntry:
        ld      (entryIndex),a
_sector:
        ld      a,(dpbEntries)
        ld      b,a
        ld      a,(entryIndex)
        cp      b
        ccf
        ret     c
        call    fetchEntry
        ret     c
_entry:
        ld      a,(hl)
        or      a
        scf
        ret     z                       ; the end of the directory
        cp      entryDeleted
        jr      z,_next
        push    hl
        ld      de,entryAttributes
        add     hl,de
        ld      a,(hl)
        pop     hl
        and     attributesHidden
        jr      nz,_next
        call    fitsPattern
        ret     z
_next:
        ld      de,entryBytes
        add     hl,de
        ld      a,(entryIndex)
        inc     a
        ld      (entryIndex),a
        and     15
        jr      nz,_entry
        jr      _sector

; findFree: Out: HL = the first free entry, entryIndex; carry when there is none or on an error. Changes all.
findFree:
        xor     a
_sector:
        ld      (entryIndex),a
        ld      a,(dpbEntries)
        ld      b,a
        ld      a,(entryIndex)
        cp      b
        ccf
        ret     c
        call    fetchEntry
        ret     c
        ld      a,(hl)
        or      a
        ret     z
        cp      entryDeleted
        ret     z
        ld      a,(entryIndex)
        inc     a
        jr      _sector

; noteFirstCluster: the open file's directory entry learns of its first cluster. In: fcbEntry, fcbCluster. Out: carry on an
; error. Changes all.
noteFirstCluster:
        call    trustNone
        ld      a,(fcbEntry)
        call    fetchEntry
        ret     c
        ld      de,entryCluster
        add     hl,de
        ld      de,(fcbCluster)
        ld      (hl),e
        inc     hl
        ld      (hl),d
        call    markDirty
        or      a
        ret

; stampEntry: In: HL = entry. Gives it the time and date of now. Keeps HL; changes the others.
stampEntry:
        push    hl
        call    packedTime              ; HL = time, DE = date
        ld      b,h
        ld      c,l
        pop     hl
        push    hl
        push    de
        ld      de,entryTime
        add     hl,de
        pop     de
        ld      (hl),c
        inc     hl
        ld      (hl),b
        inc     hl
        ld      (hl),e
        inc     hl
        ld      (hl),d
        pop     hl
        ret
