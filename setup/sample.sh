#!/bin/bash
# sample.sh: keeps a working copy of the sample project in out/sample, and prints its project file. What was edited
# there stays, until the original is newer.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
sample=$TAVREL_ROOT/share/samples/hello
[[ -f $sample/HELLO.TPJ ]] || die "the sample project share/samples/hello/HELLO.TPJ is missing"
mkdir -p "$TAVREL_OUT/sample"
cp -ru "$sample/." "$TAVREL_OUT/sample/"
echo "$TAVREL_OUT/sample/HELLO.TPJ"
