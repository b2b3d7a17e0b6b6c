#!/bin/bash
# check-scripts.sh: whether bash can parse every script of ours.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
cd "$TAVREL_ROOT"
status=0
while IFS= read -r -d '' file; do
  if [[ $file == *.sh || $(head -c 11 "$file" | tr -d '\0') == '#!/bin/bash' ]]; then
    bash -n "$file" || status=1
  fi
done < <("$TAVREL_ROOT/setup/own-files.sh" '*.sh' run test .ci/run 'packaging/*' 'tests/*')
exit "$status"
