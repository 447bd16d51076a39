#!/bin/bash
# Turns the summary lines of a `make bench` run (its log, first argument) into the README's
# benchmark table, headed by the machine it ran on, so the README can show the last run as is.
set -euo pipefail
Log=${1:?usage: bench-table.sh BENCH_LOG}

Cpu=$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1)
Memory=$(awk '/^MemTotal/ { printf "%.0f GiB", $2 / 1048576 }' /proc/meminfo)
FileSystem=$(df -T "${TMPDIR:-/tmp}" | awk 'NR == 2 { print $2 }')
echo
echo "Measured $(date -u +%Y-%m-%d) on ${Cpu:-an unknown CPU}, $(nproc) cores, $Memory of memory, ${FileSystem:-?} temporary folder, $(uname -sr):"
echo
echo "| Benchmark | Maptorn | Standard tool | Ratio (target) | Peak memory (limit) | Verdict |"
echo "|---|---|---|---|---|---|"
# "<name>: maptorn <time>[ (rate)], <tool> <time>[ (rate)], ratio R (target T), peak RSS M MiB (limit L)[, ...]: verdict"
perl -ne 'print "| $1 | $2 | $3 $4 | $5 ($6) | $7 ($8 MiB) | $9 |\n"
    if /^(extract|download|upload|install): maptorn ([0-9.]+ s)(?: \([^)]*\))?, (.+?) ([0-9.]+ s)(?: \([^)]*\))?, ratio ([0-9.]+) \(target ([0-9.]+)\), peak RSS ([0-9.]+ MiB) \(limit ([0-9]+)\).*: (targets met|TARGET MISSED)$/' "$Log"
