; Texts to reals: Val and Read.

; parseReal: In: HL = characters, B = count: an optional sign, digits with or without a point, an optional E with a signed
; exponent; no blanks. Out: no carry, the value in realTemporary; or carry, A = position of the first bad character
; (count + 1 when something is missing; count when the number is too large). Destroys all.
; 600 T, 250 T a character, then convertDecimal: 82000 T for 3.1415926536.
parseReal:
        ld      (parseStack),sp
        ld      a,b
        ld      (parseCount),a
        ld      de,0
        ld      (realStack),de          ; sends an overflow to parseOverflow
        xor     a
        ld      (realSign),a
        ld      (parsePoint),a
        ld      c,1                     ; position
        or      b
        jp      z,_bad
        ld      a,(hl)
        cp      '+'
        jr      z,_signTaken
        cp      '-'
        jr      nz,_mantissa
        ld      a,80h
        ld      (realSign),a
_signTaken:
        call    _step
_mantissa:                              ; D = digits, E = those before the point
        ld      (parseNext),hl
        inc     b
        jr      _test
_next:
        ld      a,(hl)
        sub     '0'
        cp      10
        ld      a,(parsePoint)
        jr      nc,_noDigit
        inc     d
        or      a
        jr      nz,_taken
        inc     e
        jr      _taken
_noDigit:
        or      a
        jr      nz,_mantissaDone
        ld      a,(hl)
        cp      '.'
        jr      nz,_mantissaDone
        ld      (parsePoint),a
_taken:
        inc     hl
        inc     c
_test:
        djnz    _next
_mantissaDone:
        ld      (parseLast),hl          ; behind the digits
        ld      a,d
        or      a
        jp      z,_bad
        ld      (parseDigits),a
        ld      d,0
        ld      (parsePlace),de
        ld      a,b
        or      a
        jr      z,convertDecimal
        ld      a,(hl)
        call    @upCase
        cp      'E'
        jp      nz,_bad
        call    _step
        ld      a,(hl)
        ld      (parseSign),a
        cp      '+'
        call    z,_step
        cp      '-'
        call    z,_step
        ld      de,0
_exponent:
        ld      a,(hl)
        sub     '0'
        cp      10
        jp      nc,_bad
        ld      d,a
        ld      a,e
        cp      20
        ld      e,200                   ; larger ones are all alike
        jr      nc,_large
        add     a,a
        ld      e,a
        add     a,a
        add     a,a
        add     a,e
        add     a,d
        ld      e,a
_large:
        inc     hl
        inc     c
        djnz    _exponent
        ld      d,0
        ld      hl,(parsePlace)
        ld      a,(parseSign)
        cp      '-'
        jr      z,_negative
        add     hl,de
        add     hl,de
_negative:
        or      a
        sbc     hl,de
        ld      (parsePlace),hl
        jr      convertDecimal
_step:                                  ; to the next character, which must be there
        inc     hl
        inc     c
        djnz    _stepped
        pop     hl
_bad:
        ld      a,c
        scf
        ret
_stepped:
        ret

; convertDecimal: the second half of parseReal: the digits to a real. The first parsePlace digits stand before the point.
convertDecimal:
        call    clearParse
        ; Before the point: whole = whole * 10 + digit.
        ld      bc,(parsePlace)
        bit     7,b
        jr      nz,_fraction
_wholeNext:
        ld      a,b
        or      c
        jr      z,_fraction
        dec     bc
        push    bc
        ld      hl,(parseNext)
        ld      de,(parseLast)
        or      a
        sbc     hl,de
        ld      a,0
        jr      z,_digit                ; no more digits: zeros
        add     hl,de
        ld      a,(hl)
        cp      '.'
        jr      nz,_noPoint
        inc     hl
        ld      a,(hl)                  ; a digit, or the character behind a point at the end
        or      a
        sbc     hl,de
        add     hl,de
        jr      nz,_noPoint
        dec     hl
        ld      a,'0'
_noPoint:
        inc     hl
        ld      (parseNext),hl
        sub     '0'
_digit:
        ld      b,wholeBytes
        ld      hl,wholePart
        call    multiplyByTen
        or      a
        pop     bc
        jp      nz,parseOverflow
        jr      _wholeNext
_fraction:
        ; Behind the point: fraction = (digit + fraction) / 10, from the last digit on.
        xor     a
        ld      (parseRest),a
        ld      a,(parseDigits)
        ld      l,a
        ld      h,0
        ld      bc,(parsePlace)
        sbc     hl,bc
        jp      m,fixedToReal
        ld      c,l
        ld      b,h                     ; divisions
        ld      hl,(parseLast)
        ld      a,(parseDigits)
        ld      d,a                     ; digits left
