#!/usr/bin/env bash
# Installs Debian packages in a fresh Debian, uses them as people do, removes them, and fails on what is left behind.
# usage: in-bare-debian.sh CACHE PACKAGES VERSION
# CACHE: folder that keeps the fresh systems for the next time; PACKAGES: folder; VERSION: that the program says
# Exit code 77 where no such system can be had: without root, debootstrap or network.
set -euo pipefail

cache=$1 version=$3
debs=("$2"/*.deb)
[ "$(id -u)" -eq 0 ] && command -v debootstrap chroot >/dev/null || exit 77
sources=/etc/apt/sources.list.d/debian.sources
mirror=$(awk '/^URIs/ { print $2; exit }' "$sources" 2>/dev/null) || exit 77
root=$(mktemp -d)
chmod 755 "$root"
log=$cache/apt.log
stop() {
  umount "$root/proc" "$root/var/cache/apt/archives" 2>/dev/null || true
  rm -rf --one-file-system "$root"
}
trap stop EXIT
trap 'exit 143' TERM INT

inside() { DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 chroot "$root" "$@" </dev/null; }
apt_get() {
  inside apt-get -y -qq -o Dpkg::Options::=--force-unsafe-io --no-install-recommends "$@" >"$log" 2>&1 ||
    failed "apt-get $*: $(cat "$log")"
}
keep() { tar -C "$root" -cf "$1.part" .; mv "$1.part" "$1"; }
unpack() { find "$root" -mindepth 1 -delete; tar -C "$root" -xf "$1"; }
failed() {
  echo "in-bare-debian.sh: $1" >&2
  exit 1
}

# What is kept: a system with nothing but what every one has, and one with a compiler.
mkdir -p "$cache/archives/partial"
if [ ! -e "$cache/bare.tar" ]; then
  debootstrap --variant=minbase bookworm "$root" "$mirror" >"$cache/debootstrap.log" 2>&1 || exit 77
  rm -f "$root/etc/apt/sources.list"
  cp "$sources" "$root/etc/apt/sources.list.d/"
  # Those of containers throw away what is downloaded.
  find /etc/apt/apt.conf.d -type f ! -name 'docker*' -exec cp -t "$root/etc/apt/apt.conf.d" {} +
  inside apt-get update -qq || exit 77
  inside apt-get clean
  keep "$cache/bare.tar"
fi
if [ ! -e "$cache/compiler.tar" ]; then
  unpack "$cache/bare.tar"
  apt_get install g++ cmake make pkg-config
  inside apt-get clean
  keep "$cache/compiler.tar"
fi

# In a fresh system: the packages, and what is downloaded once.
names=() packed=()
for deb in "${debs[@]}"; do
  names+=("$(dpkg-deb -f "$deb" Package)")
  packed+=("/debs/$(basename "$deb")")
done
begin() {
  unpack "$cache/$1.tar"
  mkdir "$root/debs"
  cp "${debs[@]}" "$root/debs/"
  mount -t proc proc "$root/proc"
  mount --bind "$cache/archives" "$root/var/cache/apt/archives"
}
dependencies() {
  local deb
  for deb in "${debs[@]}"; do dpkg-deb -f "$deb" Depends; done |
    tr , '\n' | sed 's/ (.*//; s/|.*//; s/ //g' | grep -vxF "$(printf '%s\n' "${names[@]}")" | sort -u
}
files() {
  (cd "$root" && find . -xdev \( -path ./proc -o -path ./debs -o -path ./tmp -o -path './var/*/*' \) -prune -o -print | sort)
}

use_program() {
  local shared=/usr/share/doc/result-tables/examples/door_line/door_line.results.json out
  [ "$(inside result-tables --version)" = "result-tables $version" ] || failed "another version of the program"
  out=$(inside env LC_ALL=de_DE.UTF-8 result-tables demo)
  [[ $out == *Clamped\ panel:\ Spanner* ]] || failed "expected the German catalogue, found: ${out:0:200}"
  out=$(inside result-tables show "$shared" --unit "OP30 Joining" --family Bolts --format csv)
  [[ $out == *,OP30\ Joining,*,Bolts,*ClampNormalForce* ]] || failed "expected the sample's bolts, found: ${out:0:200}"
  out=$(inside result-tables check "$shared" >/dev/null || echo $?)
  [ "$out" = 1 ] || failed "expected findings in the sample, found exit code ${out:-0}"
  # shellcheck disable=SC2016  # the shell inside expands it
  out=$(inside bash -c '. /usr/share/bash-completion/completions/result-tables && COMP_LINE="result-tables lim" COMP_POINT=17 &&
    _result_tables result-tables && echo "${COMPREPLY[@]}"')
  [ "$out" = limits ] || failed "expected bash to complete a command, found: $out"
  [ -e "$root/usr/share/zsh/vendor-completions/_result-tables" ] || failed "expected the completion for zsh"
  inside sh -c 'zcat /usr/share/man/man1/result-tables-limits-set.1.gz' | grep -q 'Set a limit of one kind' ||
    failed "expected the manual page of limits set"
}

use_python() {
  [[ " ${names[*]} " == *" python3-result-tables "* ]] || return 0
  local out
  # As root and with what Python does when nothing is said: modules that are not compiled yet are, beside their sources.
  out=$(inside env --unset=PYTHONDONTWRITEBYTECODE python3 -c 'import result_tables; print(result_tables.__name__)')
  [ "$out" = result_tables ] || failed "expected the Python module, found: $out"
  [ -n "$(inside find /usr/lib/python3/dist-packages/result_tables -name '*.pyc')" ] || failed "expected compiled modules"
}

use_library() {
  local out expected="Clamps, Forces"
  cp -r "$root/usr/share/doc/result-tables/examples/print_table" "$root/tmp/"
  inside sh -c 'cmake -S /tmp/print_table -B /tmp/build && cmake --build /tmp/build' >/dev/null
  out=$(inside /tmp/build/print_table)
  [ "${out%%$'\n'*}" = "$expected" ] || failed "expected a table of the consumer by find_package, found: $out"
  # shellcheck disable=SC2016  # the shell inside expands it
  inside sh -c 'g++ -o /tmp/printed /tmp/print_table/main.cpp $(pkg-config --cflags --libs Business_TableProperties)'
  [ "$(inside /tmp/printed)" = "$out" ] || failed "expected the same table of the consumer by pkg-config"
}

begin bare
mapfile -t needed < <(dependencies)
apt_get install "${needed[@]}"
before=$(files)
apt_get install "${packed[@]}"
use_program
use_python
[ -z "$(inside dpkg --verify "${names[@]}")" ] || failed "expected the files as they were packed"
apt_get remove "${names[@]}"
inside dpkg --purge "${names[@]}" >"$log" 2>&1
diff <(echo "$before") <(files) || failed "expected nothing left behind"
umount "$root/proc" "$root/var/cache/apt/archives"

begin compiler
apt_get install "${packed[@]}"
use_library
echo "installed, used and removed: ${names[*]}"
