; The commands of the prompt.

commandTable:
        defb    'CLS   '
        defw    commandCls
        defb    'REM   '
        defw    commandRem
        defb    0

commandCls:
        ld      a,formFeed
        jp      showCharacter
commandRem:
        ret
