; Installs Tavrel for the current user. makensis gets from packaging/build:
;   VERSION, STAGE (folder with the files), LISTS (folder with install.nsh and uninstall.nsh), OUTPUT
Target amd64-unicode
Unicode true
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh

Name "Tavrel"
Caption "Tavrel ${VERSION}"
BrandingText "Tavrel ${VERSION}"
OutFile "${OUTPUT}"
RequestExecutionLevel user
SetCompressor /SOLID lzma
; No administrator's rights are asked for, so everything goes to the user's own part of the registry.
!define uninstallKey "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tavrel"
!define classes "Software\Classes"
InstallDirRegKey HKCU "${uninstallKey}" "InstallLocation"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Tavrel"
VIAddVersionKey "FileDescription" "Tavrel set-up"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "See licences.txt in the installed folder"

!define MUI_ICON "${STAGE}\tavrel.ico"
!define MUI_UNICON "${STAGE}\tavrel.ico"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_DIRECTORYPAGE_TEXT_TOP "Choose a folder whose whole path has no blanks: the compiler runs under DOSBox, which reads \
paths as DOS does."
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE refuseUnusableFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\Tavrel.exe"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; strangerIn: puts the first character of $0 that a batch file and DOSBox do not take in a path into $1, or nothing.
; In a user's folder that may be a blank, and also a letter that DOS knows under another number.
!define usable "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789\:._-~"
Function strangerIn
  StrLen $2 $0
  StrLen $5 "${usable}"
  StrCpy $3 0
  ${While} $3 < $2
    StrCpy $1 $0 1 $3
    StrCpy $4 0
    ${Do}
      StrCpy $6 "${usable}" 1 $4
      ${If} $6 == $1
        ${Break}
      ${EndIf}
      IntOp $4 $4 + 1
    ${LoopUntil} $4 >= $5
    ${If} $4 >= $5
      Return
    ${EndIf}
    IntOp $3 $3 + 1
  ${EndWhile}
  StrCpy $1 ""
FunctionEnd

Function refuseUnusableFolder
  StrCpy $0 $INSTDIR
  Call strangerIn
  StrCpy $7 $WINDIR 2
  ${If} $1 == " "
    MessageBox MB_OK|MB_ICONEXCLAMATION "The path$\n$INSTDIR$\nhas a blank, and Tavrel cannot compile from there. Choose another \
folder, $7\Tavrel for example." /SD IDOK
    SetErrorLevel 2
    Abort
  ${ElseIf} $1 != ""
    MessageBox MB_OK|MB_ICONEXCLAMATION "The path$\n$INSTDIR$\nholds the character $1, and Tavrel cannot compile from there. Choose \
a folder of plain letters and digits." /SD IDOK
    SetErrorLevel 2
    Abort
  ${EndIf}
FunctionEnd

; Puts the folder into $INSTDIR that is best when nobody has chosen one: the user's own; else the same by its short name, which
; has no blank; else one in the root of the drive that nobody has made yet, since what is there may be a trap of another user's.
Function chooseFolder
  StrCpy $0 "$LOCALAPPDATA\Tavrel"
  Call strangerIn
  ${If} $1 != ""
    GetFullPathName /SHORT $0 $LOCALAPPDATA
    ${If} $0 == "" ; the folder is not there
      StrCpy $0 " "
    ${EndIf}
    StrCpy $0 "$0\Tavrel"
    Call strangerIn
  ${EndIf}
  ${If} $1 != ""
    StrCpy $8 $WINDIR 2
    StrCpy $0 "$8\Tavrel"
    StrCpy $9 1
    ${While} ${FileExists} "$0\*.*"
      IntOp $9 $9 + 1
      StrCpy $0 "$8\Tavrel$9"
    ${EndWhile}
  ${EndIf}
  StrCpy $INSTDIR $0
FunctionEnd

