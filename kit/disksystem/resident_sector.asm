; A sector's bytes between the controller, which is in page 1, and memory of the caller that lies there too. The page is
; changed twice for each byte: 100 of the 114 T-states that a byte takes on the disk.

; readHidden: In: HL = address, C = slotPort, D = the caller's slots, E = those with the ROM; the command is running, its first
; byte may be there, and interrupts are off. Out: HL = address after the bytes. Changes AF.
readHiddenByte:
        ld      a,(fdcData)
        out     (c),d
        ld      (hl),a
        inc     hl
        out     (c),e
readHidden:
        ld      a,(fdcLines)
        add     a,a
        jr      nc,readHiddenByte
        jp      m,readHidden
        ret

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
