#!/usr/bin/env bash
# Configures and builds a preset: scripts/build.sh PRESET [TARGET...]
#
# Says nothing when nothing changed, and shows progress on standard error otherwise: one line that renews itself on a
# terminal. Configures only where that has not been done or the presets changed: the build sees to all else by itself.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd -P)
preset=$1
shift
directory="$root/build/$preset"

# Drops what Ninja says about nothing, and keeps everything else as it is but for the progress on a terminal.
showProgress() {
    local line open=no columns=80
    if [[ -t 2 ]]; then
        columns=$(tput cols 2>/dev/null || echo 80)
    fi
    while IFS= read -r line; do
        case $line in
        "ninja: no work to do." | *"Re-checking globbed directories"* | "ninja: Entering directory"*) continue ;;
        esac
        if [[ -t 2 && $line =~ ^\[[0-9]+/[0-9]+\] ]]; then
            printf '\r\033[K%s' "${line:0:columns-1}" >&2
            open=yes
        else
            [[ $open == no ]] || printf '\n' >&2
            open=no
            printf '%s\n' "$line" >&2
        fi
    done
    [[ $open == no ]] || printf '\r\033[K' >&2
}

configure() {
    printf 'Configuring %s\n' "build/$preset" >&2
    (cd -- "$root" && cmake --preset "$preset" --log-level=NOTICE) >&2
}

if [[ ! -w $root ]]; then
    printf 'build: %s is not writable for you: nothing is built, what is there is started\n' "$root" >&2
    exit 0
fi

# A tree that was moved or copied keeps the old place in its cache, and CMake refuses it: nothing in it is of use.
if [[ -e $directory/CMakeCache.txt ]] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$directory/CMakeCache.txt"; then
    rm -rf -- "$directory"
fi
if [[ ! -e $directory/build.ninja || $root/CMakePresets.json -nt $directory/CMakeCache.txt ]]; then
    configure
fi
cmake --build "$directory" ${1+--target "$@"} 2>&1 | showProgress
