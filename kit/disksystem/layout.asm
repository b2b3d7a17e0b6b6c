; Where things lie in page 3, the only page that never changes. Both assemblies, the ROM and the resident part, include it.
;
;   E400   resident part: system call, slots, interrupt, BIOS table    (0006h) = E406h
;   ....   stack for interrupts, stack of the system
;   E988   four sector buffers
;   F188   variables, between them the published ones
;   F37D   JP system call
;   F380   the BIOS's work area

residentBase    equ 0E400h
tpaTop          equ residentBase + 6    ; (0006h); the six bytes before are CP/M's serial number
biosTable       equ 0E500h              ; (0001h) points to its second entry

driveCount      equ 2
bufferCount     equ 4
bufferBytes     equ 512
variables       equ 0F188h
firstBuffer     equ variables - bufferCount * bufferBytes
kernelStack     equ firstBuffer
kernelStackSize equ 256
interruptStack  equ kernelStack - kernelStackSize
interruptStackSize equ 192
residentLimit   equ interruptStack - interruptStackSize

; Entries of the ROM that the resident part jumps to.
romEntries      equ 4030h
romServe        equ romEntries          ; a system call
romWarmStart    equ romEntries + 3      ; a program has ended
romTick         equ romEntries + 6      ; a motor is to stop or a second has passed

; variable NAME,SIZE: the next bytes of page 3.
nextVariable    defl variables
variable        macro   name, size
name            equ     nextVariable
nextVariable    defl    nextVariable + size
                endm

; A sector buffer's head. The heads lie in the order of their last use, the latest first.
headDrive       equ 0           ; 0FFh: empty
headSector      equ 1           ; word
headKind        equ 3           ; below
headDirty       equ 4           ; not 0: to be written
headPage        equ 5           ; high byte of the buffer's address; the low one is that of firstBuffer
headSize        equ 6

; Kinds of sectors, in the order in which they are written.
kindData        equ 1
kindFat         equ 2
kindDirectory   equ 3

; Things that found no room after the published variable at F1E6h.
                variable headMoved, headSize
                variable lowestHead, 2
                variable fatValue, 2
                variable anyDone, 1
                variable renameIndex, 1
                variable fileWrites, 1          ; 0: from the file to memory
                variable bytesDone, 2
                variable gapEnd, 4
                variable flushFailed, 1
                variable retrySector, 2
                variable retryCount, 1
                variable sectorSum, 2           ; of the bytes that were read without being kept
                variable errorCode, 1
                variable tableEntry, 1          ; the check of a disk's tables: entry, clusters of its chain so far
                variable tableCount, 2
                variable tableSize, 2           ; and clusters that its size needs
                variable tableRepairs, 1
                variable trustedDrive, 1        ; the entry whose name was compared last, and its first cluster: as long as no
                variable trustedEntry, 1        ; directory has changed, calls for that file need not look; 0FFh: none
                variable trustedCluster, 2
                variable aheadSector, 2
                variable aheadCount, 1
                variable firstEnd, 0
nextVariable    defl 0F1C8h
                variable bufferHeads, 30        ; as many as there is room for before the published variable
                variable abortVector, 2         ; F1E6, published: jumped to when a program is to end for a disk error

; The call.
                variable callHl, 2
                variable callDe, 2
                variable callFunction, 1
                variable resultHl, 2
                variable kernelDepth, 1         ; 0: no call is being served
                variable userSlots, 1           ; port A8h as the caller had it
                variable romSlots, 1            ; the same with the ROM in page 1
                variable userSubslots, 1        ; subslot register, where the ROM shares the RAM's primary slot
                variable romSubslots, 1
                variable startSlots, 1          ; port A8h with RAM in all pages
                variable startSubslots, 1
                variable ramExpanded, 1         ; not 0: the RAM lies in an expanded primary slot
                variable sharesPrimary, 1       ; not 0: ROM and RAM lie in the same expanded primary slot
                variable romSlot, 1
                variable interruptedSp, 2
                variable slotSp, 2
                variable slotRoutine, 2

; Console.
                variable printerEcho, 1         ; not 0: what is shown is printed too

; Disk.
                variable drive, 1               ; the drive that dpb describes; 0FFh: none
                variable defaultDrive, 1
                variable dma, 2
                variable verifyWrites, 1
                variable diskWrites, 1          ; 0 reading, 1 writing
                variable sectorAddress, 2
                variable diskTrack, 1
                variable diskSide, 1
                variable diskSector, 1
                variable driveTracks, driveCount ; where each head stands; 0FFh: not known
                variable selectedDrive, 1       ; 0FFh: none
                variable motorFrames, 1         ; frames until the motor stops; 0: it stands
                variable frameRate, 1
                variable clockFrames, 1
                variable softClock, 7           ; without a clock chip: second, minute, hour, day, month, year - 1980, 0
                variable clockPresent, 1

