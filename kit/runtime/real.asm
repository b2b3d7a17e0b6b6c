; Reals: addition, subtraction, multiplication, division, comparison.
;
; A real has six bytes: the exponent plus 80h (0: the value is 0), then the mantissa, 40 bits from the lowest byte up. Its
; highest bit is always 1 and is not stored; the sign lies in its place. Value = +-0.1xxx (binary) * 2^exponent.
;
; Results are rounded to the nearest real, halves to the even one; what is too small becomes 0.
;
; The mantissa X being worked on: A : HL' : HL, the other one, Y: B' : DE' : DE. C holds eight more bits of X behind the
; lowest; its lowest bit is also set when anything behind it is not 0. B is the exponent.
; The entries store the stack pointer, so that an error found deep inside still names the caller. The routines without @
; do the same work for the library's own use, where no error can happen or the caller's entry has stored it.

realSize        equ 6
realBias        equ 80h
mantissaBits    equ 40

; realSubtract, realAdd: In: HL = left, DE = right, BC = target (all may be the same). Run-time error 01. Destroys all.
; 520 to 1930 T, 1200 on average. subtractReal, addReal: In: the same, for the library's own use; destroy all. 20 T less.
@realSubtract:
        ld      (realStack),sp
subtractReal:
        push    bc
        ld      bc,0080h                ; the right operand's sign changes
        jr      addSigned
@realAdd:
        ld      (realStack),sp
addReal:
        push    bc
        ld      bc,0
addSigned:                              ; B, C = what changes the signs at HL and DE
        ex      de,hl
        ld      a,(de)
        sub     (hl)
        jr      nc,_ordered
        neg
        ex      de,hl
        ld      (realSign),a
        ld      a,b
        ld      b,c
        ld      c,a
        ld      a,(realSign)
_ordered:                               ; DE = operand with the larger exponent, X; HL = Y; A = difference
        push    de
        pop     ix
        push    hl
        pop     iy
        ex      af,af'
        ld      a,(ix + 5)
        xor     b
        ld      (realSign),a
        ld      b,a
        ld      a,(iy + 5)
        xor     c
        xor     b
        ld      b,a                     ; bit 7: the signs differ
        ld      a,(iy + 0)
        or      a
        jr      z,_onlyX
        ex      af,af'
        cp      mantissaBits + 2
        jr      c,_load
_onlyX:
        ld      b,(ix + 0)              ; Y is too small to count
        ld      l,(ix + 1)
        ld      h,(ix + 2)
        ld      a,(ix + 5)
        exx
        ld      l,(ix + 3)
        ld      h,(ix + 4)
        exx
        jp      packReal

_load:
        ld      l,(ix + 1)
        ld      h,(ix + 2)
        ld      e,(iy + 1)
        ld      d,(iy + 2)
        exx
        ld      l,(ix + 3)
        ld      h,(ix + 4)
        ld      c,(ix + 5)
        set     7,c
        ld      e,(iy + 3)
        ld      d,(iy + 4)
        ld      b,(iy + 5)
        set     7,b
        exx
        push    bc
        ld      bc,0                    ; B collects what is shifted out behind C
        sub     8
        jr      c,_bits
_bytes:
        ex      af,af'
        ld      a,b
        or      c
        ld      b,a
        ld      c,e
        ld      e,d
        exx
        ld      a,e
        ld      e,d
        ld      d,b
        ld      b,0
        exx
        ld      d,a
        ex      af,af'
        sub     8
        jr      nc,_bytes
_bits:
        add     a,8
        jr      z,_aligned
        ex      af,af'
        ld      a,b
        cp      1
        sbc     a,a
        inc     a                       ; 1 when anything was shifted out, otherwise 0
        ex      af,af'
        ld      b,a
        ex      af,af'                  ; A collects, B counts
_nextBit:
        exx
        srl     b
        rr      d
        rr      e
        exx
        rr      d
        rr      e
        rr      c
        adc     a,0
        djnz    _nextBit
        ld      b,a
_aligned:
        ld      a,b
        or      a
        jr      z,_exact
        set     0,c
