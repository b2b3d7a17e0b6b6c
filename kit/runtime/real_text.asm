; Reals as decimal text and back, exactly: a real is laid out as a fixed-point number, 18 bytes before the point and 21
; behind it, whose digits come by dividing the former and multiplying the latter by ten. Text is rounded half up at its
; last digit, and has 11 significant digits at most, zeros behind them.

fractionBytes   equ 21          ; so many that the mantissa's lowest bit has the place that the exponent byte names
wholeBytes      equ 18
significant     equ 11
maximumDecimals equ 24
defaultDecimals equ 10          ; of the exponent form at its longest

; writeReal: In: HL = source, DE = width: exponent form. writeRealFixed: BC = decimals besides, 0 to 24; otherwise the
; exponent form. Destroy all. For 3.1415926536 in 18 columns 19000 T.
@writeReal:
        ld      bc,-1
@writeRealFixed:
        push    de
        call    realToText
        pop     de
        jp      @writeCharsWidth

; stringFromRealFixed, stringFromReal: Str. In: HL = value, DE = target, BC = width, A = the target's maximum length, which
; cuts the text; (realDecimals) = decimals for the former. Destroy all.
@stringFromRealFixed:
        push    de
        push    af
        ld      d,b
        ld      e,c
        ld      bc,(@realDecimals)
        jr      stringFromRealText
@stringFromReal:
        push    de
        push    af
        ld      d,b
        ld      e,c
        ld      bc,-1
stringFromRealText:                     ; HL = value, DE = width, BC = decimals
        push    de
        call    realToText              ; HL = characters, BC = count
        pop     de
        jp      stringFromText

; realToText: In: HL = real, DE = width, BC = decimals or anything outside 0..24 for the exponent form. Out: HL =
; characters, BC = their count. Destroys all.
realToText:
        ld      a,b
        or      a
        jr      nz,_exponent
        ld      a,c
        cp      maximumDecimals + 1
        jr      c,_decimals
_exponent:
        ; Of the width 6 characters are needed for the first digit, the point and the exponent, one for a minus sign.
        push    hl
        ld      bc,realSize - 1
        add     hl,bc
        ld      a,(hl)
        pop     hl
        rla
        ld      a,6
        adc     a,0
        ld      c,a
        ex      de,hl
        or      a
        bit     7,h
        jr      nz,_shortest
        sbc     hl,bc                   ; B = 0
        jr      c,_shortest
        jr      z,_shortest
        ld      a,h
        or      a
        ld      a,l
        jr      nz,_longest
        cp      defaultDecimals + 1
        jr      c,_fitted
_longest:
        ld      a,defaultDecimals
        jr      _fitted
_shortest:
        ld      a,1
_fitted:
        ex      de,hl
        or      80h                     ; bit 7: exponent form
_decimals:
        ld      (textDecimals),a
        call    layOutReal

        ; The digits: a 0 for a carry, those before the point, those behind it as far as they are needed.
        xor     a
        ld      (digitBuffer),a
        call    wholeDigits             ; A = their number
        ld      (wholeCount),a
        ld      e,a
        ld      d,0
        ld      hl,digitBuffer + 1
        add     hl,de                   ; the first digit behind the point
        or      a
        ld      bc,digitBuffer + 1      ; BC = the first digit that is not 0
        jr      nz,_firstKnown
        call    firstFractionDigit      ; stores digits up to it; carry when there is none
        ld      b,h
        ld      c,l
        jr      nc,_firstStored
        ld      bc,digitBuffer + 1      ; the value 0
_firstKnown:
        dec     hl
_firstStored:                           ; HL = the last digit stored
        ; The cut is in front of the digit DE.
        push    hl
        ld      (firstDigit),bc
        ld      hl,significant
        add     hl,bc
        ex      de,hl
        ld      a,(textDecimals)
        add     a,a
        jr      c,_cutFirst             ; exponent form: one digit and the decimals
        ld      hl,(wholeCount)         ; its high byte is 0
        ld      bc,digitBuffer + 1
        rrca
        add     a,l
        ld      l,a
        jr      _cutAt
_cutFirst:
        rrca
        and     7Fh
        inc     a
        ld      l,a
        ld      h,0
