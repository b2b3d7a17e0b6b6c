; Formatting: a track is made of bytes as they come off the disk, in one revolution.

; Bytes that the controller makes into marks.
markPrepare     equ 0F5h        ; A1h without a clock bit, and the checksum begins
markIndex       equ 0F6h        ; C2h without a clock bit
markChecksum    equ 0F7h        ; the checksum's two bytes
commandTrack    equ 0F0h
trackSide       equ 9           ; sectors in a track

; entryFormat: 401Ch, DSKFMT. In: A = choice: 1 one side, 2 two sides; D = drive. Out: carry and A = error. Changes all. The disk
; is empty afterwards, and its boot sector starts no system.
entryFormat:
        call    beginEntry
        dec     a
        cp      2
        jr      nc,entryError
        ld      e,a                     ; E = sides, less 1
        ld      a,d
        cp      driveCount
        jr      nc,entryError
        push    de
        call    flushAll
        pop     de
        push    de
        ld      a,d
        call    switchDrive
        pop     de
        ld      a,0F8h
        add     a,e
        call    geometryOfMedia
        ld      a,(drive)
        call    forgetDrive
        xor     a
        ld      (diskState),a
        ld      (diskTrack),a
_track:
        xor     a
        ld      (diskSide),a
_side:
        call    formatTrack
        ret     c
        ld      hl,diskSide
        inc     (hl)
        ld      a,(diskHeads)
        cp      (hl)
        jr      nz,_side
        ld      hl,diskTrack
        inc     (hl)
        ld      a,80
        cp      (hl)
        jr      nz,_track
        jp      writeTables

; formatTrack: In: diskTrack, diskSide. Writes the whole track with nine sectors of E5h. Out: carry and A = error. Changes all.
formatTrack:
        call    emptyBuffers
        call    makeTrack
        call    startMotor
        di
        ld      a,(diskSide)
        ld      (fdcSide),a
        call    seekTrack
        jr      c,_noAnswer
        ld      hl,firstBuffer
        ld      b,(hl)
        inc     hl
        ld      c,(hl)
        inc     hl
        ld      a,commandTrack + commandSettle
        ld      (fdcCommand),a
        call    commandDelay
_wait:
        ld      a,(fdcLines)
        add     a,a
        jr      nc,_byte
        jp      m,_wait
        ld      a,(fdcCommand)
        ei
        and     (1 shl statusProtected) + (1 shl statusNotReady) + 4
        ret     z
        bit     statusProtected,a
        ld      a,errorProtected
        scf
        ret     nz
        ld      a,errorWrite
        ret
_byte:
        ld      a,c
        ld      (fdcData),a
        djnz    _wait
        ld      b,(hl)
        inc     hl
        ld      c,(hl)
        inc     hl
        jp      _wait
_noAnswer:
        ei
        ld      a,errorNotReady
        scf
        ret

; makeTrack: puts the track into the first buffer: pairs of a number, 0 for 256, and a byte to write so many times. Changes all.
makeTrack:
        ld      hl,trackBegin
        ld      de,firstBuffer
        ld      bc,trackBeginEnd - trackBegin
        ldir
        ld      b,1
_sector:
        push    bc
        ld      hl,trackSector
        ld      bc,trackSectorEnd - trackSector
        push    de
        ldir
        pop     ix
        pop     bc
        ld      a,(diskTrack)
        ld      (ix + trackNumber - trackSector),a
        ld      a,(diskSide)
        ld      (ix + trackHead - trackSector),a
        ld      (ix + trackSectorNumber - trackSector),b
        inc     b
        ld      a,b
        cp      trackSide + 1
        jr      nz,_sector
        ld      hl,trackRest
        ld      bc,trackRestEnd - trackRest
        ldir
        ret
trackBegin:
        defb    80,4Eh,12,0,3,markIndex,1,0FCh,50,4Eh
trackBeginEnd:
trackSector:
        defb    12,0,3,markPrepare,1,0FEh
        defb    1
trackNumber:
        defb    0,1
trackHead:
        defb    0,1
trackSectorNumber:
        defb    0,1,2,1,markChecksum
        defb    22,4Eh,12,0,3,markPrepare,1,0FBh,0,0E5h,0,0E5h,1,markChecksum,84,4Eh
trackSectorEnd:
trackRest:
        defb    0,4Eh,0,4Eh,0,4Eh,0,4Eh ; until the index hole comes
trackRestEnd:

; writeTables: boot sector, allocation table and directory of an empty disk. In: diskHeads. Out: carry and A = error. Changes all.
writeTables:
        ld      hl,firstBuffer
        ld      bc,bufferBytes
        xor     a
        call    fillBytes
        ld      hl,formatOneSide
        ld      a,(diskHeads)
        dec     a
        jr      z,_sides
        ld      hl,formatTwoSides
_sides:
        ld      de,firstBuffer
        ld      bc,formatBootSize
        ldir
        ld      de,0
        call    writeTable
        ret     c
        ; both copies of the table, with the media byte and ones in front, then the directory
        ld      a,(firstBuffer + 16h)
        add     a,a
        add     a,7
        ld      c,a                     ; sectors to come
        ld      a,(firstBuffer + 15h)
        ld      b,a
        push    bc
        ld      hl,firstBuffer
        ld      bc,formatBootSize
        xor     a
        call    fillBytes
        pop     bc
        ld      de,1
_sector:
        push    bc
        push    de
        ; the first sector of a copy: 1 and, for two sides, 4, for one side 3
        ld      hl,firstBuffer
        ld      a,e
        dec     a
        jr      z,_first
        ld      a,b
        sub     0F9h
        ld      a,4
        jr      z,_second
        dec     a
_second:
        cp      e
        jr      z,_first
        ld      b,0
        ld      c,b
        jr      _fill
_first:
        ld      c,0FFh
_fill:
        ld      (hl),b
        inc     hl
        ld      (hl),c
        inc     hl
        ld      (hl),c
        call    writeTable
        pop     de
        pop     bc
        ret     c
        inc     de
        dec     c
        jr      nz,_sector
        call    emptyBuffers
        xor     a
        ret

; writeTable: In: DE = sector. Writes the first buffer to it. Out: carry and A = error. Changes all.
writeTable:
        ld      a,1
        ld      (diskWrites),a
        ld      b,a
        ld      hl,firstBuffer
        jp      runTransfer

; The beginning of the boot sector: its code returns at once.
formatOneSide:
        defb    0EBh,0FEh,90h,'TAVREL  '
        defw    512
        defb    2
        defw    1
        defb    2
        defw    112,720
        defb    0F8h
        defw    2,9,1,0
        defb    0D0h,0C9h
formatBootSize  equ $ - formatOneSide
formatTwoSides:
        defb    0EBh,0FEh,90h,'TAVREL  '
        defw    512
        defb    2
        defw    1
        defb    2
        defw    112,1440
        defb    0F9h
        defw    3,9,2,0
        defb    0D0h,0C9h
