; Batch files: lines as if typed, %0 to %9 standing for the words of the command that started the file.

batchLineLength equ 126

; startBatch: at the start. AUTOEXEC.BAT is to run, or the disk's only program. Changes all.
startBatch:
        xor     a
        ld      (defaultDrive),a
        inc     a
        call    useDrive
        ret     c
        ld      hl,autoexecName
        call    takeName
        xor     a
        call    findEntry
        ld      hl,pattern
        jr      nc,setBatch
        ld      hl,anyProgram
        call    takeName
        xor     a
        call    findEntry
        ret     c
        ld      de,onlyName
        ld      bc,11
        ldir
        ld      a,(entryIndex)
        inc     a
        call    findEntry
        ret     nc                      ; more than one: the user will say which
        ld      a,batchOnly
        ld      (batchActive),a
        ret

; setBatch: In: HL = name of 11 characters of a batch file on the drive in place. It runs from its beginning. Changes AF, BC, DE,
; HL.
setBatch:
        ld      de,batchName
        ld      bc,11
        ldir
        ld      a,(drive)
        inc     a
        ld      (batchDrive),a
        ld      hl,0
        ld      (batchPlace),hl
        xor     a
        ld      (batchPlace + 2),a
        inc     a
        ld      (batchActive),a
        ret

batchOnly       equ 2           ; the disk's only program is to be started
autoexecName:   defb 'AUTOEXECBAT'
anyProgram:     defb '????????COM'

; callBatch: In: promptBlock = batch file, opened. It runs from its beginning in place of the one that runs now.
callBatch:
        ld      hl,promptText
        ld      de,batchWords
        ld      bc,batchWordsSize - 1
        ldir
        xor     a
        ld      (de),a
        ld      hl,promptBlock + 1
        jr      setBatch

; batchLine: Out: promptText = next line of the batch file, shown as if typed; carry when none runs. Changes all.
batchLine:
        ld      a,(batchActive)
        or      a
        scf
        ret     z
        cp      batchOnly
        jr      z,startOnly
        ld      hl,batchDrive
        ld      de,promptBlock
        ld      bc,12
        ldir
        ex      de,hl
        ld      bc,fcbSize - 12
        xor     a
        call    fillBytes
        call    openPromptBlock
        jr      nz,_over
        ld      hl,1
        ld      (promptBlock + 14),hl
        ld      hl,(batchPlace)
        ld      (promptBlock + 33),hl
        ld      a,(batchPlace + 2)
        ld      (promptBlock + 35),a
        ld      de,promptRaw
        ld      c,1Ah
        call    systemCall
        ld      de,promptBlock
        ld      hl,batchLineLength
        ld      c,27h
        call    systemCall
        ld      a,l
        or      a
        jr      z,_over
        call    cutLine
        jr      c,_over
        call    putWords
        call    showPrompt
        ld      hl,promptText
        call    showText
        call    newLine
        ld      de,0080h
        ld      c,1Ah
        call    systemCall
        or      a
        ret
_over:
        xor     a
        ld      (batchActive),a
        scf
        ret

; startOnly: promptText = the disk's only program.
startOnly:
        xor     a
        ld      (batchActive),a
        ld      hl,onlyName
        ld      de,promptText
        ld      b,8
_character:
        ld      a,(hl)
        cp      ' '
        jr      z,_end
        ld      (de),a
        inc     hl
        inc     de
        djnz    _character
_end:
        xor     a
        ld      (de),a
        ret

; cutLine: In: A = bytes in promptRaw. Out: promptRaw = its first line, ended with 0, and batchPlace after it; carry when the
; file ends here. Changes all.
cutLine:
        ld      hl,promptRaw
        ld      c,a
        ld      b,0                     ; B = characters of the line
_character:
        ld      a,b
        cp      c
        jr      z,_end
        ld      a,(hl)
        cp      ctrlZ
        jr      z,_fileEnd
        cp      carriageReturn
        jr      z,_return
        cp      lineFeed
        jr      z,_feed
        inc     hl
        inc     b
        jr      _character
_return:
        inc     hl
        ld      a,(hl)
        dec     hl
        cp      lineFeed
        ld      a,2
        jr      z,_passed
_feed:
        ld      a,1
_passed:
        add     a,b
        jr      _move
_fileEnd:
        ld      a,b
        or      a
        scf
        ret     z
_end:
        ld      a,b
_move:
        ld      (hl),0
        ld      hl,(batchPlace)
        call    addToHl
        ld      (batchPlace),hl
        or      a
        ret

; putWords: promptText = promptRaw with %0 to %9 replaced by words of batchWords; %% is %. Changes all.
putWords:
        ld      hl,promptRaw
        ld      de,promptText
        ld      b,promptLength - 1
_character:
        ld      a,(hl)
        ld      (de),a
        or      a
        ret     z
        inc     hl
        cp      '%'
        jr      z,_word
_keep:
        inc     de
        djnz    _character
        xor     a
        ld      (de),a
        ret
_word:
        ld      a,(hl)
        cp      '%'
        jr      nz,_number
        inc     hl
        jr      _keep
_number:
        sub     '0'
        cp      10
        jr      nc,_keep
        inc     hl
        push    hl
        ld      hl,batchWords
        ld      c,a
        inc     c
_skip:
        call    skipBlanks
        dec     c
        jr      z,_copy
_inWord:
        ld      a,(hl)
        cp      '!'
        jr      c,_skip
        inc     hl
        jr      _inWord
_copy:
        ld      a,(hl)
        cp      '!'
        jr      c,_copied
        ld      (de),a
        inc     hl
        inc     de
        djnz    _copy
        inc     b                       ; the line is full
        dec     de
_copied:
        pop     hl
        xor     a
        ld      (de),a
        jr      _character
