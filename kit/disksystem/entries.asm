; The driver's published entries, 4010h to 401Fh, for software that calls a disk ROM itself. They show no messages: carry set
; and A say what is wrong, with the numbers of driver.asm. The stack must not lie in page 1, where the ROM is.

; beginEntry: the caller's page 1 is RAM for a transfer, whatever lies there now. Keeps all.
beginEntry:
        push    af
        call    pageForEntry
        pop     af
        ret

; entryTransfer: 4010h, DSKIO. In: A = drive, B = sectors, C = media byte, DE = first sector, HL = address, carry set to write.
; Out: carry and A = error, B = sectors that are left. Changes all. What waits in the system's buffers is written first, and
; they are forgotten after a write.
entryTransfer:
        call    beginEntry
        push    af
        push    bc
        push    de
        push    hl
        ld      e,a
        push    de
        call    flushAll
        pop     de
        ld      a,e
        cp      driveCount
        jr      nc,_noDrive
        call    switchDrive
        pop     hl
        pop     de
        pop     bc
        ld      a,(diskState)
        or      a
        ld      a,c
        call    z,geometryOfMedia
        pop     af
        sbc     a,a
        and     1
        ld      (diskWrites),a
        ld      a,b
        or      a
        ret     z
        call    runTransfer
        push    af
        ld      a,(diskWrites)
        or      a
        jr      z,_end
        push    bc
        ld      a,(drive)
        call    forgetDrive
        pop     bc
        xor     a
        ld      (diskState),a
_end:
        pop     af
        ret
_noDrive:
        pop     hl
        pop     de
        pop     bc
        pop     af
        ld      a,errorOther
        scf
        ret

; geometryOfMedia: In: A = media byte, F8h to FFh: bit 0 two sides, bit 1 eight sectors in a track, bit 2 forty tracks. Out: the
; numbers that the driver needs of it. Changes AF; keeps the others.
geometryOfMedia:
        push    hl
        push    de
        push    bc
        ld      c,a
        bit     1,c
        ld      a,9
        ld      hl,360                  ; sectors on a side of forty tracks
        jr      z,_nine
        dec     a
        ld      hl,320
_nine:
        ld      (diskTrackSectors),a
        bit     2,c
        jr      nz,_forty
        add     hl,hl
_forty:
        ld      a,1
        bit     0,c
        jr      z,_oneSide
        inc     a
        add     hl,hl
_oneSide:
        ld      (diskHeads),a
        ld      (diskSectors),hl
        pop     bc
        pop     de
        pop     hl
        ret

; entryChanged: 4013h, DSKCHG. In: A = drive, C = media byte, HL = parameter block. Out: B = 1 when the disk is the same, 0FFh
; when it was changed, and then the block is filled in; carry and A = error. Changes all.
entryChanged:
        call    beginEntry
        cp      driveCount
        jr      nc,entryError
        push    hl
        push    bc
        push    af
        call    switchDrive
        call    lineOfChange
        jr      z,_changed
        pop     af
        pop     bc
        pop     hl
        ld      b,1
        or      a
        ret
_changed:
        call    hasDirty
        jr      z,_unwritten            ; a call of the system will ask for the right disk
        ld      a,(drive)
        call    forgetDrive
_unwritten:
        xor     a
        ld      (diskState),a
        pop     af
        pop     bc
        pop     hl
        call    entryParameters
        ld      b,0FFh
        ret

; entryParameters: 4016h, GETDPB. In: A = drive, B, C = media byte, HL = parameter block. Out: bytes 1 to 18 of the block
; describe the disk in the drive; carry and A = error. Changes all.
entryParameters:
        call    beginEntry
        cp      driveCount
        jr      nc,entryError
        push    hl
        call    useDriveNumber
        pop     de
        jr      c,entryError
        inc     de
        ld      hl,dpbMedia
        ld      bc,18
        ldir
        or      a
        ret
entryError:
        ld      a,errorOther
        scf
        ret

; entryChoice: 4019h, CHOICE. Out: HL = text of the ROM with the choices for entryFormat, ended with 0. Changes nothing else.
entryChoice:
        ld      hl,choiceText
        ret
