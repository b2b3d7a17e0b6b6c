# Sourced after lib.sh: Wine's surroundings, a private display, Windows paths.
# shellcheck shell=bash

export WINEPREFIX=${TAVREL_WINEPREFIX:-$TAVREL_OUT/wineprefix}
export WINEDEBUG=-all
# No .NET, no browser engine; and no menu entries or file types written into the user's own desktop.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
export LC_ALL=C.UTF-8

# windows_path PATH: the name that a Windows program knows an absolute path by.
windows_path() { printf 'Z:%s\n' "${1//\//\\}"; }

# make_wine_prefix: makes WINEPREFIX unless it is complete; the stamp comes last, so half a prefix is made anew.
make_wine_prefix() {
  local stamp=$WINEPREFIX/.complete
  if [[ -f $stamp ]]; then return 0; fi
  command -v wine > /dev/null || { say "set-up: Wine is not installed"; return 1; }
  say "set-up: making a Wine prefix"
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  env -u DISPLAY timeout 300 wineboot -i < /dev/null > /dev/null 2>&1 || return 1
  timeout 60 wineserver -w
  [[ -f $WINEPREFIX/system.reg ]] || return 1
  touch "$stamp"
}

# start_display: a private X server on a free display number; sets DISPLAY and display_process.
start_display() {
  local number_file tries
  command -v Xvfb > /dev/null || { say "set-up: Xvfb is not installed"; return 1; }
  number_file=$(mktemp)
  Xvfb -displayfd 5 -noreset -nolisten tcp -screen 0 1280x900x24 5> "$number_file" < /dev/null > /dev/null 2>&1 &
  display_process=$!
  for ((tries = 0; tries < 300; ++tries)); do
    [[ -s $number_file ]] && break
    kill -0 "$display_process" 2> /dev/null || break
    sleep 0.1
  done
  DISPLAY=:$(cat "$number_file")
  rm -f "$number_file"
  if [[ $DISPLAY == : ]]; then say "set-up: Xvfb does not start"; return 1; fi
  export DISPLAY
}

# stop_display: ends what start_display started.
stop_display() {
  if [[ -n ${display_process:-} ]]; then
    kill "$display_process" 2> /dev/null || true
    wait "$display_process" 2> /dev/null || true
    display_process=
  fi
}
