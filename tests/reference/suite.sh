#!/bin/bash
# The Pascal Reference: that it is whole, that its links lead somewhere, that compiler, library, editor and book agree on the
# names, and that every example does what the book says. Needs out/bin/tp3, out/bin/msxrun and out/Tavrel.
#   tests/reference/suite.sh [TOPIC]   with a topic's name only its examples
# Last line: N passed, N failed. Exit code 0 when nothing failed.
# Needs no display.
set -u
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
export LC_ALL=C
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0
failed=0

result() { # NAME STATUS [DETAILS]
  if (($2 == 0)); then
    passed=$((passed + 1))
  else
    echo "FAIL $1"
    [[ -n ${3:-} ]] && sed 's/^/     /' <<< "$3"
    failed=$((failed + 1))
  fi
}
check() { # NAME COMMAND...
  local name=$1 said status
  shift
  said=$("$@" 2>&1)
  status=$?
  result "$name" "$status" "$said"
}
finish() {
  echo "$passed passed, $failed failed"
  ((passed > 0 && failed == 0))
  exit
}

# in_help_file: each page is in the help file with the bytes that it has outside, and so are contents and index.
in_help_file() {
  local folder=$1 out=$2 name
  mkdir "$out"
  chmls extractall "$folder/tp3reference.chm" "$out" > /dev/null 2>&1
  (cd "$folder" && find . -name '*.htm' -o -name '*.css' -o -name '*.hh[ck]') > "$work/names"
  [[ -s $work/names ]] || return 1
  while read -r name; do
    cmp "$folder/$name" "$out/$name" || return 1
  done < "$work/names"
  [[ -s $out/\$FIftiMain ]] || { echo "no full-text search"; return 1; }
}

run_example() { # FOLDER NAME: compiles what examples.pl wrote; compares when there is something to compare with
  local folder=$1 name=$2 status
  "$root/out/bin/tp3" "$folder/$name.PAS" -o "$folder/$name.COM" > "$work/said" 2>&1 || { cat "$work/said"; return 1; }
  [[ -f $folder/$name.expected ]] || { "$root/out/bin/tp3" "$folder/$name.PAS" --chn -o "$folder/$name.CHN" 2>&1; return; }
  "$root/out/bin/msxrun" --disk "$folder" --limit 2G "$folder/$name.COM" < "$folder/$name.input" > "$work/raw" 2> "$work/said"
  status=$?
  # 4 is a program that ended with an error, which the text then shows.
  if ((status != 0 && status != 4)); then echo "msxrun ended with $status"; cat "$work/said"; return 1; fi
  if [[ -f $folder/$name.screen ]]; then perl "$here/screen.pl" < "$work/raw" > "$work/shown" || return 1
  else sed 's/\r$//; s/, PC=[0-9A-F]\{4\}$/, PC=XXXX/; $a\' "$work/raw" > "$work/shown"; fi
  diff "$folder/$name.expected" "$work/shown"
}

# refuses NAME EXPECTED-PART COMMAND: the generator must stop with a message when COMMAND has spoilt a copy of the sources.
refuses() {
  local said
  rm -rf "$work/spoilt" "$work/nothing"
  mkdir -p "$work/spoilt/docs" "$work/spoilt/kit/compiler" "$work/nothing"
  cp -r "$root/docs/reference" "$root/docs/guide" "$work/spoilt/docs"
  cp "$root"/kit/compiler/errors.* "$work/spoilt/kit/compiler"
  (cd "$work/spoilt/docs/reference" && eval "$3")
  if said=$(perl "$root/docs/reference/make_reference.pl" "$work/spoilt" "$work/nothing" 2>&1); then
    result "$1" 1 "it is taken without a word"
  else
    [[ $said == *"$2"* ]]
    result "$1" $? "it says: $said"
  fi
}

if [[ ! -x $root/out/bin/tp3 || ! -x $root/out/bin/msxrun ]]; then
  result "tp3 and msxrun are built" 1
  finish
fi
mkdir "$work/one" "$work/two"
check "the reference can be made" "$root/setup/help.sh" "$work/one"
if [[ -z ${1:-} ]]; then
  check "and again" "$root/setup/help.sh" "$work/two"
  check "the same sources give the same bytes" diff -r "$work/one" "$work/two"
  check "the help file lies beside the program" cmp "$work/one/tp3reference.chm" "$root/out/Tavrel/tp3reference.chm"
  check "the signatures lie in help" cmp "$work/one/autocomplete.txt" "$root/out/Tavrel/help/autocomplete.txt"
  check "the web site has the same pages" diff "$work/one/index.htm" "$root/out/reference-site/index.htm"
  check "the help file holds every page" in_help_file "$work/one" "$work/extracted"
  while IFS= read -r line; do
    [[ $line == ok\ * ]]
    result "${line#* }" $?
  done < <(perl "$here/pages.pl" "$root" "$work/one" 2>&1)
  refuses "a link to nowhere" "abs.htm: nothing is called [[Nowhere]]" 'echo "[[Nowhere]]" >> topics/abs.htm'
  refuses "a page that is not in the contents" "extra.htm is not in contents.txt" 'cp topics/abs.htm topics/extra.htm; sed -i "/names/d" topics/extra.htm'
  refuses "two pages for one name" "two topics for Abs" 'cp topics/abs.htm topics/extra.htm'
  refuses "a page in the contents that is not there" "no topic chr" 'rm topics/chr.htm; sed -i "s/\[\[Chr\]\]//; s/ Chr,//" topics/*.htm'
  refuses "an error without an explanation" "error 99 is not explained" 'sed -i "/^99 /d" errors.txt'
  refuses "an explanation without an error" "there is no error 88" 'printf "\n88 What?\n" >> errors.txt'
  refuses "letters beyond ASCII" "only ASCII" 'printf "\303\244\n" >> topics/abs.htm'
  refuses "a page with a device's name" "the name is a device's" 'cp topics/abs.htm topics/con.htm'
fi

perl "$here/examples.pl" "$work/one" "$work/examples" "${1:-}" > "$work/list" || result "the examples can be read" 1
find "$root/share/program/library" -name '*.LIB' > "$work/libraries"
while read -r topic name; do
  folder=$work/examples/$topic
  [[ -s $work/libraries ]] && xargs -d '\n' -a "$work/libraries" cp -t "$folder"
  said=$(run_example "$folder" "$name")
  result "$topic: $name" $? "$said"
done < "$work/list"
finish
