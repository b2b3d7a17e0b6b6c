; Reals and integers, parts and signs of reals, random reals.

; realFromInteger: In: HL = value, DE = target. Destroys all. 256 to 650 T.
@realFromInteger:
        push    de
        ld      a,h
        ld      (realSign),a
        or      a
        jp      p,_positive
        xor     a
        sub     l
        ld      l,a
        sbc     a,a
        sub     h
        ld      h,a
_positive:
        ld      b,realBias + 16
        or      a
        jr      nz,_next
        or      l
        jp      z,zeroReal
        ld      h,l
        ld      l,0
        ld      b,realBias + 8
_next:
        bit     7,h
        jr      nz,_done
        add     hl,hl
        dec     b
        jr      _next
_done:
        ld      a,l
        exx
        ld      h,a
        ld      l,0
        exx
        ld      a,h
        ld      hl,0
        jp      packReal

; realTruncate, realRound: In: HL = source. Out: HL = the integer towards zero, or the nearest one, halves away from zero.
; Run-time error 92 when it is none. Destroys AF, BC, DE. 93 to 660 T.
@realTruncate:
        ld      b,0
        jr      realToInteger
@realRound:
        ld      b,80h
realToInteger:
        ld      a,(hl)
        inc     hl
        inc     hl
        inc     hl
        ld      c,(hl)
        inc     hl
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        ld      hl,0
        sub     realBias
        ret     c                       ; below a half
        cp      17
        jr      nc,_outside
        ex      de,hl
        ld      d,h                     ; the sign
        set     7,h
        neg
        add     a,16                    ; places that HL and C move down
_bytes:
        cp      8
        jr      c,_bits
        ld      c,l
        ld      l,h
        ld      h,0
        sub     8
        jr      _bytes
_bits:
        or      a
        jr      z,_shifted
        srl     h
        rr      l
        rr      c
        dec     a
        jr      _bits
_shifted:
        ld      a,b
        and     c
        jr      z,_rounded
        inc     hl
        ld      a,h
        or      l
        jr      z,_outside
_rounded:
        bit     7,d
        jr      z,_positive
        xor     a
        sub     l
        ld      l,a
        sbc     a,a
        sub     h
        ld      h,a
        ret     m
        or      l
        ret     z
_outside:
        ld      a,92h
        jp      @runError
_positive:
        bit     7,h
        ret     z
        jr      _outside

; realNegate, realAbs: In: HL = source, DE = target. Destroy AF, BC, DE, HL. 164 to 213 T.
@realNegate:
        ld      a,(hl)
        or      a
        jr      z,copyReal              ; 0 has no sign
        call    copyReal
        dec     de
        ld      a,(de)
        xor     80h
        ld      (de),a
        ret
@realAbs:
        call    copyReal
        dec     de
        ld      a,(de)
        and     7Fh
        ld      (de),a
        ret

; copyReal: In: HL = source, DE = target. Out: both behind them. Destroys BC. 141 T.
copyReal:
        ld      bc,realSize
        ldir
        ret

; realSqr: In: HL = source, DE = target. Run-time error 01. Destroys all. As realMultiply: 4200 T on
; average.
@realSqr:
        ld      b,d
        ld      c,e
        ld      d,h
        ld      e,l
        jp      @realMultiply

; realInt: In: HL = source, DE = target: the part before the point. Destroys AF, BC, DE, HL. 250 to 600 T.
@realInt:
        push    de
        call    copyReal
        pop     hl
        ld      a,(hl)
        sub     realBias + 1
        jp      c,clearReal
        sub     mantissaBits - 1
        ret     nc
        neg                             ; bits behind the point, from 1
_next:
        inc     hl
        sub     8
        jr      c,_last
        ld      (hl),0
        jr      _next
_last:
        add     a,9
        ld      b,a
        ld      a,0FFh
        jr      _mask
_shift:
        add     a,a
_mask:
        djnz    _shift
        and     (hl)
        ld      (hl),a
        ret

; realFrac: In: HL = source, DE = target: what realInt leaves out. Destroys all. 1100 to 2000 T.
@realFrac:
        push    de
        push    hl
        ld      de,realTemporary
        call    @realInt
        pop     hl
        pop     bc
        ld      de,realTemporary
        jp      subtractReal

; realRandom: In: HL = target: a number from 0 to below 1, 40 random bits. Destroys all. 956 to 1470 T.
@realRandom:
        push    hl
        call    nextRandom
        push    bc
        call    nextRandom
        exx
        pop     hl
        exx
        ld      h,c
        ld      l,a
        xor     a
        ld      (realSign),a
        ld      c,a
        ld      a,b
        ld      b,realBias
        jp      normaliseReal
