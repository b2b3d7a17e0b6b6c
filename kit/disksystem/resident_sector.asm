; A sector's bytes between the controller, which is in page 1, and memory of the caller that lies there too. The page is
; changed twice for each byte: 100 of the 114 T-states that a byte takes on the disk.

; readHidden: In: HL = address, B = first byte, C = slotPort, D = the caller's slots, E = those with the ROM; the command is
; running and interrupts are off. Out: HL = address after the bytes. Changes AF, B.
readHidden:
        out     (c),d
        ld      (hl),b
        inc     hl
        out     (c),e
_wait:
        ld      a,(fdcLines)
        add     a,a
        jr      nc,_byte
        jp      m,_wait
        ret
_byte:
        ld      a,(fdcData)
        ld      b,a
        jp      readHidden

; writeHidden: as readHidden, from memory to the disk.
writeHiddenByte:
        out     (c),d
        ld      a,(hl)
        inc     hl
        out     (c),e
        ld      (fdcData),a
writeHidden:
        ld      a,(fdcLines)
        add     a,a
        jr      nc,writeHiddenByte
        jp      m,writeHidden
        ret
