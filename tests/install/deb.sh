#!/usr/bin/env bash
# CPack's .deb from the build tree: its file list holds the programs under /usr/bin and their
# files under /usr/share/tavrelle, apt knows every package it depends on, and its batch program,
# unpacked, finds its tables.
#
# Usage: deb.sh BUILD_FOLDER
set -euo pipefail
build=$(cd "$1" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() {
    echo "deb: $*" >&2
    exit 1
}

cpack --config "$build/CPackConfig.cmake" -B "$scratch" >"$scratch/cpack.log" 2>&1 ||
    { cat "$scratch/cpack.log" >&2; fail "cpack failed"; }
debs=("$scratch"/tavrelle_*.deb)
deb=${debs[0]}
[[ -f $deb ]] || fail "cpack made no .deb"

dpkg-deb -c "$deb" | awk '{ print $6 }' | sed 's|^\./|/|' >"$scratch/contents"
expected=(
    /usr/bin/tavrelle-batch /usr/share/tavrelle/ChiSquareTable.txt
    /usr/share/tavrelle/DemoFiles/DemoNullAlleles.gen /usr/share/man/man1/tavrelle-batch.1.gz
    /usr/share/doc/tavrelle/copyright /usr/share/doc/tavrelle/changelog.gz
    /usr/bin/tavrelle-merge-csv /usr/share/tavrelle/workflows/Snakefile
)
if [[ -e $build/bin/tavrelle ]]; then
    expected+=(/usr/bin/tavrelle /usr/share/tavrelle/User_Guide.pdf
        /usr/share/tavrelle/TavrelleHelp/ /usr/share/applications/org.tavrelle.Tavrelle.desktop
        /usr/share/metainfo/org.tavrelle.Tavrelle.metainfo.xml
        /usr/share/icons/hicolor/256x256/apps/org.tavrelle.Tavrelle.png)
fi
for path in "${expected[@]}"; do
    grep -qxF "$path" "$scratch/contents" || fail "not in the package: $path"
done
outside=$(grep -v '^/usr/\|^/$' "$scratch/contents" || true)
[[ -z $outside ]] || fail "files outside /usr: $outside"

depends=$(dpkg-deb -f "$deb" Depends)
[[ -n $depends ]] || fail "the package names no dependencies"
# Every dependency is a Debian package apt knows (one look-up: apt-cache is slow to start).
needed=$(tr ',|' '\n\n' <<<"$depends" | sed 's/(.*//; s/ //g' | sort -u)
# shellcheck disable=SC2086
known=$(apt-cache show --no-all-versions $needed 2>/dev/null | sed -n 's/^Package: //p' | sort -u)
unknown=$(comm -23 <(echo "$needed") <(echo "$known"))
[[ -z $unknown ]] || fail "apt knows no package $unknown"
# Lintian, as Debian judges a package: no error and no warning (its notes, I:, are advice).
lintian --tag-display-limit 0 "$deb" >"$scratch/lintian.log" 2>&1 || true
if grep -q '^[EW]:' "$scratch/lintian.log"; then
    cat "$scratch/lintian.log" >&2
    fail "lintian found errors or warnings"
fi
# The package's own batch program, unpacked, analyses its own demo file.
dpkg-deb -x "$deb" "$scratch/root"
mkdir -p "$scratch/work"
(cd "$scratch/work" && "$scratch/root/usr/bin/tavrelle-batch" \
    "$scratch/root/usr/share/tavrelle/DemoFiles/DemoThreePopulations.gen" --repeat 2 --seed 3 \
    --on-suspect proceed --csv loci.csv >report.txt) || fail "the unpacked batch program failed"
(($(wc -l <"$scratch/work/loci.csv") > 1)) || fail "the unpacked batch program analysed nothing"

echo "deb: $(basename "$deb"), $(stat -c %s "$deb") bytes, $(grep -vc '/$' "$scratch/contents") files"
echo "deb: Depends: $depends"
