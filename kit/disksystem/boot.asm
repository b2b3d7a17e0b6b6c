; The first program of the day.

; boot: at the start. warmEntry: a program has ended; RAM is in all pages but the ROM's.
boot:
        call    serveRam
        call    makePage0
        ei
        call    startBatch
        jr      promptStart
warmEntry:
        call    makePage0
        xor     a
        ld      (kernelDepth),a
        ei
        call    resetVectors
        call    endProgram
promptStart:
        xor     a
        ld      (kernelDepth),a
        ld      hl,0080h
        ld      (dma),hl
        ld      sp,tpaTop - 6
        jp      prompt

; endProgram: what the program has left of its disk work. Changes all.
endProgram:
        jp      flushAll
