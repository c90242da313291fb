# shellcheck shell=bash
# trial.sh USER: the part of scripts/try-package that runs inside the chroot, where /try has the
# packages, a session bus and the questions to whoever sees the screen.
set -euo pipefail

user=$1
place=/usr/local/bin/Vireon
conf=$place/config/vireon.conf
entry=/etc/xdg/autostart/Vireon.desktop
home=/home/pupil
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

# holds TEXT COMMAND...: says whether it holds, at the latest in 20 s, and ends the trial if not.
holds() {
    local text=$1
    shift
    for _ in $(seq 200); do
        if "$@" >&2; then
            printf 'ok      %s\n' "$text"
            return 0
        fi
        sleep 0.1
    done
    printf 'FAILED  %s: %s\n' "$text" "$*"
    exit 1
}

not() { ! "$@"; }
begin() { printf -- '-- %s\n' "$*"; }

# ask QUESTION: what whoever sees the screen answers.
ask() {
    rm -f /try/answer
    echo "$1" > /try/question.part
    mv /try/question.part /try/question
    for _ in $(seq 100); do
        if [ -e /try/answer ]; then
            cat /try/answer
            return 0
        fi
        sleep 0.1
    done
    return 1
}

install() { apt-get -q -y --no-install-recommends install "$@" < /dev/null >&2; }

# pid_of PROGRAM: of one that runs from the fixed directory.
pid_of() {
    for link in /proc/[0-9]*/exe; do
        case $(readlink "$link" || true) in
            "$place/$1" | "$place/$1 (deleted)")
                link=${link%/exe}
                echo "${link##*/}"
                return 0
                ;;
        esac
    done
    return 1
}

start() {
    mkdir -p "$home/Documents" "$home/run"
    chmod 700 "$home/run"
    chown -R "$user:$user" "$home"
    setpriv --reuid="$user" --regid="$user" --clear-groups env -i PATH="$PATH" HOME="$home" \
        DISPLAY="$DISPLAY" XDG_RUNTIME_DIR="$home/run" LC_ALL=C.UTF-8 XDG_CURRENT_DESKTOP=MATE \
        DBUS_SESSION_BUS_ADDRESS=unix:path=/try/bus "$place/Vireon.sh" > /try/output 2> /try/log &
}

is_ready() { grep -q 'Result=0' "$home/Documents/Vireon/pensettings.ini"; }
shows_window() { grep -q '"Vireon": ("vireon"' <(ask windows); }

# The icon is a window inside the panel's.
shows_tray_icon() { grep -q '("vireon" "vireon")' <(ask windows | sed -n '/"panel"/,$p'); }

none_is_writable() {
    dpkg -L vireon vireon-simulator | grep . | grep -vx /. \
        | while read -r path; do find "$path" -maxdepth 0 ! -type l \( -perm /022 -o ! -user root \); done \
        | not grep .
}

# newer VERSION SED_SCRIPT: makes the packages of that version; the script is for all its texts.
newer() {
    local made=/try/newer
    rm -rf "$made"
    mkdir "$made"
    for package in vireon vireon-simulator; do
        dpkg-deb -R /try/packages/${package}_*.deb "$made/$package"
        sed -i "s/^Version: .*/Version: $1/" "$made/$package/DEBIAN/control"
        find "$made/$package/DEBIAN" "$made/$package/etc" "$made/$package$place/config" -type f \
            -exec sed -i "$2" {} + 2> /dev/null || true
        rmdir "$made/$package/etc" 2> /dev/null || true
        # As in the real ones, directories that are nobody's are left out.
        repack "$made/$package" "/try/${package}_$1.deb"
    done
}

repack() {
    local parts=$1.parts
    mkdir "$parts"
    tar -C "$1/DEBIAN" -cf "$parts/control.tar" .
    (cd "$1" && find . -path ./DEBIAN -prune -o -print) \
        | grep -vxE '\.|\./usr/local(/bin|/share|/share/man)?' \
        | tar -C "$1" --no-recursion -cf "$parts/data.tar" -T -
    printf '2.0\n' > "$parts/debian-binary"
    # "ar" is not part of the base.
    perl -e '
        print "!<arch>\n";
        for my $name (qw(debian-binary control.tar data.tar)) {
            open my $file, "<:raw", "$ARGV[0]/$name" or die;
            local $/;
            my $content = <$file>;
            printf "%-16s%-12d%-6d%-6d%-8s%-10d`\n", $name, 0, 0, 0, "100644", length $content;
            print $content, length($content) % 2 ? "\n" : "";
        }' "$parts" > "$2"
}

