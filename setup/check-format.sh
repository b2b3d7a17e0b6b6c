#!/bin/bash
# check-format.sh: whether every C++ file of ours is laid out as .clang-format says.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
cd "$TAVREL_ROOT"
command -v clang-format > /dev/null || die "clang-format is not installed"
mapfile -d '' files < <("$TAVREL_ROOT/setup/own-files.sh" '*.cpp' '*.h')
if ((${#files[@]} == 0)); then exit 0; fi
printf '%s\0' "${files[@]}" | xargs -0 -P "$(nproc)" -n 20 clang-format --dry-run -Werror
