; The driver of the WD2793: runs of sectors between a disk and memory.

attempts        equ 4           ; before an error is reported
motorTime       equ 240         ; frames that a motor runs on after the last sector

commandRestore  equ 00h
commandSeek     equ 10h         ; 6 ms a step
commandRead     equ 80h
commandWrite    equ 0A0h
commandSettle   equ 04h         ; 15 ms more before a write on a new track; a read finds its sector anyway
commandStop     equ 0D0h

; Bits of the status after a transfer.
statusMask      equ 0DCh
statusNotReady  equ 7
statusProtected equ 6
statusNoRecord  equ 4
statusChecksum  equ 3

; Errors, as the published entries give them.
errorProtected  equ 0
errorNotReady   equ 2
errorData       equ 4
errorSeek       equ 6
errorNoRecord   equ 8
errorWrite      equ 10
errorOther      equ 12
errorAnotherDisk equ 14

; runTransfer: In: drive, its record, DE = first sector, HL = address in the caller's memory or in page 3, B = sectors,
; diskWrites: 0 reads, 1 writes, 2 reads without keeping the bytes and adds them
; to sectorSum. Out: carry and A = error; B = sectors that are left. Changes all. Interrupts are off for one sector at a time.
runTransfer:
        ld      (sectorAddress),hl
        push    bc
        call    locate
        pop     bc
        ret     c
_sector:
        push    bc
        call    transferSector
        pop     bc
        ret     c
        ld      hl,(sectorAddress)
        inc     h
        inc     h
        ld      (sectorAddress),hl
        ld      hl,diskSector
        inc     (hl)
        ld      a,(diskTrackSectors)
        cp      (hl)
        jr      nc,_sameTrack
        ld      (hl),1
        ld      a,(diskHeads)
        dec     a
        jr      z,_nextTrack
        ld      a,(diskSide)
        xor     1
        ld      (diskSide),a
        jr      nz,_sameTrack
_nextTrack:
        ld      hl,diskTrack
        inc     (hl)
_sameTrack:
        djnz    _sector
        or      a
        ret

; locate: In: DE = sector. Out: diskTrack, diskSide, diskSector; carry and A = error when the disk has no such sector.
; Changes all.
locate:
        ld      hl,(diskSectors)
        dec     hl
        or      a
        sbc     hl,de
        ld      a,errorNoRecord
        ret     c
        ex      de,hl
        ld      a,(diskTrackSectors)
        ld      e,a
        ld      d,0
        ld      b,d
        ld      c,d
_track:
        inc     bc
        or      a
        sbc     hl,de
        jr      nc,_track
        add     hl,de
        dec     bc
        ld      a,l
        inc     a
        ld      (diskSector),a
        xor     a
        ld      (diskSide),a
        ld      a,(diskHeads)
        dec     a
        jr      z,_oneSide
        srl     b
        rr      c
        sbc     a,a
        and     1
        ld      (diskSide),a
_oneSide:
        ld      a,c
        ld      (diskTrack),a
        ret

; transferSector: one sector, tried again where it fails. Out: carry and A = error. Changes all.
transferSector:
        call    startMotor
        ld      b,attempts
_attempt:
        push    bc
        call    trySector
        pop     bc
        ret     nc
        bit     statusProtected,a
        jr      nz,_protected
        push    af
        ld      a,(drive)
        call    trackOfDrive
        ld      (hl),0FFh               ; the head may stand elsewhere: from track 0 again
        pop     af
        bit     statusNotReady,a
        jr      nz,_notReady
        djnz    _attempt
_notReady:
        ld      b,errorNotReady
        rla
        jr      c,_error
        ld      b,errorNoRecord
        bit     statusNoRecord + 1,a
        jr      nz,_error
        ld      b,errorData
        bit     statusChecksum + 1,a
        jr      nz,_error
        ld      b,errorOther
_error:
        ld      a,b
        scf
        ret
_protected:
        xor     a                       ; errorProtected
        scf
        ret

; trackOfDrive: In: A = drive. Out: HL = where its track is noted. Changes AF.
trackOfDrive:
        ld      hl,driveTracks
        add     a,l
        ld      l,a
        ret     nc
        inc     h
        ret

; lineOfChange: Out: Z when the controller says that the disk was changed since the last time it was asked. Changes AF, HL.
lineOfChange:
        call    startMotor
        ld      a,(fdcDrive)
        bit     2,a
        ret

; lineOfProtection: Out: NZ when the disk is write-protected. Changes AF, HL.
lineOfProtection:
        call    startMotor
        di
        ld      a,commandStop           ; the status is that of the drive afterwards
        ld      (fdcCommand),a
        call    commandDelay
        ld      a,(fdcCommand)
        ei
        bit     statusProtected,a
        ret

; startMotor: selects the drive, with its motor on for some seconds more. Changes AF, HL.
startMotor:
        ld      a,motorTime
        ld      (motorFrames),a
        ld      a,(drive)
        ld      hl,selectedDrive
        cp      (hl)
        ld      (hl),a
        push    af
        or      0C0h
        ld      (fdcDrive),a
        pop     af
        ret     z
        call    trackOfDrive
        ld      a,(hl)
        ld      (fdcTrack),a
        ret

; trySector: Out: carry and A = status where it failed. Changes all. Interrupts are on afterwards.
trySector:
        di
        ld      a,(diskSide)
        ld      (fdcSide),a
        call    seekTrack
        jr      c,_failed
        ld      a,(diskSector)
        ld      (fdcSector),a
        ld      hl,(sectorAddress)
        ld      a,(diskWrites)
        dec     a
        jr      z,_write
        dec     a
        jr      z,_sum
        call    readOne
        jr      _check
