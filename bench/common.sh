# Sourced by the benchmarks that need Windows: the surroundings of Wine with a display of its own, until the end.
# shellcheck shell=bash
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1
export TAVREL_WINEPREFIX=${TAVREL_WINEPREFIX:-$root/out/wineprefix-bench}
source setup/lib.sh
source setup/wine.sh
work=$(mktemp -d)
make_wine_prefix || exit 1
start_display || exit 1
wineserver -p < /dev/null > /dev/null 2>&1
wine cmd /c exit < /dev/null > /dev/null 2>&1 # starts Wine's services apart from the pipes below
wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f < /dev/null > /dev/null 2>&1 # no window manager to wait for
clean_up() {
  wineserver -k > /dev/null 2>&1
  stop_display
  rm -rf "$work"
}
trap clean_up EXIT

# measure PROGRAM ARGUMENTS...: runs one of out/bin's programs and shows what it says.
measure() {
  local program=$root/out/bin/$1.exe
  shift
  if [[ ! -f $program ]]; then
    echo "bench: $program is not there; ./run or ./test builds it" >&2
    return 1
  fi
  wine "$program" "$@" < /dev/null 2>&1 | tr -d '\r'
  return "${PIPESTATUS[0]}"
}
