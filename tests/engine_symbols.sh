#!/usr/bin/env bash
# The engine library must stand on the C++ standard library alone: no symbol it leaves for the
# linker to find may come from Qt or from a workbook library.
# Usage: engine_symbols.sh LIBRARY
set -euo pipefail
library=$1
undefined=$(nm --undefined-only "$library" | awk '$1 == "U" { print $2 }' | sort -u)
foreign=$(grep -E '^(_ZN?K?[0-9]*Q[A-Za-z]|Q[A-Z][a-z]|qt_|freexl_|gsf_|lxw_|workbook_|zip_|XML_)' \
    <<<"$undefined" || true)
if [[ -n "$foreign" ]]; then
    echo "engine_symbols: $library needs symbols from outside the standard library:" >&2
    c++filt <<<"$foreign" | head -20 >&2
    exit 1
fi
echo "engine_symbols: $(wc -l <<<"$undefined") undefined symbols in $library, none from Qt or a" \
    "workbook library"
