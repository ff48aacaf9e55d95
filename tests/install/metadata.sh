#!/usr/bin/env bash
# The desktop entry, the AppStream metadata, the Genepop file type and the manual pages as their
# tools judge them; the desktop entry opens the file type it names.
#
# Usage: metadata.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail
source=$1
build=$2
desktop=$source/packaging/org.tavrelle.Tavrelle.desktop
desktop-file-validate "$desktop"
appstreamcli validate --no-net "$build/packaging/org.tavrelle.Tavrelle.metainfo.xml"
grep -qx 'Exec=tavrelle %f' "$desktop" || { echo "the desktop entry passes no file" >&2; exit 1; }
grep -q '^MimeType=.*text/x-genepop;' "$desktop" || { echo "no Genepop type in the entry" >&2; exit 1; }
# The file type as the shared MIME database reads it: a .gen file is Genepop.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$scratch/mime/packages"
cp "$source/packaging/tavrelle-genepop.xml" "$scratch/mime/packages/tavrelle.xml"
update-mime-database "$scratch/mime" >/dev/null 2>&1
grep -q '^text/x-genepop:\*\.gen$' "$scratch/mime/globs" || { echo "*.gen is not Genepop" >&2; exit 1; }
# groff's warnings about the manual pages: none expected.
for page in "$build"/packaging/*.1; do
    warnings=$(LC_ALL=C.UTF-8 groff -man -ww -z "$page" 2>&1)
    if [[ -n $warnings ]]; then
        echo "$page: $warnings" >&2
        exit 1
    fi
done
