; The square root of a real.

; The bits of the root whose masks lie in one byte of Y, of the alternate registers or of the main ones. In: C' or C =
; mask; carry = the bit that comes into X's lower end at the first doubling. `before` is the byte above, where a bit
; that is added may carry to; it is in the other set when `crossing`. Out: carry.
rootBitsAlternate macro byte, before
        local   next, above, isOne, store
next:
        adc     hl,hl
        exx
        ex      af,af'
        ld      a,byte
        or      c
        ld      byte,a
        ex      af,af'
        adc     hl,hl
        adc     a,a
        jr      c,above
        exx
        sbc     hl,de
        exx
        sbc     hl,de
        sbc     a,b
        jr      nc,isOne
        exx
        add     hl,de
        exx
        adc     hl,de
        adc     a,b
        ex      af,af'
        ld      a,byte
        xor     c
        jr      store
above:
        exx
        or      a
        sbc     hl,de
        exx
        sbc     hl,de
        sbc     a,b
isOne:
        ex      af,af'
        ld      a,byte
        add     a,c                     ; the mask's bit becomes the root's, one place higher
        jr      nc,store
        inc     before
store:
        ld      byte,a
        ex      af,af'
        srl     c
        exx
        jr      nc,next
        endm

rootBitsMain    macro byte, before, crossing
        local   next, above, isOne, store
next:
        ex      af,af'
        ld      a,byte
        or      c
        ld      byte,a
        ex      af,af'
        adc     hl,hl
        exx
        adc     hl,hl
        adc     a,a
        jr      c,above
        exx
        sbc     hl,de
        exx
        sbc     hl,de
        sbc     a,b
        exx
        jr      nc,isOne
        add     hl,de
        exx
        adc     hl,de
        adc     a,b
        exx
        ex      af,af'
        ld      a,byte
        xor     c
        jr      store
above:
        exx
        or      a
        sbc     hl,de
        exx
        sbc     hl,de
        sbc     a,b
        exx
isOne:
        ex      af,af'
        ld      a,byte
        add     a,c
        jr      nc,store
        if      crossing
        exx
        endif
        inc     before
        if      crossing
        exx
        endif
store:
        ld      byte,a
        ex      af,af'
        srl     c
        jr      nc,next
        endm

; realSqrt: In: HL = source, DE = target: the square root, rounded to the nearest real. Run-time error 03. Destroys all.
; 8000 T on average, 9000 T at most.
;
; Bit by bit. With v = the mantissa (half of it, and the exponent one higher, when that is odd) and Q the root's bits
; found so far, X = 2^k * (v - Q * Q) / 2. The bit 2^-k is 1 when 2 * X >= Q + 2^-(k + 1). Y is Q and, while it is
; compared, that bit, whose mask moves through its bytes. The first bit is always 1.
@realSqrt:
        ld      (realStack),sp
        push    de
        ld      a,(hl)
        or      a
        jp      z,zeroReal
        push    hl
        pop     ix
        bit     7,(ix + 5)
        ld      a,03h
        jp      nz,realError
        ld      l,(ix + 1)
        ld      h,(ix + 2)
        ld      de,0
        exx
        ld      l,(ix + 3)
        ld      h,(ix + 4)
        ld      de,0
        ld      bc,8020h
        exx
        ld      a,(ix + 0)
        rra
        ld      a,(ix + 5)
        jr      c,_odd
        add     a,80h - 40h             ; the first bit's square subtracted; gives no carry
        jr      _start
_odd:
        or      80h
        rra
        res     6,a
        exx
        rr      h
        rr      l
        exx
        rr      h
        rr      l
_start:
        rootBitsAlternate b, b
        exx
        ld      c,80h
        exx
        or      a
        rootBitsAlternate d, b
        exx
        ld      c,80h
        exx
        or      a
        rootBitsAlternate e, d
        ld      c,80h
        or      a
        rootBitsMain d, e, 1
        ld      c,80h
        or      a
        rootBitsMain e, d, 0
        ; Bit 40, the last one, and the one behind it, by which the root is rounded: halves do not occur.
        or      a
        call    _lastBit
        jr      c,_even
        inc     e
        or      a
_even:
        ccf
        call    _lastBit
        ld      c,0
        jr      c,_exact
        ld      c,0FFh
_exact:
        xor     a
        ld      (realSign),a
        ld      a,(ix + 0)
        srl     a
        adc     a,40h
        ex      de,hl
        exx
        ex      de,hl
        ld      c,b
        exx
        ld      b,a
        exx
        ld      a,c
        exx
        jp      roundReal
; X doubled plus carry, minus Y + 1, when that is not negative. Out: carry when it is; then X is only doubled.
_lastBit:
        adc     hl,hl
        exx
        adc     hl,hl
        adc     a,a
        exx
        jr      c,_above
        scf
        sbc     hl,de
        exx
        sbc     hl,de
        sbc     a,b
        exx
        ret     nc
        scf
        adc     hl,de
        exx
        adc     hl,de
        adc     a,b
        exx
        scf
        ret
_above:
        sbc     hl,de                   ; carry is set
        exx
        sbc     hl,de
        sbc     a,b
        exx
        or      a
        ret
