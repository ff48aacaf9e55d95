#!/usr/bin/env bash
# The web version against the native batch program on one thread: the microbov study (15
# populations, 30 loci; ../shared/data) with the same settings, timed in headless Chromium and
# natively, their ratio (the aim: within 2x), and the size of the site in bytes.
# Usage: bench/web_study.sh [BATCH] [DATA_FILE]; builds the site first (scripts/build-web).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
batch=${1:-$top/build/bin/tavrelle-batch}
data=${2:-$top/../shared/data/microbov.gen}
[[ -f "$data" ]] || { echo "web_study: no data file $data" >&2; exit 1; }
"$top/scripts/build-web" >/dev/null
"$top/tests/web/install.sh" "$top/build-web/node"
export NODE_PATH=$top/build-web/node/node_modules
node "$top/bench/web_study.js" "$top/build-web/site" "$batch" "$data" "$top/build-web/wasm"
