; Integers as decimal text and back.

; integerToText: In: HL = value. Out: HL = its characters (in numberText), BC = their count, 1 to 6.
; Destroys AF, DE. 150 T for one digit, 300 T for two, 870 T on average over all values, 1260 T at most. By
; subtraction of powers of ten, beginning with the first that can matter.
integerToText:
        ld      de,numberText
        bit     7,h
        jr      z,_positive
        xor     a
        sub     l
        ld      l,a
        sbc     a,a
        sub     h
        ld      h,a                     ; -32768 becomes 8000h, right without a sign
        ld      a,'-'
        ld      (de),a
        inc     de
_positive:
        ld      a,h
        or      a
        jr      z,_byte

        ; 256 to 32768: leading zeros are possible down to the thousands.
        ld      a,'0' - 1
        ld      bc,-10000
_tenThousands:
        inc     a
        add     hl,bc
        jr      c,_tenThousands
        sbc     hl,bc
        cp      '0'
        jr      z,_leadingThousands
        ld      (de),a
        inc     de
        ld      bc,-1000
        call    _digit
        jr      _hundreds
_leadingThousands:
        ld      a,'0' - 1
        ld      bc,-1000
_thousands:
        inc     a
        add     hl,bc
        jr      c,_thousands
        sbc     hl,bc
        cp      '0'
        jr      z,_hundreds
        ld      (de),a
        inc     de
_hundreds:
        ld      bc,-100
        call    _digit
        ld      a,l                     ; what is left is below 100
        jr      _tens

        ; 0 to 255
_byte:
        ld      a,l
        cp      10
        jr      c,_units
        cp      100
        jr      c,_tens
        ld      b,'0'
_byteHundreds:
        inc     b
        sub     100
        cp      100
        jr      nc,_byteHundreds
        ex      de,hl
        ld      (hl),b
        inc     hl
        ex      de,hl
_tens:
        ld      b,'0' - 1
_tensNext:
        inc     b
        sub     10
        jr      nc,_tensNext
        add     a,10
        ld      c,a
        ld      a,b
        ld      (de),a
        inc     de
        ld      a,c
_units:
        add     a,'0'
        ld      (de),a
        inc     de

        ld      hl,-numberText
        add     hl,de
        ld      b,h
        ld      c,l
        ld      hl,numberText
        ret

; One digit of HL, BC = the negated power of ten: stores it at DE and goes on.
_digit:
        ld      a,'0' - 1
_digitNext:
        inc     a
        add     hl,bc
        jr      c,_digitNext
        sbc     hl,bc
        ld      (de),a
        inc     de
        ret

; parseInteger: In: HL = characters, B = count. An optional sign, then decimal digits, or $ and hexadecimal ones; no
; blanks. Out: no carry, DE = value; or carry, A = position of the first bad character (count + 1 when one is missing;
; the digit that leads out of -32768..32767).
; Destroys AF, BC, DE, HL. About 205 T a decimal digit.
parseInteger:
        ld      c,1
        ld      de,0
        xor     a
        ld      (parseSign),a
        or      b
        jp      z,_bad
        ld      a,(hl)
        cp      '-'
        jr      z,_minus
        cp      '+'
        jr      z,_signTaken
        jr      _number
_minus:
        ld      (parseSign),a
_signTaken:
        inc     hl
        inc     c
        dec     b
        jr      z,_bad
        ld      a,(hl)
_number:
        cp      '$'
        jr      z,_hexadecimal

_decimal:
        ld      a,(hl)
        sub     '0'
        cp      10
        jr      nc,_bad
        push    hl
        ld      h,d
        ld      l,e
        add     hl,hl
        jr      c,_overflow
        add     hl,hl
        jr      c,_overflow
        add     hl,de
        jr      c,_overflow
        add     hl,hl
        jr      c,_overflow
        ld      e,a
        ld      d,0
        add     hl,de
        jr      c,_overflow
        ex      de,hl
        bit     7,d
        jr      z,_fits
        ld      hl,8000h                ; only -32768 has this bit
        sbc     hl,de
        jr      nz,_overflow
        ld      a,(parseSign)
        or      a
        jr      z,_overflow
_fits:
        pop     hl
        inc     hl
        inc     c
        djnz    _decimal
        jr      _signed

_hexadecimal:
        inc     hl
        inc     c
        dec     b
        jr      z,_bad
_hexDigit:
        ld      a,d
        cp      10h
        jr      nc,_bad                 ; a fifth digit that counts
        ld      a,(hl)
        call    @upCase
        sub     '0'
        cp      10
        jr      c,_hexFits
        sub     'A' - '0'
        cp      6
        jr      nc,_bad
        add     a,10
_hexFits:
        ex      de,hl
        add     hl,hl
        add     hl,hl
        add     hl,hl
        add     hl,hl
        or      l
        ld      l,a
        ex      de,hl
        inc     hl
        inc     c
        djnz    _hexDigit

_signed:
        ld      a,(parseSign)
        or      a
        ret     z
        xor     a
        sub     e
        ld      e,a
        sbc     a,a
        sub     d
        ld      d,a
        or      a
        ret

_overflow:
        pop     hl
_bad:
        ld      a,c
        scf
        ret

; stringToInteger: Val. In: HL = string, DE = address of the integer, BC = address of the integer that becomes 0, or the
; position of the first bad character; then the value stays as it was. Destroys AF, BC, DE, HL. One
; digit 485 T, each further one 205 T.
@stringToInteger:
        push    bc
        push    de
        ld      b,(hl)
        inc     hl
        call    parseInteger
        pop     hl
        jr      c,storeValCode
        ld      (hl),e
        inc     hl
        ld      (hl),d
        xor     a
storeValCode:
        pop     hl
        ld      (hl),a
        inc     hl
        ld      (hl),0
        ret

; stringFromInteger: Str. In: HL = value, DE = target, BC = width (as in Write), A = the target's maximum length; the
; text is cut to it. Destroys all. One digit 546 T, five 1434 T, 60 T a blank.
@stringFromInteger:
        push    de
        push    af
        push    bc
        call    integerToText           ; HL = characters, BC = count
        pop     de                      ; DE = width
stringFromText:                         ; HL = characters, BC = count; target and A are on the stack
        push    hl
        ex      de,hl
        bit     7,h
        jr      nz,_noBlanks
        or      a
        sbc     hl,bc
        jr      nc,_blanks
_noBlanks:
        ld      hl,0
_blanks:                                ; HL = blanks in front
        pop     de                      ; the characters
        pop     af
        ld      b,a                     ; B = room left, C = characters left
        ex      (sp),hl                 ; HL = target, the blanks on the stack
        ld      (hl),0
        push    hl
        inc     hl
        ex      de,hl                   ; DE = behind the length byte, HL = characters
        ex      (sp),hl                 ; HL = target
        pop     ix                      ; IX = characters
        ex      (sp),hl                 ; HL = blanks, the target on the stack
_nextBlank:
        ld      a,h
        or      l
        jr      z,_digits
        ld      a,b
        or      a
        jr      z,_full
        ld      a,' '
        ld      (de),a
        inc     de
        dec     b
        dec     hl
        jr      _nextBlank
_digits:
        ld      a,b
        or      a
        jr      z,_full
        ld      a,(ix + 0)
        inc     ix
        ld      (de),a
        inc     de
        dec     b
        dec     c
        jr      nz,_digits
_full:
        pop     hl                      ; target
        ex      de,hl
        or      a
        sbc     hl,de                   ; 1 + characters stored
        dec     hl
        ld      a,l
        ld      (de),a
        ret