; The drive record: MSX-DOS's parameter block of 21 bytes, then our own.
dpbSize         equ 21
driveRecordSize equ 37
                variable driveRecord, driveRecordSize
dpbDrive        equ driveRecord
dpbMedia        equ driveRecord + 1
dpbSectorBytes  equ driveRecord + 2     ; word
dpbEntryMask    equ driveRecord + 4     ; entries in a sector, less 1
dpbEntryShift   equ driveRecord + 5
dpbClusterMask  equ driveRecord + 6     ; sectors in a cluster, less 1
dpbClusterShift equ driveRecord + 7     ; its logarithm, plus 1
dpbFirstFat     equ driveRecord + 8     ; word
dpbFats         equ driveRecord + 10
dpbEntries      equ driveRecord + 11
dpbFirstData    equ driveRecord + 12    ; word
dpbLastCluster  equ driveRecord + 14    ; word: the highest cluster number
dpbFatSectors   equ driveRecord + 16
dpbFirstEntry   equ driveRecord + 17    ; word: first sector of the directory
dpbFatAddress   equ driveRecord + 19    ; word
diskState       equ driveRecord + 21    ; the states below
diskTrackSectors equ driveRecord + 22
diskHeads       equ driveRecord + 23
diskSectors     equ driveRecord + 24    ; word: in all
diskFree        equ driveRecord + 26    ; word: free clusters; 0FFFFh: not counted yet
diskHint        equ driveRecord + 28    ; word: cluster that was given out last
bootSum         equ driveRecord + 30    ; words: sums of the bytes of the boot sector, the table's and the directory's first one
diskUnclosed    equ driveRecord + 32    ; entry, plus 1, whose file was given clusters and not closed; 0 none, 0FFh several
tableSum        equ driveRecord + 33
entrySum        equ driveRecord + 35
                variable driveRecords, driveRecordSize * driveCount

stateUnknown    equ 0           ; no disk has been looked at
stateGood       equ 1           ; its boot sector makes sense
stateChecked    equ 2           ; its tables too
stateDamaged    equ 3           ; they do not: nothing is written to it

; Files.
                variable fcb, 37                ; the caller's block
fcbName         equ fcb + 1
fcbExtent       equ fcb + 12    ; word
fcbRecordSize   equ fcb + 14    ; word
fcbFileSize     equ fcb + 16    ; four bytes
fcbDate         equ fcb + 20    ; word
fcbTime         equ fcb + 22    ; word
fcbDevice       equ fcb + 24
fcbEntry        equ fcb + 25    ; index of the directory entry
fcbCluster      equ fcb + 26    ; word: first cluster
fcbLastCluster  equ fcb + 28    ; word
fcbLastIndex    equ fcb + 30    ; word
fcbRecord       equ fcb + 32
fcbRandom       equ fcb + 33    ; three or four bytes
fcbSize         equ 37
                variable pattern, 11
                variable entryIndex, 1          ; of the directory entry found last
                variable searchIndex, 1         ; where function 12h goes on
                variable searchDrive, 1
                variable searchPattern, 11

; What the next cluster lookup may start from.
                variable chainStart, 2          ; first cluster of the file; 0: nothing is remembered
                variable chainIndex, 2
                variable chainCluster, 2

; A transfer.
                variable recordSize, 2
                variable recordCount, 2
                variable filePlace, 4           ; byte in the file
                variable bytesLeft, 2
                variable bytesWanted, 2
                variable memoryPlace, 2
                variable runSectors, 1
                variable filler, 1
                variable multiplicand, 4
                variable fileIndex, 1           ; number of the sector in its cluster
batchWordsSize  equ 64
                variable batchWords, batchWordsSize     ; the command line that started the batch file
onlyName        equ batchWords
variablesEnd    equ nextVariable

; Published variables.
errorVector     equ 0F323h      ; word: address of a word with the address of the disk error routine
breakVector     equ 0F325h      ; the same for ^C
ramSlots        equ 0F341h      ; RAMAD0 to RAMAD3: the slot of the RAM in each page
drivesByte      equ 0F347h
masterSlot      equ 0F348h      ; slot of this ROM
dpbTable        equ 0F355h      ; eight words: parameter block of each drive
enableRamEntry  equ 0F368h      ; JP: RAM into page 1
enableRomEntry  equ 0F36Bh      ; JP: this ROM into page 1
systemEntry     equ 0F37Dh      ; JP: the system call where page 0 is the BIOS's

nextVariable    defl 0F327h
                variable breakAddress, 2        ; what breakVector points to at the start
                variable errorAddress, 2        ; what errorVector points to
                variable batchActive, 1
                variable batchDrive, 1
                variable batchName, 11
                variable batchPlace, 3
                variable lowEnd, 0
nextVariable    defl 0F349h
                variable tickTail, 5            ; what H.TIMI held before
                variable highEnd, 0

; Functions that only the BIOS table uses.
internalStatus  equ 0F0h
internalInput   equ 0F1h
internalOutput  equ 0F2h
