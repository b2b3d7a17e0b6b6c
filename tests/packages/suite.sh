#!/bin/bash
# What people get: the versions in it, the packages made of the program folder, byte-identical each time; the zip
# unpacked and used as the guide says; the installer, silent under Wine, from installation to uninstallation. Needs a
# display, Wine with WINEPREFIX set, an assembled program folder, drive.exe, msxrun, makensis, zip and unzip.
set -u
source "$(dirname "$0")/../acceptance/using.sh"
source "$root/setup/lib.sh"
version=$(tavrel_version)
packages=$root/out/packages
guide=$root/docs/guide/first-program.md
zip=$packages/Tavrel-$version-win64.zip
installer=$packages/Tavrel-$version-win64-setup.exe
uninstall_key='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Tavrel'
windows_libraries="advapi32|comctl32|comdlg32|gdi32|imm32|kernel32|msimg32|msvcrt|ole32|oleaut32|shell32|user32"
windows_libraries+="|windowscodecs|winmm|ws2_32|wsock32|dsound|netapi32|opengl32|secur32|setupapi|userenv|version"

registry() { wine reg query "$@" < /dev/null 2> /dev/null | tr -d '\r'; }
in_registry() { if wine reg query "$1" < /dev/null > /dev/null 2>&1; then echo there; else echo gone; fi; }
wait_until() { # COMMAND...: half a minute at most
  local tries
  for ((tries = 0; tries < 300; ++tries)); do
    if "$@"; then return 0; fi
    sleep 0.1
  done
  return 1
}

# holds NAME PART TEXT: for texts that are too long to show.
holds() { same "$1" "there" "$(grep -q -F -- "$2" <<< "$3" && echo there)"; }

# The version is said in one place; what Windows shows, and what the programs need, is in the programs.
programs() {
  local name text
  same "the history begins with the version" "Tavrel $version" "$(head -n 1 "$program/history.txt" | tr -d '\r')"
  check "the About box says the version" "Version $version" "$(strings -el "$program/Tavrel.exe" | grep -x "Version .*")"
  for name in Tavrel.exe msximg.exe dsk/dsktool.exe emulator/msx.exe; do
    text=$(strings -el "$program/$name")
    same "$name has the version in its properties" "FileVersion $version" \
      "FileVersion $(grep -A 1 -x FileVersion <<< "$text" | sed -n 2p)"
    text=$(strings -n 8 "$program/$name")
    holds "$name asks for no rights" 'level="asInvoker"' "$text"
    holds "$name wants the newer controls" 'name="Microsoft.Windows.Common-Controls" version="6.0.0.0"' "$text"
    holds "$name knows of several displays" 'PerMonitorV2' "$text"
    holds "$name says Windows 7" '{35138b9a-5d96-4fbd-8e2d-a2440225f93a}' "$text"
    holds "$name says Windows 10" '{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}' "$text"
    same "$name leaves the code page alone" "0" "$(grep -c '<activeCodePage' <<< "$text")"
  done
  for name in Tavrel.exe msximg.exe dsk/dsktool.exe compiler/DOSBox-0.74/DOSBox.exe emulator/msx.exe emulator/openmsx/openmsx.exe; do
    if [[ $name == */openmsx.exe && ! -f $program/$name ]]; then
      echo "skip $name: there is no openMSX for Windows here"
      continue
    fi
    same "$name needs no DLL but those of Windows" "" "$(x86_64-w64-mingw32-objdump -p "$program/$name" |
      sed -n 's/.*DLL Name: //p' | grep -v -i -x -E "($windows_libraries)\.dll")"
  done
  same "Tavrel's own licence lies beside it" "$(cat "$root/LICENSE")" "$(tr -d '\r' < "$program/license.txt")"
  text=$(tr -d '\r' < "$program/licences.txt")
  holds "the licences name the package of sources" "Tavrel-$version-sources.zip" "$text"
  for name in "GNU GENERAL PUBLIC LICENSE" "GNU LESSER GENERAL PUBLIC LICENSE" \
    "License for Lexilla, Scintilla, and SciTE" "winpthreads" "GCC RUNTIME LIBRARY EXCEPTION"; do
    holds "the licences hold: $name" "$name" "$text"
  done
  holds "the licences name the source of DOSBox" "$(grep -o 'dosbox_.*' "$root/setup/sources.sha256")" "$text"
}

