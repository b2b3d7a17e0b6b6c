; The library's variables. A program's start sets them all, so nothing here counts on what the file held.

bufLenDefault   equ 127         ; characters in a line unless the program sets BufLen for the next read
lineMaximum     equ 127         ; and never more

; The drivers, as the file has them: a program that chains to another one keeps its own.
@conStPtr:              defw consoleStatus
@conInPtr:              defw consoleInput
@conOutPtr:             defw consoleOutput
@lstOutPtr:             defw printerOutput
@auxInPtr:              defw auxiliaryInput
@auxOutPtr:             defw auxiliaryOutput
@usrInPtr:              defw consoleInput
@usrOutPtr:             defw consoleOutput

; Words and bytes with a start value of their own.
stackTop:               defs 2  ; the program's initial stack pointer
@stackLimit:            defs 2
stringLimit:            defs 2  ; stackLimit - 256
@heapPtr:               defs 2  ; the heap's top, HeapPtr
@stackPtr:              defs 2
@recurPtr:              defs 2
@bufLen:                defs 2  ; BufLen; a word, the low byte counts
outputFunction:         defs 1  ; BDOS function that writes a character: 2 or 6
programFlags:           defs 1  ; the image's flags
randomState:            defs 4
randomWeyl:             defs 2

; Set to zero at the start.
clearedVariables:
ioStatus:               defs 1  ; I/O result
                        defs 1  ; lets ioResult load a word
entryStack:             defs 2  ; stack pointer in the entry that reads, for a break's address
@stringCount:           defs 2
freeList:               defs 4  ; first free block of the heap, and 0 as the list's own size
heapLink:               defs 2  ; heapFree's: block before the one that is freed
heapSums:               defs 1  ; not 0: MemAvail, otherwise MaxAvail
@errorPtr:              defs 2  ; the program's routine for errors, or 0

; The line read last and what is being taken from it.
lineLength:             defs 1  ; characters in lineBuffer
linePosition:           defs 1  ; characters taken
lineLimit:              defs 1  ; characters that the user may type
lineTerminator:         defs 1  ; what follows the characters: CR or ^Z
lineTaken:              defs 1  ; not 0: a line was asked for whose end is not echoed yet
recallLength:           defs 1  ; characters in lineBuffer that ^D and ^R bring back
lineBuffer:             defs lineMaximum

itemTarget:             defs 2  ; where the item being read goes
itemLimit:              defs 1
parseSign:              defs 1  ; not 0: a minus sign was read
parameterNumber:        defs 1
selectedOutput:         defs 2  ; text file that the write entries go to; 0: the console
selectedInput:          defs 2  ; text file that the read entries take from; 0: Input
keptKey:                defs 1  ; key that userBreakPoll has found, or 0
openFiles:              defs 2  ; the first open disk file
wholeCount:             defs 2  ; digits before the point; the high byte stays 0
delayPass:              defs 2  ; time of a pass of Delay's loop in 1/65536 ms; 0: not measured
@ovrDrive:              defs 1
clearedVariablesEnd:

currentFile:            defs 2
fileScratch:            defs 4  ; a typed file's header
blockFailure:           defs 1  ; I/O result of an incomplete block transfer
askMode:                defs 1
delayTime:              defs 2  ; milliseconds asked for
delayTicks:             defs 1  ; frames that have ended since, 3 for more than two
delayFirst:             defs 2  ; passes before the first of them
delayPasses:            defs 2  ; passes in the one that has just ended
delayLeft:              defs 4  ; time left at the end of the last frame: fraction, milliseconds
@cBreak:                defs 1  ; ^C in a Read breaks
realStack:              defs 2  ; stack pointer in the entry that works on reals, for an error's address
realSign:               defs 1  ; bit 7: the result's sign
realQuotient:           defs 5
realTemporary:          defs 6
realX:                  defs 6  ; a function's argument, then its reduced one
realZ:                  defs 6  ; what its polynomial depends on
realA:                  defs 6
realB:                  defs 7  ; one byte more for the sine's quarter turns
quadrant:               defs 1
realZero:               defs 1  ; exponent of the real being written
@realDecimals:          defs 2
textDecimals:           defs 1  ; decimals; bit 7: exponent form
firstDigit:             defs 2  ; address in digitBuffer
fractionLow:            defs 2  ; the lowest byte of fixedPoint that need be looked at
parseStack:             defs 2
parseCount:             defs 1  ; characters of the number being read
parseNext:              defs 2  ; its next digit
parseLast:              defs 2  ; behind its last digit
parsePlace:             defs 2  ; digits before the point, the exponent included
parseDigits:            defs 1
parsePoint:             defs 1
parseRest:              defs 1  ; not 0: the digits do not end within fixedPoint
fractionPad:            defs fractionPadBytes  ; 0
fixedPoint:             defs fractionBytes
wholePart:              defs wholeBytes
numberText:             defs 6  ; an integer's sign and digits
overlayBlock:           defs 37 ; control block of an overlay file
scratchString:          defs 256 ; for one entry's own use
digitBuffer             equ scratchString ; digits as numbers, for realToText
digitBufferEnd          equ digitBuffer + 128
realText                equ digitBufferEnd
