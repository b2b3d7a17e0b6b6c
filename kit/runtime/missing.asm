; Entries that this library does not have yet: a program that calls one of them stops with a message.

@overlayCall:
        ld      hl,_text
        call    @writeString
        jp      @halt
_text:
        defb    _end - $ - 1,13,10,'Entry not in this library',13,10
_end:
