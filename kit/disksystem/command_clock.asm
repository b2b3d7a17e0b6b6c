; DATE and TIME

; DATE [year-month-day]
commandDate:
        ld      hl,(promptTail)
        call    skipBlanks
        or      a
        jr      nz,_set
        ld      hl,dateText
        call    showText
        ld      c,2Ah
        call    systemCall
        push    de
        ld      de,0
        ld      c,4
        call    showNumber
        pop     de
        push    de
        ld      a,d
        call    showDashTwo
        pop     de
        ld      a,e
        call    showDashTwo
        call    askNew
        ret     z
_set:
        call    takeNumbers             ; the first three in promptNumber
        jr      c,_bad
        cp      3
        jr      nz,_bad
        ld      hl,(promptNumber)
        ld      a,h
        or      a
        jr      nz,_year
        ld      a,l
        ld      de,1900
        cp      80
        jr      nc,_century
        ld      de,2000
_century:
        cp      100
        jr      nc,_year
        add     hl,de
_year:
        ld      a,(promptNumber + 2)
        ld      d,a
        ld      a,(promptNumber + 4)
        ld      e,a
        ld      c,2Bh
        call    systemCall
        or      a
        ret     z
_bad:
        ld      hl,badDateText
        jp      showText

; TIME [hours:minutes[:seconds]]
commandTime:
        ld      hl,(promptTail)
        call    skipBlanks
        or      a
        jr      nz,_set
        ld      hl,timeText
        call    showText
        ld      c,2Ch
        call    systemCall
        push    de
        push    hl
        ld      a,h
        call    showTwo
        pop     hl
        ld      a,l
        call    showColonTwo
        pop     de
        ld      a,d
        call    showColonTwo
        call    askNew
        ret     z
_set:
        call    takeNumbers
        jr      c,_bad
        cp      2
        jr      c,_bad
        ld      a,(promptNumber)
        ld      h,a
        ld      a,(promptNumber + 2)
        ld      l,a
        ld      a,(promptNumber + 4)
        ld      d,a
        ld      e,0
        ld      c,2Dh
        call    systemCall
        or      a
        ret     z
_bad:
        ld      hl,badTimeText
        jp      showText

; askNew: Out: HL = what the user types for a new one, Z when that is nothing. Changes all.
askNew:
        call    newLine
        ld      hl,newText
        call    showText
        ld      hl,promptLine
        ld      (hl),promptLength
        ex      de,hl
        ld      c,0Ah
        call    systemCall
        call    newLine
        ld      a,(promptLine + 1)
        ld      hl,promptText
        push    hl
        call    addToHl
        ld      (hl),0
        pop     hl
        call    skipBlanks
        or      a
        ret

; takeNumbers: In: HL = text: numbers with one character between. Out: A = how many, at most 3, as words in promptNumber, the
; others 0; carry when there is anything else. Changes all.
takeNumbers:
        push    hl
        ld      hl,promptNumber
        ld      bc,6
        xor     a
        call    fillBytes
        pop     hl
        ld      ix,promptNumber
        ld      b,0
_number:
        ld      a,(hl)
        sub     '0'
        cp      10
        ccf
        ret     c
        ld      de,0
_digit:
        ld      a,(hl)
        sub     '0'
        cp      10
        jr      nc,_end
        inc     hl
        push    hl
        ld      h,d
        ld      l,e
        add     hl,hl
        add     hl,hl
        add     hl,de
        add     hl,hl
        ld      e,a
        ld      d,0
        add     hl,de
        ex      de,hl
        pop     hl
        ld      a,d
        cp      20h
        ccf
        ret     c                       ; no number of a date is that large
        jr      _digit
_end:
        ld      (ix),e
        ld      (ix + 1),d
        inc     ix
        inc     ix
        inc     b
        call    skipBlanks
        or      a
        jr      z,_done
        ld      a,b
        cp      3
        ccf
        ret     c
        inc     hl
        jr      _number
_done:
        ld      a,b
        or      a
        ret
