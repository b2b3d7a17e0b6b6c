; Start of a program: memory check, library variables, chain image to its place.

minimumStack    equ 256         ; bytes between the heap's bottom and the stack's top without which nothing is run
recursionDistance equ 1024      ; of RecurPtr from StackPtr at the start; nothing here uses either

        jp      start

; start: the machine enters here through 0100h. Runs the program or says on the console why it cannot.
start:
        ld      a,(imageStart + imageEntry)
        cp      0C3h                    ; JP: every image begins with one
        jr      nz,noProgram

        ld      ix,imageStart
        call    checkMemory

        ; From here on the stack of MSX-DOS, which may lie where the program's data go, is not used any more.
        ld      sp,hl
        call    initialiseVariables

        ; The image goes to its own address when that is higher; from the last byte down, as both may overlap.
        ld      hl,(imageStart + imageAddress)
        push    hl                      ; the RET below goes there
        ld      de,imageStart
        or      a
        sbc     hl,de
        ret     z
        add     hl,de
        ld      bc,(imageStart + imageLength)
        add     hl,bc
        dec     hl
        ex      de,hl                   ; DE = last byte of the target, HL = imageStart
        add     hl,bc
        dec     hl
        lddr
        ret

noProgram:
        ld      de,noProgramText
        ld      c,9
        call    bdosCall
        jp      0

; checkMemory: In: IX = header of a chain image. Out: HL = stackTop = its top of the stack; ends the program with a
; message when the memory is too small for it. Destroys AF, DE. 252 T.
checkMemory:
        ld      hl,(topOfTpa)
        ld      e,(ix + imageEnd)
        ld      d,(ix + imageEnd + 1)
        or      a
        sbc     hl,de
        add     hl,de                   ; carry again as the subtraction had it
        jr      c,_notEnough            ; HL available, DE wanted
        ld      l,(ix + imageHeapBottom)
        ld      h,(ix + imageHeapBottom + 1)
        ld      de,minimumStack
        add     hl,de
        ex      de,hl
        ld      l,(ix + imageStackTop)
        ld      h,(ix + imageStackTop + 1)
        jr      c,_notEnough
        sbc     hl,de
        add     hl,de
        ld      (stackTop),hl
        ret     nc
_notEnough:
        push    hl
        push    de
        ld      a,2                     ; the console function is not chosen yet
        ld      (outputFunction),a
        xor     a
        ld      (ioStatus),a
        ld      h,a
        ld      l,a
        ld      (selectedOutput),hl
        ld      hl,notEnoughText
        call    @writeString
        pop     hl
        call    writeHexWord
        ld      hl,wantedText
        call    @writeString
        pop     hl
        call    writeHexWord
        ld      hl,availableText
        call    @writeString
        jp      0

noProgramText:
        defb    'No program behind the run-time library',13,10,'$'
notEnoughText:
        defb    wantedText - $ - 1,'Not enough memory: '
wantedText:
        defb    availableText - $ - 1,' wanted, '
availableText:
        defb    initialiseVariables - $ - 1,' available',13,10

; initialiseVariables: the library's variables from the image's header. In: IX = header. Destroys AF, BC, DE, HL.
; 4000 T.
initialiseVariables:
        ld      hl,clearedVariables
        ld      bc,clearedVariablesEnd - clearedVariables
        xor     a
        call    @fillBytes

        ld      hl,bufLenDefault
        ld      (@bufLen),hl
        ld      hl,randomSeed
        ld      de,randomState
        ld      bc,randomSeedEnd - randomSeed
        ldir

        ld      hl,(stackTop)
        ld      (@stackPtr),hl
        ld      de,-recursionDistance
        add     hl,de
        ld      (@recurPtr),hl
        ld      l,(ix + imageHeapBottom)
        ld      h,(ix + imageHeapBottom + 1)
        call    setHeapTop

        ld      a,(ix + imageFlags)
        ld      (programFlags),a
        and     1 shl flagControlC
        ld      (@cBreak),a
        rrca                            ; flagControlC into carry
        ld      a,2                     ; console output that reacts to ^C and ^S
        jr      c,_set
        ld      a,6                     ; direct console output
_set:
        ld      (outputFunction),a
        ret
