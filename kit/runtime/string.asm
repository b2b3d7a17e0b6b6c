; Strings: a length byte, then the characters.

; stringCopy: In: HL = source, DE = target, A = the target's maximum length, which cuts it. Destroys AF, BC, DE, HL.
; 21 T a character + 65 T.
@stringCopy:
        cp      (hl)
        jr      c,_cut
        ld      a,(hl)
_cut:
        ld      (de),a
        or      a
        ret     z
        inc     de
        inc     hl
        ld      c,a
        ld      b,0
        ldir
        ret

; stringMove: In: HL = source, DE = target, known to fit. Destroys AF, BC, DE, HL. 21 T a character + 46 T.
@stringMove:
        ld      c,(hl)
        ld      b,0
        inc     bc
        ldir
        ret

; stringAppend: In: HL = source, DE = target (256 bytes). Run-time error 10 when the result is longer than 255.
; Keeps DE; destroys AF, BC, HL. 21 T a character + 117 T.
@stringAppend:
        ld      a,(de)
        ld      c,a
        ld      b,(hl)
        add     a,b
        jr      c,stringTooLong
        ld      (de),a
        ld      a,b
        or      a
        ret     z
        push    de
        ex      de,hl
        ld      b,0
        add     hl,bc                   ; behind the old text, but for the length byte
        inc     hl
        ex      de,hl
        inc     hl
        ld      c,a
        ldir
        pop     de
        ret

; stringAppendChar: In: A = character, DE = target (256 bytes). Run-time error 10 when it is full.
; Keeps DE; destroys BC, F, HL. 68 T.
@stringAppendChar:
        ld      h,d
        ld      l,e
        inc     (hl)
        jr      z,stringTooLong
        ld      c,(hl)
        ld      b,0
        add     hl,bc
        ld      (hl),a
        ret

; Jumped to with the caller's return address on top of the stack.
stringTooLong:
        ld      a,10h
        jp      @runError
stringIndexError:
        ld      a,11h
        jp      @runError

; stringFromChars: In: HL = characters, BC = count (0..255), DE = target (256 bytes). Keeps DE; destroys AF, BC, HL.
; 21 T a character + 52 T.
@stringFromChars:
        ld      a,c
        ld      (de),a
        or      a
        ret     z
        push    de
        inc     de
        ldir
        pop     de
        ret

; stringCompare: In: HL = a, DE = b. Out: carry when a < b, Z when equal. By character codes; a shorter string is less
; than one that it begins. Destroys AF, BC, DE, HL. 46 T an equal character + 88 T.
@stringCompare:
        ex      de,hl                   ; DE = a, HL = b
        ld      a,(de)
        ld      c,a                     ; C = length of a
        cp      (hl)
        jr      c,_shorter
        ld      a,(hl)
_shorter:
        or      a
        jr      z,_prefix
        ld      b,a
        push    hl
_next:
        inc     de
        inc     hl
        ld      a,(de)
        cp      (hl)
        jr      nz,_differ
        djnz    _next
        pop     hl
_prefix:
        ld      a,c
        cp      (hl)
        ret
_differ:
        pop     bc                      ; keeps the flags
        ret

; stringPosition: Pos. In: HL = target, DE = string. Out: HL = where the target begins in it, from 1; 0 when it does not
; or is empty. Destroys AF, BC, DE. 21 T a character that does not begin the target + 205 T; about
; 150 T one that does.
@stringPosition:
        ld      a,(hl)
        or      a
        jr      z,_none
        ld      b,a
        ld      a,(de)
        sub     b
        jr      c,_none
        inc     a
        ld      c,a                     ; C = places where it may begin
        ld      a,b
        ld      b,0
_search:
        push    de                      ; the string, for the position at the end
        ex      de,hl
        inc     hl                      ; HL = text, BC = places left
        inc     de                      ; DE = the target's first character
        dec     a
        ld      (itemLimit),a           ; its characters behind the first
_next:
        ld      a,(de)
        cpir
        jr      nz,_notFound
        ld      a,(itemLimit)
        or      a
        jr      z,_found
        push    bc
        push    hl
        push    de
        ld      b,a
_compare:
        inc     de
        ld      a,(de)
        cp      (hl)
        jr      nz,_differ
        inc     hl
        djnz    _compare
_differ:
        pop     de
        pop     hl
        pop     bc
        jr      z,_found
        ld      a,b
        or      c
        jr      nz,_next
_notFound:
        pop     de
_none:
        ld      hl,0
        ret
_found:                                 ; HL is one behind the first character
        pop     de
        scf
        sbc     hl,de
        ret

