// Names of the program's controls, for code, dialog templates, tests and the test driver. Only #defines: the
// resource compiler reads this file too.
#pragma once

// Menu commands, in menu order.
#define mnuFile 1001
#define mnuNewMenu 1002
#define mnuNew 1003
#define mnuNewInc 1004
#define mnOpen 1005
#define mnuOpenProject 1006
#define mnuFileOpen 1007
#define mnuOpenIncfile 1008
#define mnuSave 1009
#define mnuSavePrj 1010
#define mnuSaveFile 1011
#define mnuseparator0 1012
#define mnuRefresh 1013
#define mnuProp 1014
#define mnuseparator10 1015
#define mnuCompile 1016
#define mnuCompileCHN 1017
#define mnuCompileRun 1018
#define mnuseparator2 1019
#define mnuPrint 1020
#define mnuseparator3 1021
#define mnurecent_0 1022
#define mnurecent_1 1023
#define mnurecent_2 1024
#define mnurecent_3 1025
#define mnurecent_4 1026
#define mnseparator1 1027
#define mnuExit 1028
#define mnuEdit 1029
#define mnuCut 1030
#define mnuCopy 1031
#define mnuPaste 1032
#define mnuDelete 1033
#define mnuspearator5 1034
#define mnuFind 1035
#define mnuFindNext 1036
#define mnuReplace 1037
#define mnuSeparator7 1038
#define mnuUndo 1039
#define mnuRedo 1040
#define mnuSeparator6 1041
#define mnuClear 1042
#define mnuseparator4 1043
#define mnupreferences 1044
#define mnuTools 1045
#define mnuConvPal 1046
#define mnuImgConv 1047
#define mnuCalc 1048
#define mnuWindow 1049
#define mnuSplit 1050
#define mnuShowProjectTree 1051
#define mnuHelp 1052
#define mnuRefHelp 1053
#define mnseparator0 1054
#define mnuAbout 1055

// Keys of the main window that are in no menu.
#define keyFind 1101
#define keyFindNext 1102
#define keyReplace 1103
#define keyGoToLine 1104
#define keyUndo 1105
#define keyReload 1106
#define keyTree 1107
#define keyDefinition 1108
#define keyBack 1109
#define keyFindInProject 1110
#define keyComment 1111
#define keyDuplicate 1112
#define keyMoveUp 1113
#define keyMoveDown 1114
#define keyMarkWord 1115
#define keyMatch 1116
#define keyFold 1117

// The main window.
#define Tavrel_Icon 100
#define Template_Icon 101
#define Form1_Code1 1201
#define Form1_TV 1202
#define Form1_StatusBar1 1203
#define Form1_PicBKG 1204
#define Form1_Timer1 1205

// The progress window.
#define Form2_Dialog 200
#define Form2_Text1 1301
#define Form2_Image1_0 1302
#define Form2_Image1_1 1303
#define Form2_Image1_2 1304
#define Form2_Image1_3 1305
#define Form2_Image1_4 1306
#define Form2_Timer1 1307
#define Form2_Timer2 1308

// The project properties.
#define Form3_Dialog 300
#define Form3_Text1 1401
#define Form3_Text3 1402
#define Form3_Text4 1403
#define Form3_Command1 1404
#define Form3_Command2 1405

// The preferences.
#define Form4_Dialog 400
#define Form4_Frame1 1501
#define Form4_Label1 1502
#define Form4_Text1 1503
#define Form4_Command3 1504
#define Form4_Label2 1505
#define Form4_Text2 1506
#define Form4_Frame2 1507
#define Form4_Label3 1508
#define Form4_Text3 1509
#define Form4_Command4 1510
#define Form4_Label4 1511
#define Form4_cmbFontSize 1512
#define Form4_Check1 1513
#define Form4_Check2 1514
#define Form4_Check3 1515
#define Form4_Chktooltip 1516
#define Form4_Command1 1517
#define Form4_Command2 1518

// The New Project dialog.
#define Form5_Dialog 500
#define Form5_LVProjects 1601
#define Form5_Check1 1602
#define Form5_Command1 1603
#define Form5_Command2 1604

// The Go to line dialog.
#define GoToLine_Dialog 550
#define GoToLine_Label 1651
#define GoToLine_Number 1652

// The About dialog.
#define Form6_Dialog 600
#define Form6_Label1 1701
#define Form6_Label2 1702
#define Form6_Label3 1703
#define Form6_Timer1 1704
#define Form6_Icon 1705
#define Form6_History 1706
#define Form6_Version 1707

// The history.
#define Form7_Dialog 700
#define Form7_Text1 1801

// The palette converter.
#define frmConvPal_Dialog 800
#define frmConvPal_Text1 1901
#define frmConvPal_Text2 1902
#define frmConvPal_Command1 1903
#define frmConvPal_Command2 1904
#define frmConvPal_Command3 1905
#define frmConvPal_Command4 1906
#define frmConvPal_Command5 1907
#define frmConvPal_Before 1908
#define frmConvPal_After 1909
#define frmConvPal_Hint 1910
