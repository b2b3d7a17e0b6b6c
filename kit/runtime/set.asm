; Sets. In expressions a set has 32 bytes, element e is bit e mod 8 of byte e div 8; a stored set has only the bytes that
; its type can use.

setBytes        equ 32

; setExpand: In: HL = stored bytes, DE = target (32 bytes), B = number of the first stored byte, C = their count.
; Destroys AF, BC, DE, HL. 26 T a byte that is cleared, 21 T one that is copied, + 104 T.
@setExpand:
        ld      a,setBytes
        sub     b
        sub     c
        push    af                      ; zeros behind
        call    _clear
        ld      b,0
        ldir
        pop     bc
_clear:                                 ; B zeros at DE
        xor     a
        cp      b
        ret     z
_next:
        ld      (de),a
        inc     de
        djnz    _next
        ret

; setCheckShrink: In: as setShrink; run-time error 91 when an element would be lost. Destroys AF, BC, DE, HL.
; 26 T a byte that is checked, 21 T one that is copied, + 150 T.
@setCheckShrink:
        push    de
        push    hl
        push    bc
        ld      a,setBytes
        sub     b
        sub     c
        ld      d,a                     ; bytes behind
        xor     a
        inc     b
        jr      _front
_nextFront:
        or      (hl)
        inc     hl
_front:
        djnz    _nextFront
        add     hl,bc                   ; B = 0
        ld      b,d
        inc     b
        jr      _behind
_nextBehind:
        or      (hl)
        inc     hl
_behind:
        djnz    _nextBehind
        pop     bc
        pop     hl
        pop     de
        or      a
        jp      nz,@rangeError

; setShrink: In: HL = set of 32 bytes, DE = stored target, B = number of its first byte, C = count of its bytes.
; Elements outside are lost. Destroys AF, BC, DE, HL. 21 T a byte + 43 T.
@setShrink:
        ld      a,l
        add     a,b
        ld      l,a
        jr      nc,$ + 3
        inc     h
        ld      b,0
        ldir
        ret

; setClear: In: HL = target (32 bytes). Destroys AF, B, HL. 536 T.
@setClear:
        xor     a
        ld      b,setBytes / 4
_next:
        rept    4
        ld      (hl),a
        inc     hl
        endm
        djnz    _next
        ret

; setUnion, setIntersection, setDifference: In: HL = left and target, DE = right (32 bytes each). Keep HL; destroy AF, B,
; DE. 1297 T; the difference 1425 T.
@setUnion:
        push    hl
        ld      b,setBytes / 2
_next:
        rept    2
        ld      a,(de)
        or      (hl)
        ld      (hl),a
        inc     hl
        inc     de
        endm
        djnz    _next
        pop     hl
        ret

@setIntersection:
        push    hl
        ld      b,setBytes / 2
_next:
        rept    2
        ld      a,(de)
        and     (hl)
        ld      (hl),a
        inc     hl
        inc     de
        endm
        djnz    _next
        pop     hl
        ret

@setDifference:
        push    hl
        ld      b,setBytes / 2
_next:
        rept    2
        ld      a,(de)
        cpl
        and     (hl)
        ld      (hl),a
        inc     hl
        inc     de
        endm
        djnz    _next
        pop     hl
        ret

; setEqual: In: HL = a, DE = b (32 bytes each). Out: A = 1 when they are equal, otherwise 0. Destroys BC, DE, HL, F.
; 46 T a byte up to the first that differs, + 20 T.
@setEqual:
        ld      b,setBytes
_next:
        ld      a,(de)
        cp      (hl)
        jr      nz,setAnswerNo
        inc     hl
        inc     de
        djnz    _next
        ld      a,1
        ret

; setSubset: In: HL = a, DE = b (32 bytes each). Out: A = 1 when every element of a is in b, otherwise 0.
; Destroys BC, DE, HL, F. 50 T a byte up to the first that decides, + 20 T.
@setSubset:
        ld      b,setBytes
_next:
        ld      a,(de)
        cpl
        and     (hl)
        jr      nz,setAnswerNo
        inc     hl
        inc     de
        djnz    _next
        ld      a,1
        ret

; setContains: In: HL = stored bytes, DE = element, any word, B = number of the first byte, C = count of the bytes.
; Out: A = 1 when it is in the set, otherwise 0. Destroys F, BC, DE, HL. 210 to 263 T when the element is within
; the bytes.
@setContains:
        ld      a,d
        or      a
        jr      nz,setAnswerNo
        ld      a,e
        rrca
        rrca
        rrca
        and     setBytes - 1
        sub     b
        jr      c,setAnswerNo
        cp      c
        jr      nc,setAnswerNo
        add     a,l
        ld      l,a
        jr      nc,$ + 3
        inc     h
        ld      a,e
        call    bitMask
        and     (hl)
        ret     z
        ld      a,1
        ret
setAnswerNo:
        xor     a
        ret

; setInclude: In: HL = set (32 bytes), A = element. Keeps HL; destroys AF, C. 257 to 290 T.
@setInclude:
        push    hl
        ld      c,a
        call    setByteAddress
        ld      a,c
        call    bitMask
        or      (hl)
        ld      (hl),a
        pop     hl
        ret

; setIncludeRange: In: HL = set (32 bytes), D = low, E = high: nothing when low > high. Keeps HL; destroys AF, BC, DE.
; 480 T + 43 T a byte behind the first.
@setIncludeRange:
        ld      a,e
        cp      d
        ret     c
        push    hl
        call    bitMask
        add     a,a
        dec     a
        ld      c,a                     ; the last byte's bits up to the high one
        ld      a,d
        call    bitMask
        neg
        ld      b,a                     ; the first byte's bits from the low one
        ld      a,d
        call    setByteAddress
        ld      d,a
        ld      a,e
        rrca
        rrca
        rrca
        and     setBytes - 1
        sub     d
        ld      e,a                     ; bytes behind the first
        ld      a,b
        inc     e
_next:
        dec     e
        jr      z,_last
        or      (hl)
        ld      (hl),a
        inc     hl
        ld      a,0FFh
        jr      _next
_last:
        and     c
        or      (hl)
        ld      (hl),a
        pop     hl
        ret

; setByteAddress: In: HL = set, A = element. Out: HL = its byte, A = the byte's number. Destroys F. 70 T.
setByteAddress:
        rrca
        rrca
        rrca
        and     setBytes - 1
        push    af
        add     a,l
        ld      l,a
        jr      nc,$ + 3
        inc     h
        pop     af
        ret

; bitMask: In: A = number, the lowest three bits count. Out: A with only that bit set. Destroys F. Keeps the others.
; 100 to 133 T.
bitMask:
        rrca                            ; bit 0 into carry
        push    af
        and     3
        jr      z,_byte1                ; 0, 1: 01h; 2, 3: 04h; 4, 5: 10h; 6, 7: 40h
        dec     a
        jr      z,_byte4
        dec     a
        ld      a,10h
        jr      z,_double
        ld      a,40h
        jr      _double
_byte1:
        ld      a,1
        jr      _double
_byte4:
        ld      a,4
_double:
        ex      (sp),hl
        bit     0,l                     ; carry of the saved flags
        pop     hl
        ret     z
        add     a,a
        ret
