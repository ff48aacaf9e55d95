#!/usr/bin/env bash
# The study report as a real browser shows it: tavrelle-batch writes the report of a demo file,
# headless Chromium prints it to PDF, and the PDF's text must hold the report's key texts.
# Usage: report_in_browser.sh BATCH DEMO_FILE [SCREENSHOT_FOLDER]
set -euo pipefail
batch=$1
demo=$2
shots=${3:-}

browser=$(command -v chromium || command -v chromium-browser || true)
if [[ -z "$browser" ]]; then
    echo "report_in_browser: chromium is not installed (scripts/setup installs it)" >&2
    exit 1
fi
command -v pdftotext >/dev/null || {
    echo "report_in_browser: pdftotext is not installed (scripts/setup installs poppler-utils)" >&2
    exit 1
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$batch" "$demo" --repeat 2 --seed 7 --on-suspect proceed --report "$work/report.html" >/dev/null

flags=(--headless --no-sandbox --disable-gpu --disable-background-networking
       --disable-component-update --disable-sync --no-first-run
       --user-data-dir="$work/profile")
timeout 180 "$browser" "${flags[@]}" --print-to-pdf="$work/report.pdf" \
    "file://$work/report.html" >"$work/browser.log" 2>&1 || {
    cat "$work/browser.log" >&2
    echo "report_in_browser: chromium failed on $work/report.html" >&2
    exit 1
}
pdftotext -layout "$work/report.pdf" "$work/report.txt"

status=0
for text in "Study report" "Settings" "7 (set)" "Overview" "Heat map" \
    "N null allele" "The count axis starts at zero" "Homozygote Frequencies" \
    "Frequency of Differences" "Total observed homozygotes" "Chakraborty" "Brookfield 2"; do
    if ! grep -qF "$text" "$work/report.txt"; then
        echo "report_in_browser: the printed report lacks \"$text\"" >&2
        status=1
    fi
done
pages=$(pdfinfo "$work/report.pdf" 2>/dev/null | awk '/^Pages:/ {print $2}')
echo "report_in_browser: $demo printed to ${pages:-?} pages"

if [[ -n "$shots" ]]; then
    mkdir -p "$shots"
    cp "$work/report.pdf" "$shots/study-report.pdf"
    timeout 180 "$browser" "${flags[@]}" --window-size=1200,1600 \
        --screenshot="$shots/study-report.png" "file://$work/report.html" >/dev/null 2>&1 || true
fi
exit $status
