#!/usr/bin/env bash
# The R package against the batch program: how long the package takes to install from its
# tarball, and for each data file how long study() takes beside tavrelle-batch on the same file,
# seed, motif and threads (both with 1000 randomisations and 1000 bootstrap replicates). The two
# CSV tables are compared too: they must be the same.
#
#   bench/r_study.sh BUILD_DIR TARBALL GENEPOP_FILE...
#
# BUILD_DIR holds bin/tavrelle-batch; TARBALL is scripts/build-r's build-r/tavrelle_*.tar.gz.
# THREADS (environment, default 2) is given to both.
set -euo pipefail
usage="usage: bench/r_study.sh BUILD_DIR TARBALL GENEPOP_FILE..."
build=${1:?$usage}
tarball=${2:?$usage}
[[ -n ${3:-} ]] || { echo "$usage" >&2; exit 2; }
shift 2
threads=${THREADS:-2}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/lib"

# Wall-clock and processor seconds (user and system, children and threads included) of the
# command given: on a shared machine the second says more.
seconds() {
    local TIMEFORMAT='%R %U %S' times
    # The batch program's status tells whether some populations stopped (3): the CSV comparison
    # below is what checks the run.
    times=$({ time "$@" >/dev/null 2>&1 || true; } 2>&1)
    awk '{ printf "%.1f %.1f", $1, $2 + $3 }' <<<"$times"
}

install=$(MAKEFLAGS=-j2 seconds R CMD INSTALL -l "$work/lib" "$tarball")
read -r install_wall install_cpu <<<"$install"
printf 'seconds of wall clock and of processor, %s thread(s)\n' "$threads"
printf '  R CMD INSTALL of the tarball    %7.1f %7.1f\n' "$install_wall" "$install_cpu"
for data in "$@"; do
    batch=$(seconds "$build/bin/tavrelle-batch" "$data" --repeat 2 --seed 2024 \
        --threads "$threads" --csv "$work/batch.csv")
    R_LIBS="$work/lib" Rscript -e '
        arguments <- commandArgs(trailingOnly = TRUE)
        library(tavrelle)
        time <- system.time(result <- suppressMessages(
            study(arguments[1], motif = 2, seed = 2024, threads = as.integer(arguments[2]))
        ))
        cpu <- time[["user.self"]] + time[["sys.self"]]
        same <- identical(attr(result, "csv"),
                          readChar(arguments[3], file.size(arguments[3]), useBytes = TRUE))
        cat(sprintf("%.1f %.1f", time[["elapsed"]], cpu), if (same) "same" else "DIFFERENT",
            "\n")
    ' "$data" "$threads" "$work/batch.csv" >"$work/r.txt"
    read -r study_wall study_cpu same <"$work/r.txt"
    read -r batch_wall batch_cpu <<<"$batch"
    printf '%s (%s KB)\n' "$(basename "$data")" "$(($(stat -c %s "$data") / 1024))"
    printf '  tavrelle-batch --csv            %7.1f %7.1f\n' "$batch_wall" "$batch_cpu"
    printf '  study() in R                    %7.1f %7.1f\n' "$study_wall" "$study_cpu"
    printf '  CSV tables                      %s\n' "$same"
done
