; The system call and the change of page 1 between the caller's memory and the ROM.

; systemCall: In: C = function, DE, HL as it wants them. Out: as it says. Changes all. Interrupts are on afterwards.
systemCall:
        ld      (callHl),hl
        ld      (callDe),de
        ld      a,c
        ld      (callFunction),a
        ld      hl,-interruptStack
        add     hl,sp
        ld      a,h
        ld      hl,0
        add     hl,sp
        or      a                       ; Z: the system's own stack of 256 bytes is in use
        ld      a,(kernelDepth)
        jr      z,_nested               ; from a disk error routine
        ld      sp,kernelStack
        xor     a
_nested:
        inc     a
        ld      (kernelDepth),a
        push    hl
        call    enterRom
        call    romServe
        call    leaveRom
        ld      (resultHl),hl
        ld      hl,kernelDepth
        dec     (hl)
        pop     hl
        ld      sp,hl
        ld      hl,(resultHl)
        ei
        ret

; enterRom: notes what the caller has in page 1 and puts the ROM there. Changes AF.
enterRom:
        in      a,(slotPort)
        ld      (userSlots),a
        and     0F3h
        or      0
patchRomPrimary equ $ - 1
        ld      (romSlots),a
        ld      a,(sharesPrimary)
        or      a
        jr      z,pageRom
        ld      a,(subslotRegister)
        cpl
        ld      (userSubslots),a
        and     0F3h
        or      0
patchRomSubslot equ $ - 1
        ld      (romSubslots),a

; pageRom: page 1 = the ROM. Changes AF.
pageRom:
        ld      a,(romSlots)
        out     (slotPort),a
patchPageRom:
        ret                             ; NOP where ROM and RAM share a primary slot
        ld      a,(romSubslots)
        ld      (subslotRegister),a
        ret

; leaveRom: page 1 = the caller's. Keeps all.
leaveRom:
        push    af
        call    pageUser
        pop     af
        ret

; pageUser: page 1 = the caller's. Changes AF.
pageUser:
        ld      a,(userSlots)
        out     (slotPort),a
patchPageUser:
        ret                             ; as patchPageRom
        ld      a,(userSubslots)
        ld      (subslotRegister),a
        ret

; copyUser: LDIR between page 3 and the caller's memory. In, Out: HL, DE, BC as for LDIR. Changes AF.
copyUser:
        call    pageUser
        ldir
        jr      pageRom

; peekUser: In: HL = address. Out: A = the caller's byte there. Changes F.
peekUser:
        call    pageUser
        ld      a,(hl)
        push    af
        call    pageRom
        pop     af
        ret

; pokeUser: In: HL = address, B = byte for the caller's memory. Changes AF.
pokeUser:
        call    pageUser
        ld      (hl),b
        jr      pageRom

; callBios: In: IX = routine of the BIOS, other registers as it wants them. Out: as it says. Page 1 is the caller's
; meanwhile, so that an interrupt routine there is in its place. Interrupts are on afterwards.
callBios:
        push    af
        call    pageUser
        ld      a,(userSlots)
        and     0FCh
        or      0
patchBiosSlot   equ $ - 1
        di
        out     (slotPort),a
        pop     af
        ei
        call    jumpIx
        di
        push    af
        call    pageRom
        pop     af
        ei
        ret
jumpIx:
        jp      (ix)
