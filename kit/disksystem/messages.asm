; The texts, each ending with 0.

noMemoryText:   defb    'The disk system needs 64 kB of RAM',13,10,0
titleText:      defb    'Tavrel disk system',13,10,0
notOursText:    defb    'Not a disk of this system',13,10,0
errorTexts:     defb    'Write protected',0
                defb    'Not ready',0
                defb    'Bad data',0
                defb    'Seek error',0
                defb    'Sector not found',0
                defb    'Write error',0
                defb    'Disk error',0
                defb    'Disk error',0
readingText:    defb    ' reading drive ',0
writingText:    defb    ' writing drive ',0
questionText:   defb    'Abort, Retry, Ignore? ',0
badCommandText: defb    'Bad command or file name',13,10,0
tooBigText:     defb    'Program too big',13,10,0
cannotReadText: defb    'Cannot read the program',13,10,0
