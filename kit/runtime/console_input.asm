; Standard input: a line at a time with editing, or unbuffered ({$B-}): key by key, echoed, without editing.
;
; The line last read stays in lineBuffer; what the user types replaces it character by character, so the rest of it is
; there for ^D and ^R. After an I/O error nothing is read until the program has asked for the I/O result: the items
; return at once and leave their variables alone.
; Every entry that may wait for a key stores its stack pointer first, for the address in a user break's report.

; readBegin: a Read or ReadLn starts: takes a line from the user. Nothing in or out; destroys all. 570 T for an empty
; line, 500 T a key; 190 T when input is not buffered.
@readBegin:
        ld      (entryStack),sp
        xor     a
        ld      (lineLength),a
        ld      (linePosition),a
        ld      (lineTaken),a
        ld      a,carriageReturn
        ld      (lineTerminator),a
        ld      a,(ioStatus)
        or      a
        ret     nz
        call    inputIsBuffered
        ret     z
        call    editLine
        ld      (lineTerminator),a
        ld      hl,(lineLength)         ; the next line's editing recalls this one
        ld      a,l
        ld      (recallLength),a
        ld      hl,bufLenDefault
        ld      (@bufLen),hl
        ld      a,l
        ld      (lineTaken),a
        ret

; readEnd: a Read (not ReadLn) is done. What is left of a line is not used any more, because the next Read asks for a
; new one. Nothing in or out; destroys AF, IX. 110 T, 150 T behind the end of a device's input.
@readEnd:
        call    inputSource
        ret     p
        ld      a,(ix + fileHeld)
        cp      ctrlZ
        ret     nz
        ld      (ix + fileHeld),0       ; one ^Z ends one Read
        ret

; readLine: a ReadLn is done: the rest of the line is dropped and its end echoed. A ReadLn without items that follows no
; Read takes a line of its own. Nothing in or out; destroys all. 415 T behind a typed line; from a text file 1100 T, and
; 850 T for each character that is dropped.
@readLine:
        ld      (entryStack),sp
        call    inputIsBuffered
        jr      z,_unbuffered
        ld      a,(lineTaken)
        or      a
        call    z,@readBegin            ; takes none after an I/O error
        ld      hl,lineTaken
        ld      a,(hl)
        ld      (hl),0
        or      a
        ret     z
        ld      e,carriageReturn        ; the line was read, so its end is echoed even if an item in it was bad
        call    putAlways
        ld      e,lineFeed
        jp      putAlways
_unbuffered:
        ld      a,(ioStatus)
        or      a
        ret     nz
_next:
        call    peekCharacter
        cp      ctrlZ
        jr      z,@readEnd
        push    af
        call    takeCharacter
        pop     af
        cp      carriageReturn
        jr      nz,_next
        call    inputSource
        ret     m
        call    peekFile                ; a file has a line feed behind it
        cp      lineFeed
        ret     nz
        jp      takeCharacter

; readChar: In: HL = address of the Char: the next character, #13 at the end of the line, #26 at the end of input.
; Destroys all. 450 T from a line, 900 T from a text file.
@readChar:
        ld      (entryStack),sp
        ld      a,(ioStatus)
        or      a
        ret     nz
        push    hl
        call    peekCharacter
        pop     hl
        ld      (hl),a
        jp      takeCharacter

; readString: In: HL = address of the string, A = its maximum length: the line up to its end or the maximum.
; Destroys all. 330 T, and a character 520 T from a line, 880 T from a text file.
@readString:
        ld      (entryStack),sp
        ld      c,a
        ld      a,(ioStatus)
        or      a
        ret     nz
        ld      (itemTarget),hl
        ld      (hl),a                  ; = 0
        ld      a,c
        ld      (itemLimit),a
_next:
        ld      hl,(itemTarget)
        ld      a,(itemLimit)
        cp      (hl)
        ret     z
        call    peekCharacter
        cp      carriageReturn
        ret     z
        cp      ctrlZ
        ret     z
        ld      hl,(itemTarget)
        inc     (hl)
        ld      e,(hl)
        ld      d,0
        add     hl,de
        ld      (hl),a
        call    takeCharacter
        jr      _next

