#!/bin/bash
# setup.sh GROUP...: packages (those of the named groups are a must), third-party libraries, a place for Wine.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
source "$TAVREL_ROOT/setup/wine.sh"
"$TAVREL_ROOT/setup/packages.sh" "$@"
make_wine_prefix &   # mostly waits, so it costs nothing beside the compilers
prefix_job=$!
"$TAVREL_ROOT/setup/dependencies.sh"
wait "$prefix_job" || say "set-up: Wine could not make its prefix"
