; The interrupt, where RAM lies in page 0.

; interrupt: 0038h jumps here. Serves it by the BIOS's own routine, which is in page 0 meanwhile. A stack below page 3 could
; be out of sight then, so it is changed for one in page 3. A routine of the program that the BIOS calls through its hooks
; finds the program's memory in page 1 even while the system itself works there.
interrupt:
        push    af
        push    hl
        ld      hl,0
        add     hl,sp
        ld      a,h
        cp      0C0h
        jr      nc,_stackInPlace
        ld      (interruptedSp),hl
        ld      sp,interruptStack
        call    serveInterrupt
        ld      sp,(interruptedSp)
        jr      _done
_stackInPlace:
        call    serveInterrupt
_done:
        pop     hl
        pop     af
        ei
        ret

; serveInterrupt: Changes AF, HL.
serveInterrupt:
        in      a,(slotPort)
        push    af
        ld      hl,userSlots
        ld      a,(kernelDepth)
        or      a
        jr      z,_asFound
        ld      a,(sharesPrimary)
        or      a
        jr      z,_userPage
        ld      a,(subslotRegister)
        cpl
        push    af
        ld      a,(userSubslots)
        ld      (subslotRegister),a
        ld      a,(hl)
        call    _bios
        pop     af
        ld      (subslotRegister),a
        jr      _restore
_asFound:
        pop     af
        push    af
        jr      _call
_userPage:
        ld      a,(hl)
_call:
        call    _bios
_restore:
        pop     af
        out     (slotPort),a
        ret
_bios:
        and     0FCh
        or      0
patchInterruptSlot equ $ - 1
        out     (slotPort),a
        call    biosInterrupt
        di
        ret
