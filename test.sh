#!/usr/bin/env bash
# Installs what is missing, builds everything with warnings as errors and runs every test; no display is needed.
#
#   ./test.sh [CTEST-ARGUMENT...]   e.g. ./test.sh -R Engine
#
# Fails when a test fails and when there was none to run.
set -euo pipefail

root=$(cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")" && pwd -P)

"$root/scripts/setup.sh" build test
"$root/scripts/build.sh" debug
exec ctest --test-dir "$root/build/debug" --output-on-failure --no-tests=error -j2 "$@"