; Makes $INSTDIR. Outside the user's own folders every user of the machine may write into a new folder, and could so put a program
; of theirs in the place of one of ours; there, others are only allowed to read. On a drive without rights nothing changes.
Function makeFolder
  ${If} ${FileExists} "$INSTDIR\*.*"
    Return
  ${EndIf}
  CreateDirectory $INSTDIR
  StrLen $1 "$PROFILE\"
  StrCpy $2 "$INSTDIR\" $1
  GetFullPathName /SHORT $3 $PROFILE
  StrLen $4 "$3\"
  StrCpy $5 "$INSTDIR\" $4
  ${If} $2 == "$PROFILE\"
  ${OrIf} $5 == "$3\"
    Return
  ${EndIf}
  ; The SID of this user, as text in $4.
  StrCpy $4 ""
  System::Call 'kernel32::GetCurrentProcess() p .r0'
  System::Call 'advapi32::OpenProcessToken(p r0, i 8, *p .r1) i .r0' ; 8: TOKEN_QUERY
  ${If} $0 <> 0
    System::Alloc 256
    Pop $2
    System::Call 'advapi32::GetTokenInformation(p r1, i 1, p r2, i 256, *i .r3) i .r0' ; 1: TokenUser
    ${If} $0 <> 0
      System::Call '*$2(p .r3)'
      System::Call 'advapi32::ConvertSidToStringSidW(p r3, *p .r0) i .r5'
      ${If} $5 <> 0
        System::Call '*$0(&w256 .r4)'
        System::Call 'kernel32::LocalFree(p r0)'
      ${EndIf}
    ${EndIf}
    System::Free $2
    System::Call 'kernel32::CloseHandle(p r1)'
  ${EndIf}
  ${If} $4 == ""
    Return
  ${EndIf}
  ; Protected from the root's rights: everything for the system, administrators and this user, reading for all others.
  StrCpy $5 "D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FA;;;$4)(A;OICI;0x1200a9;;;BU)"
  System::Call 'advapi32::ConvertStringSecurityDescriptorToSecurityDescriptorW(w r5, i 1, *p .r0, p 0) i .r1'
  ${If} $1 <> 0
    System::Call 'advapi32::SetFileSecurityW(w "$INSTDIR", i 4, p r0) i .r1' ; 4: DACL_SECURITY_INFORMATION
    System::Call 'kernel32::LocalFree(p r0)'
  ${EndIf}
FunctionEnd

Function .onInit
  ${If} $INSTDIR == "" ; no /D and not installed yet
    Call chooseFolder
  ${EndIf}
  ${If} ${Silent} ; nobody will see the page that refuses
    Call refuseUnusableFolder
  ${EndIf}
FunctionEnd

; A text of the settings file: its length in two bytes, the low one first, and its bytes. The path has nothing but ASCII,
; or strangerIn had refused it.
!macro writeText text
  StrLen $1 "${text}"
  IntOp $2 $1 & 255
  FileWriteByte $0 $2
  IntOp $2 $1 >> 8
  FileWriteByte $0 $2
  FileWrite $0 "${text}"
!macroend
!macro writeNumber low high
  FileWriteByte $0 ${low}
  FileWriteByte $0 ${high}
!macroend

; The settings of a first start, with the emulator that comes along. Settings that are there already stay.
Function chooseOwnEmulator
  ${IfNot} ${FileExists} "$INSTDIR\emulator\openmsx\openmsx.exe"
  ${OrIf} ${FileExists} "$INSTDIR\config.cfg"
    Return
  ${EndIf}
  ClearErrors
  FileOpen $0 "$INSTDIR\config.new" w
  !insertmacro writeText "$INSTDIR\emulator\msx.exe"
  !insertmacro writeText "-diska %dsk -msx2"
  !insertmacro writeNumber 0 0 ; five recent files
  !insertmacro writeNumber 0 0
  !insertmacro writeNumber 0 0
  !insertmacro writeNumber 0 0
  !insertmacro writeNumber 0 0
  !insertmacro writeText "$INSTDIR\dsk\"
  !insertmacro writeNumber 0 0 ; no association of its own: the page of components asks for that
  !insertmacro writeNumber 0 0 ; asks before it saves
  !insertmacro writeNumber 255 255 ; New Project dialog at the start
  !insertmacro writeNumber 255 255 ; signatures
  !insertmacro writeNumber 11 0 ; points
  !insertmacro writeText "Terminal"
  FileClose $0
  ${If} ${Errors} ; a full disk: without the file Tavrel starts with its defaults
    Delete "$INSTDIR\config.new"
  ${Else}
    Rename "$INSTDIR\config.new" "$INSTDIR\config.cfg"
  ${EndIf}
FunctionEnd

