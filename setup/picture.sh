# Sourced by scripts that take pictures of the program on a private display.
# shellcheck shell=bash

# take_picture FILE.png: takes it once the screen stands still.
take_picture() {
  local before='' now tries
  for ((tries = 0; tries < 20; ++tries)); do
    sleep 0.3
    now=$(import -window root rgb:- 2> /dev/null | md5sum)
    [[ $now == "$before" ]] && break
    before=$now
  done
  import -window root -trim +repage "$1"
  say "$1"
}
