; Functions of reals: sine, cosine, arc tangent, logarithm, exponential, by polynomials on a short interval around 0
; (Chebyshev interpolation, error below 1E-12). Results differ from the exact value by less than 1 in the last of 11
; digits over their whole range.

; One operation of real.asm on three addresses.
realOperation   macro   operation, left, right, target
        ld      hl,left
        ld      de,right
        ld      bc,target
        call    operation
        endm

; realSin, realCos: In: HL = source, DE = target. Destroy all. 42000 T up to pi / 4, 72000 T beyond, 100000 T from
; 65536 on.
;
; x = k * pi / 2 + r with |r| <= pi / 4; k decides on sine or cosine of r and on the sign. pi / 2 has four parts, of which
; the first three have so few bits that their products with k are exact. From 65536 on reduceFar does that.
@realCos:
        ld      (realStack),sp
        push    de
        call    takeArgument
        ld      a,1
        jr      sineOrCosine
@realSin:
        ld      (realStack),sp
        push    de
        call    takeArgument
        rlca                            ; bit 7 to bit 1: half a turn more for a negative argument
        rlca
sineOrCosine:
        ld      (quadrant),a
        ld      hl,realX
        ld      a,(hl)
        cp      realBias + 17
        jr      c,_near
        call    reduceFar
        jp      _reduced
_near:
        realOperation multiplyReal, realX, twoOverPi, realA
        realOperation addReal, realA, realHalf, realA
        ld      hl,realA
        ld      d,h
        ld      e,l
        call    @realInt
        ld      a,(realA)
        or      a
        jr      z,_reduced
        ; The quarter turns, modulo 4: the bits of k's mantissa with the values 1 and 2.
        ld      hl,realA
        ld      de,realB
        call    copyReal
        ex      de,hl
        ld      (hl),0
        dec     hl
        set     7,(hl)
        sub     realBias + mantissaBits
        neg                             ; place of the bit with the value 1
        ld      c,a
        rrca
        rrca
        rrca
        and     1Fh
        ld      e,a
        ld      d,0
        ld      hl,realB + 1
        add     hl,de
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        ld      a,c
        and     7
        ld      b,a
        inc     b
        jr      _test
_down:
        srl     d
        rr      e
_test:
        djnz    _down
        ld      hl,quadrant
        ld      a,(hl)
        add     a,e
        ld      (hl),a
        ld      b,4
        ld      de,halfPiParts
_part:
        push    bc
        push    de
        ld      hl,realA
        ld      bc,realB
        call    multiplyReal
        realOperation subtractReal, realX, realB, realX
        pop     hl
        ld      de,realSize
        add     hl,de
        ex      de,hl
        pop     bc
        djnz    _part
_reduced:
        call    squareX
        ld      a,(quadrant)
        rra
        jr      c,_cosine
        ld      hl,sineTable
        call    oddPolynomial
        jr      _sign
_cosine:
        ld      hl,cosineTable
        call    polynomial
_sign:
        ld      a,(quadrant)
        rrca
        rrca                            ; bit 1 to bit 7

; storeFunction: realA to the address on the stack, its sign changed when bit 7 of A is set. Destroys AF, BC, DE, HL.
storeFunction:
        ld      hl,realA
        pop     de
        rlca
        jp      c,@realNegate
        jp      copyReal

; reduceFar: realX -> realX, quadrant: the quarter turns of realX, 65536 or more, go to quadrant, and realX becomes the
; rest, from -pi / 4 to pi / 4. Destroys all. 58000 T.
;
; x * 2 / pi as a fixed-point number. Only those bytes of 2 / pi are taken that count: those before them make whole turns,
; those behind them less than 2^-100. The mantissa is moved up by less than a byte, so that all others are moved by bytes.
farRows         equ 20          ; bytes of 2 / pi
reduceFar:
        call    clearParse
        ld      hl,realX + 1
        ld      de,realB
        ld      bc,realSize - 1
        ldir
        xor     a
        ld      (de),a
        dec     de
        ex      de,hl
        set     7,(hl)
        ld      a,(realX)
        sub     realBias + mantissaBits - 24
        ld      c,a                     ; the mantissa's lowest bit is worth 2^(C - 24)
        ld      hl,realB
        and     7
        call    nz,shiftSixBytes
        ld      a,c
        rrca
        rrca
        rrca
        and     1Fh
        ld      iy,wholePart            ; where the lowest byte of the first product goes
        ld      hl,twoOverPiBytes
        ld      b,farRows
        sub     4
        ld      e,a
        ld      d,0
        jr      nc,_skip
        dec     d
        add     iy,de                   ; it starts behind the point
        add     a,b
        ld      b,a
        jr      _row
