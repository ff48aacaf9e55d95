#!/usr/bin/env bash
# The web version in a real browser: builds the site (scripts/build-web), installs puppeteer-core
# into build-web/node, then drives Debian's headless Chromium through the page (a demo file from
# file://) and through Tavrelle.load() (every file of ../shared/data over http, when that folder
# is there), comparing every report with tavrelle-batch's.
# Usage: tests/web/run.sh [BATCH] (default build/bin/tavrelle-batch; screenshots go to
# build-web/screenshots).
set -euo pipefail
top=$(cd "$(dirname "$0")/../.." && pwd)
batch=${1:-$top/build/bin/tavrelle-batch}
start=$SECONDS
[[ -x "$batch" ]] || { echo "web tests: no tavrelle-batch at $batch (scripts/build makes it)" >&2; exit 1; }
"$top/scripts/build-web"
"$top/tests/web/install.sh" "$top/build-web/node"
export NODE_PATH=$top/build-web/node/node_modules
node "$top/tests/web/page-test.js" "$top/build-web/site" "$batch" "$top/DemoFiles/DemoThreePopulations.gen" \
    "$top/build-web/screenshots"
data=$top/../shared/data
if [[ -d "$data" ]]; then
    node "$top/tests/web/api-test.js" "$top/build-web/site" "$batch" "$data"
else
    echo "web tests: $data is not there; the test on real data sets is skipped"
fi
echo "web tests: passed in $((SECONDS - start)) s"
