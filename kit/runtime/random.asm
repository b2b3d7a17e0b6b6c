; Random numbers.
;
; A 32-bit xorshift register with the shifts 8, 9, 23 (period 2^32 - 1; the shifts fall on byte boundaries or next to
; them) plus a 16-bit Weyl sequence, which adds an odd constant at each step (period 2^16) and breaks the register's
; linearity. Period of the pair: (2^32 - 1) * 2^16, about 2.8E+14. The output is 24 bits, so that scaling by
; multiplication favours no value by more than limit / 2^24.

weylStep        equ 9E37h

; randomWord: In: HL = limit, unsigned. Out: HL = 0..limit-1, or 0 when the limit is 0. Destroys AF, BC, DE.
; 1213 to 1327 T.
@randomWord:
        push    hl
        call    nextRandom
        pop     de
        ld      hl,0
        call    _scale
        ld      a,c
        call    _scale
        ld      a,b

; One byte of a fraction, from the lowest byte up: HL = (HL + bit * DE) / 2 for each bit of A.
_scale:
        rept    8
        rra
        jr      nc,$ + 3
        add     hl,de
        rr      h
        rr      l
        endm
        ret

; nextRandom: Out: BC and A = 24 random bits, A the lowest eight. Destroys F, DE, HL. 313 T.
nextRandom:
        ld      hl,(randomState)        ; H, L = bytes 1, 0
        ld      de,(randomState + 2)    ; D, E = bytes 3, 2
        ld      a,d                     ; x = x xor (x shl 8)
        xor     e
        ld      d,a
        ld      a,e
        xor     h
        ld      e,a
        ld      a,h
        xor     l
        ld      h,a
        ld      a,e                     ; x = x xor (x shr 9)
        rra
        ld      a,h
        rra
        xor     l
        ld      l,a
        ld      a,d
        rra
        ld      a,e
        rra
        xor     h
        ld      h,a
        ld      a,d
        srl     a
        xor     e
        ld      e,a
        ld      a,h                     ; x = x xor (x shl 23)
        rra
        ld      a,l
        rra
        ld      b,a
        ld      a,0
        rra
        xor     e
        ld      e,a
        ld      a,b
        xor     d
        ld      d,a
        ld      (randomState),hl
        ld      (randomState + 2),de
        ld      a,h
        ld      hl,(randomWeyl)
        ld      bc,weylStep
        add     hl,bc
        ld      (randomWeyl),hl
        add     hl,de
        ld      b,h
        ld      c,l
        ret

; randomize: a new sequence, from the clock, the frame counter and the refresh register. Nothing in or out; destroys
; all. 5990 T.
@randomize:
        ld      c,2Ch                   ; get time: HL and DE
        call    bdosCall
        ld      a,r
        xor     l
        ld      l,a
        ld      (randomState + 2),hl
        ld      hl,(frameCounter)
        ld      (randomWeyl),hl
        set     0,e                     ; the register must not be 0
        ld      (randomState),de
        ld      b,16                    ; neighbouring seeds part soon
_next:
        push    bc
        call    nextRandom
        pop     bc
        djnz    _next
        ret

; What a program begins with that does not call Randomize: randomState and randomWeyl.
randomSeed:
        defw    6F35h,1D87h,0B2C9h
randomSeedEnd:
