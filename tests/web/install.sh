#!/usr/bin/env bash
# Installs puppeteer-core, exactly as package-lock.json pins it, into a folder of the build
# (build-web/node by default), which the web tests and the benchmark take as NODE_PATH. Runs
# npm only when the lock changed since the last install.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
folder=${1:-$here/../../build-web/node}
mkdir -p "$folder"
if [[ -d "$folder/node_modules/puppeteer-core" ]] && cmp -s "$here/package-lock.json" "$folder/package-lock.json"; then
    exit 0
fi
cp "$here/package.json" "$here/package-lock.json" "$folder/"
(cd "$folder" && npm ci --no-audit --no-fund --loglevel=error)
