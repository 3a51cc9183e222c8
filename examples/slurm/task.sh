#!/usr/bin/env bash
# A task of the array that `submit` starts: checks the files of its slice, and adds them to the study.
set -euo pipefail

slice=$(sed -n "${SLURM_ARRAY_TASK_ID}p" "$WORK/slices")
mapfile -t files <"$WORK/$slice.files"
findings=$WORK/$slice.json part=$WORK/$slice.study
failed=0

# Whether neither a file of the slice nor its limits are newer than what was made of them.
is_current() {
  local file read=()
  for file in "${files[@]}"; do
    read+=("$file")
    [ ! -e "$file.limits" ] || read+=("$file.limits")
  done
  [ -e "$1" ] && [ -z "$(find "${read[@]}" -newer "$1" -print -quit)" ]
}

if is_current "$findings"; then
  echo "$slice: checked before"
else
  code=0
  result-tables check --jobs "${SLURM_CPUS_PER_TASK:-1}" --format json --output "$findings.new" "${files[@]}" || code=$?
  if [ $code -eq 2 ]; then failed=1; else mv "$findings.new" "$findings"; fi # 1: there are findings, 3: no limits
fi

case $DATABASE in
  postgresql://* | postgres://*)
    result-tables study add --jobs "${SLURM_CPUS_PER_TASK:-1}" "$DATABASE" "${files[@]}" || failed=1
    ;;
  *)
    # A file of SQLite must not be written over a network: each task fills one on the disk of its node, and copies it whole.
    local=$(mktemp -d)
    trap 'rm -rf "$local"' EXIT
    if [ -e "$part" ]; then cp "$part" "$local/study"; fi
    result-tables study add --jobs "${SLURM_CPUS_PER_TASK:-1}" "$local/study" "${files[@]}" || failed=1
    cp "$local/study" "$part.new"
    mv "$part.new" "$part"
    ;;
esac
exit $failed
