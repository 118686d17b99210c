# Shared by ./run and ./check: installs what is missing, configures and builds. Source it from the checkout's root.
# Each step looks first and does nothing when there is nothing to do.

preset=${QUILLET_PRESET:-release}
build=build/$preset

say() { printf '%s\n' "$*" >&2; }

# as_root COMMAND...
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        say "This needs root, and there is no sudo here: $*"
        return 1
    fi
}

# missing_packages LIST...: the packages of the lists that are not installed.
missing_packages() {
    local wanted
    mapfile -t wanted < <(grep -hv '^#' "$@" | sort -u)
    dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null |
        awk '$1 == "installed" { print $2 }' | sort -u | comm -13 - <(printf '%s\n' "${wanted[@]}")
}

# install_packages LIST...: installs what is missing of the packages in the lists (files of cmake/).
install_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    say "Installing missing packages: ${missing[*]}"
    as_root apt-get update -qq &&
        as_root env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# install_servers: the packages of cmake/packages-servers.txt, of which none is started. Debian asks this program before it
# starts a service, and 101 means that it must not.
install_servers() (
    [ -n "$(missing_packages cmake/packages-servers.txt)" ] || exit 0
    policy=/usr/sbin/policy-rc.d
    # What the machine's owner has decided comes back in the end, however this ends.
    trap 'as_root rm -f "$policy"; [ ! -e "$policy.quillet" ] || as_root mv "$policy.quillet" "$policy"' EXIT
    [ ! -e "$policy" ] || as_root mv "$policy" "$policy.quillet" || exit 1
    printf '#!/bin/sh\nexit 101\n' | as_root sh -c "cat >$policy && chmod 755 $policy" || exit 1
    install_packages cmake/packages-servers.txt
)

# configured OPTION...: whether the build folder is configured with each of these options on.
configured() {
    local option
    [ -f "$build/build.ninja" ] || return 1
    for option in "$@"; do
        grep -q "^$option:[A-Z]*=ON$" "$build/CMakeCache.txt" || return 1
    done
}

# compile TARGET...
compile() {
    if ! ninja -C "$build" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
        ninja -C "$build" "$@" >&2
    fi
}

# The program alone. What is configured already stays so: the tests of an earlier ./check, say.
prepare_program() {
    configured || cmake --preset "$preset" -DBUILD_TESTING=OFF -DQUILLET_BENCHMARKS=OFF >&2 || return 1
    compile quillet-app
}

# Everything: the program, the tests and the benchmarks.
prepare_everything() {
    configured BUILD_TESTING QUILLET_BENCHMARKS ||
        cmake --preset "$preset" -DBUILD_TESTING=ON -DQUILLET_BENCHMARKS=ON >&2 || return 1
    compile
}