_cutAt:
        add     hl,bc
        or      a
        sbc     hl,de
        add     hl,de
        jr      nc,_cut
        ex      de,hl
_cut:                                   ; DE = the lower of the two
        pop     hl
_more:                                  ; digits up to DE
        or      a
        sbc     hl,de
        add     hl,de
        jr      nc,_enough
        inc     hl
        push    de
        push    hl
        call    fractionDigit
        pop     hl
        pop     de
        ld      (hl),a
        jr      _more
_enough:
        ; Round, clear what lies behind.
        ld      h,d
        ld      l,e
        ld      a,(textDecimals)
        add     a,a
        ld      a,(hl)
        jr      c,_round                ; the exponent form does not go on behind it
        push    af
        ld      b,60
_clear:
        ld      (hl),0
        inc     hl
        djnz    _clear
        pop     af
_round:
        cp      5
        jr      c,_rounded
_carry:
        dec     de
        ld      a,(de)
        inc     a
        ld      (de),a
        cp      10
        jr      c,_rounded
        xor     a
        ld      (de),a
        jr      _carry
_rounded:
        ld      hl,realText
        ld      a,(realSign)
        rla
        jr      nc,_unsigned
        ld      (hl),'-'
        inc     hl
_unsigned:
        ld      a,(textDecimals)
        or      a
        jp      m,exponentText

; Fixed form: HL = where the text goes on, A = decimals.
        ld      c,a
        ld      de,digitBuffer
        ld      a,(wholeCount)
        ld      b,a
        ld      a,(de)
        or      a
        jr      nz,_carried             ; rounding has made one digit more
        inc     de
        inc     b
        dec     b
        jr      nz,_whole
        ld      (hl),'0'
        inc     hl
        jr      _point
_carried:
        inc     b
_whole:
        call    copyDigit
        djnz    _whole
_point:
        ld      a,c
        or      a
        jr      z,textDone
        ld      (hl),'.'
        inc     hl
        ld      b,c
_fraction:
        call    copyDigit
        djnz    _fraction

; The text ends in front of HL. Out: HL = realText, BC = characters.
textDone:
        ld      de,realText
        or      a
        sbc     hl,de
        ld      b,h
        ld      c,l
        ex      de,hl
        ret

; Exponent form: HL = where the text goes on.
exponentText:
        and     7Fh
        ld      b,a
        ld      de,(firstDigit)
        dec     de
        ld      a,(de)
        or      a
        jr      nz,_carried
        inc     de
_carried:
        push    de
        call    copyDigit
        ld      (hl),'.'
        inc     hl
_decimal:
        call    copyDigit
        djnz    _decimal
        ld      (hl),'E'
        inc     hl
        ; The exponent = digits before the point - 1 - place of the first digit.
        pop     de
        ld      a,(wholeCount)
        add     a,low digitBuffer
        sub     e
        ld      c,a
        ld      a,(realZero)
        or      a
        jr      nz,_notZero
        ld      c,a
_notZero:
        ld      (hl),'+'
        ld      a,c
        or      a
        jp      p,_positive
        ld      (hl),'-'
        neg
_positive:
        inc     hl
        ld      (hl),'0' - 1
_tens:
        inc     (hl)
        sub     10
        jr      nc,_tens
        add     a,'0' + 10
        inc     hl
        ld      (hl),a
        inc     hl
        jr      textDone

; copyDigit: DE's digit as a character to HL, both behind it then. Destroys AF. 47 T.
copyDigit:
        ld      a,(de)
        add     a,'0'
        ld      (hl),a
        inc     hl
        inc     de
        ret

; layOutReal: In: HL = real. Out: fixedPoint, realSign, realZero = its exponent; fractionLow, wholeTop = the lowest byte
; and the byte behind the highest that need be looked at. Destroys AF, BC, DE, HL.
layOutReal:
        push    hl
        call    clearFixedPoint
        pop     hl
        ld      a,(hl)
        ld      (realZero),a
        or      a
        ld      (realSign),a
        ret     z
        ld      c,a
        rrca
        rrca
        rrca
        and     1Fh
        ld      e,a
        ld      d,0
        push    hl
        ld      hl,fixedPoint
        add     hl,de
        ld      (fractionLow),hl
        ex      de,hl
        pop     hl
        inc     hl
        push    de
        ld      a,c
        ld      bc,realSize - 1
        ldir
        dec     hl
        dec     de
        ld      c,a
        ld      a,(hl)
        ld      (realSign),a
        or      80h
        ld      (de),a
        pop     hl
        ld      a,c
        and     7
        ret     z
