; The system call: from the function's number to its routine, and the functions that belong nowhere else.

lastFunction    equ 30h
driveMask       equ (1 shl driveCount) - 1

; serveCall: In: callFunction, callDe, callHl. Out: what the function gives. Changes all. A function's routine finds DE and
; HL as the caller gave them; with its RET the answer is A, in HL too as CP/M has it. giveAll is for other answers.
serveCall:
        ld      a,(callFunction)
        ld      hl,functionTable
        cp      lastFunction + 1
        jr      c,_known
        sub     internalStatus
        ld      hl,internalTable
        cp      3
        jr      nc,functionNothing
_known:
        add     a,a
        ld      e,a
        ld      d,0
        add     hl,de
        ld      a,(hl)
        inc     hl
        ld      h,(hl)
        ld      l,a
        ld      bc,giveA
        push    bc
        push    hl
        ld      de,(callDe)
        ld      hl,(callHl)
        ret
giveA:
        ld      l,a
        ld      h,0
        ld      b,h
        ret
; giveAll: In: the stack as at a function's start. Answers with the registers as they are, A = L, B = H.
giveWord:
        ld      a,l
        ld      b,h
giveAll:
        inc     sp
        inc     sp
        ret

functionNothing:
        xor     a
        ret

functionTable:
        defw    functionEnd             ; 00
        defw    functionInputEcho
        defw    functionOutput
        defw    functionAuxInput
        defw    functionAuxOutput
        defw    functionPrint
        defw    functionDirect
        defw    functionRawInput
        defw    functionInput           ; 08
        defw    functionText
        defw    functionLine
        defw    functionStatus
        defw    functionVersion
        defw    functionReset
        defw    functionSelect
        defw    functionOpen
        defw    functionClose           ; 10
        defw    functionSearchFirst
        defw    functionSearchNext
        defw    functionDelete
        defw    functionSequentialRead
        defw    functionSequentialWrite
        defw    functionCreate
        defw    functionRename
        defw    functionDrives          ; 18
        defw    functionCurrentDrive
        defw    functionTransferAddress
        defw    functionDiskInformation
        defw    functionNothing
        defw    functionNothing
        defw    functionNothing
        defw    functionNothing
        defw    functionNothing         ; 20
        defw    functionRandomRead
        defw    functionRandomWrite
        defw    functionFileSize
        defw    functionSetRandom
        defw    functionNothing
        defw    functionBlockWrite
        defw    functionBlockRead
        defw    functionRandomWriteZero ; 28
        defw    functionNothing
        defw    functionGetDate
        defw    functionSetDate
        defw    functionGetTime
        defw    functionSetTime
        defw    functionVerify
        defw    functionSectorRead
        defw    functionSectorWrite     ; 30
internalTable:
        defw    consoleStatus
        defw    consoleKey
        defw    internalOutputCharacter

; 00: ends the program.
functionEnd:
        jp      warmStart

; 0C: version. Out: HL = 0022h.
functionVersion:
        ld      hl,0022h
        jr      giveWord

; 0D: writes what waits, and takes the start's settings: drive A, transfers at 0080h.
functionReset:
        call    flushAll
        ld      hl,0080h
        ld      (dma),hl
        xor     a
        ld      (defaultDrive),a
        ret

; 0E: In: E = drive, 0 for A. Out: A = number of drives. A drive that is not there is not selected.
functionSelect:
        ld      a,e
        cp      driveCount
        jr      nc,_count
        ld      (defaultDrive),a
_count:
        ld      a,driveCount
        ret

; 18: Out: HL = a bit for each drive.
functionDrives:
        ld      hl,driveMask
        jp      giveWord

; 19: Out: A = the default drive, 0 for A.
functionCurrentDrive:
        ld      a,(defaultDrive)
        ret

; 1A: In: DE = address of the next transfers.
functionTransferAddress:
        ld      (dma),de
        xor     a
        ret

; 1B: In: E = drive, 0 for the default one. Out: A = sectors in a cluster, BC = bytes in a sector, DE = clusters, HL = free
; ones, IX = the parameter block, IY = the first sector of the file allocation table as it lies in a buffer; A = 0FFh
; when there is no such drive or disk.
functionDiskInformation:
        ld      a,e
        call    useDrive
        jr      c,functionFails
        call    countFree
        jr      c,functionFails
        ld      de,(dpbFirstFat)
        ld      a,kindFat
        call    fetchSector
        jr      c,functionFails
        push    hl
        pop     iy
        ld      (dpbFatAddress),hl
        ld      ix,driveRecord
        ld      de,(dpbLastCluster)
        dec     de
        ld      hl,(diskFree)
        ld      bc,bufferBytes
        ld      a,(dpbClusterMask)
        inc     a
        jp      giveAll
functionFails:
        ld      a,0FFh
        ret

; 2E: In: E = 0: what is written is not read again.
functionVerify:
        ld      a,e
        ld      (verifyWrites),a
        xor     a
        ret
