; RUNTIME.COM: the run-time library of compiled Turbo Pascal programs on MSX-DOS.
;
; It fills 0100h to 2E9Ah exactly; the program's chain image follows it in a .COM. The library is RAM, so its
; variables lie in it too.
;
; Habits of these sources:
; - A label that begins with @ is an entry that compiled programs call; entries.def lists them with their registers.
;   (The @ keeps names like "halt" apart from the assembler's own words.) A label that begins with _ is local, by
;   --alocal.
; - "destroys all" means AF, BC, DE, HL, IX, IY and the alternate registers: everything that the BDOS may change.
; - T-states are those of a plain Z80 including the RET; an MSX adds one for each M1 cycle. Calls of the BDOS are not
;   counted.

        org     0100h

bdosCall        equ 0005h       ; CALL here with C = function
topOfTpa        equ 0006h       ; word: first address behind the memory for programs
commandTail     equ 0080h       ; length, then the text behind the program's name
imageStart      equ 2E9Bh       ; where a .COM has the program's chain image

; The header at the beginning of a chain image.
imageEntry      equ 0           ; JP to the program's code
imageAddress    equ 3           ; word: address that the image was made for
imageLength     equ 5           ; word: bytes, the header included
imageEnd        equ 7           ; word: end address, the first byte behind the program's data
imageStackTop   equ 9           ; word: lowest static data = initial top of stack
imageHeapBottom equ 11          ; word: first free address behind the image
imageFlags      equ 13          ; byte: the bits below

flagControlC    equ 0           ; bit 0, {$C+}: console reacts to ^C and ^S
flagBuffered    equ 1           ; bit 1, {$B+}: standard input is read by the line, with editing

; Control characters.
ctrlC           equ 03h
ctrlD           equ 04h
ctrlR           equ 12h
ctrlX           equ 18h
ctrlZ           equ 1Ah
bell            equ 07h
backSpace       equ 08h
tab             equ 09h
lineFeed        equ 0Ah
formFeed        equ 0Ch
carriageReturn  equ 0Dh
escape          equ 1Bh
delete          equ 7Fh

        include start.asm
        include errors.asm
        include console_output.asm
        include console_input.asm
        include integer.asm
        include integer_text.asm
        include random.asm
        include string.asm
        include real.asm
        include real_convert.asm
        include real_root.asm
        include real_functions.asm
        include real_write.asm
        include real_read.asm
        include file.asm
        include file_record.asm
        include file_text.asm
        include chain.asm
        include set.asm
        include heap.asm
        include memory.asm
        include screen.asm
        include system.asm
        include delay.asm
        include variables.asm

libraryEnd:
        if      libraryEnd > imageStart
        .error  The library reaches beyond 2E9Ah
        endif
        defs    imageStart - libraryEnd, 0
        end
