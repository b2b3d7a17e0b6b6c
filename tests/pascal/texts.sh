# Sourced by the suites that run the programs of this folder: what stands in the comments after their ends.
# shellcheck shell=bash

# section NAME FILE: the lines between "{ NAME" and "}", both at the beginning of a line.
section() {
  awk -v head="{ $1" 'inside && $0 == "}" { exit } inside { print } $0 == head { inside = 1 }' "$2"
}
has_section() { grep -qx "{ $1" "$2"; }
# word NAME FILE: the rest of the line "{ NAME rest }".
word() { sed -n "s/^{ $1 \(.*\) }\$/\1/p" "$2"; }

# visible: bytes as the texts have them. A last line without an end gets one, as an editor would give it one.
visible() {
  sed 's/\r$//; s/, PC=[0-9A-F]\{4\}$/, PC=XXXX/; $a\' | LC_ALL=C cat -v
}
