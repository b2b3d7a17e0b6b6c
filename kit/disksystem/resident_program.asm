; From the system to a program and back.

; startProgram: In: HL = address. The program there takes over with RAM in all pages and the stack at the top of its
; memory; its RET goes to 0000h.
startProgram:
        di
        call    pageRam
        ld      sp,tpaTop - 6
        ld      de,0
        push    de
        xor     a
        ld      (kernelDepth),a
        ei
        jp      (hl)

; pageRam: RAM into all pages. Changes AF.
pageRam:
        ld      a,(startSlots)
        ld      (userSlots),a
        out     (slotPort),a
        ld      a,(ramExpanded)
        or      a
        ret     z
        ld      a,(startSubslots)
        ld      (userSubslots),a
        ld      (subslotRegister),a
        ld      (subslotTable),a
patchSubslotTable equ $ - 2
        ret

; warmStart: a program has ended.
warmStart:
        di
        ld      sp,kernelStack
        call    serveRam
        jp      romWarmStart

; serveRam: page 1 = the ROM, as if called from a program with RAM in all pages. Changes AF.
serveRam:
        call    pageRam
        jp      enterRom

; enableRam, enableRom: page 1 for a program without page 0 of its own. Change AF.
enableRam:
        in      a,(slotPort)
        and     0F3h
        or      0
patchRamPrimary equ $ - 1
        out     (slotPort),a
        ld      a,(sharesPrimary)
        or      a
        ret     z
        ld      a,(startSubslots)
        ld      (subslotRegister),a
        ret
enableRom       equ enterRom

; leaveTo: In: HL = address. Goes there with the caller's page 1 in place and no call being served.
leaveTo:
        call    pageUser
        xor     a
        ld      (kernelDepth),a
        jp      (hl)

; callProgram: In: HL = routine of the program, A, C as it wants them. Out: C as it leaves it. Changes all.
callProgram:
        push    af
        call    pageUser
        pop     af
        call    jumpHl
        jp      pageRom
jumpHl:
        jp      (hl)

; pageForEntry: notes for a transfer that is called for straight in the ROM that RAM is the caller's page 1. Changes AF.
pageForEntry:
        call    enterRom
        ld      a,(patchRamPrimary)
        push    bc
        ld      b,a
        ld      a,(userSlots)
        and     0F3h
        or      b
        ld      (userSlots),a
        ld      a,(startSubslots)
        ld      (userSubslots),a
        pop     bc
        ret
