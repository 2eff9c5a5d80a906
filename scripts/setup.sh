#!/usr/bin/env bash
# Installs what is missing to build Ostrivane, and nothing when nothing is.
#
#   scripts/setup.sh build              what ./run.sh needs
#   scripts/setup.sh build test         what ./test.sh needs
#   scripts/setup.sh build test check   what .ci/run needs
#
# Only Debian, Ubuntu and their kin are installed on; elsewhere it says what is needed. Everything it has to say goes to
# standard error. Installing is the one thing in this project that needs root.
set -euo pipefail

# One package a word. `package=program`: any such program in PATH will do, whoever installed it.
buildPackages="g++=g++ cmake=cmake ninja-build=ninja ccache=ccache libfmt-dev libicu-dev libncurses-dev libcli11-dev libsqlite3-dev pkg-config=pkg-config libglib2.0-dev qt6-base-dev qt6-svg-dev qt6-qpa-plugins breeze-icon-theme libgl-dev libxcb1-dev"
testPackages="libgtest-dev libbenchmark-dev dbus-daemon=dbus-daemon xvfb=Xvfb"
checkPackages="git=git clang=clang++ libclang-rt-dev clang-format=clang-format clang-tidy=clang-tidy shellcheck=shellcheck"
brewPackages="cmake ninja ccache boost fmt icu4c ncurses cli11 sqlite qt googletest google-benchmark"
boostMinor=81 # Boost 1.81 is the first with all that is used of Asio, JSON and Describe

say() { printf '%s\n' "$*" >&2; }
fail() {
    say "setup: $*"
    exit 1
}

has() { command -v "$1" >/dev/null 2>&1; }

# "1.83.0.1" -> yes, "1.74" -> no.
boostIsRecentEnough() {
    local major minor
    IFS=. read -r major minor _ <<<"$1"
    [[ $major =~ ^[0-9]+$ && $minor =~ ^[0-9]+$ ]] || return 1
    ((major > 1 || (major == 1 && minor >= boostMinor)))
}

# Fills `missing` with the packages to install and sets `boostMissing`. All libraries are asked for in one call: it takes
# some hundredths of a second, so that the answer need not be remembered and cannot go stale.
findMissing() {
    local wanted="$1" entry state name version libraries=() installed=" "
    missing=()
    boostMissing=yes
    boostHeaders=""
    for entry in $wanted; do
        [[ $entry == *=* ]] || libraries+=("$entry")
    done
    while read -r state name version; do
        [[ $state == installed ]] || continue
        installed+="$name "
        if [[ $name == libboost-json*-dev ]] && boostIsRecentEnough "$version"; then
            boostMissing=no
        elif [[ $name =~ ^libboost[0-9.]+-dev$ ]] && boostIsRecentEnough "$version"; then
            boostHeaders=$name
        fi
    done < <(dpkg-query -W -f '${db:Status-Status} ${Package} ${Version}\n' 'libboost*-dev' "${libraries[@]}" 2>/dev/null || true)
    for entry in $wanted; do
        if [[ $entry == *=* ]]; then
            has "${entry#*=}" || missing+=("${entry%%=*}")
        else
            [[ $installed == *" $entry "* ]] || missing+=("$entry")
        fi
    done
}

# The names among those given that the package index can install, with the version: "name version" a line.
candidates() {
    LC_ALL=C apt-cache policy "$@" 2>/dev/null |
        awk '/^[^ ]/ { name = $1; sub(/:$/, "", name) } $1 == "Candidate:" && $2 != "(none)" { print name, $2 }'
}

# The package of Boost.JSON to install (it brings the headers along). Debian's versions of Boost exclude each other, so
# the one whose headers are there is taken, else the newest. Prints nothing when the index has none that is new enough.
boostPackage() {
    local names name version found=""
    names=$(apt-cache pkgnames libboost-json 2>/dev/null | grep -- '-dev$' || true)
    [[ -n $names ]] || return 0
    # shellcheck disable=SC2086 # one word a name
    while read -r version name; do
        boostIsRecentEnough "$version" || continue
        found=$name
        [[ ${name/-json/} == "$boostHeaders" ]] && break
    done < <(candidates $names | awk '{ print $2, $1 }' | sort -V)
    printf '%s' "$found"
}