Section "Tavrel" tavrelSection
  SectionIn RO
  ; Files of an older version that this one no longer has go with it; its settings stay.
  ${If} ${FileExists} "$INSTDIR\uninstall.exe"
    ExecWait '"$INSTDIR\uninstall.exe" /S /UPGRADE _?=$INSTDIR'
  ${EndIf}
  Call makeFolder
  !include "${LISTS}\install.nsh"
  Call chooseOwnEmulator
  SetOutPath $INSTDIR
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "${uninstallKey}" "DisplayName" "Tavrel ${VERSION}"
  WriteRegStr HKCU "${uninstallKey}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${uninstallKey}" "DisplayIcon" "$INSTDIR\tavrel.ico"
  WriteRegStr HKCU "${uninstallKey}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${uninstallKey}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${uninstallKey}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${uninstallKey}" "NoModify" 1
  WriteRegDWORD HKCU "${uninstallKey}" "NoRepair" 1
SectionEnd

Section "Start menu entry" menuSection
  SetOutPath $INSTDIR ; becomes the folder that the entry starts the program in
  CreateShortcut "$SMPROGRAMS\Tavrel.lnk" "$INSTDIR\Tavrel.exe" "" "$INSTDIR\tavrel.ico"
SectionEnd

; The same names and command as Edit > Preferences writes, so that either can replace the other.
Section "Open .tpj files" typeSection
  WriteRegStr HKCU "${classes}\.tpj" "" "Tavrel.file"
  WriteRegStr HKCU "${classes}\.tpj" "Content Type" "text"
  WriteRegStr HKCU "${classes}\Tavrel.file" "" "Tavrel Turbo Pascal Project"
  WriteRegStr HKCU "${classes}\Wendrix.file\DefaultIcon" "" "$INSTDIR\tavrel.ico" ; the program's own key
  WriteRegStr HKCU "${classes}\Tavrel.file\shell" "" "Open"
  WriteRegStr HKCU "${classes}\Tavrel.file\shell\Open\command" "" "$INSTDIR\Tavrel.exe %1"
  ${RefreshShellIcons}
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${tavrelSection} "The program, the compiler and everything that it needs."
  !insertmacro MUI_DESCRIPTION_TEXT ${menuSection} "Tavrel in the Start menu."
  !insertmacro MUI_DESCRIPTION_TEXT ${typeSection} "A double click on a project file opens it."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; What Windows keeps for .tpj files goes only when it is about this folder.
Function un.forgetFileType
  ReadRegStr $0 HKCU "${classes}\Tavrel.file\shell\Open\command" ""
  ${If} $0 == "$INSTDIR\Tavrel.exe %1"
    DeleteRegKey HKCU "${classes}\Tavrel.file"
    ReadRegStr $0 HKCU "${classes}\.tpj" ""
    ${If} $0 == "Tavrel.file"
      DeleteRegKey HKCU "${classes}\.tpj"
    ${EndIf}
  ${EndIf}
  ReadRegStr $0 HKCU "${classes}\Wendrix.file\DefaultIcon" "" ; written by the program's own registration
  ${If} $0 == "$INSTDIR\tavrel.ico"
    DeleteRegKey HKCU "${classes}\Wendrix.file\DefaultIcon"
    DeleteRegKey /ifempty HKCU "${classes}\Wendrix.file"
  ${EndIf}
  ${un.RefreshShellIcons}
FunctionEnd

Section "Uninstall"
  !include "${LISTS}\uninstall.nsh"
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/UPGRADE" $2
  ${If} ${Errors}
    ; What the program itself writes into its folder.
    Delete "$INSTDIR\config.cfg"
    Delete "$INSTDIR\compiler\turbopc.bat"
    Delete "$INSTDIR\compiler\rundb.bat"
    Delete "$INSTDIR\stdout.txt"
    Delete "$INSTDIR\stderr.txt"
    ; What the emulator keeps; pictures and saved states that the user made stay.
    Delete "$INSTDIR\emulator\data\disk-a.dsk"
    Delete "$INSTDIR\emulator\data\disk-b.dsk"
    Delete "$INSTDIR\emulator\data\share\imgui.ini"
    Delete "$INSTDIR\emulator\data\share\settings.xml"
    Delete "$INSTDIR\emulator\data\share\*.history"
    Delete "$SMPROGRAMS\Tavrel.lnk"
    Call un.forgetFileType
    DeleteRegKey HKCU "${uninstallKey}"
    Delete "$INSTDIR\uninstall.exe"
  ${EndIf}
  !include "${LISTS}\uninstall-folders.nsh"
SectionEnd