; readChars: In: HL = address of an array of Char, BC = its length: the line up to its end or the array's, then blanks.
; Destroys all. 90 T, and a character 520 T from a line, 880 T from a text file, a blank 280 to 500 T.
@readChars:
        ld      (entryStack),sp
        ld      a,(ioStatus)
        or      a
        ret     nz
_next:
        ld      a,b
        or      c
        ret     z
        push    hl
        push    bc
        call    peekCharacter
        pop     bc
        pop     hl
        cp      carriageReturn
        jr      z,_blank
        cp      ctrlZ
        jr      z,_blank
        ld      (hl),a
        push    hl
        push    bc
        call    takeCharacter
        pop     bc
        pop     hl
_stored:
        inc     hl
        dec     bc
        jr      _next
_blank:
        ld      (hl),' '
        jr      _stored

; readInteger: In: HL = address of the Integer. Keeps it when the line has no more items; I/O result 10 when the item is
; no number. Destroys all. One digit 1140 T and each further one 580 T from a line, 2000 and 1060 T from a text file.
@readInteger:
        ld      (entryStack),sp
        push    hl
        call    readNumber
        pop     hl
        ret     c
        ld      (hl),e
        inc     hl
        ld      (hl),d
        ret

; readByte: In: HL = address of the byte: as readInteger, the low byte is stored. Destroys all. As readInteger,
; from 1120 T.
@readByte:
        ld      (entryStack),sp
        push    hl
        call    readNumber
        pop     hl
        ret     c
        ld      (hl),e
        ret

; readNumber: an item of standard input as a number. Out: DE = value, or carry when there is none. Destroys all.
; 60 T after an I/O error, otherwise readItem and parseInteger: from 1050 T.
badNumber       equ 10h         ; I/O result
readNumber:
        call    readItem
        ret     c
        call    parseInteger
        ret     nc
setBadNumber:
        ld      a,badNumber
        ld      (ioStatus),a
        ret

; readItem: Out: HL = an item's characters, B = their count; or carry when there is none. Destroys all. 720 T
; and a character 370 T from a line, 860 T from a text file; 32 T after an I/O error.
readItem:
        ld      a,(ioStatus)
        or      a
        scf
        ret     nz
        ld      (scratchString),a       ; = 0
_skip:
        call    peekCharacter
        cp      ' '
        jr      z,_skipIt
        cp      tab
        jr      z,_skipIt
        cp      lineFeed
        jr      z,_skipIt
        cp      ctrlZ
        scf
        ret     z
        cp      carriageReturn
        jr      nz,_collect
        call    inputIsBuffered         ; the line's end ends the items; unbuffered input goes on behind it
        scf
        ret     nz
_skipIt:
        call    takeCharacter
        jr      _skip
_collect:                               ; up to a blank or a control character
        cp      ' ' + 1
        jr      c,_parse
        ld      hl,scratchString
        inc     (hl)
        jr      nz,_store
        dec     (hl)                    ; longer than any number: what is there already decides
        jr      _stored
_store:
        ld      e,(hl)
        ld      d,0
        add     hl,de
        ld      (hl),a
_stored:
        call    takeCharacter
        call    peekCharacter
        jr      _collect
_parse:
        ld      hl,scratchString
        ld      b,(hl)
        inc     hl
        or      a
        ret

; inputIsBuffered: Out: NZ when input comes from the line. Destroys AF. 79 T.
inputIsBuffered:
        ld      a,(selectedInput + 1)
        cp      1                       ; carry when none is selected
        sbc     a,a
        push    hl
        ld      hl,programFlags
        and     (hl)
        pop     hl
        and     1 shl flagBuffered
        ret

; peekCharacter: Out: A = the next character, CR at the end of the line, ^Z at the end of input. Destroys all.
; 168 to 205 T from a line, 350 T from a text file.
peekCharacter:
        call    inputIsBuffered
        jr      z,_unbuffered
        ld      a,(linePosition)
        ld      hl,lineLength
        cp      (hl)
        jr      nc,_lineEnd
        ld      e,a
        ld      d,0
        ld      hl,lineBuffer
        add     hl,de
        ld      a,(hl)
        ret
