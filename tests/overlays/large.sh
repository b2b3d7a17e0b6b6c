#!/bin/bash
# Writes the source of a program with 50 overlay routines, 170 kB, that is too large for memory; with the word
# "expected", what the program prints.
#   tests/overlays/large.sh [expected]
# Each routine works on an Integer as this function does.
exec awk -v wanted="${1:-source}" '
function wrap(x) { x %= 65536; if (x < 0) x += 65536; return x >= 32768 ? x - 65536 : x }
function work(i, x,   k, j) {
  k = x
  for (j = 1; j <= 24; j++) k = wrap(k * 3 + i * j)
  for (j = i % 7; j > 0; j--) k = wrap(k + j)                  # the recursion
  if (i % 10 == 0 && i > 10) k = wrap(k + work(i - 10, i))     # a call of the group before
  return k
}
function filler(count,   text) {
  text = "the source of a large program has comments in it"
  while (length(text) < count) text = text ", and more of them"
  return substr(text, 1, count)
}
BEGIN {
  routines = 50
  if (wanted == "expected") {
    for (i = 1; i <= routines; i++) printf "R%d %d\n", i, work(i, i)
    for (i = routines; i > 0; i -= 7) printf "R%d %d\n", i, work(i, 1000)
    print "done"
    exit
  }
  print "program Large;\ntype Name = string[40];\nvar i, total: Integer;\n"
  for (i = 1; i <= routines; i++) {
    if (i > 1 && i % 10 == 1) print "procedure Between" i ";\nbegin total := total + 1 end;\n"
    print "overlay function R" i "(x: Integer; title: Name): Integer;"
    print "const step: Integer = " i ";"
    print "var k: Integer; room: array[1..24] of Integer;\n"
    print "  { adds the numbers up to n }"
    print "  function Sum(n: Integer): Integer;\n  begin\n    if n = 0 then Sum := 0 else Sum := n + Sum(n - 1)\n  end;\n"
    print "begin\n  k := x;"
    for (j = 1; j <= 24; j++) {
      printf "  { %s }\n", filler(24)
      printf "  room[%d] := step * %d;\n", j, j
      printf "  k := k * 3 + room[%d]; if k = total then total := room[%d] * 2 + room[%d];\n", j, 25 - j, j
    }
    print "  k := k + Sum(" (i % 7) ");"
    if (i % 10 == 0 && i > 10) print "  k := k + R" (i - 10) "(" i ", title + title);"
    print "  if Length(title) < 1 then WriteLn(\x27no title in routine number " i ", which is an error\x27);"
    print "  R" i " := k\nend;\n"
  }
  print "begin\n  total := -1;\n{ start }"
  for (i = 1; i <= routines; i++) printf "  WriteLn(\x27R%d \x27, R%d(%d, \x27t\x27 + \x27u\x27));\n", i, i, i
  for (i = routines; i > 0; i -= 7) printf "  WriteLn(\x27R%d \x27, R%d(1000, \x27again\x27));\n", i, i
  print "  WriteLn(\x27done\x27)\nend."
}'