_sum:
        call    sumOne
        jr      _check
_write:
        call    writeOne
_check:
        jr      c,_failed               ; no answer from the controller
        ld      a,(fdcCommand)
        ei
        and     statusMask
        ret     z
        scf
        ret
_failed:
        ld      a,commandStop
        ld      (fdcCommand),a
        ei
        ld      a,1 shl statusNotReady
        scf
        ret

; seekTrack: In: drive, diskTrack. Out: C = bits for a write command on the track: the head settles first where it moved; carry
; when the controller does not answer. Changes all.
seekTrack:
        ld      a,(drive)
        call    trackOfDrive
        ld      a,(hl)
        inc     a
        jr      nz,_known
        ld      a,commandRestore
        call    simpleCommand
        ret     c
        ld      (hl),0
        xor     a
        ld      (fdcTrack),a
_known:
        ld      c,0
        ld      a,(diskTrack)
        cp      (hl)
        ret     z
        ld      (hl),a
        ld      (fdcData),a
        ld      c,commandSettle
        ld      a,commandSeek

; simpleCommand: In: A = command without a transfer. Waits until it has ended. Out: carry when it does not. Keeps C, HL;
; changes AF, B, DE.
simpleCommand:
        ld      (fdcCommand),a
        call    commandDelay
        ld      b,3
        ld      de,0
_wait:
        ld      a,(fdcLines)
        add     a,a
        jp      p,_ended
        dec     de
        ld      a,d
        or      e
        jr      nz,_wait
        djnz    _wait
        scf
        ret
_ended:
        or      a
        ret

; commandDelay: the controller's lines are right 30 microseconds after a command. Keeps all.
commandDelay:
        push    bc
        ld      b,8
_wait:
        djnz    _wait
        pop     bc
        ret

; readOne: In: HL = address. Out: carry when the controller does not answer. Changes all. From a byte's coming to its being
; read at most 109 of the 114 T-states pass that there are.
readOne:
        call    isHidden
        call    c,slotsForHidden        ; before the command: between the first byte and the third lie 228 T-states
        push    af
        ld      a,commandRead
        ld      (fdcCommand),a
        call    commandDelay
        ld      b,0
        ld      ix,0500h
_wait:
        ld      a,(fdcLines)
        add     a,a
        jr      nc,_first
        jp      p,_none
        djnz    _wait
        dec     ixl
        jr      nz,_wait
        dec     ixh
        jr      nz,_wait
        pop     af
        scf
        ret
_none:
        pop     af
        or      a
        ret
_first:
        ld      a,(fdcData)             ; at most 90 of its 114 T-states after the byte came
        ld      b,a
        pop     af
        jr      nc,_store
        call    readHidden
        or      a
        ret
_byte:
        ld      a,(fdcData)
        ld      b,a
_store:
        ld      (hl),b
        inc     hl
        ld      a,(fdcLines)
        add     a,a
        jr      nc,_byte
_next:
        jp      p,_end
        ld      a,(fdcLines)
        add     a,a
        jr      nc,_byte
        jp      _next
_end:
        or      a
        ret

; writeOne: In: HL = address, C = bits for the command. Out: carry when the controller does not answer. Changes all. The first
; byte has more time than the others.
writeOne:
        ld      a,commandWrite
        or      c
        ld      (fdcCommand),a
        call    commandDelay
        ld      b,5
        ld      de,0
_wait:
        ld      a,(fdcLines)
        add     a,a
        jr      nc,_first
        jp      p,_ended
        dec     de
        ld      a,d
        or      e
        jr      nz,_wait
        djnz    _wait
        scf
        ret
_first:
        call    isHidden
        jr      nc,_byte
        call    slotsForHidden
        call    writeHidden
        or      a
        ret
_byte:
        ld      a,(hl)
        ld      (fdcData),a
        inc     hl
_next:
        ld      a,(fdcLines)
        add     a,a
        jr      nc,_byte
        jp      m,_next
_ended:
        or      a
        ret

; sumOne: adds a sector's bytes to sectorSum. Out: carry when the controller does not answer. Changes all.
sumOne:
        ld      a,commandRead
        ld      (fdcCommand),a
        call    commandDelay
        ld      de,(sectorSum)
        ld      bc,0
        ld      ix,0500h
_wait:
        ld      a,(fdcLines)
        add     a,a
        jr      nc,_byte
        jp      p,_ended
        djnz    _wait
        dec     ixl
        jr      nz,_wait
        dec     ixh
        jr      nz,_wait
        scf
        ret
_byte:
        ld      a,(fdcData)
        add     a,e
        ld      e,a
        jr      nc,_next
        inc     d
_next:
        ld      a,(fdcLines)
        add     a,a
        jr      nc,_byte
        jp      m,_next
_ended:
        ld      (sectorSum),de
        or      a
        ret

; isHidden: In: HL = address. Out: carry when some of the sector lies in page 1 of the caller. Changes A.
isHidden:
        ld      a,h
        cp      3Eh
        ccf
        ret     nc
        cp      80h
        ret

; slotsForHidden: Out: C, D, E as readHidden wants them. Changes AF; keeps B, HL.
slotsForHidden:
        ld      a,(userSlots)
        ld      d,a
        ld      a,(romSlots)
        ld      e,a
        ld      c,slotPort
        ret

; entryMotorOff: stops the motors. Changes AF.
entryMotorOff:
        xor     a
        ld      (fdcDrive),a
        ld      (motorFrames),a
        dec     a
        ld      (selectedDrive),a
        ret
