#!/usr/bin/env bash
# The desktop entry, the AppStream metadata and the manual page as their tools judge them.
#
# Usage: metadata.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail
source=$1
build=$2
desktop-file-validate "$source/packaging/org.tavrelle.Tavrelle.desktop"
appstreamcli validate --no-net "$build/packaging/org.tavrelle.Tavrelle.metainfo.xml"
# groff's warnings about the manual page: none expected.
warnings=$(LC_ALL=C.UTF-8 groff -man -ww -z "$build/packaging/tavrelle-batch.1" 2>&1)
if [[ -n $warnings ]]; then
    echo "$warnings" >&2
    exit 1
fi
