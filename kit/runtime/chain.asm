; Chain and Execute: another program takes over. Both come back to the program only with an I/O result.

; In the scratch string: a chain image's header, the file's control block, a stack while the image is loaded.
chainHeader     equ scratchString
chainBlock      equ scratchString + 128
chainStack      equ scratchString + 256
chainHeaderSize equ 16

; openProgram: In: HL = file. Opens it, to be read byte by byte, copies its control block to chainBlock and closes it. Out:
; HL = its size, at most FFFFh; in place of an I/O result it returns to the caller's caller. Destroys all. 4500 T.
openProgram:
        ld      de,bufferSize
        call    @fileReset
        ld      ix,(currentFile)
        ld      a,(ioStatus)
        or      a
        jr      nz,_leave
        ld      a,(ix + fileState)
        or      a
        ld      a,ioOnDevice
        jr      z,_fail
        ld      (ix + fileBlock + blockRecord),1
        ld      hl,(currentFile)
        ld      de,fileBlock
        add     hl,de
        ld      de,chainBlock
        ld      bc,37
        ldir
        call    closeCurrent
        ld      hl,(chainBlock + blockSize + 2)
        ld      a,h
        or      l
        ld      hl,(chainBlock + blockSize)
        ret     z
        ld      hl,0FFFFh
        ret
_fail:
        ld      (ioStatus),a
_leave:
        pop     hl
        ret

; readProgram: In: DE = address, HL = bytes. Out: Z when all were read. Destroys all. 160 T.
readProgram:
        push    hl
        ld      c,1Ah
        call    bdosCall
        pop     hl
        ld      de,chainBlock
        ld      c,27h
        call    bdosCall
        or      a
        ret

; keepFiles: flushes the open files; closes those that lie where the next program has no data, since its stack will run over
; them. In: chainHeader. Destroys all. 40 T, and 1000 T for each open file.
keepFiles:
        ld      hl,(openFiles)
_next:
        ld      a,h
        or      l
        ret     z
        ld      (currentFile),hl
        push    hl
        pop     ix
        ld      e,(hl)                  ; fileLink, the file's first word
        inc     hl
        ld      d,(hl)
        dec     hl
        push    de
        ld      de,(chainHeader + imageStackTop)
        sbc     hl,de
        jr      c,_close
        call    flushCurrent
        call    closeBlock              ; which writes the directory; the control block goes on to serve
        jr      _on
_close:
        call    closeCurrent
_on:
        pop     hl
        jr      _next

; chain: In: HL = file: loads the chain image and runs it. The library's variables begin anew, the program's data stay
; where they are, and so do open files among them. Comes back only with an I/O result; destroys all then. 10000 T.
@chain:
        call    openProgram
        ld      de,chainHeader
        ld      hl,chainHeaderSize
        call    readProgram
        jr      nz,_noImage
        ld      a,(chainHeader + imageEntry)
        cp      0C3h
        jr      nz,_noImage
        call    keepFiles
        ld      a,(ioStatus)
        or      a
        ret     nz
        ld      ix,chainHeader
        call    checkMemory
        ld      sp,chainStack
        ld      hl,0                    ; from the file's beginning again
        ld      (chainBlock + blockRandom),hl
        ld      (chainBlock + blockRandom + 2),hl
        ld      de,(chainHeader + imageAddress)
        ld      hl,(chainHeader + imageLength)
        call    readProgram
        jp      nz,noProgram
        ld      ix,chainHeader
        ld      hl,(openFiles)
        push    hl
        call    initialiseVariables
        pop     hl
        ld      (openFiles),hl
        ld      sp,(stackTop)
        ld      hl,(chainHeader + imageAddress)
        jp      (hl)
_noImage:
        ld      a,ioNotFound
        jp      failFile