_skip:
        add     hl,de
_row:
        push    bc
        push    iy
        ld      c,(hl)
        inc     hl
        push    hl
        ld      ix,realB
        ld      d,0
        ld      b,realSize
_byte:
        ld      e,(ix + 0)
        ld      a,c
        call    multiplyByte
        ld      a,(iy + 0)
        add     a,l
        ld      (iy + 0),a
        ld      a,(iy + 1)
        adc     a,h
        ld      (iy + 1),a
        jr      nc,_added
        push    iy
        pop     hl
        inc     hl
_carry:
        inc     hl
        inc     (hl)
        jr      z,_carry
_added:
        inc     ix
        inc     iy
        djnz    _byte
        pop     hl
        pop     iy
        dec     iy
        pop     bc
        djnz    _row
        ; The whole quarter turns, one more when the rest is a half or more, and negative then.
        ld      a,(wholePart - 1)
        rla
        sbc     a,a
        ld      (realSign),a
        ld      c,a
        ld      a,(quadrant)
        ld      hl,wholePart
        add     a,(hl)
        sub     c
        ld      (quadrant),a
        push    bc
        ld      bc,wholeBytes
        xor     a
        ld      (parseRest),a
        call    @fillBytes
        pop     bc
        inc     c
        jr      nz,_positive
        ld      hl,fixedPoint
        ld      b,fractionBytes
        or      a
_negate:
        ld      a,0
        sbc     a,(hl)
        ld      (hl),a
        inc     hl
        djnz    _negate
_positive:
        call    fixedToReal
        realOperation multiplyReal, realTemporary, piOver2, realX
        ret

; realArcTan: In: HL = source, DE = target. Destroys all. 50000 T up to 0.41, 60000 T beyond.
;
; arctan x = pi / 2 + arctan (-1 / x) above 2.41, pi / 4 + arctan ((x - 1) / (x + 1)) above 0.41.
@realArcTan:
        ld      (realStack),sp
        push    de
        call    takeArgument
        push    af
        ld      hl,realX
        ld      de,tangent1
        call    @realCompare
        ld      hl,0
        jr      c,_reduced
        ld      hl,realX
        ld      de,tangent3
        call    @realCompare
        jr      c,_quarter
        realOperation divideReal, realMinusOne, realX, realX
        ld      hl,piOver2
        jr      _reduced
_quarter:
        call    ratioOfX
        ld      hl,piOver4
_reduced:
        push    hl
        call    squareX
        ld      hl,arcTangentTable
        call    oddPolynomial
        pop     de
        ld      a,d
        or      e
        ld      hl,realA
        ld      b,h
        ld      c,l
        call    nz,addReal
        pop     af
        jp      storeFunction

; realLn: In: HL = source, DE = target. Run-time error 04. Destroys all. 52000 T.
;
; x = m * 2^e with m around 1; ln m = 2 * (s + s^3 / 3 + ...) with s = (m - 1) / (m + 1).
@realLn:
        ld      (realStack),sp
        push    de
        ld      a,(hl)
        or      a
        jr      z,_bad
        call    takeArgument
        jr      z,_good
_bad:
        ld      a,04h
        jp      realError
_good:
        ld      a,(realX)
        sub     realBias
        push    af
        ld      hl,realX
        ld      (hl),realBias
        ld      de,rootHalf
        call    @realCompare
        pop     de                      ; D = e
        jr      nc,_around1
        ld      hl,realX
        inc     (hl)
        dec     d
_around1:
        push    de
        call    ratioOfX
        call    squareX
        ld      hl,logarithmTable
        call    oddPolynomial
        ld      hl,realA
        ld      a,(hl)
        or      a
        jr      z,_zero
        inc     (hl)