_exact:
        pop     af                      ; bit 7: the signs differ
        ld      b,(ix + 0)
        add     a,a
        jr      c,_subtract
        exx
        ld      a,c
        exx
        add     hl,de
        exx
        adc     hl,de
        adc     a,b
        exx
        jr      nc,roundReal
        rra
        exx
        rr      h
        rr      l
        exx
        rr      h
        rr      l
        rr      c
        jr      nc,_carried
        set     0,c
_carried:
        inc     b
        jr      nz,roundReal
        jp      realOverflow

_subtract:
        xor     a
        sub     c
        ld      c,a
        exx
        ld      a,c
        exx
        sbc     hl,de
        exx
        sbc     hl,de
        sbc     a,b
        exx
        jr      nc,normaliseReal
        ; Y was the larger one, with the same exponent: nothing is in C.
        ld      d,a
        ld      a,(realSign)
        cpl
        ld      (realSign),a
        xor     a
        sub     l
        ld      l,a
        ld      a,0
        sbc     a,h
        ld      h,a
        exx
        ld      a,0
        sbc     a,l
        ld      l,a
        ld      a,0
        sbc     a,h
        ld      h,a
        exx
        ld      a,0
        sbc     a,d

; normaliseReal: jumped to with the target's address on the stack; shifts X and C up until its highest bit is 1, then as
; roundReal.
normaliseReal:
        or      a
        jp      m,roundReal
        jr      nz,_nextBit
        ld      a,h
        or      l
        or      c
        exx
        or      h
        or      l
        exx
        jp      z,zeroReal
_nextByte:                              ; the highest byte is 0
        ld      a,b
        sub     8
        jp      c,zeroReal
        ld      b,a
        ld      a,h
        ld      h,l
        ld      l,c
        ld      c,0
        exx
        ld      e,h
        ld      h,l
        ld      l,a
        ld      a,e
        exx
        or      a
        jr      z,_nextByte
        jp      m,roundReal
_nextBit:
        dec     b
        jr      z,zeroReal
        sla     c
        adc     hl,hl
        exx
        adc     hl,hl
        exx
        adc     a,a
        jp      p,_nextBit

; roundReal: jumped to with the target's address on the stack: rounds X by C, then as packReal.
roundReal:
        bit     7,c
        jr      z,packReal
        ld      d,a
        ld      a,c
        add     a,a
        ld      a,d
        jr      nz,_up
        bit     0,l                     ; a half: to the even one
        jr      z,packReal
_up:
        inc     l
        jr      nz,packReal
        inc     h
        jr      nz,packReal
        exx
        inc     l
        jr      nz,_carried
        inc     h
_carried:
        exx
        jr      nz,packReal
        inc     a
        jr      nz,packReal
        ld      a,80h
        inc     b
        jr      z,realOverflow

; packReal: jumped to with the target's address on the stack: stores X with the sign of realSign.
packReal:
        ld      c,a
        ld      a,b
        or      a
        jr      z,zeroReal
        ld      a,(realSign)
        xor     c
        and     80h
        xor     c                       ; bit 7 from the sign, the others from C
        ex      de,hl
        pop     hl
        ld      (hl),b
        inc     hl
        ld      (hl),e
        inc     hl
        ld      (hl),d
        inc     hl
        push    hl
        exx
        ex      de,hl
        pop     hl
        ld      (hl),e
        inc     hl
        ld      (hl),d
        inc     hl
        ld      (hl),a
        ret

; zeroReal: jumped to with the target's address on the stack: stores 0. clearReal: In: HL = where to; destroys AF, B, HL.
; 172 T.
zeroReal:
        pop     hl
clearReal:                              ; stores 0 at HL
        xor     a
        ld      b,realSize
_next:
        ld      (hl),a
        inc     hl
        djnz    _next
        ret

realOverflow:
        ld      a,01h
realError:                              ; A = number; reported at the caller of the entry
        ld      hl,(realStack)
        inc     h
        dec     h
        jp      z,parseOverflow
        ld      sp,hl
        jp      @runError

; realMultiply: In: HL = left, DE = right, BC = target. Run-time error 01. Destroys all. 4200 T on average, 5150 T at
; most; less when the left one has zero bytes in its mantissa. multiplyReal: In: the same, for the library's own use;
; destroys all. 20 T less.
@realMultiply:
        ld      (realStack),sp
