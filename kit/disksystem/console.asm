; The console, printer and auxiliary functions 01h to 09h and 0Bh.

; showCharacter: In: A = character; it is printed too after ^P. Changes F.
showCharacter:
        push    ix
        push    bc
        push    de
        push    hl
        push    af
        ld      ix,biosPutChar
        call    callBios
        ld      a,(printerEcho)
        or      a
        jr      z,_shown
        pop     af
        push    af
        call    printCharacter
_shown:
        pop     af
        pop     hl
        pop     de
        pop     bc
        pop     ix
        ret

; showRaw: as showCharacter, never printed. Changes all but A, BC, DE, HL.
showRaw:
        push    bc
        push    de
        push    hl
        push    af
        ld      ix,biosPutChar
        call    callBios
        pop     af
        pop     hl
        pop     de
        pop     bc
        ret

; printCharacter: In: A = character. Waits for the printer; ^C and CTRL+STOP end the program. Changes all.
printCharacter:
        push    af
_wait:
        ld      ix,biosPrinterState
        call    callBios
        jr      nz,_ready
        call    pollBreak
        jr      _wait
_ready:
        pop     af
        ld      ix,biosPrint
        jp      callBios

; showText: In: HL = text of the ROM that ends with 0. Changes AF, HL.
showText:
        ld      a,(hl)
        or      a
        ret     z
        call    showCharacter
        inc     hl
        jr      showText

; newLine: Changes AF.
newLine:
        ld      a,carriageReturn
        call    showCharacter
        ld      a,lineFeed
        jr      showCharacter

; consoleStatus: Out: A = 0FFh when a key waits, else 0. Changes all.
consoleStatus:
        ld      ix,biosKeyStatus
        call    callBios
        ld      a,0
        ret     z
        dec     a
        ret

; consoleKey: Out: A = the next key, which is waited for. Changes IX, IY.
consoleKey:
        ld      ix,biosGetKey
        jp      callBios

; peekKey: Out: A = the key that waits, else Z. Changes all.
peekKey:
        ld      ix,biosKeyStatus
        call    callBios
        ret     z
        ld      hl,(nextKey)
        ld      a,(hl)
        or      a
        ret     nz
        inc     a                       ; a NUL: there is a key, but none that means anything
        ret

; pollBreak: acts on a control key that waits: ^S holds the output until another key comes, ^P and ^N switch the printer,
; ^C and CTRL+STOP end the program. Changes all.
pollBreak:
        ld      a,(breakFlag)
        cp      3
        jr      z,_stopped
        call    peekKey
        ret     z
        cp      ctrlC
        jr      z,_break
        call    heedControlKey
        ret     nz
        push    af
        call    consoleKey
        pop     af
        cp      ctrlS
        ret     nz
        call    consoleKey
        cp      ctrlC
        ret     nz
        jr      breakProgram
_stopped:
        xor     a
        ld      (breakFlag),a
        call    peekKey
        jr      z,breakProgram
        cp      ctrlC
        jr      nz,breakProgram
_break:
        call    consoleKey

; breakProgram: shows ^C and goes where the published vector says.
breakProgram:
        ld      a,ctrlC
        call    showControl
        call    newLine
        ld      hl,(breakVector)
breakThrough:
        ld      a,h
        cp      40h
        jr      c,_inSight
        cp      80h
        jr      c,_own                  ; in the caller's page 1, which a jump from here cannot reach
_inSight:
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        jp      leaveTo
_own:
        jp      warmStart

; heedControlKey: In: A = key. Out: Z when it is one that the system keeps for itself; ^P and ^N are obeyed. Keeps A.
heedControlKey:
        cp      ctrlS
        ret     z
        cp      ctrlN
        jr      z,_off
        cp      ctrlP
        ret     nz
        ld      (printerEcho),a
        ret
_off:
        push    af
        xor     a
        ld      (printerEcho),a
        pop     af
        ret

; showControl: In: A = character; a control character is shown as ^ and its letter. Changes AF.
showControl:
        cp      ' '
        jr      nc,_plain
        cp      tab
        jr      z,_plain
        push    af
        ld      a,'^'
        call    showCharacter
        pop     af
        add     a,'@'
_plain:
        jp      showCharacter

; 01: Out: A = key, shown. 08: Out: A = key, not shown. ^C ends the program.
functionInputEcho:
        call    functionInput
        jp      showCharacter
functionInput:
        call    consoleKey
        cp      ctrlC
        jr      z,breakProgram
        call    heedControlKey
        jr      z,functionInput
        ret

; 02: In: E = character.
functionOutput:
        push    de
        call    pollBreak
        pop     de
        ld      a,e
        jp      showCharacter

; 03: Out: A = ^Z, as nothing is connected. 04: nothing.
functionAuxInput:
        ld      a,ctrlZ
        ret
functionAuxOutput:
        xor     a
        ret

; 05: In: E = character for the printer.
functionPrint:
        ld      a,e
        jp      printCharacter

; 06: In: E = character, or 0FFh. Out: for 0FFh A = key or 0 when none waits. The control keys mean nothing here.
functionDirect:
        ld      a,e
        inc     a
        jr      z,_input
        dec     a
        jp      showRaw
_input:
        call    consoleStatus
        or      a
        ret     z

; 07: Out: A = key, not shown. The control keys mean nothing.
functionRawInput:
        jp      consoleKey

; 09: In: DE = text that ends with $.
functionText:
        ld      bc,0                    ; a text without its end stops after 64 kB
_character:
        push    bc
        push    de
        call    pollBreak
        pop     de
        push    de
        ex      de,hl
        call    peekUser
        pop     de
        pop     bc
        cp      '$'
        ret     z
        call    showCharacter
        inc     de
        dec     bc
        ld      a,b
        or      c
        jr      nz,_character
        ret

; 0B: Out: A = 0FFh when a key waits, else 0.
functionStatus:
        call    pollBreak
        jp      consoleStatus

internalOutputCharacter:
        ld      a,e
        jp      showCharacter
