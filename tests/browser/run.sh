#!/usr/bin/env bash
# Runs node for a test of the report in a browser: tests/browser/run.sh PACKAGES ARGUMENTS...
# Without arguments it brings the folder PACKAGES up to date with package-lock.json instead, from npm's registry.
# Exit code 77: a program is missing, and the test is skipped.
set -euo pipefail
folder=$(cd "$(dirname "$0")" && pwd)

for program in node npm chromium; do
  command -v "$program" >/dev/null || {
    echo "Skipped: $program is missing, which setup/packages-browser.txt or setup/packages-node.txt brings"
    exit 77
  }
done

packages=$(realpath --canonicalize-missing "$1")
shift
if [ $# -gt 0 ]; then
  KESTREL_BROWSER=$(command -v chromium) KESTREL_BROWSER_PACKAGES=$packages exec node "$@"
fi

cmp --quiet "$folder/package-lock.json" "$packages/installed-lock.json" && exit 0
mkdir -p "$packages"
cp "$folder/package.json" "$folder/package-lock.json" "$packages"
npm ci --prefix "$packages" --ignore-scripts --no-audit --no-fund
cp "$packages/package-lock.json" "$packages/installed-lock.json"
