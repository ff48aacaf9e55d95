#!/usr/bin/env bash
# The .deb on a Debian 12 that has never seen Tavrelle: a minimal bookworm root made with
# debootstrap from this machine's Debian mirror, where apt-get installs the package and fetches
# what it depends on from Debian alone, without the packages it merely recommends. Then, as an
# ordinary user in another folder, the installed batch program analyses the installed demo files
# of each kind and the desktop program starts offscreen and stays up. It prints what it took:
# time, sizes and the packages pulled in.
#
# Usage: fresh-debian.sh BUILD_FOLDER [PACKAGE.deb]
#   Without a package, CPack makes one from the build folder.
#   TAVRELLE_DEBIAN_MIRROR overrides the mirror read from /etc/apt/sources.list{,.d}.
# Needs root (debootstrap, chroot), debootstrap (scripts/setup installs it) and the mirror.
# Ends with 77 when it cannot run here: not root, no mount namespace allowed, or no bookworm
# mirror configured.
set -euo pipefail
build=$(cd "$1" && pwd)
deb=${2:-}
fail() {
    echo "fresh-debian: $*" >&2
    exit 1
}
skip() {
    echo "fresh-debian: skipped: $*"
    exit 77
}

((EUID == 0)) || skip "making a Debian root and changing into it needs root"
command -v debootstrap >/dev/null || fail "debootstrap is not installed (scripts/setup installs it)"
# A container may forbid mounts even to root; the root's /proc is mounted in a namespace.
probe=$(mktemp -d)
unshare --mount --propagation private -- mount -t proc proc "$probe" 2>/dev/null ||
    { rmdir "$probe"; skip "this machine allows root no mount namespace (a container?)"; }
rmdir "$probe"

# The URI of the first enabled source that carries the suite "bookworm" itself, in either of
# apt's formats: one-line (*.list) and deb822 (*.sources).
bookworm_mirror() {
    local file
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [[ -f $file ]] || continue
        awk '$1 == "deb" {
                 n = 2
                 if ($n ~ /^\[/) while ($n !~ /\]$/) n++
                 if ($n ~ /^\[/ || $n ~ /\]$/) n++
                 if ($(n + 1) == "bookworm") { print $n; exit }
             }' "$file"
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        [[ -f $file ]] || continue
        awk 'BEGIN { RS = ""; FS = "\n" }
             {
                 types = uris = suites = ""; enabled = 1
                 for (i = 1; i <= NF; i++) {
                     if ($i ~ /^Types:/) types = " " substr($i, 7) " "
                     else if ($i ~ /^URIs:/) uris = substr($i, 6)
                     else if ($i ~ /^Suites:/) suites = " " substr($i, 8) " "
                     else if ($i ~ /^Enabled:[ \t]*no/) enabled = 0
                 }
                 if (enabled && types ~ /[ \t]deb[ \t]/ && suites ~ /[ \t]bookworm[ \t]/) {
                     split(uris, first, " "); print first[1]; exit
                 }
             }' "$file"
    done
}
mirror=${TAVRELLE_DEBIAN_MIRROR:-$(bookworm_mirror | head -n 1)}
[[ -n $mirror ]] ||
    skip "no apt source for Debian 12 (bookworm) is configured; set TAVRELLE_DEBIAN_MIRROR"

scratch=$(mktemp -d)
# Every mount lives in a namespace of its own and goes with it, so this removes only files.
trap 'rm -rf --one-file-system "$scratch"' EXIT
root=$scratch/root

if [[ -z $deb ]]; then
    cpack --config "$build/CPackConfig.cmake" -B "$scratch/package" >"$scratch/cpack.log" 2>&1 ||
        { cat "$scratch/cpack.log" >&2; fail "cpack failed"; }
    debs=("$scratch"/package/tavrelle_*.deb)
    deb=${debs[0]}
fi
[[ -f $deb ]] || fail "no package: $deb"

# A command inside the root, as root with /proc mounted (programs find themselves through it),
# or with --userspec as someone else; nothing of this shell's environment goes in.
inside() {
    local user=()
    if [[ $1 == --userspec=* ]]; then
        user=("$1")
        shift
    fi
    unshare --mount --propagation private -- sh -c \
        'mount -t proc proc "$0/proc" && exec chroot "$@"' "$root" "${user[@]}" "$root" \
        env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/tmp/home LANG=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "$@"
}
seconds_since() { echo $((SECONDS - $1)); }
total_installed_kib() {
    inside dpkg-query -W -f '${Installed-Size}\n' | awk '{ sum += $1 } END { print sum }'
}

