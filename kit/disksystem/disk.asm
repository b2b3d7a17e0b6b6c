; The disk ROM: a system for .COM programs on MSX computers, with MSX-DOS 1's published calls. 16 kB in page 1.
;
; Habits of these sources:
; - Each routine's head tells the registers in, out and changed. "Changes all" means every register but SP.
; - Carry set means: it did not work. A disk error has then been shown and answered already (errors.asm).
; - A label that begins with _ is local, by --alocal.
; - Registers do not hold state across calls of the console: the BIOS changes IX and IY.

        include machine.asm
        include layout.asm
        include resident.sym

        include header.asm
        include start.asm
        include boot.asm
        include calls.asm
        include console.asm
        include line_input.asm
        include control_block.asm
        include names.asm
        include driver.asm
        include buffers.asm
        include sectors.asm
        include mount.asm
        include fat.asm
        include chain.asm
        include directory.asm
        include tables.asm
        include files.asm
        include transfer.asm
        include records.asm
        include file_length.asm
        include absolute.asm
        include devices.asm
        include clock.asm
        include errors.asm
        include prompt.asm
        include load.asm
        include batch.asm
        include commands.asm
        include command_dir.asm
        include command_copy.asm
        include command_clock.asm
        include entries.asm
        include format.asm
        include messages.asm

residentImage:
        incbin  resident.bin
residentImageEnd:
codeEnd:
codeLimit       equ 7FF8h
        defs    codeLimit - $,0FFh
        defs    8,0FFh                  ; the controller's registers cover these
