; From the BIOS's call of the ROM to the first prompt: finds the memory and lays the system out in page 3.

; initialise: the BIOS calls it once after a reset, with itself in page 0 and the ROM in page 1. Comes back only where the
; machine has not 64 kB of RAM.
initialise:
        di
        ld      (systemEntry - 2),sp    ; free until the end of the start
        call    findRom
        ld      b,a                     ; B = the ROM's slot
        call    findRam
        jr      c,_noMemory
        ld      sp,kernelStack
        push    bc
        call    layOut
        pop     bc
        call    patch
        call    publish
        call    hookTimer
        call    findClock
        call    setScreen
        jp      boot
_noMemory:
        ld      hl,noMemoryText
_character:
        ld      a,(hl)
        inc     hl
        or      a
        ret     z
        call    biosPutChar
        jr      _character

; findRom: Out: A = the slot of page 1, as the BIOS writes slots: primary in bits 1-0, subslot in bits 3-2, bit 7 set for an
; expanded one. Changes DE, HL, F, C.
findRom:
        in      a,(slotPort)
        rrca
        rrca
        and     3
        call    isExpanded
        ret     z
        ld      hl,subslotTable
        add     hl,de
        ld      a,(hl)
        and     0Ch
        or      c
        or      80h
        ret

; isExpanded: In: A = primary slot. Out: A = C = DE = it; Z when it is not expanded. Changes HL.
isExpanded:
        ld      c,a
        ld      e,a
        ld      d,0
        ld      hl,expandedSlots
        add     hl,de
        bit     7,(hl)
        ret

; findRam: Out: C = the slot of page 3, which must have RAM in the pages below too; carry when it has not. Keeps B. Changes
; AF, DE, HL. A memory mapper is set to its usual order first.
findRam:
        ld      a,3
        out     (0FCh),a
        dec     a
        out     (0FDh),a
        dec     a
        out     (0FEh),a
        in      a,(slotPort)
        rlca
        rlca
        and     3
        call    isExpanded
        jr      z,_slot
        ld      a,(subslotRegister)
        cpl
        rrca
        rrca
        rrca
        rrca
        and     0Ch                     ; page 3's bits 7-6 are bits 3-2 now
        or      c
        or      80h
_slot:
        ld      c,a
        ld      hl,0010h
        call    isRam
        ret     c
        ld      hl,4010h
        call    isRam
        ret     c
        ld      hl,8010h

; isRam: In: C = slot, HL = address. Out: carry when there is no RAM. Keeps BC; changes AF, DE, HL.
isRam:
        push    bc
        ld      a,c
        push    hl
        push    bc
        call    biosReadSlot
        pop     bc
        pop     hl
        cpl
        ld      e,a
        push    hl
        push    bc
        push    de
        ld      a,c
        call    biosWriteSlot
        pop     de
        pop     bc
        pop     hl
        push    hl
        push    bc
        push    de
        ld      a,c
        call    biosReadSlot
        pop     de
        pop     bc
        pop     hl
        cp      e
        scf
        jr      nz,_end
        ld      a,e
        cpl
        ld      e,a
        ld      a,c
        call    biosWriteSlot           ; what was there before
        or      a
_end:
        pop     bc
        ret

; layOut: the resident part and the variables. Changes all but C and B.
layOut:
        push    bc
        ld      hl,residentImage
        ld      de,residentBase
        ld      bc,residentImageEnd - residentImage
        ldir
        ld      hl,variables
        ld      de,variables + 1
        ld      bc,systemEntry - variables - 1
        ld      (hl),0
        ldir
        call    emptyBuffers
        ld      a,0FFh
        ld      (drive),a
        ld      (selectedDrive),a
        ld      hl,driveTracks
        ld      (hl),a
        inc     hl
        ld      (hl),a
        ld      hl,0080h
        ld      (dma),hl
        pop     bc
        ret

