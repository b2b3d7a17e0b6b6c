; The caller's file control block. The system works on a copy in page 3, so that the block may lie anywhere.

; takeBlock: In: DE = callDe = block. Out: fcb = its 37 bytes. Changes AF, BC, DE, HL.
takeBlock:
        ld      hl,(callDe)
        ld      de,fcb
        ld      bc,fcbSize
        jp      copyUser

; giveBlock, giveBlockRandom, giveBlockAll: the first 33 bytes of the copy, those with the three bytes of the random record,
; or all 37 go back to the caller. (A transfer at 0080h must not be hit where a block lies at 005Ch.) Change BC, DE, HL; keep AF.
giveBlock:
        ld      bc,fcbRandom - fcb
        jr      giveBytes
giveBlockRandom:
        ld      bc,fcbSize - 1
        jr      giveBytes
giveBlockAll:
        ld      bc,fcbSize
giveBytes:
        push    af
        ld      hl,fcb
        ld      de,(callDe)
        call    copyUser
        pop     af
        ret
