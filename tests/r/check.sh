#!/usr/bin/env bash
# CI: builds the R package's tarball and runs R CMD check --as-cran on it, with the batch program
# of build/ (or $1) for the test that compares the two. The check's log is in build-r/.
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
build=$(cd "${1:-$top/build}" && pwd)
export TAVRELLE_BATCH=$build/bin/tavrelle-batch
[[ -x $TAVRELLE_BATCH ]] || { echo "check.sh: no batch program at $TAVRELLE_BATCH" >&2; exit 1; }
tarball=$("$top/scripts/build-r")
cd "$(dirname "$tarball")"
# No network here: the incoming checks that ask CRAN are skipped.
_R_CHECK_CRAN_INCOMING_REMOTE_=false _R_CHECK_FORCE_SUGGESTS_=true MAKEFLAGS=${MAKEFLAGS:--j2} \
    R CMD check --as-cran --no-manual "$tarball" | tee check.log
# R CMD check exits 0 on warnings: fail on them too.
if grep -q -E "^Status: .*(ERROR|WARNING)" check.log; then
    cat tavrelle.Rcheck/00check.log >&2
    exit 1
fi
