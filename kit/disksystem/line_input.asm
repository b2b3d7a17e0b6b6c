; 0Ah: a line from the keyboard.

; functionLine: In: DE = buffer: the number of characters that fit, then the number typed, then the characters and a
; carriage return where there is room for it. Backspace and DEL take one back, ^X and ESC all.
functionLine:
        ex      de,hl
        call    peekUser
        ld      e,a                     ; E = room, D = characters so far, HL = place of the next one
        ld      d,0
        inc     hl
        inc     hl
_key:
        push    de
        push    hl
        call    consoleKey
        pop     hl
        pop     de
        cp      carriageReturn
        jr      z,_end
        cp      ctrlC
        jp      z,breakProgram
        cp      backSpace
        jr      z,_back
        cp      deleteKey
        jr      z,_back
        cp      ctrlX
        jr      z,_kill
        cp      escape
        jr      z,_kill
        call    heedControlKey
        jr      z,_key
        ld      b,a
        ld      a,d
        cp      e
        jr      nc,_key
        call    pokeUser
        inc     hl
        inc     d
        ld      a,b
        call    showControl
        jr      _key
_back:
        ld      a,d
        or      a
        call    nz,eraseOne
        jr      _key
_kill:
        ld      a,d
        or      a
        jr      z,_key
        call    eraseOne
        jr      _kill
_end:
        ld      a,d
        cp      e
        ld      b,carriageReturn
        call    c,pokeUser
        ld      hl,(callDe)
        inc     hl
        ld      b,d
        call    pokeUser
        ld      a,carriageReturn
        call    showCharacter
        xor     a
        ret

; eraseOne: In: HL = place after the character, D = characters. Out: both one less. Changes AF, B.
eraseOne:
        dec     hl
        dec     d
        call    peekUser
        ld      b,1
        cp      ' '
        jr      nc,_column
        inc     b
_column:
        ld      a,backSpace
        call    showCharacter
        ld      a,' '
        call    showCharacter
        ld      a,backSpace
        call    showCharacter
        djnz    _column
        ret
