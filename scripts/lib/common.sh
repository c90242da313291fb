# shellcheck shell=bash
# Sourced by the scripts: where the tree is, its packages, its build.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

say() { printf '%s\n' "$*" >&2; }

die() {
    say "$(basename "$0"): $*"
    exit 1
}

# packages_of GROUP...: the packages of these groups of packages.txt, one per line.
packages_of() {
    awk -v wanted=" $* " '
        match($0, /^# \[[a-z]+\]/) { group = substr($0, 4, RLENGTH - 4) }
        { sub(/#.*/, "") }
        NF && index(wanted, " " group " ") { print $1 }' "$top/packages.txt"
}

# missing_of GROUP...: those of them that are not installed.
missing_of() {
    local installed
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' | sed -n 's/^installed //p')
    packages_of "$@" | grep -vxF "$installed" || true
}

# leave_out_unknown: takes out of "missing" what this release of Debian does not have and can be done
# without.
leave_out_unknown() {
    local package known=()
    for package in "${missing[@]}"; do
        if packages_of unity test | grep -qxF "$package" \
            && ! apt-cache show "$package" > /dev/null 2>&1; then
            say "Not in this release, what needs it is left out: $package"
        else
            known+=("$package")
        fi
    done
    missing=("${known[@]}")
}

# need_packages GROUP...: installs what is missing; asks the network for nothing otherwise.
need_packages() {
    local missing as_root=()
    mapfile -t missing < <(missing_of "$@")
    [ "${#missing[@]}" -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo > /dev/null || die "these packages are missing, and there is neither root \
nor sudo to install them: ${missing[*]}"
        as_root=(sudo)
    fi
    say "Installing: ${missing[*]}"
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq)
    "${apt[@]}" update >&2 || die "apt-get update failed"
    leave_out_unknown
    [ "${#missing[@]}" -gt 0 ] || return 0
    "${apt[@]}" install --no-install-recommends -y "${missing[@]}" >&2 \
        || die "apt-get could not install: ${missing[*]}"
}

# build_preset PRESET [TARGET...]: configures and builds, everything where no target is named.
build_preset() {
    local preset=$1 targets=()
    shift
    [ $# -eq 0 ] || targets=(--target "$@")
    if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && command -v ccache > /dev/null; then
        export CMAKE_CXX_COMPILER_LAUNCHER=ccache
    fi
    cd "$top" || exit
    cmake --preset "$preset"
    cmake --build --preset "$preset" "${targets[@]}"
}

# skips_of PRESET: a line for each part of the last run that was skipped, with the reason.
skips_of() {
    awk '
        match($0, /^[0-9]+\/[0-9]+ Testing: /) { test = substr($0, RLENGTH + 1) }
        sub(/^SKIP +: /, "") || sub(/^SKIPPED +/, "") { print "skipped: " test ": " $0 }' \
        "$top/build/$1/Testing/Temporary/LastTest.log"
}
