# Shared by ./run and ./check: installs what is missing, configures and builds. Source it from the checkout's root.
# Each step looks first and does nothing when there is nothing to do.

preset=${QUILLET_PRESET:-release}
build=build/$preset

say() { printf '%s\n' "$*" >&2; }

install_packages() {
    local wanted missing
    wanted=$(grep -v '^#' cmake/packages.txt)
    # shellcheck disable=SC2086
    missing=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' $wanted 2>/dev/null |
        awk '$1 == "installed" { print $2 }' | sort -u | comm -13 - <(sort -u <<<"$wanted"))
    [ -n "$missing" ] || return 0
    say "Installing missing packages:" $missing
    local as_root=
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { say "These packages need root to install, and there is no sudo here."; return 1; }
        as_root=sudo
    fi
    $as_root apt-get update -qq &&
        # shellcheck disable=SC2086
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >&2
}

build_all() {
    [ -f "$build/build.ninja" ] || cmake --preset "$preset" >&2 || return 1
    if ! ninja -C "$build" -n 2>/dev/null | grep -q 'no work to do'; then
        cmake --build --preset "$preset" >&2 || return 1
    fi
}

prepare() {
    install_packages || { say "Packages could not be installed."; exit 1; }
    build_all || { say "The build failed."; exit 1; }
}