_lineEnd:
        ld      a,(lineTerminator)
        ret
_unbuffered:
        call    inputSource
        jp      peekFile

; takeCharacter: steps behind what peekCharacter has given; stays at the end of a typed line and of input.
; Nothing in or out; destroys all. 159 T in a line, 420 T in a text file.
takeCharacter:
        call    inputIsBuffered
        jr      z,_unbuffered
        ld      a,(lineLength)
        ld      hl,linePosition
        cp      (hl)
        ret     z
        inc     (hl)
        ret
_unbuffered:
        call    inputSource
        jp      takeFile

; getKey: waits for a key. Out: A. ^C breaks the program when it was compiled for that. Destroys all. 143 T.
; The raw BDOS function is used so that the break is reported as Pascal's, with its address.
getKey:
        ld      hl,(@conInPtr)
        call    callDriver
        cp      ctrlC
        ret     nz
        ld      a,(@cBreak)
        rrca
        ld      a,ctrlC
        ret     nc
        jp      userBreak

; editLine: the user types a line. Out: lineBuffer, lineLength (0 on entry); A = CR or ^Z, which ended it. Destroys all.
; 245 T, and 490 T a character, 650 T one that is deleted.
editLine:
        ld      hl,(@bufLen)
        ld      a,h
        or      a
        jr      nz,_longest
        ld      a,l
        cp      lineMaximum + 1
        jr      c,_limit
_longest:
        ld      a,lineMaximum
_limit:
        ld      (lineLimit),a
_next:
        call    getKey
        cp      carriageReturn
        ret     z
        cp      ctrlZ
        ret     z
        cp      ' '
        jr      c,_control
        cp      delete
        jr      z,_delete
_character:
        call    acceptCharacter
        jr      _next
_control:
        cp      tab
        jr      z,_character
        cp      backSpace
        jr      z,_delete
        cp      escape
        jr      z,_cancel
        cp      ctrlX
        jr      z,_cancel
        cp      ctrlD
        jr      z,_recallOne
        cp      ctrlR
        jr      nz,_next                ; the other control characters do nothing
_recallLine:
        call    recallCharacter
        jr      c,_recallLine
        jr      _next
_recallOne:
        call    recallCharacter
        jr      _next
_delete:
        call    deleteCharacter
        jr      _next
_cancel:
        call    deleteCharacter
        jr      c,_cancel
        jr      _next

; acceptCharacter: In: A = character: appends it to the line and echoes it, a tab as one blank; ignores it when the line
; is full. Destroys all. 253 T; 45 T when it is.
acceptCharacter:
        ld      b,a
        ld      hl,lineLength
        ld      a,(lineLimit)
        cp      (hl)
        ret     z
        ld      e,(hl)
        ld      d,0
        inc     (hl)
        ld      c,(hl)
        ld      hl,recallLength         ; what is deleted again can be recalled
        ld      a,(hl)
        cp      c
        jr      nc,_recallable
        ld      (hl),c
_recallable:
        ld      hl,lineBuffer
        add     hl,de
        ld      (hl),b
        ld      e,b
        ld      a,b
        cp      tab
        jp      nz,putAlways
        ld      e,' '
        jp      putAlways

; recallCharacter: the character of the last line at the cursor again. Out: carry when there was one. Destroys all.
; 378 T; 63 T when there was none.
recallCharacter:
        ld      a,(lineLength)
        ld      hl,lineLimit
        cp      (hl)
        ret     nc
        ld      hl,recallLength
        cp      (hl)
        ret     nc
        ld      e,a
        ld      d,0
        ld      hl,lineBuffer
        add     hl,de
        ld      a,(hl)
        call    acceptCharacter
        scf
        ret

; deleteCharacter: takes back the last character. Out: carry when there was one. Destroys all. 405 T; 32 T when there
; was none.
deleteCharacter:
        ld      hl,lineLength
        ld      a,(hl)
        or      a
        ret     z
        dec     (hl)
        ld      e,backSpace
        call    putAlways
        ld      e,' '
        call    putAlways
        ld      e,backSpace
        call    putAlways
        scf
        ret
