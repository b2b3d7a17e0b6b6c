; Chain and Execute: another program takes over. Both come back to the program only with an I/O result.

; In the scratch string: a chain image's header, the file's control block, a stack while the image is loaded.
chainHeader     equ scratchString
chainBlock      equ scratchString + 128
chainStack      equ scratchString + 256
chainHeaderSize equ 16

; openProgram: In: HL = file. Opens it, to be read byte by byte, copies its control block to chainBlock and closes all
; files. Out: HL = its size, at most FFFFh; in place of an I/O result it returns to the caller's caller. Destroys all.
; 3400 T, and 4000 T for each file that is still open.
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
        call    closeAll
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

; chain: In: HL = file: loads the chain image and runs it. The library's variables begin anew, the program's data stay
; where they are. Comes back only with an I/O result; destroys all then. 10000 T.
@chain:
        call    openProgram
        ld      de,chainHeader
        ld      hl,chainHeaderSize
        call    readProgram
        jr      nz,_noImage
        ld      a,(chainHeader + imageEntry)
        cp      0C3h
        jr      nz,_noImage
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
        call    initialiseVariables
        ld      sp,(stackTop)
        ld      hl,(chainHeader + imageAddress)
        jp      (hl)
_noImage:
        ld      a,ioNotFound
        jp      failFile

; execute: In: HL = file: loads the program to 0100h and runs it. What loads it lies at the top of the memory then.
; Comes back only with an I/O result; destroys all then. 6000 T, and 4000 T for each file that is still open.
@execute:
        call    openProgram
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
