# Sourced by the suite: a printer that is a file. Wine's PostScript driver prints into it, each letter by its name.
# shellcheck shell=bash

printers='HKLM\System\CurrentControlSet\Control\Print'
user_printers='HKCU\Software\Microsoft\Windows NT\CurrentVersion'
paper=$WINEPREFIX/drive_c/windows/system32/spool/drivers/x64/3/tavrel.ppd

registry_file() { # LINES: made part of the registry
  printf 'Windows Registry Editor Version 5.00\r\n\r\n%s\r\n' "$1" > "$work.reg"
  wine regedit /S "$(windows_name "$work.reg")" < /dev/null > /dev/null 2>&1
}

# add_printer FILE: makes it the default printer.
add_printer() {
  local port
  port=$(windows_name "$1")
  port=${port//\\/\\\\}
  trap 'remove_printer; cleanup' EXIT
  cat > "$paper" << 'END'
*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "TAVREL.PPD"
*Product: "(Tavrel)"
*PSVersion: "(3010.000) 0"
*ModelName: "Tavrel"
*NickName: "Tavrel"
*LanguageLevel: "2"
*ColorDevice: False
*DefaultResolution: 300dpi
*OpenUI *PageSize: PickOne
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*CloseUI: *PageSize
*DefaultImageableArea: A4
*ImageableArea A4/A4: "18 36 577 806"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
END
  registry_file '[HKEY_LOCAL_MACHINE\System\CurrentControlSet\Control\Print\Environments\Windows x64\Drivers\Version-3\Tavrel]
"Configuration File"="wineps.drv"
"Driver"="wineps.drv"
"Data File"="tavrel.ppd"
"Version"=dword:00000003
"Datatype"="RAW"

[HKEY_LOCAL_MACHINE\System\CurrentControlSet\Control\Print\Printers\Tavrel]
"Name"="Tavrel"
"Port"="'"$port"'"
"Printer Driver"="Tavrel"
"Print Processor"="winprint"
"Datatype"="RAW"
"Description"=""
"Location"=""
"Parameters"=""
"Separator File"=""
"Share Name"=""
"Attributes"=dword:00000040
"Status"=dword:00000000

[HKEY_CURRENT_USER\Software\Microsoft\Windows NT\CurrentVersion\Windows]
"Device"="Tavrel,wineps.drv,'"$port"'"

[HKEY_CURRENT_USER\Software\Microsoft\Windows NT\CurrentVersion\Devices]
"Tavrel"="wineps.drv,'"$port"'"'
}

# remove_printer: other suites find the world without one.
remove_printer() {
  trap cleanup EXIT
  rm -f "$paper"
  {
    wine reg delete "$printers\\Printers\\Tavrel" /f
    wine reg delete "$printers\\Environments\\Windows x64\\Drivers\\Version-3\\Tavrel" /f
    wine reg delete "$user_printers\\Windows" /v Device /f
    wine reg delete "$user_printers\\Devices" /v Tavrel /f
  } < /dev/null > /dev/null 2>&1
}

# printed FILE: its letters, digits, blanks and stops, in the order in which they were printed.
printed() {
  grep -a ' glyphshow' "$1" | sed -E 's|^/space .*| |; s|^/period .*|.|; s|^/semicolon .*|;|; s|^/([A-Za-z]) .*|\1|; t; d' |
    tr -d '\n'
}