; overlayEnter: called by the stub of an overlay routine: goes on in the routine with all of its arguments, and in its
; caller when that ends. In: behind the call stand the routine's address, the address of its group's record, the place of its
; code in the file (3 bytes) and the code's length. The record: which unit is loaded (the address of the place in its stub),
; where units are loaded to, the file's name (11 bytes). Run-time error F0 without file, F1 when it is too short, both at
; the call of the stub. Destroys nothing when the unit is there (213 T), IX, IY and the alternate registers when it is loaded.
@overlayEnter:
        ex      (sp),hl
        push    af
        push    bc
        push    de
        ld      c,(hl)
        inc     hl
        ld      b,(hl)                  ; BC = the routine
        inc     hl
        ld      e,(hl)
        inc     hl
        ld      d,(hl)                  ; DE = the record
        inc     hl                      ; HL = place and length
        push    bc
        ld      a,(de)
        cp      l
        jr      nz,_load
        inc     de
        ld      a,(de)
        cp      h
        jr      nz,_loadHigh
_enter:
        pop     hl
        pop     de
        pop     bc
        pop     af
        ex      (sp),hl
        ret
_loadHigh:
        dec     de
_load:
        push    hl
        push    de
        ; No unit is there should the loading fail.
        xor     a
        ld      (de),a
        inc     de
        ld      (de),a
        ld      hl,overlayBlock + 1
        ld      de,overlayBlock + 2
        ld      bc,36 - 1
        ld      (hl),a
        ldir
        ld      a,(@ovrDrive)
        ld      (overlayBlock),a
        pop     hl
        push    hl
        inc     hl
        inc     hl
        ld      e,(hl)
        inc     hl
        ld      d,(hl)                  ; where to
        inc     hl
        push    de
        ld      de,overlayBlock + 1
        ld      bc,11
        ldir
        ld      de,overlayBlock
        ld      c,0Fh
        call    bdosCall
        or      a
        ld      a,0F0h
        jr      nz,_fail
        pop     de
        push    de
        ld      c,1Ah
        call    bdosCall
        pop     bc
        pop     de                      ; the record
        pop     hl                      ; place and length
        push    hl
        push    de
        push    bc
        ld      de,overlayBlock + blockRandom
        ld      bc,3
        ldir
        ld      e,(hl)
        inc     hl
        ld      d,(hl)
        ex      de,hl
        ld      a,1
        ld      (overlayBlock + blockRecord),a
        ld      de,overlayBlock
        ld      c,27h
        call    bdosCall
        or      a
        ld      a,0F1h
        jr      nz,_fail
        pop     bc
        pop     hl
        pop     de
        ld      (hl),e
        inc     hl
        ld      (hl),d
        jr      _enter
_fail:
        ld      hl,16                   ; what was pushed here; the caller's return address is on top then
        add     hl,sp
        ld      sp,hl
        jp      @runError

; execute: In: HL = file: loads the program to 0100h and runs it. What loads it lies at the top of the memory then.
; Comes back only with an I/O result; destroys all then. 6000 T, and 4000 T for each file that is still open.
@execute:
        call    openProgram
        push    hl
        call    closeAll
        pop     hl
        ld      (loaderSize),hl
        ex      de,hl
        ld      hl,(topOfTpa)
        ld      bc,-(loaderEnd - loader + 37)
        add     hl,bc
        push    hl
        ld      bc,-(100h + 64)         ; the new program's first stack
        add     hl,bc
        sbc     hl,de
        pop     de
        ld      a,ioTooLarge
        jp      c,failFile
        ld      h,d
        ld      l,e
        ld      sp,hl
        push    hl                      ; the loader's address, for the RET
        ld      bc,loaderEnd - loader
        add     hl,bc
        ld      (loaderBlock),hl
        ld      hl,loader
        ldir
        ld      hl,chainBlock
        ld      bc,37
        ldir
        ret
loader:
        ld      de,0100h
        ld      c,1Ah
        call    bdosCall
        ld      de,0
loaderBlock     equ $ - 2
        ld      hl,0
loaderSize      equ $ - 2
        ld      c,27h
        call    bdosCall
        ld      hl,0
        push    hl                      ; a RET of the program ends it
        jp      0100h
loaderEnd:
