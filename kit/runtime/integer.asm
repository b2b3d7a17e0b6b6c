; 16-bit integer arithmetic: multiplication, division, shifts.

; multiply: HL * DE -> HL, the low 16 bits, so signed and unsigned alike.
; Destroys AF, BC, DE. 143 to 322 T when a factor is below 256 (byte by byte: 261 on average; word by 2..16: 194),
; otherwise 379 to 549 T (501 on average).
;
; A factor below 256 is the multiplier; of two such, the smaller. Its leading zero bits cost 11 T each, the others 27 or
; 33. When both are longer, HL * DE = L * DE + 256 * (low byte of H * E), the second product in 8-bit arithmetic.
@multiply:
        ld      a,h
        or      a
        jr      nz,_longHL
        ld      a,d
        or      a
        jr      nz,_byL
        ld      a,e
        cp      l
        jr      c,_byE
_byL:
        ld      a,l
        jp      multiplyByte
_longHL:
        ld      a,d
        or      a
        jr      nz,multiplyLong
        ld      a,e
_byE:
        ex      de,hl

; multiplyByte: A * DE -> HL. Destroys AF. 100 to 279 T. The first 1 bit of A counts by HL = DE, every later one doubles
; and adds.
multiplyByte:
        ld      h,d
        ld      l,e
        add     a,a
        jr      c,_bits7
        add     a,a
        jr      c,_bits6
        add     a,a
        jr      c,_bits5
        add     a,a
        jr      c,_bits4
        add     a,a
        jr      c,_bits3
        add     a,a
        jr      c,_bits2
        add     a,a
        jr      c,_bits1
        add     a,a
        ret     c                       ; the multiplier is 1
        ld      h,a
        ld      l,a
        ret
_bits7:
        add     hl,hl
        add     a,a
        jr      nc,_bits6
        add     hl,de
_bits6:
        add     hl,hl
        add     a,a
        jr      nc,_bits5
        add     hl,de
_bits5:
        add     hl,hl
        add     a,a
        jr      nc,_bits4
        add     hl,de
_bits4:
        add     hl,hl
        add     a,a
        jr      nc,_bits3
        add     hl,de
_bits3:
        add     hl,hl
        add     a,a
        jr      nc,_bits2
        add     hl,de
_bits2:
        add     hl,hl
        add     a,a
        jr      nc,_bits1
        add     hl,de
_bits1:
        add     hl,hl
        add     a,a
        ret     nc
        add     hl,de
        ret

; Both factors 256 or more.
multiplyLong:
        xor     a
        ld      b,h
        rept    8                       ; A = low byte of B * E
        add     a,a
        rl      b
        jr      nc,$ + 3
        add     a,e
        endm
        ld      b,a
        ld      a,l
        call    multiplyByte
        ld      a,h
        add     a,b
        ld      h,a
        ret

; divide: HL div DE -> HL, HL mod DE -> DE; signed, the quotient truncated toward zero, the remainder with the
; dividend's sign. Run-time error 02 when DE is 0.
; Destroys AF, BC. 90 T when the quotient is 0; 230 to 330 T when HL < 256 * DE and DE < 128; 400 to 567 T by larger
; divisors; 600 to 651 T otherwise; negative operands add up to 255 T.
;
; The shape of the division follows the operands: eight steps in 8-bit registers where divisor and quotient are bytes,
; twice that for a quotient of two bytes, eight steps with a 16-bit remainder for divisors from 128.
@divide:
        ld      a,d
        or      e
        jr      z,_byZero
        ld      a,h
        or      d
        jp      p,divideUnsigned
        ld      b,h                     ; the remainder's sign
        ld      a,h
        xor     d                       ; the quotient's sign
        ld      c,a
        push    bc
        bit     7,h
        call    nz,_negateHL
        bit     7,d
        jr      z,_positive
        ex      de,hl
        call    _negateHL
        ex      de,hl
_positive:
        call    divideUnsigned
        pop     bc
        bit     7,c
        call    nz,_negateHL
        bit     7,b
        ret     z
        xor     a
        sub     e
        ld      e,a
        sbc     a,a
        sub     d
        ld      d,a
        ret