# The second time the program folder has other times and a file that is not delivered, and the packager other habits.
packaging() {
  local first=$work.first
  rm -f "$zip" "$installer"
  mkdir "$first"
  check "the packages are made" "done" "$("$root/packaging/build" --no-build win64 installer > "$work.log" 2>&1 && echo done || cat "$work.log")"
  cp "$zip" "$installer" "$first"/
  find "$program" -type f -exec touch {} +
  echo mine > "$program/mine.txt"
  check "they are made again" "done" \
    "$(umask 077 && TZ=Asia/Tokyo "$root/packaging/build" --no-build win64 installer > "$work.log" 2>&1 && echo done || cat "$work.log")"
  rm -f "$program/mine.txt"
  same "the zip is the same, byte for byte" "" "$(cmp "$first/${zip##*/}" "$zip" 2>&1)"
  same "the installer is the same, byte for byte" "" "$(cmp "$first/${installer##*/}" "$installer" 2>&1)"
  same "the zip holds what is delivered, in order" "$(sed 's|^|Tavrel/|' "$program.files" | LC_ALL=C sort)" "$(zipinfo -1 "$zip")"
  same "the zip has no extra fields" "" "$(zipinfo -v "$zip" | grep 'length of extra field' | grep -v ' 0 bytes')"
}

# The guide's first page, followed to the letter from the unpacked zip.
first_program() {
  local game=$work/HELLO
  mkdir "$work.unpacked" "$game"
  unzip -q "$zip" -d "$work.unpacked"
  program=$work.unpacked/Tavrel
  start
  same "the template is found" "" "$(drive template Empty)"
  drive file "$(windows_name "$game/HELLO")" > /dev/null
  check "the tree shows the new program" "*HELLO.PAS" "$(drive tree)"
  drive menu mnuClear > /dev/null
  drive type "$(guide_block 1 "$guide" | tr '\n' '\r')" > /dev/null
  check "F6 compiles it" "$(guide_block 2 "$guide")" "$(drive compile-and-report --key)"
  drive escape > /dev/null
  same "and it prints what the guide says" "$(guide_block 3 "$guide")" "$("$root/out/bin/msxrun" "$(find "$game" -iname hello.com)" 2>&1 | tr -d '\r')"
  drive menu mnuSavePrj > /dev/null
  stop
  same "the program ends" "ended 0" "$ended"
}

# install ARGUMENTS...: silently; the exit code goes to $code.
install() {
  code=0
  timeout 60 wine "$installer" /S "$@" < /dev/null > /dev/null 2>&1 || code=$?
}
menu_entry() { find "$WINEPREFIX/drive_c" "$WINEPREFIX"/drive_c/users/*/AppData -name Tavrel.lnk 2> /dev/null | sort -u | wc -l; }
delivered_and_different() {
  local name
  while IFS= read -r name; do cmp "$root/out/Tavrel/$name" "$program/$name" 2>&1; done < "$root/out/Tavrel.files"
}
uninstalled() { [[ ! -e $program/uninstall.exe && ! -e $program/compiler ]]; } # what goes last

installation() {
  local games=$WINEPREFIX/drive_c/TavrelTest command
  rm -rf "$games" "$WINEPREFIX/drive_c/Tavrel Test"
  install '/D=C:\Tavrel' Test # not one argument, which would get quotes: NSIS takes the rest of the command line as it is
  same "a folder with a blank is refused" "2" "$code"
  same "and nothing is written there" "" "$(ls "$WINEPREFIX/drive_c/Tavrel Test" 2> /dev/null)"

  program=$games/Tavrel
  install '/D=C:\TavrelTest\Tavrel'
  same "the installer succeeds" "0" "$code"
  same "everything is there" "" "$(delivered_and_different)"
  if [[ -f $program/emulator/openmsx/openmsx.exe ]]; then
    # The rest of that file is compared in tests/emulator, and read by the installed program below.
    check "the emulator that comes along is chosen" 'C:\TavrelTest\Tavrel\emulator\msx.exe' "$(tr -d '\0' < "$program/config.cfg")"
  else
    echo "skip the emulator that comes along is chosen: there is no openMSX for Windows here"
  fi
  check "Windows knows the installation" "Tavrel $version" "$(registry "$uninstall_key" /v DisplayName)"
  command=$(registry "HKCU\\Software\\Classes\\Tavrel.file\\shell\\Open\\command" | sed -n "s/.*REG_SZ *//p")
  same "project files open with it" "Tavrel.file C:\\TavrelTest\\Tavrel\\Tavrel.exe %1" \
    "$(registry "HKCU\\Software\\Classes\\.tpj" | sed -n "s/.*(Default) *REG_SZ *//p") $command"
  same "and have the icon key of the program's own registration only" "gone C:\\TavrelTest\\Tavrel\\tavrel.ico" \
    "$(in_registry 'HKCU\Software\Classes\Tavrel.file\DefaultIcon') $(registry \
      'HKCU\Software\Classes\Wendrix.file\DefaultIcon' | sed -n "s/.*(Default) *REG_SZ *//p")"
  same "the start menu has an entry" "1" "$(menu_entry)"

  # A project of the user's in the very folder of the program.
  mkdir "$program/mygame"
  cp "$root"/share/samples/hello/* "$program/mygame"/
  # Wine does not look for file types among the user's own, so the command is started as Windows would start it.
  # shellcheck disable=SC2086 # two words
  wine ${command/\%1/C:\\TavrelTest\\Tavrel\\mygame\\HELLO.TPJ} < /dev/null > /dev/null 2>&1 &
  check "a project file opens Tavrel" "*HELLO.PAS" "$(drive tree)"
  check "the installed compiler compiles the sample" "No errors - Sucessfully compiled" "$(drive compile-and-report --key)"
  drive close > /dev/null
  check "and the program runs" "46 of them, their sum is 4227: odd." \
    "$("$root/out/bin/msxrun" --limit 1G "$(find "$program/mygame" -iname HELLO.COM)" 2>&1)"

  rm -f "$program/history.txt"
  echo settings > "$program/config.cfg"
  install
  same "it installs over itself, into the same folder" "0 " "$code $(delivered_and_different)"
  same "the settings stay" "settings" "$(cat "$program/config.cfg")"

  ls "$program/mygame" > "$work.mine"
  wine "$program/uninstall.exe" /S < /dev/null > /dev/null 2>&1
  wait_until uninstalled
  same "of the folder only the user's project is left" "$(sed 's|^|mygame/|' "$work.mine")" \
    "$(cd "$program" && find . -type f -printf '%P\n' | LC_ALL=C sort)"
  same "of the folders too" "mygame" "$(cd "$program" && find . -mindepth 1 -type d -printf '%P\n')"
  same "Windows has forgotten the installation" "gone" "$(in_registry "$uninstall_key")"
  same "and the project files" "gone gone" \
    "$(in_registry 'HKCU\Software\Classes\Tavrel.file') $(in_registry 'HKCU\Software\Classes\.tpj')"
  same "the start menu too" "0" "$(menu_entry)"
  rm -rf "$games"
}

# Without a folder: the user's own folder for programs' data. Without a project of the user's, nothing stays.
default_folder() {
  install
  program=$(find "$WINEPREFIX/drive_c/users" -maxdepth 5 -type d -path '*/AppData/Local/Tavrel' | head -n 1)
  same "the default folder is the user's own" "0 there" "$code $([[ -f $program/Tavrel.exe ]] && echo there)"
  [[ -n $program ]] || return
  wine "$program/uninstall.exe" /S < /dev/null > /dev/null 2>&1
  wait_until uninstalled
  wait_until test ! -e "$program"
  same "nothing is left" "gone" "$([[ -e $program ]] || echo gone)"
}

# Where it installs to when nobody says; and who else may write there.
folder_with() { # LOCAL-APPDATA
  wine reg delete "$uninstall_key" /f > /dev/null 2>&1
  wine reg add "$shell_folders" /v 'Local AppData' /t REG_EXPAND_SZ /d "$1" /f > /dev/null 2>&1
  install
  registry "$uninstall_key" /v InstallLocation | sed -n 's/.*REG_SZ *//p'
}
fits() { # NAME PATTERN FOUND
  # shellcheck disable=SC2053 # a pattern is meant
  if [[ $3 == $2 ]]; then same "$1" "" ""; else same "$1" "$2" "$3"; fi
}
other_default_folders() {
  local shell_folders='HKCU\Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders' short drive=$WINEPREFIX/drive_c
  mkdir -p "$drive/users/Jane Doe/Local"
  short=$(folder_with 'C:\users\Jane Doe\Local')
  fits "a user's folder with a blank is taken by its short name" 'C:\\users\\*~*\\Local\\Tavrel' "$short"
  same "which is the same folder" uninstall.exe "$(cd "$drive/users/Jane Doe/Local/Tavrel" && ls uninstall.exe 2>&1)"
  same "without a usable folder of the user's it is one in the root" 'C:\Tavrel' "$(folder_with 'C:\users\a@b\L')"
  # The rights of Windows as Wine shows them: none for users who are neither the owner nor administrators.
  fits "where others may not write" "drwx???---" "$(stat -c %A "$drive/Tavrel")"
  same "what somebody made there before is left alone" 'C:\Tavrel2' "$(folder_with 'C:\users\a@b\L')"
  wine reg add "$shell_folders" /v 'Local AppData' /t REG_EXPAND_SZ /d '%USERPROFILE%\AppData\Local' /f > /dev/null 2>&1
  wine reg delete "$uninstall_key" /f > /dev/null 2>&1
  rm -rf "$drive/users/Jane Doe" "$drive/users/a@b" "$drive/Tavrel" "$drive/Tavrel2"
}

programs
packaging
first_program
installation
default_folder
other_default_folders
summary
