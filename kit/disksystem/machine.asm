; The machine: ports, the BIOS's entries and work area, the controller. Every address is a published one of the MSX standard.

; Slots.
slotPort        equ 0A8h        ; two bits a page
subslotRegister equ 0FFFFh      ; of the primary slot in page 3; reads inverted
expandedSlots   equ 0FCC1h      ; EXPTBL: four bytes, bit 7 set for an expanded primary slot
subslotTable    equ 0FCC5h      ; SLTTBL: what the four subslot registers hold

; Entries of the BIOS.
biosReadSlot    equ 000Ch
biosWriteSlot   equ 0014h
biosCallSlot    equ 001Ch
biosEnableSlot  equ 0024h
biosInterrupt   equ 0038h
biosInitText    equ 006Ch
biosKeyStatus   equ 009Ch       ; CHSNS
biosGetKey      equ 009Fh       ; CHGET
biosPutChar     equ 00A2h       ; CHPUT
biosPrint       equ 00A5h       ; LPTOUT
biosPrinterState equ 00A8h      ; LPTSTT

; Bytes of the BIOS that tell what machine it is.
identityByte    equ 002Bh       ; bit 7: 50 frames a second
versionByte     equ 002Dh       ; 0: MSX1

; The BIOS's work area.
lineLength40    equ 0F3AEh      ; LINL40: columns of screen 0
columns         equ 0F3B0h      ; LINLEN: columns of the screen
nextKey         equ 0F3FAh      ; GETPNT: address of the key that is read next
breakFlag       equ 0FC9Bh      ; INTFLG: 3 after CTRL+STOP
timerHook       equ 0FD9Fh      ; H.TIMI, five bytes

; The clock chip of MSX2 machines: 13 registers of four bits in each of four blocks.
clockAddress    equ 0B4h
clockData       equ 0B5h

; The floppy disk controller, a WD2793, and the latches beside it.
fdcCommand      equ 7FF8h       ; written; reads as the status
fdcTrack        equ 7FF9h
fdcSector       equ 7FFAh
fdcData         equ 7FFBh
fdcSide         equ 7FFCh       ; bit 0
fdcDrive        equ 7FFDh       ; bits 1-0 the drive, bit 7 the motor, bit 6 the lamp; reads bit 2 = 0: disk changed
fdcLines        equ 7FFFh       ; bit 7 = 0: a byte is wanted or there; bit 6 = 0: the command has ended

; Control characters.
ctrlC           equ 03h
backSpace       equ 08h
tab             equ 09h
lineFeed        equ 0Ah
formFeed        equ 0Ch
carriageReturn  equ 0Dh
ctrlN           equ 0Eh
ctrlP           equ 10h
ctrlS           equ 13h
ctrlX           equ 18h
ctrlZ           equ 1Ah
escape          equ 1Bh
deleteKey       equ 7Fh