_negateHL:
        xor     a
        sub     l
        ld      l,a
        sbc     a,a
        sub     h
        ld      h,a
        ret
_byZero:
        ld      a,02h
        jp      @runError

; (256 * A + C) / E with A < E < 128: A becomes the remainder, C the complemented quotient.
divideSteps     macro
        rl      c
        rept    8
        rla
        cp      e
        jr      c,$ + 3
        sub     e                       ; leaves no carry
        rl      c                       ; the complemented quotient bit in, the next bit of the dividend out
        endm
        endm

; divideUnsigned: HL / DE -> HL quotient, DE remainder, both operands 0..8000h, DE not 0. Destroys AF, BC.
; 57 to 618 T.
divideUnsigned:
        ld      a,d
        or      a
        jp      nz,_longDivisor
        ld      a,h
        or      a
        jr      nz,_longDividend
        ld      a,l
        cp      e
        jp      c,_zeroQuotient
        xor     a
_longDividend:
        bit     7,e
        jp      nz,_byteDivisor
        cp      e
        jp      c,_lowByte

        ; The quotient has two bytes: first H / E, whose remainder goes on with L.
        ld      c,h
        xor     a
        call    divideByte
        ld      h,a
        ld      a,b
        ld      c,l
        divideSteps
        ld      e,a
        ld      a,c
        cpl
        ld      l,a
        ret

_lowByte:                               ; A = H < E: the quotient is a byte
        ld      h,d                     ; = 0
        ld      c,l
        divideSteps
        ld      e,a
        ld      a,c
        cpl
        ld      l,a
        ret

_longDivisor:
        ld      a,h
        cp      d
        jr      nc,_byWord
_zeroQuotient:
        ex      de,hl
        ld      hl,0
        ret

_byteDivisor:
        ; Divisor 128..255. The quotient is a byte unless the dividend is 8000h and the divisor 80h.
        ld      a,h
        cp      e
        jr      c,_byWord
        ld      hl,0100h
        ld      de,0
        ret

_byWord:
        ; The quotient is a byte: eight steps with a 16-bit remainder, which begins as H.
        ld      a,l
        ld      l,h
        ld      h,0
        rept    8
        rla                             ; the next bit of the dividend out, the last one's complemented quotient bit in
        adc     hl,hl
        sbc     hl,de
        jr      nc,$ + 3
        add     hl,de                   ; sets carry
        endm
        rla
        cpl
        ex      de,hl
        ld      l,a
        ld      h,0
        ret

; divideByte: (256 * A + C) / E -> A quotient, B remainder, with A < E < 128. Destroys F, C.
; 247 to 253 T.
divideByte:
        divideSteps
        ld      b,a
        ld      a,c
        cpl
        ret

; shiftLeft: HL shl A -> HL. Destroys AF, B. 32 T + 24 T a bit below 8 bits; 48 T for 8; 73 T + 17 T a
; bit above 8; 75 T from 16 on.
@shiftLeft:
        cp      8
        jr      nc,_bytes
        or      a
        ret     z
        ld      b,a
_next:
        add     hl,hl
        djnz    _next
        ret
_bytes:
        ld      h,l
        ld      l,0
        sub     8
        ret     z
        cp      8
        jr      nc,_zero
        ld      b,a
        ld      a,h
_nextHigh:
        add     a,a
        djnz    _nextHigh
        ld      h,a
        ret
_zero:
        ld      h,l
        ret

; shiftRight: HL shr A -> HL, zeros coming in. Destroys AF, B. 40 T + 25 T a bit below 8 bits; 48 T for 8;
; 65 T + 21 T a bit above 8; 75 T from 16 on.
@shiftRight:
        cp      8
        jr      nc,_bytes
        or      a
        ret     z
        ld      b,a
        ld      a,l
_next:
        srl     h
        rra
        djnz    _next
        ld      l,a
        ret
_bytes:
        ld      l,h
        ld      h,0
        sub     8
        ret     z
        cp      8
        jr      nc,_zero
        ld      b,a
_nextLow:
        srl     l
        djnz    _nextLow
        ret
_zero:
        ld      l,h
        ret
