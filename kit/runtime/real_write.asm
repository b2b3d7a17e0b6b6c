; Reals as decimal text and back, exactly: a real is laid out as a fixed-point number, 18 bytes before the point and 21
; behind it, whose digits come by dividing the former and multiplying the latter by ten. Text is rounded half up at its
; last digit, and has 11 significant digits at most, zeros behind them.

fractionPadBytes equ 8
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

; stringFromRealFixed, stringFromReal: Str. In: HL = value, DE = target, BC = width, A = the target's maximum length,
; which cuts the text; (realDecimals) = decimals for the former. Destroy all. 16000 T for 3.1415926536 in 18 columns.
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
; characters, BC = their count. Destroys all. 4500 T for 0, 15000 T for 3.1415926536, up to 120000 T for large numbers.
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

; copyDigit: In: DE = digit, HL = target: stores it as a character. Out: both behind it. Destroys AF. 43 T.
copyDigit:
        ld      a,(de)
        add     a,'0'
        ld      (hl),a
        inc     hl
        inc     de
        ret

; layOutReal: In: HL = real. Out: fixedPoint, realSign, realZero = its exponent; fractionLow, wholeTop = the lowest byte
; and the byte behind the highest that need be looked at. Destroys AF, BC, DE, HL. 1000 to 3040 T.
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

; shiftSixBytes: In: HL = lowest of six bytes: shifts them up by A bits, 1 or more. Destroys AF, B. 236 T a bit.
shiftSixBytes:
        push    hl
        ld      b,realSize
        or      a
_next:
        rl      (hl)
        inc     hl
        djnz    _next
        pop     hl
        dec     a
        jr      nz,shiftSixBytes
        ret

; clearFixedPoint: fixedPoint = 0, and nothing of the fraction need be looked at. clearParse: fixedPoint = 0. Nothing in
; or out; destroy AF, BC, DE, HL. 1090 T.
clearFixedPoint:
        ld      hl,wholePart
        ld      (fractionLow),hl
clearParse:                             ; fractionPad, too
        ld      hl,fractionPad
        ld      bc,fractionPadBytes + fractionBytes + wholeBytes
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
; Out: HL = that one; carry, and HL unchanged, when all are 0. Destroys AF, BC, DE. 32 T for 0, 400 to 72000 T.
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
; 730 T for none, 120 T + 310 T a byte for each digit: 113000 T for 38 digits.
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