_shift:
        push    hl
        ld      b,realSize
        or      a
_next:
        rl      (hl)
        inc     hl
        djnz    _next
        pop     hl
        dec     a
        jr      nz,_shift
        ret

; clearFixedPoint: fixedPoint = 0. Destroys AF, BC, DE, HL.
clearFixedPoint:
        ld      hl,wholePart
        ld      (fractionLow),hl
        ld      hl,fixedPoint
        ld      bc,fractionBytes + wholeBytes
        xor     a
        jp      @fillBytes

; fractionDigit: Out: A = the next digit behind the point; the fraction loses it. Destroys BC, DE, HL, F. 130 T a byte.
fractionDigit:
        ld      de,(fractionLow)
        ld      hl,wholePart
        or      a
        sbc     hl,de
        ld      a,0
        ret     c
        ret     z
        ld      b,l
        ex      de,hl
        ld      a,(hl)
        or      a
        ld      a,0
        jp      nz,multiplyByTen
        inc     hl                      ; a zero at the lower end need not be looked at any more
        ld      (fractionLow),hl
        jr      fractionDigit

; firstFractionDigit: In: HL = where digits go. Stores those behind the point up to the first that is not 0.
; Out: HL = that one; carry, and HL unchanged, when all are 0. Destroys AF, BC, DE.
firstFractionDigit:
        ld      a,(realZero)
        or      a
        scf
        ret     z
_next:
        push    hl
        call    fractionDigit
        pop     hl
        ld      (hl),a
        or      a
        ret     nz
        inc     hl
        jr      _next

; wholeDigits: stores the digits before the point behind digitBuffer's first. Out: A = their number. Destroys BC, DE, HL.
wholeDigits:
        ld      de,digitBufferEnd       ; from there down, first
        ld      b,wholeBytes
        ld      hl,wholePart + wholeBytes
_trim:
        dec     hl
        ld      a,(hl)
        or      a
        jr      nz,_divide
        djnz    _trim
        ; All divided: move the digits to their place.
        ld      hl,digitBufferEnd
        or      a
        sbc     hl,de
        ld      a,l
        ret     z
        ld      b,h
        ld      c,l
        ex      de,hl
        ld      de,digitBuffer + 1
        push    bc
        ldir
        pop     bc
        ld      a,c
        ret
_divide:                                ; B bytes, HL = the highest
        push    hl
        push    bc
        xor     a
_byte:
        call    divideByTen
        dec     hl
        djnz    _byte
        dec     de
        ld      (de),a
        pop     bc
        pop     hl
        inc     hl
        jr      _trim

; divideByTen: (HL) = (256 * A + (HL)) / 10. Out: A = remainder. Destroys F, C. 290 T.
divideByTen:
        ld      c,(hl)
        rept    8
        sla     c
        rla
        cp      10
        jr      c,$ + 5
        sub     10
        inc     c
        endm
        ld      (hl),c
        ret

; parseReal: In: HL = characters, B = count: an optional sign, digits with or without a point, an optional E with a signed
; exponent; no blanks. Out: no carry, the value in realTemporary; or carry, A = position of the first bad character
; (count + 1 when something is missing; count when the number is too large). Destroys all.
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
        call    clearFixedPoint
        ld      hl,0
        ld      (fractionPad),hl
        ld      (fractionPad + 2),hl
        ld      (fractionPad + 4),hl
        ld      (fractionPad + 6),hl
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
        jp      m,_digitsDone
        ld      c,l
        ld      b,h                     ; divisions
        ld      hl,(parseLast)
        ld      a,(parseDigits)
        ld      d,a                     ; digits left
_fractionNext:
        ld      a,b
        or      c
        jr      z,_digitsDone
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
_digitsDone:
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
; position of the first bad character; then the real stays as it was. Destroys all.
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
; number. Destroys all.
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