multiplyReal:
        push    bc
        ld      a,(de)
        ld      c,a
        or      a
        jr      z,zeroReal
        ld      a,(hl)
        or      a
        jr      z,zeroReal
        add     a,c
        ld      c,a
        ld      a,0
        adc     a,a
        ld      b,a
        push    bc                      ; sum of the exponents
        push    hl
        pop     ix
        push    de
        pop     iy
        ld      a,(ix + 5)
        xor     (iy + 5)
        ld      (realSign),a
        ld      e,(iy + 1)
        ld      d,(iy + 2)
        ld      hl,0
        exx
        ld      e,(iy + 3)
        ld      d,(iy + 4)
        ld      b,(iy + 5)
        set     7,b
        ld      hl,0
        exx
        ld      b,l                     ; = 0; collects what comes out of C
        ; X grows from 0 and moves down through C, where the left operand's bytes move out.
        xor     a
        ld      c,(ix + 1)
        call    multiplyRealByte
        ld      c,(ix + 2)
        call    multiplyRealByte
        ld      c,(ix + 3)
        call    multiplyRealByte
        ld      c,(ix + 4)
        call    multiplyRealByte
        ld      c,(ix + 5)
        set     7,c
        call    multiplyRealBits
        pop     de
        ex      de,hl                   ; HL = exponents, DE = X's low word
        inc     b
        dec     b
        jr      z,_exact
        set     0,c
_exact:
        or      a
        jp      m,exponentFromSum
        sla     c
        rl      e
        rl      d
        exx
        adc     hl,hl
        exx
        adc     a,a
        dec     hl

; exponentFromSum: as roundReal, but DE = X's low word and HL = the exponent + realBias, not limited to a byte.
exponentFromSum:
        push    bc
        ld      bc,-realBias
        add     hl,bc
        pop     bc
        jp      nc,zeroReal
        ld      b,l
        ld      l,a
        ld      a,h
        or      a
        ld      a,l
        ex      de,hl
        jp      z,roundReal
        jp      realOverflow

; multiplyRealByte: In: X, C, Y, B. Out: X = (X + C * Y * 100h) / 100h; what comes out at the lower end goes to C and is
; collected in B. Keeps Y; destroys F, AF', C'. 102 T for C = 0, otherwise 620 to 860 T.
multiplyRealByte:
        inc     c
        dec     c
        jr      z,_zeroByte
        call    multiplyRealBits
_collect:
        ex      af,af'
        ld      a,b
        or      c
        ld      b,a
        ex      af,af'
        ret
_zeroByte:
        ld      c,l
        ld      l,h
        exx
        ld      c,a
        ld      a,l
        ld      l,h
        ld      h,c
        exx
        ld      h,a
        xor     a
        jr      _collect

; multiplyRealBits: In, Out: the same, eight times a bit, without B. Keeps Y, B. 512 to 794 T.
multiplyRealBits:
        rr      c
        rept    8
        jr      nc,$ + 8
        add     hl,de
        exx
        adc     hl,de
        adc     a,b
        exx
        rra
        exx
        rr      h
        rr      l
        exx
        rr      h
        rr      l
        rr      c
        endm
        ret

; realDivide: In: HL = left, DE = right, BC = target. Run-time errors 01, 02. Destroys all. 5400 T on average,
; 6740 T at most. divideReal: In: the same, for the library's own use; destroys all. 20 T less.
@realDivide:
        ld      (realStack),sp
divideReal:
        push    bc
        ld      a,(de)
        ld      c,a
        or      a
        ld      a,02h
        jp      z,realError
        ld      a,(hl)
        or      a
        jp      z,zeroReal
        sub     c
        ld      c,a
        ld      a,1
        sbc     a,0
        ld      b,a
        push    bc                      ; difference of the exponents + 2 * realBias
        push    hl
        pop     ix
        push    de
        pop     iy
        ld      l,(ix + 1)
        ld      h,(ix + 2)
        ld      e,(iy + 1)
        ld      d,(iy + 2)
        ld      a,(ix + 5)
        exx
        ld      b,(iy + 5)
        ld      c,a
        xor     b
        ld      (realSign),a
        set     7,b
        ld      l,(ix + 3)
        ld      h,(ix + 4)
        ld      e,(iy + 3)
        ld      d,(iy + 4)
        ld      a,c
        exx
        or      80h
        ; The first bit of the quotient is 1: X / Y when X >= Y, otherwise 2 * X / Y. X becomes the remainder.
        sbc     hl,de
        exx
        sbc     hl,de
        sbc     a,b
        exx
        jr      nc,_first
        add     hl,hl
        exx
        adc     hl,hl
        adc     a,a
        exx
        add     hl,de
        exx
        adc     hl,de
        adc     a,b
        exx
        jr      _others
