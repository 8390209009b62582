#!/usr/bin/env bash
# kvd render against rrdtool graph on the same figures, and the fixed cost of a small render.
#
# Writes 4 series of 250,000 points over one year (one every 126 s) both as a Kavendi
# repository and as a round-robin database, draws each as a 1280x800 PNG of all four curves
# over the year, and times the two side by side with hyperfine; then times a one-curve,
# one-day picture of the same repository against `kvd key x`, which only starts and exits.
# Prints the medians and their ratios; hyperfine's JSON is kept in the work directory.
#
# Usage: bench/peers.sh [--build DIR] [--baseline KVD] [--runs N] [--keep DIR]
#   --build DIR      the build whose bin/kvd and bin/peerdata are used (default build; built
#                    when they are missing)
#   --baseline KVD   another kvd binary timed in the same runs, for a before/after figure
#   --runs N         timed runs of each command (default 30, at least 20), in 5 rounds
#                    that take turns, each after a warm-up run
#   --keep DIR       work in DIR and keep it (default: a temporary directory, removed)
# Installs rrdtool, hyperfine and python3 from Debian when missing; when they cannot be had
# it says why and exits 0 without a figure.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

build=build
baseline=
runs=30
rounds=5
keep=
while [ $# -gt 0 ]; do
    case $1 in
    --build) build=$2; shift 2 ;;
    --baseline) baseline=$2; shift 2 ;;
    --runs) runs=$2; shift 2 ;;
    --keep) keep=$2; shift 2 ;;
    -h | --help) sed -n '2,18p' "$0" | cut -c3-; exit 0 ;;
    *) echo "peers.sh: unknown argument $1" >&2; exit 2 ;;
    esac
done
case $runs in '' | *[!0-9]* | ? | 1?) echo "peers.sh: --runs takes a count of 20 or more" >&2; exit 2 ;; esac
if [ -n "$baseline" ] && [ ! -x "$baseline" ]; then
    echo "peers.sh: $baseline is not an executable" >&2
    exit 2
fi

if ! command -v rrdtool >/dev/null || ! command -v hyperfine >/dev/null ||
    ! command -v python3 >/dev/null; then
    (kvd_install_missing rrdtool hyperfine python3) >&2 || true
fi
for tool in rrdtool hyperfine python3; do
    if ! command -v $tool >/dev/null; then
        echo "peers.sh: skipped: $tool is not installed and could not be installed"
        exit 0
    fi
done

if [ ! -x "$build/bin/kvd" ] || [ ! -x "$build/bin/peerdata" ]; then
    kvd_build "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >&2
fi
kvd=$(realpath "$build/bin/kvd")
[ -x "$build/bin/peerdata" ] || {
    echo "peers.sh: skipped: $build/bin/peerdata was not built (Google Benchmark missing?)"
    exit 0
}

if [ -n "$keep" ]; then
    mkdir -p "$keep"
    work=$(realpath "$keep")
else
    work=$(mktemp -d "${TMPDIR:-/tmp}/kvd-peers-XXXXXX")
    trap 'rm -rf "$work"' EXIT
fi
# The chart's dates and rrdtool's axis are in local time: the same zone for both.
export TZ=UTC LANG=C.UTF-8 LC_ALL=C.UTF-8

# 2023 in seconds since 1970, UTC; the points start at the first multiple of the step in it.
year_start=1672531200
year_end=1704067200
if [ ! -s "$work/peer.rrd" ] || [ ! -s "$work/repo/cov.peer.4.kvd" ]; then
    "$build/bin/peerdata" "$work" 250000 126 $year_start
    rrdtool restore -f "$work/peer.xml" "$work/peer.rrd"
    rm -f "$work/peer.xml"
fi

curves=()
rrd=()
colours=(00ff00 0000ff 00ffff ff00ff)
names=(statements branches functions conditions)
for k in 1 2 3 4; do
    curves+=(--curve "cov4:peer:$k")
    rrd+=("DEF:s$k=$work/peer.rrd:${names[k - 1]}:AVERAGE" "LINE1:s$k#${colours[k - 1]}:${names[k - 1]}")
done
year=(render --root "$work/repo" "${curves[@]}" --from 2023-01-01 --to 2024-01-01
    --size 1280x800 -o "$work/kvd-year.png")
day=(render --root "$work/repo" --curve cov4:peer:1 --from 2023-06-01 --to 2023-06-02
    --size 1280x800 -o "$work/kvd-day.png")
graph=(rrdtool graph "$work/rrd-year.png" --full-size-mode -w 1280 -h 800
    -s $year_start -e $year_end "${rrd[@]}")

