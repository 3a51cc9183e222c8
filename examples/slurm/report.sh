#!/usr/bin/env bash
# The job that follows the array of `submit`: brings the slices together. Ends with 2 where one of them is not whole.
set -euo pipefail

mapfile -t slices <"$WORK/slices"
parts=() findings=() failed=0
for slice in "${slices[@]}"; do
  [ ! -e "$WORK/$slice.study" ] || parts+=("$WORK/$slice.study")
  if [ -e "$WORK/$slice.json" ]; then
    findings+=("$WORK/$slice.json")
  else
    echo "$slice: not checked to the end; its files are in $WORK/$slice.files"
    failed=2
  fi
done
if [ ${#parts[@]} -gt 0 ]; then result-tables study add "$DATABASE" "${parts[@]}" || failed=2; fi
jq --slurp '{ findings: map(.findings) | add, compared: map(.compared) | add, withoutData: map(.withoutData) | add }' \
  "${findings[@]:-/dev/null}" >"$WORK/findings.json.new"
mv "$WORK/findings.json.new" "$WORK/findings.json"
result-tables study list "$DATABASE" --format csv --output "$WORK/runs.csv"
result-tables study worst "$DATABASE" --format csv --output "$WORK/worst.csv"
result-tables study export "$DATABASE" --format html --output "$WORK/report.html"
result-tables study list "$DATABASE"
exit $failed