; stringSlice: Copy. In: HL = source, DE = target (256 bytes), BC = position, (stringCount) = count. What lies beyond
; the source's end is left out; nothing for a count below 1. Run-time error 11 for a position outside 1..255.
; Keeps DE; destroys AF, BC, HL. 21 T a character + 225 T.
@stringSlice:
        ld      a,b
        or      a
        jr      nz,stringIndexError
        or      c
        jr      z,stringIndexError
        push    de
        ld      de,(@stringCount)
        call    clipRange
        pop     de
        ld      (de),a
        ret     z
        push    de
        add     hl,bc                   ; the first character
        ld      c,a
        inc     de
        ldir
        pop     de
        ret

; clipRange: In: HL = string, BC = position 1..255, DE = count, signed. Out: A = characters of that range that exist, Z
; when none; B = 0. Destroys DE. Keeps HL, C. 37 to 82 T.
clipRange:
        ld      a,(hl)
        sub     c
        jr      c,_none
        inc     a                       ; characters from the position on; 256 cannot be
        bit     7,d
        jr      nz,_none
        inc     d
        dec     d
        jr      nz,_fits                ; a count above 255
        cp      e
        jr      c,_fits
        ld      a,e
_fits:
        or      a
        ret
_none:
        xor     a
        ret

; stringDelete: Delete. In: HL = string, DE = position, BC = count, clipped as in stringSlice. Run-time error 11 for a
; position outside 1..255. Destroys AF, BC, DE, HL. 21 T a character that moves + 236 T.
@stringDelete:
        ld      a,d
        or      a
        jp      nz,stringIndexError
        or      e
        jp      z,stringIndexError
        ld      a,c                     ; BC = position, DE = count
        ld      c,e
        ld      e,a
        ld      d,b
        ld      b,0
        call    clipRange
        ret     z
        ld      e,a                     ; E = characters that go
        ld      a,(hl)
        sub     e
        ld      (hl),a
        sub     c
        inc     a                       ; A = characters behind them
        add     hl,bc                   ; the first that goes
        or      a
        ret     z
        ld      d,b                     ; = 0
        ld      c,a
        ex      de,hl                   ; DE = where it was
        add     hl,de
        ldir
        ret

; stringInsert: Insert. In: HL = source, DE = target, BC = position, A = the target's maximum length, which cuts the
; result. A position behind the target's end appends. Run-time error 11 for a position outside 1..255.
; Destroys all. 21 T a character that moves or is inserted + 480 T.
@stringInsert:
        ld      (itemLimit),a
        ld      a,b
        or      a
        jp      nz,stringIndexError
        or      c
        jp      z,stringIndexError
        ld      a,(hl)
        or      a
        ret     z
        push    hl                      ; a string inserted into itself is taken from a copy
        sbc     hl,de
        pop     hl
        jr      nz,_apart
        push    de
        push    bc
        ld      de,scratchString
        call    @stringMove
        pop     bc
        pop     de
        ld      hl,scratchString
_apart:
        ex      de,hl                   ; HL = target, DE = source
        ld      a,(hl)
        cp      c
        jr      nc,_inside
        inc     a                       ; behind the end: position = length + 1
        jr      z,_full                 ; a target of 255 characters has no such place
        ld      c,a
        dec     a
_inside:
        sub     c
        inc     a
        ld      b,a                     ; B = characters from the position on, C = position
        ld      a,(itemLimit)
        sub     c
        jr      c,_full
        inc     a                       ; A = room from the position on, at least 1
        push    hl
        push    de
        ex      de,hl
        cp      (hl)                    ; room < source?
        jr      c,_cutSource
        sub     (hl)                    ; A = room for the tail
        cp      b
        jr      c,_cutTail
        ld      a,b
_cutTail:
        ; DE = target, HL = source, A = characters of the tail that stay, C = position
        push    bc
        push    af
        ld      b,(hl)                  ; B = length of the source
        ld      l,a
        ld      a,c
        add     a,b
        dec     a
        add     a,l
        ld      (de),a                  ; the new length
        ld      a,l
        or      a
        jr      z,_tailMoved
        ld      h,0                     ; the tail's last character: target + position + tail - 1
        add     hl,de
        ld      e,b                     ; the source's length
        ld      b,0
        add     hl,bc
        dec     hl
        ld      d,b
        ex      de,hl
        add     hl,de                   ; its new place
        ex      de,hl
        ld      c,a
        lddr
_tailMoved:
        pop     af
        pop     bc
        pop     hl                      ; source
        pop     de                      ; target
        ld      a,(hl)
        jr      _putSource
_cutSource:
        ; The source fills what room there is, the tail is gone.
        ld      b,a
        ld      a,(itemLimit)
        ld      (de),a
        ld      a,b
        pop     hl                      ; source
        pop     de                      ; target
_putSource:
        ; HL = source, DE = target, C = position, A = characters, at least 1
        inc     hl
        ex      de,hl
        ld      b,0
        add     hl,bc
        ex      de,hl
        ld      c,a
        ldir
_full:
        ret
