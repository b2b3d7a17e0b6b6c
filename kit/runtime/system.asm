; The machine and MSX-DOS: keyboard state, system calls, the command line.

; keyPressed: Out: A = 1 when a key waits, otherwise 0. Destroys all. 160 T.
@keyPressed:
        ld      hl,(@conStPtr)
        call    callDriver
        and     1
        ret

; bdos: In: BC = function, DE = parameter. Out: HL = what the BDOS returns in A. Destroys all. 69 T.
@bdos:
        call    bdosCall
        ld      l,a
        ld      h,0
        ret

; bdosHL: In: as bdos. Out: HL as the BDOS returns it. Destroys all. 10 T.
@bdosHL:
        jp      bdosCall

; bios: In: DE = function, 0 for WBOOT, BC = parameter. Out: HL = what it returns in A. biosHL: HL as it returns it.
; By the jump table to which address 0001h points. Destroy all. 100 T; 53 T.
@bios:
        call    @biosHL
        ld      l,a
        ld      h,0
        ret
@biosHL:
        ld      hl,(0001h)
        add     hl,de
        add     hl,de
        add     hl,de
        jp      (hl)

; userBreakPoll: looks for ^C, which is a user break at the caller. Another key is kept for the next that reads one; until
; then none is looked for. Nothing in or out; keeps all registers. 388 T without a key that waits, 80 T
; with one that is kept.
@userBreakPoll:
        ld      (entryStack),sp
        push    af
        ld      a,(keptKey)
        or      a
        jr      nz,_kept
        push    bc
        push    de
        push    hl
        push    ix
        push    iy
        exx
        ex      af,af'
        push    af
        push    bc
        push    de
        push    hl
        ld      e,0FFh
        ld      c,6
        call    bdosCall
        cp      ctrlC
        jp      z,userBreak
        ld      (keptKey),a
        pop     hl
        pop     de
        pop     bc
        pop     af
        ex      af,af'
        exx
        pop     iy
        pop     ix
        pop     hl
        pop     de
        pop     bc
_kept:
        pop     af
        ret

; paramCount: Out: HL = number of words in the command line behind the program's name. Destroys AF, BC, DE.
; 125 T + 35 T a character.
@paramCount:
        xor     a
        ld      (parameterNumber),a
        call    firstParameter
_next:
        jr      c,_done
        ld      a,(parameterNumber)
        inc     a
        ld      (parameterNumber),a
        call    nextParameter
        jr      _next
_done:
        ld      hl,(parameterNumber)
        ld      h,0
        ret

; paramString: In: HL = number from 1, DE = target, 256 bytes. Out: the word, or an empty string when there is none.
; Keeps DE; destroys AF, BC, HL. 150 T + 35 T a character of the command line + 21 T one of the word.
@paramString:
        xor     a
        ld      (de),a
        or      h
        ret     nz
        or      l
        ret     z
        ld      (parameterNumber),a
        push    de
        call    firstParameter
_next:
        jr      c,_done
        ld      a,(parameterNumber)
        dec     a
        ld      (parameterNumber),a
        jr      z,_found
        call    nextParameter
        jr      _next
_found:
        ex      de,hl
        pop     de
        push    de
        ld      a,c
        ld      (de),a
        inc     de
        ld      b,0
        ldir
_done:
        pop     de
        ret

; firstParameter: begins with the command line. nextParameter: goes on with HL = text, B = characters left.
; Out: carry when there is no word; otherwise DE = the word, C = its length, HL and B behind it. Destroy AF.
; 46 T; 23 T; and 35 T a character.
firstParameter:
        ld      hl,commandTail
        ld      b,(hl)
        inc     hl
nextParameter:
        ld      a,b
        or      a
        scf
        ret     z
        ld      a,(hl)
        cp      ' ' + 1
        jr      nc,_word
        inc     hl
        dec     b
        jr      nextParameter
_word:
        ld      d,h
        ld      e,l
        ld      c,0
_next:
        inc     c
        inc     hl
        dec     b
        jr      z,_end
        ld      a,(hl)
        cp      ' ' + 1
        jr      nc,_next
_end:
        or      a
        ret