_zero:
        pop     hl
        ld      a,h
        or      a
        jp      z,storeFunction
        ld      l,a
        rla
        sbc     a,a
        ld      h,a
        ld      de,realB
        call    @realFromInteger
        realOperation multiplyReal, realB, ln2, realB
        pop     bc
        ld      hl,realB
        ld      de,realA
        jp      addReal

; realExp: In: HL = source, DE = target. Run-time error 01. Destroys all. 58000 T.
;
; x = k * ln 2 + r with |r| <= ln 2 / 2: k goes to the exponent.
@realExp:
        ld      (realStack),sp
        push    de
        ld      de,realX
        call    copyReal
        ld      a,(realX)
        cp      realBias + 8
        jr      nc,_far
        realOperation multiplyReal, realX, oneOverLn2, realA
        ld      hl,realA
        call    @realRound
        push    hl
        ld      de,realB
        call    @realFromInteger
        ld      b,2
        ld      de,ln2Parts
_part:
        push    bc
        push    de
        ld      hl,realB
        ld      bc,realA
        call    multiplyReal
        realOperation subtractReal, realX, realA, realX
        pop     hl
        ld      de,realSize
        add     hl,de
        ex      de,hl
        pop     bc
        djnz    _part
        ld      hl,realX
        ld      de,realZ
        call    copyReal
        ld      hl,exponentialTable
        call    polynomial
        pop     de
        ld      hl,(realA)
        ld      h,0
        add     hl,de
        bit     7,h
        jp      nz,zeroReal
        ld      a,h
        or      a
        jp      nz,realOverflow
        ld      a,l
        ld      (realA),a
        or      a
        jp      z,zeroReal
        xor     a
        jp      storeFunction
_far:
        ld      a,(realX + realSize - 1)
        rla
        jp      nc,realOverflow
        jp      zeroReal

; takeArgument: In: HL = source. Out: realX = its absolute value, A = 80h when it was negative, otherwise 0; Z for that.
; Destroys BC, DE, HL. 220 T.
takeArgument:
        ld      de,realX
        call    copyReal
        dec     de
        ld      a,(de)
        ld      b,a
        and     7Fh
        ld      (de),a
        ld      a,b
        and     80h
        ret

; ratioOfX: realX -> realX = (realX - 1) / (realX + 1). squareX: realX -> realZ = realX * realX. Destroy all. 7900 T at
; most; 4200 T.
ratioOfX:
        realOperation addReal, realX, realMinusOne, realA
        realOperation addReal, realX, realOne, realX
        realOperation divideReal, realA, realX, realX
        ret
squareX:
        realOperation multiplyReal, realX, realX, realZ
        ret

; oddPolynomial: In: HL = table. Out: realA = realX + realX * realZ * its polynomial. Destroys all. 10000 T, and 5600 T
; for each degree.
oddPolynomial:
        call    polynomial
        realOperation multiplyReal, realA, realZ, realA
        realOperation multiplyReal, realA, realX, realA
        realOperation addReal, realA, realX, realA
        ret

; polynomial: In: HL = table: the degree, then the coefficients, the highest one first. realA = its value for realZ.
; Destroys all. 5600 T for each degree.
polynomial:
        ld      a,(hl)
        inc     hl
        ld      de,realA
        call    copyReal
_next:
        push    af
        push    hl
        realOperation multiplyReal, realA, realZ, realA
        pop     hl
        push    hl
        ld      de,realA
        ld      b,d
        ld      c,e
        call    addReal
        pop     hl
        ld      de,realSize
        add     hl,de
        pop     af
        dec     a
        jr      nz,_next
        ret

; The coefficients of sin x / x and arctan x / x begin behind their 1, those of cos x at it, all for x squared; those of
; the logarithm are for s squared.
sineTable:
        defb    4
        defb    67h,3Bh,0F5h,1Dh,14h,0D5h
        defb    6Eh,3Dh,0DCh,0D4h,0ECh,38h
        defb    74h,74h,0CDh,0FEh,0Ch,0D0h
        defb    7Ah,0EAh,87h,88h,88h,08h
        defb    7Eh,0ABh,0AAh,0AAh,0AAh,0AAh
