; Entries that this library does not have yet: a program that calls one of them stops with a message.

@fileAssignText:
@fileAssignTyped:
@fileAssignUntyped:
@fileReset:
@fileRewrite:
@fileClose:
@fileErase:
@fileFlush:
@fileRename:
@fileSeek:
@filePosition:
@fileSize:
@fileEof:
@fileEoln:
@fileSeekEof:
@fileSeekEoln:
@fileRead:
@fileWrite:
@fileBlockRead:
@fileBlockWrite:
@fileBlockCheck:
@selectOutput:
@selectInput:
@selectStandardOutput:
@selectStandardInput:
@chain:
@execute:
@overlayCall:
@lowVideo:
@normVideo:
@highVideo:
@crtInit:
@crtExit:
@bios:
@biosHL:
@userBreakPoll:
        ld      hl,_text
        call    @writeString
        jp      @halt
_text:
        defb    _end - $ - 1,13,10,'Entry not in this library',13,10
_end:

; Variables of such entries.
@inputFile:             defs 4
@outputFile:            defs 4
@conFile:               defs 4
@trmFile:               defs 4
@kbdFile:               defs 4
@lstFile:               defs 4
@auxFile:               defs 4
@usrFile:               defs 4
@conStPtr:              defs 2
@conInPtr:              defs 2
@conOutPtr:             defs 2
@lstOutPtr:             defs 2
@auxInPtr:              defs 2
@auxOutPtr:             defs 2
@usrInPtr:              defs 2
@usrOutPtr:             defs 2
@cBreak:                defs 1
