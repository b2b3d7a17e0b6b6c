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
                defb    'Another disk',0
readingText:    defb    ' reading drive ',0
writingText:    defb    ' writing drive ',0
questionText:   defb    'Abort, Retry, Ignore? ',0
badCommandText: defb    'Bad command or file name',13,10,0
tooBigText:     defb    'Program too big',13,10,0
cannotReadText: defb    'Cannot read the program',13,10,0
nothingText:    defb    0
notFoundText:   defb    'File not found',13,10,0
missingNameText: defb   'A file name is missing',13,10,0
noDriveText:    defb    'There is no such drive',13,10,0
cannotRenameText: defb  'No such file, or the new name is taken',13,10,0
sureText:       defb    'All files? (Y/N) ',0
pauseText:      defb    'Press a key to go on ',0
filesText:      defb    ' files',0
kiloFreeText:   defb    'K free',13,10,0
copiedText:     defb    ' copied',13,10,0
ontoItselfText: defb    'A file cannot be copied onto itself',13,10,0
directoryFullText: defb 'The file cannot be made',13,10,0
diskFullText:   defb    'Disk full',13,10,0
dateText:       defb    'Date: ',0
timeText:       defb    'Time: ',0
newText:        defb    'New:  ',0
badDateText:    defb    'No such date: year-month-day',13,10,0
badTimeText:    defb    'No such time: hours:minutes:seconds',13,10,0
damagedText:    defb    13,10,'The disk',39,'s tables are damaged: nothing is written to it',13,10,0
choiceText:     defb    '1 - one side',13,10,'2 - two sides',13,10,0
