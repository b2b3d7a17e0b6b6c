#!/bin/bash
# own-files.sh PATTERN...: the existing files of the repository that match, each ended by a NUL. Files that are new and
# not yet added count too.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
cd "$TAVREL_ROOT"
git ls-files -z --cached --others --exclude-standard -- "$@" | sort -zu | while IFS= read -r -d '' file; do
  if [[ -f $file ]]; then printf '%s\0' "$file"; fi
done
