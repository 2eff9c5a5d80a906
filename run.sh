#!/usr/bin/env bash
# Installs what is missing, builds Ostrivane in release mode and starts it.
#
#   ./run.sh                      the window where there is a display (and the window is built); else the live view of the
#                                 terminal; else, where standard output is no terminal, one reading
#   ./run.sh OPTION...            the same; the options go to the program that is started
#   ./run.sh COMMAND [ARGUMENT...]   `ostrivanectl COMMAND ...`, e.g. ./run.sh snapshot --json
#
# A first argument that does not begin with "-" is a COMMAND; --help and --version alone are ostrivanectl's too. Set-up and
# build speak on standard error only, so that the output can be piped. Can be called from anywhere: relative paths among
# the arguments mean the caller's folder.
set -euo pipefail

root=$(cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")" && pwd -P)

hasDisplay() {
    [[ -n ${DISPLAY:-} || -n ${WAYLAND_DISPLAY:-} ]] || [[ $(uname -s) == Darwin && -z ${SSH_CONNECTION:-} ]]
}

"$root/scripts/setup.sh" build
"$root/scripts/build.sh" release

window="$root/build/release/app/ostrivane"
terminal="$root/build/release/cli/ostrivanectl"

if (($#)) && [[ $1 != -* || $1 == -h || $1 == --help || $1 == --version ]]; then
    exec "$terminal" "$@"
elif hasDisplay && [[ -x $window ]]; then
    exec "$window" "$@"
elif [[ -t 0 && -t 1 && ${TERM:-dumb} != dumb ]]; then
    exec "$terminal" watch "$@"
else
    exec "$terminal" snapshot "$@"
fi
