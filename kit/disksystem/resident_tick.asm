; The timer.

; tick: the BIOS's timer hook, 50 or 60 times a second, interrupts off. Keeps A; the BIOS has saved the others. The work itself
; is the ROM's, and there is some only when a motor is to stop or, without a clock chip, a second has passed.
tick:
        push    af
        ld      hl,motorFrames
        ld      a,(hl)
        or      a
        jr      z,_clock
        dec     (hl)
        call    z,tickInRom
_clock:
        ld      a,(clockPresent)
        or      a
        jr      nz,_end
        ld      hl,clockFrames
        dec     (hl)
        call    z,tickInRom
_end:
        pop     af
        jp      tickTail

; tickInRom: calls the ROM's part, unless the stack lies in page 1, which is the ROM's meanwhile. Changes all.
tickInRom:
        ld      hl,0
        add     hl,sp
        ld      a,h
        add     a,80h
        cp      0C0h
        ret     nc
        in      a,(slotPort)
        ld      b,a
        and     0F3h
        or      0
patchTickPrimary equ $ - 1
        out     (slotPort),a
        ld      a,(sharesPrimary)
        or      a
        jr      z,tickCall
        ld      a,(subslotRegister)
        cpl
        ld      c,a
        and     0F3h
        or      0
patchTickSubslot equ $ - 1
        ld      (subslotRegister),a
tickCall:
        push    bc
        call    romTick
        pop     bc
        ld      a,(sharesPrimary)
        or      a
        jr      z,_slots
        ld      a,c
        ld      (subslotRegister),a
_slots:
        ld      a,b
        out     (slotPort),a
        ret
