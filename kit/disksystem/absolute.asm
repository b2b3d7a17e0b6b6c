; The functions that read and write sectors of a disk, whatever they hold.

; 2F: In: DE = first sector, H = sectors, L = drive, 0 for A. Reads them to the transfer address. 30: writes them. Out: A = 0,
; or 1 when it was not possible.
functionSectorRead:
        xor     a
        jr      sectorAccess
functionSectorWrite:
        ld      a,1
sectorAccess:
        ld      (fileWrites),a
        push    hl
        push    de
        ld      a,l
        call    useDriveNumber
        pop     de
        pop     hl
        ld      a,1
        ret     c
        ld      a,h
        or      a
        ret     z
        ld      (runSectors),a
        push    de
        call    flushAll                ; before they are read, and before what is written makes them wrong
        pop     de
        ld      a,1
        ret     c
        ld      a,(runSectors)
        ld      b,a
        ld      hl,(dma)
_one:
        push    bc
        push    de
        push    hl
        ld      (memoryPlace),hl
        call    oneSector
        pop     hl
        pop     de
        pop     bc
        ld      a,1
        ret     c
        inc     de
        inc     h
        inc     h
        djnz    _one
        ld      a,(fileWrites)
        or      a
        ret     z
        ; the tables may have changed
        ld      a,(drive)
        call    forgetDrive
        xor     a
        ld      (diskState),a
        ret

; oneSector: In: DE = sector, HL = memoryPlace = address, fileWrites. Out: carry on an error. Changes all.
oneSector:
        call    isHidden
        jr      nc,_straight
        ld      a,(sharesPrimary)
        or      a
        jr      nz,_buffer
_straight:
        ld      b,1
        ld      a,(fileWrites)
        or      a
        jp      z,readSectors
        jp      writeSectors
_buffer:
        ld      a,(fileWrites)
        or      a
        ld      a,kindData
        jr      nz,_write
        call    fetchSector
        ret     c
        ld      de,(memoryPlace)
        jr      _copy
_write:
        call    freshSector
        ret     c
        call    markDirty
        ld      de,(memoryPlace)
        ex      de,hl
_copy:
        ld      bc,bufferBytes
        call    copyUser
        ld      a,(fileWrites)
        or      a
        ret     z
        jp      flushAll
