#!/bin/bash
# apt-sources.sh FOLDER [SUITE]: writes FOLDER/sources.list and FOLDER/sources.sources, the deb-src twins of the
# machine's own package sources, so that source packages come from where its binary packages come from.
# With SUITE only those of the machine's own release, naming that suite instead of it: the same mirror, another release.
# Both forms that apt knows are read: one line each (*.list) and paragraphs (*.sources).
set -euo pipefail
folder=$1
suite=${2:-}
etc=${TAVREL_APT_ETC:-/etc/apt} # another folder in tests
release=${TAVREL_RELEASE:-$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)}
mkdir -p "$folder"
shopt -s nullglob

# The suite follows the address, which follows options in brackets.
in_suite_line() {
  if [[ -z $suite ]]; then cat; else sed -nE "s#^(deb-src([[:space:]]+\[[^]]*\])?[[:space:]]+[^[:space:]]+[[:space:]]+)$release([[:space:]].*)?\$#\1$suite\3#p"; fi
}

in_suite_paragraph() {
  if [[ -z $suite ]]; then cat; else
    awk -v release="$release" -v suite="$suite" 'BEGIN { RS = ""; ORS = "\n\n"; FS = "\n" }
      { ours = 0
        for (i = 1; i <= NF; ++i)
          if (tolower($i) ~ /^suites:/) { ours = ($i " ") ~ ("[ \t:]" release "[ \t]"); $i = "Suites: " suite }
        if (ours) { text = $1; for (i = 2; i <= NF; ++i) text = text "\n" $i; print text } }'
  fi
}

lists=("$etc"/sources.list.d/*.list)
if [[ -f $etc/sources.list ]]; then lists+=("$etc/sources.list"); fi
if ((${#lists[@]})); then
  sed -nE 's/^[[:space:]]*deb(-src)?([[:space:]].*)$/deb-src\2/p' "${lists[@]}" | in_suite_line | sort -u
fi > "$folder/sources.list"

# A blank line between two files keeps the last paragraph of one apart from the first of the next.
for file in "$etc"/sources.list.d/*.sources; do
  sed -E 's/^Types:.*/Types: deb-src/I' "$file"
  echo
done | in_suite_paragraph > "$folder/sources.sources"
