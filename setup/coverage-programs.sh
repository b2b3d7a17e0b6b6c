#!/bin/bash
# The programs of tests/pascal that are about reals, records and run-time errors: enough to use every part of tp3 and msxrun.
exec "$(dirname "$0")/../tests/pascal/suite.sh" RE
