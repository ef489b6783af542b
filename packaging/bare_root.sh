# shellcheck shell=bash
# Sourced by the scripts that try a package: a folder that holds a bare Debian, in which nothing is
# installed but what every Debian has. Needs packages.sh and the package debootstrap.

# Unpacks the Debian named SUITE into ROOT, from an archive beside it that is fetched the first time, and
# gives it the user "zoe", number 1000.
bare_root() # SUITE ROOT
{
    local archive
    archive=$(dirname "$2")/$1.tar
    remove_root "$2"
    mkdir -p "$2"
    if [ ! -e "$archive" ]; then
        echo "Fetching a bare Debian: $1"
        as_root debootstrap --variant=minbase "$1" "$2" >"$archive.log" || {
            echo "A bare Debian could not be fetched; $archive.log tells why" >&2
            remove_root "$2"
            return 1
        }
        as_root tar -C "$2" -cf "$archive.part" .
        as_root mv "$archive.part" "$archive"
    else
        as_root tar -C "$2" -xf "$archive"
    fi
    as_root cp /etc/resolv.conf "$2/etc/"
    as_root mount -t proc proc "$2/proc"
    in_root "$2" useradd --create-home --uid 1000 zoe
}

in_root() # ROOT COMMAND...
{
    as_root chroot "$1" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "${@:2}"
}

# Runs the command as the user "zoe", in her home folder and on the present display, which a root shares.
as_user() # ROOT COMMAND...
{
    # shellcheck disable=SC2016 # for the shell of the root
    as_root chroot --userspec=1000:1000 "$1" env -i PATH=/usr/bin:/bin LC_ALL=C.UTF-8 \
        HOME=/home/zoe DISPLAY="${DISPLAY:-}" \
        sh -c 'cd && exec "$@"' sh "${@:2}"
}

# Starts it; stop_user_program ends it.
start_user_program() # ROOT COMMAND...
{
    # shellcheck disable=SC2016 # for the shell of the root
    as_user "$1" sh -c 'echo $$ >.program && exec "$@"' sh "${@:2}" &
}

stop_user_program() # ROOT
{
    local number=$1/home/zoe/.program
    [ -e "$number" ] || return 0
    as_root kill "$(cat "$number")" 2>/dev/null || true
    as_root rm "$number"
    wait $! 2>/dev/null || true
}

# Lets the user "zoe" have what FOLDER below ROOT holds.
give_to_user() # FOLDER
{
    as_root chown -R 1000:1000 "$1"
}

remove_root() # ROOT
{
    if mountpoint -q "$1/proc"; then
        as_root umount "$1/proc"
    fi
    as_root rm -rf "$1"
}