# Each command once, so that a failure is seen here rather than as a time.
"$kvd" "${year[@]}"
"$kvd" "${day[@]}"
"${graph[@]}" >/dev/null
[ -z "$baseline" ] || { "$baseline" "${year[@]}" && "$baseline" "${day[@]}"; }

quoted() { printf '%q ' "$@"; }
# timed NAME LABEL COMMAND...: rounds of hyperfine over the commands, each round in another
# order, so that a slow spell of the shared machine falls on every command alike; the
# rounds' JSON go to $work/NAME-R.json.
timed() {
    local name=$1 labels=() commands=() args k r
    shift
    while [ $# -gt 0 ]; do
        labels+=("$1")
        commands+=("$2")
        shift 2
    done
    rm -f "$work/$name"-*.json
    for ((r = 0; r < rounds; r++)); do
        args=()
        for ((k = 0; k < ${#labels[@]}; k++)); do
            args+=(-n "${labels[(k + r) % ${#labels[@]}]}" "${commands[(k + r) % ${#labels[@]}]}")
        done
        hyperfine -N --style none --warmup 1 --runs $(((runs + rounds - 1) / rounds)) \
            --export-json "$work/$name-$r.json" "${args[@]}" >/dev/null
    done
}
# medians NAME: "LABEL MEDIAN_MS" for each command, over the runs of every round.
medians() {
    python3 - "$work" "$1" <<'PY'
import glob, json, statistics, sys
times = {}
for path in sorted(glob.glob(f"{sys.argv[1]}/{sys.argv[2]}-*.json")):
    for result in json.load(open(path))["results"]:
        times.setdefault(result["command"], []).extend(result["times"])
for label, runs in times.items():
    print(label, f"{statistics.median(runs) * 1000:.1f}")
PY
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }

big=(kvd "$(quoted "$kvd" "${year[@]}")" rrdtool "$(quoted "${graph[@]}")")
small=(kvd "$(quoted "$kvd" "${day[@]}")" key "$(quoted "$kvd" key x)")
if [ -n "$baseline" ]; then
    big+=(baseline "$(quoted "$baseline" "${year[@]}")")
    small+=(baseline "$(quoted "$baseline" "${day[@]}")" baseline-key "$(quoted "$baseline" key x)")
fi
timed year "${big[@]}"
timed day "${small[@]}"
declare -A year_ms day_ms
while read -r label ms; do year_ms[$label]=$ms; done < <(medians year)
while read -r label ms; do day_ms[$label]=$ms; done < <(medians day)

echo "Medians of $runs runs (ms), in $rounds rounds of hyperfine that take turns"
echo "4 x 250,000 points over a year, 1280x800 PNG:"
printf '  %-22s %8s\n' "kvd render" "${year_ms[kvd]}" "rrdtool graph" "${year_ms[rrdtool]}"
printf '  %-22s %8s   (goal: at most 0.50)\n' "kvd / rrdtool" \
    "$(ratio "${year_ms[kvd]}" "${year_ms[rrdtool]}")"
echo "One curve, one day of that year's file, 1280x800 PNG:"
printf '  %-22s %8s   (goal: at most 30 ms)\n' "kvd render" "${day_ms[kvd]}"
printf '  %-22s %8s\n' "kvd key x" "${day_ms[key]}"
printf '  %-22s %8s\n' "render / key" "$(ratio "${day_ms[kvd]}" "${day_ms[key]}")"
if [ -n "$baseline" ]; then
    echo "Baseline $baseline, same runs:"
    printf '  %-22s %8s   (kvd / baseline %s, baseline / rrdtool %s)\n' "year render" \
        "${year_ms[baseline]}" "$(ratio "${year_ms[kvd]}" "${year_ms[baseline]}")" \
        "$(ratio "${year_ms[baseline]}" "${year_ms[rrdtool]}")"
    printf '  %-22s %8s   (kvd / baseline %s)\n' "day render" "${day_ms[baseline]}" \
        "$(ratio "${day_ms[kvd]}" "${day_ms[baseline]}")"
    printf '  %-22s %8s   (kvd / baseline %s)\n' "key x" "${day_ms[baseline-key]}" \
        "$(ratio "${day_ms[key]}" "${day_ms[baseline-key]}")"
fi
if [ -n "$keep" ]; then
    echo "hyperfine's figures: $work/year-*.json, $work/day-*.json"
else
    echo "hyperfine's figures are removed with $work; --keep DIR keeps them"
fi