started=$SECONDS
unshare --mount --propagation private -- \
    debootstrap --variant=minbase bookworm "$root" "$mirror" >"$scratch/debootstrap.log" 2>&1 ||
    { tail -n 20 "$scratch/debootstrap.log" >&2; fail "debootstrap from $mirror failed"; }
bootstrap_time=$(seconds_since "$started")
echo "fresh-debian: debootstrap from $mirror: ${bootstrap_time} s"
cp -L /etc/resolv.conf "$root/etc/resolv.conf"
packages_before=$(inside dpkg-query -W -f '.\n' | wc -l)
kib_before=$(total_installed_kib)

# Without the packages it recommends: what the package's own dependencies bring must do.
cp "$deb" "$root/tmp/"
started=$SECONDS
inside sh -c 'cd /tmp && apt-get update -q && apt-get install -y -q --no-install-recommends "$0"' \
    "./$(basename "$deb")" >"$scratch/install.log" 2>&1 ||
    { tail -n 30 "$scratch/install.log" >&2; fail "apt-get could not install $(basename "$deb")"; }
install_time=$(seconds_since "$started")
echo "fresh-debian: apt-get update and install of $(basename "$deb"): ${install_time} s"
packages_after=$(inside dpkg-query -W -f '.\n' | wc -l)
kib_after=$(total_installed_kib)

# Every library each program needs was installed with it.
missing=$(inside sh -c 'ldd /usr/bin/tavrelle* | grep "not found"' || true)
[[ -z $missing ]] || fail "libraries the package does not depend on: $missing"

# An ordinary user in a folder of their own, as after a login.
inside sh -c 'mkdir -p /tmp/home/work && chown -R nobody:nogroup /tmp/home'
as_user() { inside --userspec=nobody:nogroup sh -c 'cd /tmp/home/work && "$@"' sh "$@"; }

version=$(as_user tavrelle-batch --version) || fail "tavrelle-batch --version failed"
[[ $version == "tavrelle-batch "* ]] || fail "tavrelle-batch --version said: $version"

demos=/usr/share/tavrelle/DemoFiles
for demo in DemoNullAlleles.gen DemoNullAlleles.xls DemoThreePopulations.xlsx; do
    status=0
    as_user tavrelle-batch "$demos/$demo" --repeat 2 --seed 1 --on-suspect proceed \
        --json report.json >/dev/null 2>"$scratch/errors.txt" || status=$?
    ((status == 0)) ||
        fail "tavrelle-batch $demos/$demo ended with status $status: $(cat "$scratch/errors.txt")"
    python3 - "$root/tmp/home/work/report.json" <<'EOF' || fail "the JSON report of $demo"
import json, sys
report = json.load(open(sys.argv[1]))
populations = report["populations"]
assert populations, "no population"
for population in populations:
    assert population["status"] == "analysed" and population["error"] is None, population["error"]
    assert population["loci"], "no locus in population %s" % population["number"]
EOF
done

# The desktop program, when built: still running after its splash (3 s) means Qt found its
# platform plugin and the main window came up.
desktop="the desktop program was not built"
if [[ -e $root/usr/bin/tavrelle ]]; then
    status=0
    inside --userspec=nobody:nogroup env QT_QPA_PLATFORM=offscreen timeout 8 tavrelle \
        >"$scratch/desktop.log" 2>&1 || status=$?
    ((status == 124)) ||
        fail "the desktop program ended with status $status: $(cat "$scratch/desktop.log")"
    if grep -qi "could not\|failed\|cannot\|error" "$scratch/desktop.log"; then
        fail "the desktop program complained: $(cat "$scratch/desktop.log")"
    fi
    desktop="the desktop program started offscreen"
fi

depends=$(dpkg-deb -f "$deb" Depends | tr ',' '\n' | grep -c .)
package_kib=$(inside dpkg-query -W -f '${Installed-Size}' tavrelle)
echo "fresh-debian: package $(($(stat -c %s "$deb") / 1024)) KiB, installed ${package_kib} KiB;" \
    "$depends direct dependencies, $((packages_after - packages_before - 1)) packages pulled in," \
    "$(((kib_after - kib_before) / 1024)) MiB installed in all"
echo "fresh-debian: $version ran on the demo files as nobody; $desktop"