; patch: In: B = the ROM's slot, C = the RAM's. Fills in what the resident part needs of them. Changes all.
patch:
        ld      a,b
        ld      (romSlot),a
        ld      (masterSlot),a
        ld      a,c
        ld      hl,ramSlots
        ld      (hl),a
        inc     hl
        ld      (hl),a
        inc     hl
        ld      (hl),a
        inc     hl
        ld      (hl),a
        and     3
        ld      (patchSlotRam),a
        call    everyPage
        ld      (startSlots),a
        and     0Ch
        ld      (patchRamPrimary),a
        ld      a,c
        rrca
        rrca
        call    everyPage
        ld      (startSubslots),a
        ld      a,b
        call    everyPage
        and     0Ch
        ld      (patchRomPrimary),a
        ld      (patchTickPrimary),a
        ld      a,(expandedSlots)
        and     3
        ld      (patchBiosSlot),a
        ld      (patchInterruptSlot),a
        ld      (patchSlotBios),a
        ld      a,c
        and     80h
        ld      (ramExpanded),a
        ld      a,c
        and     3
        add     a,low subslotTable
        ld      (patchSubslotTable),a
        ld      a,b
        xor     c
        and     3
        ret     nz
        bit     7,b
        ret     z
        ; ROM and RAM share a primary slot: their subslots are to be changed.
        ld      a,1
        ld      (sharesPrimary),a
        ld      a,b
        and     0Ch
        ld      (patchRomSubslot),a
        ld      (patchTickSubslot),a
        xor     a                       ; NOP
        ld      (patchPageRom),a
        ld      (patchPageUser),a
        ret

; everyPage: In: A = slot number in bits 1-0. Out: A = that in the bits of all four pages. Changes F, E.
everyPage:
        and     3
        ld      e,a
        add     a,a
        add     a,a
        or      e
        ld      e,a
        add     a,a
        add     a,a
        add     a,a
        add     a,a
        or      e
        ret

; publish: the entries and variables that other software looks for. Changes AF, HL.
publish:
        ld      a,0C3h
        ld      (systemEntry),a
        ld      (enableRamEntry),a
        ld      (enableRomEntry),a
        ld      hl,systemCall
        ld      (systemEntry + 1),hl
        ld      hl,enableRam
        ld      (enableRamEntry + 1),hl
        ld      hl,enableRom
        ld      (enableRomEntry + 1),hl
        ld      a,driveCount
        ld      (drivesByte),a
        ld      hl,driveRecord
        ld      (dpbTable),hl
        ld      (dpbTable + 2),hl
        ; fall through

; resetVectors: what a program may have changed of them. Changes HL.
resetVectors:
        ld      hl,warmStart
        ld      (abortVector),hl
        ld      (breakAddress),hl
        ld      hl,breakAddress
        ld      (breakVector),hl
        ld      hl,0
        ld      (errorAddress),hl       ; 0: the system's own question
        ld      hl,errorAddress
        ld      (errorVector),hl
        ret

; setScreen: text, 80 columns where the machine has them. Changes all.
setScreen:
        ld      a,40
        ld      hl,versionByte
        ld      b,(hl)
        inc     b
        dec     b
        jr      z,_width
        add     a,a
_width:
        ld      (lineLength40),a
        jp      biosInitText

; makePage0: what programs find in page 0, which is RAM. Interrupts are off afterwards: until its end there is nothing at 0038h
; to serve one. Changes AF, BC, DE, HL.
makePage0:
        di
        ld      hl,0
        ld      de,1
        ld      bc,00FFh
        ld      (hl),l
        ldir
        ld      hl,page0Entries
_entry:
        ld      e,(hl)
        inc     hl
        ld      a,e
        inc     a
        ret     z
        ld      d,0
        ld      a,0C3h
        ld      (de),a
        inc     de
        ldi
        ldi
        jr      _entry
page0Entries:
        defb    00h
        defw    biosTable + 3
        defb    05h
        defw    tpaTop
        defb    0Ch
        defw    readSlot
        defb    14h
        defw    writeSlot
        defb    1Ch
        defw    callSlot
        defb    24h
        defw    enableSlot
        defb    30h
        defw    callInline
        defb    38h
        defw    interrupt
        defb    0FFh
