; What a program finds of MSX-DOS in an emulator that has no disk: the entries in page 0, and a BDOS that does the
; console by the BIOS. File calls stop at `files`, where msx.tcl does them.
; Assembled for E000h; the first bytes are copied to page 0 from `page0` on.

CHSNS:  equ 009Ch
CHGET:  equ 009Fh
CHPUT:  equ 00A2h
CHGMOD: equ 005Fh
LINL40: equ 0F3AEh
KEYINT: equ 0038h
BIOS_SLOT: equ 0FCC0h

        org 0E000h

        jp bdos                 ; E000h
        jp callSlot             ; E003h
        jp readSlot             ; E006h
        jp interrupt            ; E009h
files:  nop                     ; E00Ch
        ret
        nop

; E00Fh: the text screen of MSX-DOS, then the program.
        ld a,40
        ld (LINL40),a
        xor a
        ld ix,CHGMOD
        call bios
        jp 0100h

; CALSLT: the BIOS in slot 0 is all that is called.
callSlot:
        di
        ex af,af'
        in a,(0A8h)
        push af
        and 0FCh
        out (0A8h),a
        ex af,af'
        call callIx
        di
        ex af,af'
        pop af
        out (0A8h),a
        ex af,af'
        ret
callIx: jp (ix)

; RDSLT: A of slot 0 at HL.
readSlot:
        di
        in a,(0A8h)
        ld b,a
        and 0FCh
        out (0A8h),a
        ld c,(hl)
        ld a,b
        out (0A8h),a
        ld a,c
        ret

; As MSX-DOS does it: the BIOS's interrupt routine in its own slot.
interrupt:
        push ix
        push iy
        push af
        ex af,af'
        push af
        ld ix,KEYINT
        call callSlot
        pop af
        ex af,af'
        pop af
        pop iy
        pop ix
        ei
        ret

bios:   ld iy,(BIOS_SLOT)
        call callSlot
        ei
        ret

bdos:   ld a,c
        cp 2
        jr z,writeChar
        cp 6
        jr z,direct
        cp 7
        jr z,readChar
        cp 8
        jr z,readChar
        cp 0Bh
        jr z,status
        jr files
direct: ld a,e
        inc a
        jr nz,writeChar
        call status
        ret z
readChar:
        ld ix,CHGET
        call bios
        ld l,a
        ret
writeChar:
        ld a,e
        ld ix,CHPUT
        jr bios
status: ld ix,CHSNS
        call bios
        ld a,0
        jr z,empty
        dec a
empty:  ld l,a
        ld h,a
        or a
        ret
