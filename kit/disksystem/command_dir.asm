; DIR

; DIR [pattern]: name, size, date and time of each file; how many there are and how much is free.
commandDir:
        ld      de,promptBlock
        call    takeArgument
        jr      nc,_named
        ld      hl,nothingText
        ld      de,promptBlock
        call    takeFileName
_named:
        ld      de,promptBlock
        call    emptyToAll
        ; a name without a type stands for all types
        ld      hl,promptBlock + 9
        ld      a,(hl)
        cp      ' '
        jr      nz,_search
        ld      bc,3
        ld      a,'?'
        call    fillBytes
_search:
        ld      de,promptEntry
        call    setTransfer
        ld      hl,0
        ld      (promptNumber),hl
        ld      c,11h
_file:
        call    fileCall
        jr      nz,_end
        call    showEntry
        ld      hl,(promptNumber)
        inc     hl
        ld      (promptNumber),hl
        ld      c,0Bh                   ; lets the user stop and hold it
        call    systemCall
        ld      c,12h
        jr      _file
_end:
        ld      hl,(promptNumber)
        ld      a,h
        or      l
        jp      z,fileNotFound
        ld      de,0
        ld      c,5
        call    showNumber
        ld      hl,filesText
        call    showText
        ld      a,(promptBlock)
        ld      e,a
        ld      c,1Bh
        call    systemCall              ; A = sectors in a cluster, HL = free clusters
        inc     a
        ret     z
        dec     a
        ld      b,h
        ld      c,l
        ld      l,a
        ld      h,0
        ld      d,h
        ld      e,h
        call    multiply
        srl     d
        rr      e
        rr      h
        rr      l
        ld      c,7
        call    showNumber
        ld      hl,kiloFreeText
        jp      showText

; showEntry: promptEntry, in one line of 37 characters. Changes all.
showEntry:
        ld      hl,promptEntry + 1
        ld      b,8
        call    showCharacters
        ld      b,3
        call    showCharacters
        ld      hl,(promptEntry + 1 + entrySize)
        ld      de,(promptEntry + 1 + entrySize + 2)
        ld      c,8
        call    showNumber
        call    showBlank
        ld      hl,(promptEntry + 1 + entryDate)
        ld      a,h
        srl     a
        push    hl
        call    showYear
        pop     hl
        push    hl
        add     hl,hl
        add     hl,hl
        add     hl,hl
        ld      a,h
        and     15
        call    showDashTwo
        pop     hl
        ld      a,l
        and     31
        call    showDashTwo
        call    showBlank
        ld      hl,(promptEntry + 1 + entryTime)
        ld      a,h
        rrca
        rrca
        rrca
        and     31
        push    hl
        call    showTwo
        pop     hl
        add     hl,hl
        add     hl,hl
        add     hl,hl
        ld      a,h
        and     63
        call    showColonTwo
        jp      newLine

; showCharacters: In: HL = B characters; then a blank. Out: HL after them. Changes AF, B.
showCharacters:
        ld      a,(hl)
        call    showCharacter
        inc     hl
        djnz    showCharacters
showBlank:
        ld      a,' '
        jp      showCharacter

; showYear: In: A = year - 1980. Changes all.
showYear:
        ld      l,a
        ld      h,0
        ld      de,1980
        add     hl,de
        ld      de,0
        ld      c,4
        jr      showNumber

; showDashTwo, showColonTwo, showTwo: In: A = number below 100, shown with two digits. Change all.
showDashTwo:
        push    af
        ld      a,'-'
        jr      showAndTwo
showColonTwo:
        push    af
        ld      a,':'
showAndTwo:
        call    showCharacter
        pop     af
showTwo:
        ld      b,'0' - 1
_tens:
        inc     b
        sub     10
        jr      nc,_tens
        add     a,'0' + 10
        push    af
        ld      a,b
        call    showCharacter
        pop     af
        jp      showCharacter

; showNumber: In: DEHL = number, C = columns, at most 10. It stands at their right end. Changes all.
showNumber:
        ld      b,10
_digit:                                 ; the digits go to the stack, the last one first
        push    bc
        call    divideByTen
        pop     bc
        push    af
        djnz    _digit
        ; ten digits: the leading zeros are blanks, those beyond the columns nothing
        ld      b,10
        ld      d,' ' - '0'
_show:
        pop     af
        or      a
        jr      z,_zero
        ld      d,0
_zero:
        dec     b
        jr      nz,_notLast
        ld      d,0
_notLast:
        inc     b
        add     a,'0'
        ld      e,a
        ld      a,d
        or      a
        ld      a,e
        jr      z,_shown
        ld      a,' '
        ex      af,af'
        ld      a,c
        cp      b
        jr      c,_next
        ex      af,af'
_shown:
        call    showCharacter
_next:
        djnz    _show
        ret

; divideByTen: In: DEHL. Out: DEHL = quotient, A = remainder. Changes BC, F.
divideByTen:
        xor     a
        ld      b,32
_bit:
        add     hl,hl
        rl      e
        rl      d
        rla
        cp      10
        jr      c,_zero
        sub     10
        inc     l
_zero:
        djnz    _bit
        ret
