; The first program of the day.

; boot: at the start. warmEntry: a program has ended; RAM is in all pages but the ROM's.
boot:
        call    serveRam
        call    makePage0
        ei
        jp      bootSector
noSystem:
        ld      sp,kernelStack
        call    serveRam
        call    makePage0
        ei
        call    startBatch
        jr      promptStart
warmEntry:
        call    makePage0
        xor     a
        ld      (kernelDepth),a
        ei
        call    resetVectors
        call    endProgram
promptStart:
        xor     a
        ld      (kernelDepth),a
        ld      hl,0080h
        ld      (dma),hl
        ld      sp,tpaTop - 6
        jp      prompt

; endProgram: what the program has left of its disk work: what waits is written, and clusters given to files that were never
; closed are free again. Changes all.
endProgram:
        call    flushAll
        xor     a
_drive:
        push    af
        call    switchDrive
        ld      a,(diskUnclosed)
        or      a
        ld      a,0
        ld      (diskUnclosed),a
        call    nz,clearUp
        pop     af
        inc     a
        cp      driveCount
        jr      nz,_drive
        ret

bootAddress     equ 0C000h
bootEntry       equ bootAddress + 1Eh

; bootSector: runs the code in the first sector of drive A's disk, which may start a system of its own: first with carry clear,
; then with carry set and HL, DE as such code expects them. Comes back when there is none. Changes all.
bootSector:
        ld      sp,tpaTop - 6
        ld      hl,noSystem
        push    hl
        xor     a
        call    useDriveNumber
        jr      c,promptStart           ; no disk
        ld      de,0
        ld      a,kindData
        call    fetchSector
        jr      c,promptStart
        ld      a,(hl)
        cp      0EBh
        jr      z,_jump
        cp      0E9h
        ret     nz
_jump:
        ld      de,bootAddress
        ld      bc,bufferBytes
        ldir
        or      a
        call    bootEntry
        ld      hl,errorVector
        ld      de,enableRamEntry
        xor     a
        scf
        jp      bootEntry