_first:
        pop     bc
        inc     bc
        push    bc
_others:                                ; 40 more; the last one only rounds
        call    divideRealByte
        ld      (realQuotient),bc
        call    divideRealByte
        ld      (realQuotient + 1),bc
        call    divideRealByte
        ld      (realQuotient + 2),bc
        call    divideRealByte
        ld      (realQuotient + 3),bc
        call    divideRealByte
        or      h
        or      l
        exx
        or      h
        or      l
        exx
        ld      b,a                     ; the remainder is not 0
        ld      hl,realQuotient
        ld      a,(hl)
        cpl
        scf
        rra
        ld      d,a
        inc     hl
        ld      a,(hl)
        cpl
        rra
        exx
        ld      h,a
        exx
        inc     hl
        ld      a,(hl)
        cpl
        rra
        exx
        ld      l,a
        exx
        inc     hl
        ld      a,(hl)
        cpl
        rra
        ld      h,a
        ld      a,c
        cpl
        rra
        ld      l,a
        ld      c,0
        rr      c
        inc     b
        dec     b
        jr      z,_exact
        inc     c
_exact:
        ld      a,d
        pop     de
        ex      de,hl
        jp      exponentFromSum

; divideRealByte: eight steps of X / Y, X being the remainder. Out: C = the quotient's bits, complemented. Keeps
; Y, B. 79 T for a 0,
; 123 T for a 1.
divideRealByte:
        ld      c,0FEh                  ; the 0 comes out after eight steps
_next:
        add     hl,hl
        exx
        adc     hl,hl
        adc     a,a
        jr      c,_above
        cp      b
        jr      c,_bit
        exx
        sbc     hl,de
        exx
        sbc     hl,de
        sbc     a,b
        jr      c,_restore              ; only when the highest bytes were equal
_bit:
        exx
        rl      c
        jp      c,_next
        ret
_above:
        exx
        or      a
        sbc     hl,de
        exx
        sbc     hl,de
        sbc     a,b
        or      a
        jr      _bit
_restore:
        exx
        add     hl,de
        exx
        adc     hl,de
        adc     a,b                     ; sets carry
        jr      _bit

; realCompare: In: HL = a, DE = b. Out: carry when a < b, Z when they are equal. Destroys A, BC, DE, HL. 130 to 390 T.
@realCompare:
        ld      c,(hl)
        ld      a,(de)
        push    af
        ld      a,c
        ld      bc,realSize - 1
        add     hl,bc
        ex      de,hl
        add     hl,bc
        ex      de,hl
        ld      c,a
        pop     af
        ld      b,a                     ; exponents: C = a's, B = b's
        ld      a,c
        or      a
        jr      z,_aZero
        ld      a,b
        or      a
        jr      z,_bZero
        ld      a,(de)
        xor     (hl)
        jp      m,_aSign
        bit     7,(hl)
        jr      nz,_negative
        ld      a,c
        cp      b
        ret     nz
        ex      de,hl
        jr      _mantissas
_negative:
        ld      a,b
        cp      c
        ret     nz
_mantissas:                             ; DE's against HL's
        ld      b,realSize - 1
_next:
        ld      a,(de)
        cp      (hl)
        ret     nz
        dec     de
        dec     hl
        djnz    _next
        ret
_aZero:
        ld      a,b
        or      a
        ret     z
        ld      a,(de)
        rla                             ; keeps NZ
        ccf
        ret
_bZero:
        or      c                       ; NZ
_aSign:
        ld      a,(hl)
        rla
        ret
