# Shared by try-build and try-packages: a bare Debian 12 tree, and commands within it. Source it, and name the tree in `tree`.

# shellcheck disable=SC2016

say() { printf '%s %s\n' "$(date +%T)" "$*"; }

# bare_tree MIRROR: makes the tree by debootstrap, unless it is there.
bare_tree() {
    if [ ! -e "$tree/etc/debian_version" ]; then
        say "A bare tree"
        debootstrap --variant=minbase bookworm "$tree" "$1" >/dev/null
    fi
    tree=$(readlink -e -- "$tree")
    mkdir -p "$tree/dev/shm"
    inside 'id designer >/dev/null 2>&1 || useradd --create-home designer'
}

# inside COMMAND: runs it in the tree, by a shell; nothing of it stays mounted or running. With a folder in `cache`, the tree
# has it as /cache.
inside() {
    unshare --mount --pid --fork sh -ec 'mount -t proc proc "$1/proc"; mount -t tmpfs tmpfs "$1/dev/shm"
        [ -z "$3" ] || { mkdir -p "$1/cache"; mount --bind "$3" "$1/cache"; }
        exec chroot "$1" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive sh -ec "$2"' - \
        "$tree" "$1" "${cache:-}"
}
as_user() { inside "cd /home/designer && exec setpriv --reuid=designer --regid=designer --clear-groups env HOME=/home/designer sh -ec '$1'"; }
