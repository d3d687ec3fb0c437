#!/usr/bin/env bash
# bare_machine.sh: a machine in a folder, with only Debian 12, git, a C++ compiler and sudo. Needs root. The machine
# has its own processes and files; the network and /sys are this machine's.
#
#   possible                         succeeds if a machine can be made here
#   make FOLDER                      makes it, with an ordinary user, "reader", who may use sudo
#   run FOLDER USER COMMAND...       runs a command in it, in the user's home, and ends whatever it leaves running
#
# DEBIAN_MIRROR: the mirror to take Debian from instead of debootstrap's own.
set -euo pipefail

apart=(unshare --mount --uts --pid --fork --kill-child)

is_possible() {
    # shellcheck disable=SC2016 # words of that shell
    [ "$(id -u)" -eq 0 ] && command -v apt-get >/dev/null &&
        "${apart[@]}" sh -euc '
            mount -t tmpfs tmpfs /mnt
            mknod /mnt/null c 1 3
            echo >/mnt/null
            mount -t proc proc /proc' 2>/dev/null
}

make() { # FOLDER
    "${0%/*}/packages.sh" debootstrap debian-archive-keyring
    echo "== Making a bare machine"
    if ! debootstrap --variant=minbase --include=git,g++,ca-certificates,sudo bookworm "$1" \
        ${DEBIAN_MIRROR:+"$DEBIAN_MIRROR"} >"$1.log" 2>&1; then
        tail -n 20 "$1.log" >&2
        exit 1
    fi
    # apt-get reaches the mirror as it does here. Nothing has to survive a crash.
    apt-config dump Acquire::http Acquire::https Acquire::Check-Date Acquire::Check-Valid-Until \
        >"$1/etc/apt/apt.conf.d/00acquire"
    echo force-unsafe-io >"$1/etc/dpkg/dpkg.cfg.d/unsafe-io"
    rm -rf "$1"/var/cache/apt/archives/*.deb
    echo '127.0.0.1 localhost bare' >"$1/etc/hosts"
    chroot "$1" useradd --create-home --shell /bin/bash reader
    echo 'reader ALL=(ALL) NOPASSWD: ALL' >"$1/etc/sudoers.d/reader"
}

# In namespaces of its own.
run() { # FOLDER USER COMMAND...
    mount -t proc proc "$1/proc"
    mount --rbind /sys "$1/sys" # with its control groups
    mount -t devpts -o newinstance,ptmxmode=666 devpts "$1/dev/pts"
    mount -t tmpfs tmpfs "$1/dev/shm"
    hostname bare
    local home
    home=$(chroot "$1" getent passwd "$2" | cut -d: -f 6)
    # runuser stays in front: no signal ends a namespace's first process.
    chroot "$1" runuser -u "$2" -- env -i "HOME=$home" "USER=$2" "TERM=${TERM:-dumb}" \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        ${http_proxy:+"http_proxy=$http_proxy"} ${https_proxy:+"https_proxy=$https_proxy"} \
        sh -c 'cd && exec "$@"' sh "${@:3}"
}

case $1 in
possible) is_possible ;;
make) make "$2" ;;
run) exec "${apart[@]}" "$0" inside "${@:2}" ;;
inside) run "${@:2}" ;;
*)
    echo "bare_machine.sh: unknown command $1" >&2
    exit 2
    ;;
esac