cosineTable:
        defb    6
        defb    64h,3Ah,0A2h,6Fh,0C5h,0Dh
        defb    6Bh,0B0h,0DFh,9Fh,0EFh,93h
        defb    71h,65h,0FEh,0FBh,0Ch,50h
        defb    77h,0E2h,0B1h,60h,0Bh,0B6h
        defb    7Ch,0A7h,0AAh,0AAh,0AAh,2Ah
        defb    80h,00h,00h,00h,00h,80h
        defb    81h,00h,00h,00h,00h,00h
arcTangentTable:
        defb    8
        defb    7Bh,49h,0AFh,78h,17h,0DFh
        defb    7Ch,08h,7Fh,27h,0B7h,53h
        defb    7Dh,56h,0ACh,9Eh,29h,86h
        defb    7Dh,0F4h,51h,0CCh,4Eh,1Dh
        defb    7Dh,9Ch,01h,1Fh,2Bh,0BAh
        defb    7Dh,46h,15h,1Ch,8Eh,63h
        defb    7Eh,3Dh,55h,24h,49h,92h
        defb    7Eh,69h,0CCh,0CCh,0CCh,4Ch
        defb    7Fh,0ABh,0AAh,0AAh,0AAh,0AAh
logarithmTable:
        defb    4
        defb    7Dh,0DBh,0F4h,1Dh,46h,46h
        defb    7Dh,0F0h,0EBh,6Bh,3Dh,63h
        defb    7Eh,9Ah,0F4h,91h,49h,12h
        defb    7Eh,7Bh,65h,0CCh,0CCh,4Ch
        defb    7Fh,0B2h,0AAh,0AAh,0AAh,2Ah
exponentialTable:
        defb    8
        defb    71h,0C8h,0C0h,45h,0ADh,50h
        defb    74h,0C1h,00h,65h,0D5h,50h
        defb    77h,8Ah,0E4h,26h,0Bh,36h
        defb    7Ah,01h,3Ch,40h,88h,08h
        defb    7Ch,1Dh,0BAh,0AAh,0AAh,2Ah
        defb    7Eh,4Dh,0D1h,0AAh,0AAh,2Ah
        defb    7Fh,0FCh,0FFh,0FFh,0FFh,7Fh
        defb    80h,0EAh,0FFh,0FFh,0FFh,7Fh
        defb    81h,00h,00h,00h,00h,00h
realHalf:       defb    80h,00h,00h,00h,00h,00h
realOne:        defb    81h,00h,00h,00h,00h,00h
realMinusOne:   defb    81h,00h,00h,00h,00h,80h
twoOverPi:      defb    80h,4Eh,6Eh,83h,0F9h,22h
twoOverPiBytes:
        defb    0A2h,0F9h,83h,6Eh,4Eh,44h,15h,29h,0FCh,27h,57h,0D1h,0F5h,34h,0DDh
        defb    0C0h,0DBh,62h,95h,99h,3Ch,43h,90h,41h,0FEh,51h,63h,0ABh,0DEh
piOver2:        defb    81h,21h,0A2h,0DAh,0Fh,49h
piOver4:        defb    80h,21h,0A2h,0DAh,0Fh,49h
tangent1:       defb    7Fh,0E7h,0CFh,0CCh,13h,54h
tangent3:       defb    82h,0FDh,99h,79h,82h,1Ah
rootHalf:       defb    80h,0FAh,33h,0F3h,04h,35h
ln2:            defb    80h,0D2h,0F7h,17h,72h,31h
oneOverLn2:     defb    81h,5Ch,29h,3Bh,0AAh,38h
halfPiParts:
        defb    81h,00h,00h,0DAh,0Fh,49h
        defb    69h,00h,00h,68h,21h,22h
        defb    51h,00h,00h,0C4h,34h,42h
        defb    39h,0DCh,80h,8Bh,62h,46h
ln2Parts:
        defb    80h,00h,0F4h,17h,72h,31h
        defb    62h,0F2h,6Ah,0DEh,73h,74h
