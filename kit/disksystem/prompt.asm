; The prompt: a line from the keyboard or the batch file, and what it asks for. It works like a program: by system calls, with
; its memory where programs have theirs.

promptMemory    equ 0C000h
promptLine      equ promptMemory        ; 1 + 1 + 128: as function 0Ah wants it
promptText      equ promptLine + 2
promptLength    equ 127
promptBlock     equ promptMemory + 160  ; 37
otherBlock      equ promptMemory + 200  ; 37
promptEntry     equ promptMemory + 240  ; 33: what a search finds
promptTail      equ promptMemory + 280  ; word: text after the command's name
promptRaw       equ promptMemory + 282  ; 130: a batch line before its parameters are put in
promptNumber    equ promptMemory + 420  ; six bytes
copyPattern     equ promptMemory + 430  ; 37
copyTarget      equ promptMemory + 470  ; 37
copyCount       equ promptMemory + 510  ; word: files copied
copySkip        equ promptMemory + 512  ; files of the pattern that are done; from CON: ^Z once it was typed
promptBuffer    equ 8000h               ; 16 kB for TYPE and COPY
promptBufferSize equ 4000h

; prompt: the next command. Does not come back.
prompt:
        ld      sp,tpaTop - 6
        call    batchLine
        jr      nc,_run
        call    showPrompt
        ld      hl,promptLine
        ld      (hl),promptLength
        ex      de,hl
        ld      c,0Ah
        call    systemCall
        call    newLine
        ld      a,(promptLine + 1)
        ld      hl,promptText
        call    addToHl
        ld      (hl),0
_run:
        call    runLine
        jr      prompt

; addToHl: In: HL, A. Out: HL = HL + A. Changes A, F.
addToHl:
        add     a,l
        ld      l,a
        ret     nc
        inc     h
        ret

; showPrompt: Changes AF.
showPrompt:
        call    newLine
        ld      a,(defaultDrive)
        add     a,'A'
        call    showCharacter
        ld      a,'>'
        jp      showCharacter

; runLine: does what promptText says, a text that ends with 0. Changes all.
runLine:
        ld      hl,promptText
        call    skipBlanks
        or      a
        ret     z
        ; a drive's letter alone
        inc     hl
        ld      a,(hl)
        dec     hl
        cp      ':'
        jr      nz,_command
        inc     hl
        inc     hl
        ld      a,(hl)
        dec     hl
        dec     hl
        or      a
        jp      z,commandDrive
_command:
        push    hl
        ld      de,promptBlock
        call    takeFileName
        ld      (promptTail),hl
        pop     hl
        ld      hl,promptBlock + 1
        call    findCommand
        jr      c,runProgram
        jp      (hl)

; findCommand: In: HL = name of 11 characters. Out: HL = routine of the command of that name, or carry. Changes AF, BC, DE.
findCommand:
        ex      de,hl
        ld      hl,commandTable
_command:
        ld      a,(hl)
        or      a
        scf
        ret     z
        push    de
        ld      b,6
_character:
        ld      a,(de)
        cp      (hl)
        jr      nz,_other
        inc     hl
        inc     de
        djnz    _character
        ld      a,(de)
        cp      ' '
        jr      nz,_other
        pop     de
        ld      a,(promptBlock)         ; a command has no drive
        or      a
        scf
        ret     nz
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        or      a
        ret
_other:
        inc     hl
        djnz    _other
        inc     hl
        inc     hl
        pop     de
        jr      _command

; runProgram: promptBlock's program or batch file, with promptTail as its arguments.
runProgram:
        ld      hl,promptBlock + 9
        ld      a,(hl)
        cp      ' '
        jr      nz,_named
        ld      hl,typeCom
        call    setType
        call    openPromptBlock
        jp      z,loadProgram
        ld      hl,typeBat
        call    setType
        call    openPromptBlock
        jp      z,callBatch
        jr      badCommand
_named:
        call    openPromptBlock
        jr      nz,badCommand
        ld      de,promptBlock + 9
        ld      hl,typeCom
        call    sameType
        jp      z,loadProgram
        ld      hl,typeBat
        call    sameType
        jp      z,callBatch
badCommand:
        ld      hl,badCommandText
        jp      showText

; setType: In: HL = three characters for promptBlock. Changes BC, DE, HL.
setType:
        ld      de,promptBlock + 9
        ld      bc,3
        ldir
        ret

; sameType: In: HL, DE = three characters. Out: Z when they are the same. Keeps DE; changes AF, BC, HL.
sameType:
        push    de
        ld      b,3
_character:
        ld      a,(de)
        cp      (hl)
        jr      nz,_end
        inc     hl
        inc     de
        djnz    _character
_end:
        pop     de
        ret
typeCom:        defb 'COM'
typeBat:        defb 'BAT'

; openPromptBlock: Out: Z when its file was opened. Changes all.
openPromptBlock:
        ld      de,promptBlock
        ld      c,0Fh
        call    systemCall
        or      a
        ret

; skipBlanks: In: HL = text. Out: HL = its first character that is no blank, A = it. Changes F.
skipBlanks:
        ld      a,(hl)
        cp      ' '
        jr      z,_next
        cp      tab
        ret     nz
_next:
        inc     hl
        jr      skipBlanks

; takeFileName: In: HL = text, DE = block. Out: the block's drive and name, the rest of it 0; HL = text after it. Changes AF,
; BC, DE.
takeFileName:
        push    hl
        push    de
        ld      h,d
        ld      l,e
        ld      bc,fcbSize
        xor     a
        call    fillBytes
        pop     de
        pop     hl
        call    takeDrive
        inc     de
        ld      b,8
        call    takePart
        ld      b,3
        ld      a,(hl)
        cp      '.'
        jr      nz,takePart
        inc     hl

; takePart: In: HL = text, DE = place for B characters. Out: HL, DE after them: filled up with blanks, * spread to ?, the rest
; of a longer part passed over. Changes AF, B.
takePart:
        call    nameCharacter
        jr      c,_blanks
        cp      '*'
        jr      z,_star
        inc     hl
        ld      (de),a
        inc     de
        djnz    takePart
_rest:
        call    nameCharacter
        ret     c
        inc     hl
        jr      _rest
_star:
        inc     hl
        ld      a,'?'
        call    _fill
        jr      _rest
_blanks:
        ld      a,' '
_fill:
        ld      (de),a
        inc     de
        djnz    _fill
        ret

; takeDrive: In: HL = text, DE = block. Out: the block's drive, HL after it. Changes AF.
takeDrive:
        inc     hl
        ld      a,(hl)
        dec     hl
        cp      ':'
        ret     nz
        ld      a,(hl)
        call    upperCase
        sub     '@'
        ld      (de),a
        inc     hl
        inc     hl
        ret

; nameCharacter: In: HL = text. Out: A = its character in capitals; carry when it ends a name's part. Changes F.
nameCharacter:
        ld      a,(hl)
        call    upperCase
        cp      '!'
        ret     c
        cp      '*'
        ret     z
        cp      '?'
        ret     z
        push    hl
        push    bc
        ld      hl,separators
        ld      b,a
_separator:
        ld      a,(hl)
        inc     hl
        cp      b
        jr      z,_ends
        or      a
        jr      nz,_separator
        ld      a,b
        pop     bc
        pop     hl
        or      a
        ret
_ends:
        ld      a,b
        pop     bc
        pop     hl
        scf
        ret
