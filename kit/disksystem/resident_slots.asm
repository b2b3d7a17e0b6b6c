; The slot calls that page 0 offers: the BIOS's own, with the BIOS in page 0 for as long as they take.

readSlot:
        push    hl
        ld      hl,biosReadSlot
        jr      callSlotRoutine
writeSlot:
        push    hl
        ld      hl,biosWriteSlot
        jr      callSlotRoutine

; enableSlot: In: A = slot, H = high byte of the page. Page 0 cannot be the BIOS's and another at once, so there only the
; primary slot is set. Changes all. Interrupts are off afterwards.
enableSlot:
        push    hl
        bit     7,h
        jr      nz,_bios
        bit     6,h
        jr      nz,_bios
        pop     hl
        di
        and     3
        ld      b,a
        in      a,(slotPort)
        and     0FCh
        or      b
        out     (slotPort),a
        ret
_bios:
        ld      hl,biosEnableSlot
        jr      callSlotRoutine

; callInline: RST 30h: slot and address follow it. Registers as the routine wants and gives them; changes IX, IY and the
; alternate ones.
callInline:
        ex      af,af'
        exx
        pop     hl
        ld      a,(hl)
        inc     hl
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        inc     hl
        push    hl
        push    de
        pop     ix
        push    af
        pop     iy
        exx
        ex      af,af'

; callSlot: In: IX = routine, IY high = slot. A routine of this ROM finds the caller's memory in page 0, every other one the BIOS.
callSlot:
        push    af
        push    hl
        ld      hl,romSlot
        ld      a,iyh
        sub     (hl)
        pop     hl
        jr      nz,_other
        ld      a,ixh
        and     0C0h
        cp      40h
        jr      z,callOwnRom
_other:
        pop     af
        push    hl
        ld      hl,biosCallSlot

; callSlotRoutine: In: HL = routine of the BIOS; the caller's HL on the stack; other registers as the routine wants them.
; Interrupts are off afterwards, as after the BIOS's own. A stack below page 3 is changed for one that stays in sight.
callSlotRoutine:
        di
        ld      (slotRoutine),hl
        pop     hl
        ld      (slotSp),sp
        push    af
        ld      a,(slotSp + 1)
        cp      0C0h
        jr      nc,_inPlace
        pop     af
        ld      sp,interruptStack
        jr      _call
_inPlace:
        pop     af
_call:
        push    hl
        ld      hl,(slotSp)
        ex      (sp),hl
        push    af
        in      a,(slotPort)
        and     0FCh
        or      0
patchSlotBios   equ $ - 1
        out     (slotPort),a
        pop     af
        call    jumpToRoutine
        di
        push    af
        in      a,(slotPort)
        and     0FCh
        or      0
patchSlotRam    equ $ - 1
        out     (slotPort),a
        pop     af
callersStack:
        ex      (sp),hl
        ld      (slotSp),hl
        pop     hl
        ld      sp,(slotSp)
        ret

; callOwnRom: In: IX = routine of the ROM, AF on the stack, other registers as it wants them. On the system's stack.
callOwnRom:
        pop     af
        di
        ld      (slotSp),sp
        ld      sp,kernelStack
        push    hl
        ld      hl,(slotSp)
        ex      (sp),hl
        push    af
        call    enterRom
        pop     af
        call    jumpIx
        call    leaveRom
        di
        jr      callersStack
jumpToRoutine:
        push    hl
        ld      hl,(slotRoutine)
        ex      (sp),hl
        ret
