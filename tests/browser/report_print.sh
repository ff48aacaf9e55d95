#!/usr/bin/env bash
# The study report printed as a paper's supplement: tavrelle-batch writes the report of a small
# panel (nancycats: 17 populations x 9 loci) and of a large one (79 populations x 25 loci),
# headless Chromium prints each to PDF on A4 (and the small one on Letter), and the PDFs are
# checked: pages counted (the small panel well under 100 on A4), every table within the page
# (the last column of every table found in the PDF's text, and no word beyond the page's right
# edge), and the large panel's page under 6 MB. The real panels come from ../shared/data beside
# the repository; without it, data of the same shape are simulated.
# Usage: report_print.sh BATCH SIMULATE [PICTURE_FOLDER]   (pages as PNG, for a look)
set -euo pipefail
batch=$1
simulate=$2
pictures=${3:-}
top=$(cd "$(dirname "$0")/../.." && pwd)
start=$SECONDS

browser=$(command -v chromium || command -v chromium-browser || true)
[[ -n "$browser" ]] || { echo "report_print: chromium is not installed (scripts/setup installs it)" >&2; exit 1; }
for tool in pdftotext pdfinfo; do
    command -v $tool >/dev/null || { echo "report_print: $tool is missing (scripts/setup installs poppler-utils)" >&2; exit 1; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
data=${TAVRELLE_SHARED_DATA:-$top/../shared/data}  # another folder, or none, for a try
if [[ -f "$data/nancycats.gen" && -f "$data/ehgdp_25loci.gen" ]]; then
    small=$data/nancycats.gen
    large=$data/ehgdp_25loci.gen
else
    echo "report_print: $data is not there; simulated panels of the same shape are used"
    small=$work/small.gen
    large=$work/large.gen
    # Dinucleotide loci, as the reports below are run with --repeat 2.
    "$simulate" --seed 31 --populations 17 --samples 14 --loci 9 --default repeat=2,missing=0.05 \
        --out "$small"
    "$simulate" --seed 32 --populations 79 --samples 17 --loci 25 --default repeat=2,missing=0.03 \
        --out "$large"
fi

status=0
fail() {
    echo "report_print: $*" >&2
    status=1
}

# Prints $1 (HTML) on paper $2 to $3 (PDF).
print() {
    sed "s|</style>|@page { size: $2; }\n</style>|" "$1" >"$work/paper.html"
    timeout 600 "$browser" --headless --no-sandbox --disable-gpu --disable-background-networking \
        --disable-component-update --disable-sync --no-first-run --no-pdf-header-footer \
        --user-data-dir="$work/profile" --print-to-pdf="$3" "file://$work/paper.html" \
        >"$work/browser.log" 2>&1 || {
        cat "$work/browser.log" >&2
        fail "chromium failed on $1"
        return 1
    }
}

# Checks the PDF $1 of the report $2: every table's last column is in its text, no word lies
# beyond the page's right edge; prints the pages, and fails when a check does.
check() {
    local pdf=$1 html=$2 ok=0
    pdftotext -layout "$pdf" "$work/text.txt"
    # Every table's header row whole on the page: its first and last cells' words side by side
    # in the text (a header that wraps spreads over three lines at most).
    python3 - "$html" "$work/text.txt" <<'PY' || ok=1
import html, re, sys
page = open(sys.argv[1], encoding="utf-8").read()
lines = [re.sub(r"\s+", " ", line) for line in open(sys.argv[2], encoding="utf-8").read().splitlines()]
windows = [" ".join(lines[max(0, i - 1):i + 2]) for i in range(len(lines))]
missing = set()
for row in re.findall(r"<table[^>]*>\s*(?:<thead>)?<tr>(.*?)</tr>", page, re.S):
    cells = [html.unescape(re.sub(r"<[^>]+>", "", c)).split() for c in re.findall(r"<th[^>]*>(.*?)</th>", row, re.S)]
    if len(cells) < 2 or not cells[0] or not cells[-1]:
        continue
    first, last = cells[0][0], cells[-1][0]
    if not any(first in w and re.search(r"(^|\s)" + re.escape(last) + r"(\s|$)", w) for w in windows):
        missing.add(first + " ... " + " ".join(cells[-1]))
# The last population is named as often in print as on the page (the overview's groups, the
# heat map, its section): a drawing or table cut at the page's foot loses some.
names = re.findall(r"<h2>Population \d+: (.*?)</h2>", page)
if names:
    last = html.unescape(names[-1]).split()[0]
    visible = html.unescape(re.sub(r"<[^>]+>", " ", re.sub(r"<(style|title)>.*?</\1>", "", page, flags=re.S)))
    shown, printed = visible.split().count(last), " ".join(lines).split().count(last)
    if printed < shown:
        missing.add("%s named %d times in print, %d on the page" % (last, printed, shown))
if missing:
    print("report_print: cut at the page's edge: " + "; ".join(sorted(missing)), file=sys.stderr)
    sys.exit(1)
PY
    pdftotext -bbox "$pdf" "$work/words.html"
    python3 - "$work/words.html" <<'PY' || ok=1
import re, sys
words = open(sys.argv[1], encoding="utf-8").read()
width = None
beyond = []
for tag in re.findall(r"<(?:page|word)[^>]*>", words):
    if tag.startswith("<page"):
        width = float(re.search(r'width="([\d.]+)"', tag).group(1))
    elif float(re.search(r'xMax="([\d.]+)"', tag).group(1)) > width + 0.5:
        beyond.append(tag)
if beyond:
    print("report_print: %d words beyond the page's right edge, the first: %s" % (len(beyond), beyond[0]), file=sys.stderr)
    sys.exit(1)
PY
    pdfinfo "$pdf" | awk '/^Pages:/ {print $2}'
    return $ok
}

for panel in small large; do
    input=${!panel}
    report=$work/$panel.html
    "$batch" "$input" --repeat 2 --seed 7 --on-suspect proceed --bootstrap 20 --threads 2 \
        --report "$report" >/dev/null 2>&1 || [[ $? -eq 3 ]] || fail "tavrelle-batch failed on $input"
    bytes=$(stat -c %s "$report")
    print "$report" A4 "$work/$panel-a4.pdf" || continue
    pages=$(check "$work/$panel-a4.pdf" "$report") || fail "$(basename "$input"): a table is cut on A4"
    echo "report_print: $(basename "$input"): $bytes bytes of HTML, $pages A4 pages"
    if [[ $panel == small ]]; then
        ((pages < 100)) || fail "the small panel printed to $pages A4 pages, not under 100"
        if print "$report" Letter "$work/$panel-letter.pdf"; then
            letter=$(check "$work/$panel-letter.pdf" "$report") ||
                fail "$(basename "$input"): a table is cut on Letter"
            echo "report_print: $(basename "$input"): $letter Letter pages"
        fi
    else
        ((bytes < 6000000)) || fail "the large panel's report is $bytes bytes, not under 6 MB"
    fi
    if [[ -n "$pictures" ]]; then
        mkdir -p "$pictures"
        cp "$work/$panel-a4.pdf" "$pictures/"
        pdftoppm -r 60 -png -f 1 -l 8 "$work/$panel-a4.pdf" "$pictures/$panel-a4"
    fi
done
echo "report_print: done in $((SECONDS - start)) s"
exit $status