# Fills `resolved` with the packages to install and `unknown` with those that the index does not have.
resolve() {
    local name known=" "
    resolved=()
    unknown=()
    if ((${#missing[@]})); then
        while read -r name _; do known+="$name "; done < <(candidates "${missing[@]}")
        for name in "${missing[@]}"; do
            if [[ $known == *" $name "* ]]; then resolved+=("$name"); else unknown+=("$name"); fi
        done
    fi
    if [[ $boostMissing == yes ]]; then
        name=$(boostPackage)
        if [[ -n $name ]]; then resolved+=("$name"); else unknown+=("libboost-json-dev >= 1.$boostMinor"); fi
    fi
}

# Runs a command as root. `env` because sudo hands the environment on only where it is told to.
asRoot() {
    if [[ $(id -u) -eq 0 ]]; then
        env DEBIAN_FRONTEND=noninteractive "$@" >&2 </dev/null
    else
        sudo env DEBIAN_FRONTEND=noninteractive "$@" >&2
    fi
}

# Never removes a package of the user's to make room, and waits for a system that is just bringing itself up to date.
install() { asRoot apt-get -o DPkg::Lock::Timeout=300 install -y --no-install-recommends --no-remove "$@"; }

# What to ask for where the index is empty and cannot be filled: the name differs by release.
likelyBoostPackage() {
    # shellcheck source=/dev/null
    case $(. /etc/os-release && printf '%s' "${VERSION_CODENAME:-}") in
    bookworm) printf 'libboost-json1.81-dev' ;;
    noble) printf 'libboost-json1.83-dev' ;;
    *) printf 'libboost-json-dev' ;;
    esac
}

setupWithApt() {
    local wanted="$1" updated=no
    findMissing "$wanted"
    ((${#missing[@]})) || [[ $boostMissing == yes ]] || return 0
    resolve

    if [[ $(id -u) -ne 0 ]] && ! has sudo; then
        local names="${missing[*]-}"
        [[ $boostMissing == no ]] || names+=" $(boostPackage)"
        [[ $boostMissing == no || $names == *libboost-json* ]] || names+="$(likelyBoostPackage)"
        say "setup: these packages are missing: ${names# }"
        say "Installing packages needs root, and there is no sudo here. Let someone who has root run:"
        say "    apt-get update && apt-get install --no-install-recommends ${names# }"
        exit 1
    fi
    if ((${#unknown[@]})); then
        say "Bringing the package index up to date: ${unknown[*]} not found in it (apt-get needs root)"
        asRoot apt-get update || say "setup: the package index could not be brought up to date; trying with what is there"
        updated=yes
        resolve
        ((${#unknown[@]} == 0)) || fail "this system's package index does not have: ${unknown[*]}
Debian 12 and Ubuntu 24.04 are the oldest releases that have all that is needed."
    fi
    say "Installing what is missing (apt-get needs root for it; nothing else here does): ${resolved[*]}"
    if install "${resolved[@]}"; then
        return 0
    elif [[ $updated == no ]] && asRoot apt-get update; then # an old index names files that the mirror no longer has
        install "${resolved[@]}" && return 0
    fi
    fail "apt-get could not install them; its own words stand above. To do it by hand, as root:
    apt-get install --no-install-recommends ${resolved[*]}"
}

# Where packages are not installed for the user: the tools must be there, and CMake says which library is not.
setupElsewhere() {
    local needed="$1" entry program absent=""
    for entry in $2; do
        program=${entry#*=}
        [[ $entry != *=* || $program == g++ || $program == ccache ]] || has "$program" || absent+=" $program"
    done
    has c++ || absent+=" c++"
    [[ -z $absent ]] || fail "missing:$absent
$needed"
    [[ -e "$(dirname -- "${BASH_SOURCE[0]}")/../build" ]] || say "$needed"
}

main() {
    local group wanted=""
    (($#)) || fail "say what for: build, test, check"
    for group in "$@"; do
        case $group in
        build) wanted+=" $buildPackages" ;;
        test) wanted+=" $testPackages" ;;
        check) wanted+=" $checkPackages" ;;
        *) fail "unknown: $group (build, test, check)" ;;
        esac
    done

    if has apt-get && has dpkg-query; then
        setupWithApt "$wanted"
    elif [[ $(uname -s) == Darwin ]]; then
        setupElsewhere "Ostrivane is built here with Xcode's command line tools (xcode-select --install) and Homebrew's:
    brew install $brewPackages" "$wanted"
    else
        setupElsewhere "Packages are installed by this script on Debian and Ubuntu only. Needed here: a C++20 compiler
(GCC 12, Clang 14 or newer), CMake 3.22, Ninja, Boost 1.$boostMinor with Boost.JSON, fmt, ICU, ncurses (wide), CLI11, SQLite 3, GLib with
pkg-config, Qt 6.4 with QtSvg, the Breeze icon theme, and for the tests GoogleTest, Google Benchmark, dbus-daemon and Xvfb, each with its headers." "$wanted"
    fi
}

main "$@"
