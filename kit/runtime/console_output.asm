; Standard output: characters go to the console through the BDOS, one by one.
;
; After an I/O error nothing is written until the program has asked for the I/O result.

; writeChar, putChar: In: A = character. Destroys all. 140 T to the console, 210 T to a text file; 32 T while I/O is
; suspended.
@writeChar:
putChar:
        ld      e,a
        ld      a,(ioStatus)
        or      a
        ret     nz
        ld      hl,(selectedOutput)
        or      h
        ld      a,e
        jp      nz,putSelected

; putAlways: In: E = character, to the console. Destroys all. 94 T. Writes even while I/O is suspended.
putAlways:
        ld      hl,(@conOutPtr)
        ld      a,e
        jp      (hl)
consoleOutput:
        ld      e,a
        ld      a,(outputFunction)
        ld      c,a
        ld      a,e
        inc     a
        jp      nz,bdosCall
        ld      c,2                     ; to the direct function 06, FFh is no character but the wish to read one
        jp      bdosCall

; writeLine: CR LF. Nothing in or out; destroys all. 300 T to the console, 440 T to a text file.
@writeLine:
        ld      a,carriageReturn
        call    putChar
        ld      a,lineFeed
        jr      putChar

; writeLiteral: the string stands behind the call; returns behind it. Out: nothing. Destroys all.
; 75 T, then as writeChars.
@writeLiteral:
        pop     hl
        ld      c,(hl)
        ld      b,0
        inc     hl
        push    hl
        add     hl,bc
        ex      (sp),hl
        jr      @writeChars

; writeBoolean: In: A = 0 for FALSE, otherwise TRUE. Destroys all. 960 T for TRUE, 1150 T for FALSE.
@writeBoolean:
        call    booleanText
        jr      @writeString

; writeInteger: In: HL = value. Destroys all. One digit 409 T, two 800 T on average, 2600 T at most.
@writeInteger:
        call    integerToText
        jr      @writeChars

; writeString: In: HL = string. Destroys all. 20 T, then as writeChars.
@writeString:
        ld      c,(hl)
        ld      b,0
        inc     hl

; writeChars: In: HL = characters, BC = count. Destroys all. 23 T + 153 T a character.
@writeChars:
        ld      a,b
        or      c
        ret     z
_next:
        push    hl
        push    bc
        ld      a,(hl)
        call    putChar
        pop     bc
        pop     hl
        cpi                             ; only for INC HL, DEC BC and the test for BC = 0
        jp      pe,_next
        ret

; writeCharWidth: In: A = character, DE = width. Destroys all. 260 T, and 199 T a blank.
@writeCharWidth:
        push    af
        ld      bc,1
        call    padToWidth
        pop     af
        jr      putChar

; writeBooleanWidth: In: A as for writeBoolean, DE = width. Destroys all. As writeBoolean + 120 T, and 199 T a blank.
@writeBooleanWidth:
        call    booleanText
        jr      @writeStringWidth

; writeIntegerWidth: In: HL = value, DE = width. Destroys all. As writeInteger + 150 T, and 199 T a blank.
@writeIntegerWidth:
        push    de
        call    integerToText
        pop     de
        jr      @writeCharsWidth

; writeStringWidth: In: HL = string, DE = width. Destroys all. 170 T + 215 T a character + 199 T a blank.
@writeStringWidth:
        ld      c,(hl)
        ld      b,0
        inc     hl

; writeCharsWidth: In: HL = characters, BC = count, DE = width. Destroys all. 150 T + 215 T a character + 199 T a blank.
@writeCharsWidth:
        push    hl
        push    bc
        call    padToWidth
        pop     bc
        pop     hl
        jr      @writeChars

; padToWidth: In: BC = characters, DE = columns: writes the blanks that right-justify them; none for a negative width.
; Destroys all. 47 T + 199 T a blank.
padToWidth:
        bit     7,d
        ret     nz
        ex      de,hl
        or      a
        sbc     hl,bc
        ret     c
_next:
        ld      a,h
        or      l
        ret     z
        push    hl
        ld      a,' '
        call    putChar
        pop     hl
        dec     hl
        jr      _next

; booleanText: In: A. Out: HL = 'FALSE' or 'TRUE' as a string. Keeps the others. 25 to 39 T.
booleanText:
        ld      hl,falseText
        or      a
        ret     z
        ld      hl,trueText
        ret

falseText:
        defb    5,'FALSE'
trueText:
        defb    4,'TRUE'
