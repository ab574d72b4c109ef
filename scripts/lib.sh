# Shared by the other scripts; source it, do not run it.

# The project's folder, whatever the current folder is.
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"

say() { printf '== %s\n' "$*"; }
die() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; exit 1; }

# The number of compilers or tests to run at once; JOBS overrides it.
jobs_wanted() { echo "${JOBS:-$(nproc)}"; }

# packages_of <group>...: the packages of these groups in packages.txt.
packages_of() {
    awk -v wanted=" $* " '
        /^#/ || NF < 2 { next }
        {
            count = split($1, groups, ",")
            for (i = 1; i <= count; ++i)
                if (index(wanted, " " groups[i] " ")) {
                    print $2
                    break
                }
        }' "$root/scripts/packages.txt"
}

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# need_packages <group>...: installs the missing packages of these groups. When none is missing, it
# uses neither apt nor the network.
need_packages() {
    if ! command -v dpkg-query >/dev/null; then
        say "not a Debian system: the packages in scripts/packages.txt ($*) are taken as installed"
        return
    fi
    local package missing=()
    for package in $(packages_of "$@"); do
        is_installed "$package" || missing+=("$package")
    done
    [ "${#missing[@]}" -eq 0 ] && return

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || die "please install as root: ${missing[*]}"
        as_root=(sudo)
    fi
    say "installing ${missing[*]}"
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y
               -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300)
    "${apt[@]}" update </dev/null || { sleep 5; "${apt[@]}" update </dev/null; } \
        || say "the package lists could not be updated; using the old ones"
    (
        # An installed web server would take port 80 at once. On Debian, this policy keeps services
        # from starting; a policy that the machine already has stays in force.
        policy=/usr/sbin/policy-rc.d
        if [ ! -e "$policy" ]; then
            trap '"${as_root[@]}" rm -f "$policy"' EXIT
            printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" tee "$policy" >/dev/null
            "${as_root[@]}" chmod +x "$policy"
        fi
        "${apt[@]}" install --no-install-recommends "${missing[@]}" </dev/null
    ) || die "could not install: ${missing[*]}"
}

# build <preset> [target]...: configures and builds these targets, or all, in build/<preset>.
build() {
    local preset="$1" log
    shift
    say "building $preset"
    log="$(cd "$root" && cmake --preset "$preset" 2>&1)" \
        || { printf '%s\n' "$log" >&2; die "configuring $preset failed"; }
    (cd "$root" && cmake --build --preset "$preset" -j "$(jobs_wanted)" ${1:+--target "$@"}) \
        || die "building $preset failed"
}
