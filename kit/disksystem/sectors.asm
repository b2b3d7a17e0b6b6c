; Runs of sectors, with errors put before the user and what was written read again.

; readSectors, writeSectors: In: drive, DE = first sector, HL = address, B = sectors. Out: carry when the user or the program
; gave up after an error. Change all. sumSectors: reads without keeping the bytes, and adds them to sectorSum.
sumSectors:
        ld      a,2
        jr      transferSectors
readSectors:
        xor     a
        jr      transferSectors
writeSectors:
        ld      a,1
transferSectors:
        ld      (diskWrites),a
_again:
        ld      (retrySector),de
        ld      a,b
        ld      (retryCount),a
        call    runTransfer
        jr      nc,_worked
        ; from the sector that failed on again, or not
        ld      c,a
        ld      a,(retryCount)
        sub     b
        ld      hl,(retrySector)
        call    addToHl
        ex      de,hl
        ld      hl,(sectorAddress)
        push    bc
        push    de
        push    hl
        ld      a,(diskWrites)
        push    af
        ld      a,c
        call    diskError
        pop     bc                      ; keeps Z
        ld      a,b
        ld      (diskWrites),a
        pop     hl
        pop     de
        pop     bc
        jr      z,_again
        scf
        ret
_worked:
        ld      a,(diskWrites)
        dec     a
        ret     nz
        ld      a,(verifyWrites)
        or      a
        ret     z
        ld      de,(retrySector)
        ld      a,(retryCount)
        ld      b,a
        jr      sumSectors

; sumOfBuffer: In: HL = sector in memory. Out: DE = sum of its bytes. Changes AF, BC, HL.
sumOfBuffer:
        ld      de,0
        ld      bc,bufferBytes
_byte:
        ld      a,(hl)
        inc     hl
        add     a,e
        ld      e,a
        jr      nc,_next
        inc     d
_next:
        dec     bc
        ld      a,b
        or      c
        jr      nz,_byte
        ret