_fractionNext:
        ld      a,b
        or      c
        jr      z,fixedToReal
        dec     bc
        ld      a,d
        or      a
        jr      z,_divide
        dec     d
        dec     hl
        ld      a,(hl)
        cp      '.'
        jr      nz,_fractionDigit
        dec     hl
        ld      a,(hl)
_fractionDigit:
        sub     '0'
_divide:
        push    hl
        push    bc
        ld      hl,wholePart - 1
        ld      b,fractionBytes
_byte:
        call    divideByTen
        dec     hl
        djnz    _byte
        ld      hl,parseRest
        or      (hl)
        ld      (hl),a
        pop     bc
        pop     hl
        jr      _fractionNext

; fixedToReal: the fixed-point number with the sign of realSign as a real in realTemporary; parseRest is not 0 when it
; does not end there. In: those. Out: no carry. Destroys all but IX, IY. 600 T + 30 T a zero byte above + 300 T a bit
; moved up.
fixedToReal:
        ; The highest byte that is not 0, its highest bit first.
        ld      hl,wholePart + wholeBytes
        ld      b,fractionBytes + wholeBytes
_find:
        dec     hl
        ld      a,(hl)
        or      a
        jr      nz,_found
        djnz    _find
        ld      hl,realTemporary
        call    clearReal
        or      a
        ret
_found:
        push    hl
        ld      l,b                     ; exponent = 8 * (B - fractionBytes) + bias, minus the places moved
        ld      h,0
        add     hl,hl
        add     hl,hl
        add     hl,hl
        ld      bc,realBias - 8 * fractionBytes
        add     hl,bc
        ex      de,hl
        pop     hl
_shift:
        bit     7,(hl)
        jr      nz,_shifted
        dec     de
        push    hl
        ld      bc,-7
        add     hl,bc
        ld      b,8
        or      a
_up:
        rl      (hl)
        inc     hl
        djnz    _up
        pop     hl
        jr      _shift
_shifted:
        ld      a,d
        or      a
        jp      m,_tooSmall
        jr      nz,parseOverflow
        push    de
        ld      b,(hl)
        dec     hl
        ld      d,(hl)
        dec     hl
        ld      e,(hl)
        dec     hl
        push    de
        exx
        pop     hl
        exx
        ld      d,(hl)
        dec     hl
        ld      e,(hl)
        dec     hl
        ld      c,(hl)
        push    de
        ; What lies behind C.
        ld      de,fractionPad
        ld      a,(parseRest)
        jr      _behind
_behindNext:
        dec     hl
        or      (hl)
_behind:
        push    hl
        or      a
        sbc     hl,de
        pop     hl
        jr      nz,_behindNext
        or      a
        jr      z,_exact
        ld      a,c
        or      1
        ld      c,a
_exact:
        pop     hl
        ld      a,b
        pop     de
        ld      b,e
        ld      de,realTemporary
        call    _round
        or      a
        ret
_round:
        push    de
        jp      roundReal
_tooSmall:
        ld      hl,realTemporary
        call    clearReal
        or      a
        ret

; parseOverflow: jumped to from realError too: leaves parseReal.
parseOverflow:
        ld      sp,(parseStack)
        ld      a,(parseCount)
        scf
        ret

; multiplyByTen: In: HL = lowest of B bytes, A = carry. Out: the bytes times ten plus A, A = what comes out above.
; Destroys BC, DE, HL, F. 130 T a byte.
multiplyByTen:
        ld      c,(hl)
        push    hl
        ld      h,0
        ld      l,c
        ld      d,h
        ld      e,c
        add     hl,hl
        add     hl,hl
        add     hl,de
        add     hl,hl
        ld      e,a
        add     hl,de
        ld      a,h
        ld      e,l
        pop     hl
        ld      (hl),e
        inc     hl
        djnz    multiplyByTen
        ret

; stringToReal: Val. In: HL = string, DE = address of the real, BC = address of the integer that becomes 0, or the
; position of the first bad character; then the real stays as it was. Destroys all. As parseReal + 250 T.
@stringToReal:
        push    bc
        push    de
        ld      b,(hl)
        inc     hl
        call    parseReal
        pop     de
        jp      c,storeValCode
        ld      hl,realTemporary
        call    copyReal
        xor     a
        jp      storeValCode

; readReal: In: HL = address of the real. Keeps it when the line has no more items; I/O result 10 when the item is no
; number. Destroys all. As parseReal and readItem + 250 T.
@readReal:
        ld      (entryStack),sp
        push    hl
        call    readItem
        jr      c,_none
        call    parseReal
        pop     de
        ld      hl,realTemporary
        jp      nc,copyReal
        jp      setBadNumber
_none:
        pop     hl
        ret
