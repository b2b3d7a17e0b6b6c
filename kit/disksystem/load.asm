; From a .COM file to the running program.

; loadProgram: In: promptBlock, opened; promptTail = text of the arguments, which ends with 0. Comes back only when the program
; is too big or cannot be read.
loadProgram:
        ld      hl,(promptBlock + 18)
        ld      a,h
        or      l
        jr      nz,_tooBig
        ld      hl,(promptBlock + 16)
        ld      a,h
        or      l
        ret     z                       ; an empty program has ended already
        ld      de,tpaTop - 6 - 0100h - 64
        sbc     hl,de
        jr      nc,_tooBig
        call    setArguments
        ; From here on the prompt's memory and stack are the program's.
        ld      hl,promptBlock
        ld      de,fcb
        ld      bc,fcbSize
        ldir
        di
        ld      sp,kernelStack
        ld      a,1
        ld      (kernelDepth),a
        call    serveRam
        ei
        ld      a,(fcbDevice)
        and     3Fh
        call    useDriveNumber
        jr      c,_failed
        ld      hl,0
        ld      (filePlace),hl
        ld      (filePlace + 2),hl
        ld      hl,0100h
        ld      (dma),hl
        ; whole sectors, so that the last one comes with the others, where there is room for what follows the program in it
        ld      hl,(fcbFileSize)
        ld      de,bufferBytes - 1
        add     hl,de
        ld      a,h
        and     0FEh
        ld      h,a
        ld      l,0
        cp      high (tpaTop - 6 - 0100h)
        jr      c,_size
        ld      hl,(fcbFileSize)
_size:
        ld      (bytesWanted),hl
        xor     a
        ld      (fileWrites),a
        call    transferFile
        jr      c,_failed
        ld      hl,0080h
        ld      (dma),hl
        ld      hl,0100h
        jp      startProgram
_failed:
        ld      hl,cannotReadText
        call    showText
        jp      warmStart
_tooBig:
        ld      hl,tooBigText
        jp      showText

; setArguments: In: promptTail. Out: page 0's command tail and its two blocks. Changes all.
setArguments:
        ld      hl,005Ch
        ld      bc,36
        xor     a
        call    fillBytes
        ld      hl,(promptTail)
        ld      de,0081h
        ld      b,0
_character:
        ld      a,(hl)
        or      a
        jr      z,_end
        call    upperCase
        ld      (de),a
        inc     hl
        inc     de
        inc     b
        ld      a,b
        cp      126
        jr      nz,_character
_end:
        xor     a
        ld      (de),a
        ld      a,b
        ld      (0080h),a
        ld      hl,(promptTail)
        ld      de,005Ch
        call    _block
        ld      de,006Ch
_block:
        call    skipBlanks
        push    de
        ld      de,otherBlock
        call    takeFileName
        pop     de
        push    hl
        ld      hl,otherBlock
        ld      bc,12
        ldir
        pop     hl
        ; to the word's end
_word:
        ld      a,(hl)
        cp      '!'
        ret     c
        inc     hl
        jr      _word