# What lies where we put something; the fonts' directory is another package's.
listing() {
    { find /usr/local /etc/xdg /tmp /usr/share/doc/vireon* 2> /dev/null || true; } \
        | grep -vx /usr/local/share/fonts | sort
}
objects() { cat /proc/sysvipc/shm /proc/sysvipc/sem | grep -vc key || true; }

apt-get -q update >&2
listing > /try/before

begin "Install on $(cat /etc/debian_version)"
holds "an engine is not part of the package" install /try/packages/vireon_*.deb
holds "the launcher tells that it is missing" sh -c "$place/Vireon.sh 2>&1 | grep -q 'engine is missing'"
holds "the simulator comes beside the program" install /try/packages/vireon-simulator_*.deb
holds "all of it is root's, and nobody else's to write" none_is_writable
holds "no indicator library came along" not ls /usr/lib/x86_64-linux-gnu/libayatana-appindicator.so.1

begin "Start with the simulator"
start
holds "the engine reports that it is ready" is_ready
holds "the window is on the screen" shows_window
holds "the icon is in the tray" shows_tray_icon
sleep 12 # until the splash is gone
holds "a picture is taken" ask picture

begin "Upgrade over a running copy, no terminal"
before=$(pid_of vireon) engine=$(pid_of vireon-main)
sed -i 's/^stylusOnly=0$/stylusOnly=7/' "$conf"
rm "$entry"
newer 1.4.900 's/^stylusOnly=0$/stylusOnly=1/; s/^Comment=$/Comment=Newer/'
holds "the new version is installed" install /try/vireon_1.4.900.deb /try/vireon-simulator_1.4.900.deb
holds "the copy goes on running" test "$(pid_of vireon)" = "$before"
holds "its engine too" test "$(pid_of vireon-main)" = "$engine"
holds "the changed configuration stays" grep -qx stylusOnly=7 "$conf"
holds "the new one lies beside it" grep -qx stylusOnly=1 "$conf.dpkg-dist"
holds "a deleted autostart entry stays deleted" not test -e "$entry"
kill -TERM "$before"
holds "the old copy quits" not pid_of vireon
start
holds "the new copy starts" pid_of vireon
holds "and its engine is ready" is_ready

begin "Upgrade to a version whose configuration has other lines"
newer 1.4.901 's/^stylusOnly=0$/stylusOnly=2/; s/^lines_since=.*/lines_since=1.4.901/'
holds "the new version is installed" install /try/vireon_1.4.901.deb /try/vireon-simulator_1.4.901.deb
holds "the new configuration is in force" grep -qx stylusOnly=2 "$conf"
holds "the changed one is put aside" grep -qx stylusOnly=7 "$conf.dpkg-old"

begin "Remove"
kill -KILL "$(pid_of vireon)"
holds "a killed copy leaves its marker behind" test "$(objects)" -gt 0
apt-get -q -y remove vireon vireon-simulator < /dev/null >&2
holds "the program is gone" not test -e "$place/vireon"
holds "the configuration stays" test -e "$conf"
holds "the user's data stay" test -e "$home/Documents/Vireon/user.ini"

begin "A real engine is not written over"
printf '#!/bin/sh\n' > "$place/vireon-main"
holds "the simulator's package refuses" not dpkg -i /try/vireon-simulator_1.4.901.deb
holds "the engine is untouched" grep -qx '#!/bin/sh' "$place/vireon-main"

begin "Purge, with a simulator that was put there by hand"
dpkg-deb -x /try/packages/vireon-simulator_*.deb /try/by-hand
cp /try/by-hand$place/* "$place/"
apt-get -q -y purge vireon vireon-simulator < /dev/null >&2
holds "/usr/local/bin is still there" test -d /usr/local/bin
listing > /try/after
diff /try/before /try/after || true
holds "nothing of it remains" cmp /try/before /try/after
holds "no System V object remains" test "$(objects)" -eq 0
holds "the user's data stay" test -e "$home/Documents/Vireon/user.ini"
