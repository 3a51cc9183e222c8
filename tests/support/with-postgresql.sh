#!/usr/bin/env bash
# Runs a command beside a PostgreSQL server of its own, which listens on a socket in a temporary folder alone and ends with
# it. The command finds the server by PGHOST, PGUSER and PGDATABASE; PG_SERVER is its process. Exits with 77 where there is
# no PostgreSQL.
set -euo pipefail
bin=$(printf '%s\n' /usr/lib/postgresql/*/bin | sort -V | tail -1)
[ -x "$bin/initdb" ] || {
  echo "skipped: there is no PostgreSQL"
  exit 77
}
folder=$(mktemp -d)
chmod 755 "$folder"
as=(setpriv)
if [ "$(id -u)" -eq 0 ]; then
  chown postgres: "$folder"
  as+=(--reuid=postgres --regid=postgres --init-groups)
fi
(cd "$folder" && "${as[@]}" --no-new-privs "$bin/initdb" -D "$folder/data" -U postgres -A trust -E UTF8 --locale=C.UTF-8 --no-sync) \
  >"$folder/initdb.log"
(cd "$folder" && exec "${as[@]}" --pdeathsig=INT "$bin/postgres" -D "$folder/data" -c listen_addresses= -c unix_socket_directories="$folder") \
  >"$folder/log" 2>&1 &
server=$!
stop() {
  kill -INT "$server" 2>/dev/null || true
  wait "$server" 2>/dev/null || true
  rm -rf "$folder"
}
trap stop EXIT
trap 'exit 143' TERM INT
export PGHOST=$folder PGUSER=postgres PGDATABASE=postgres PG_SERVER=$server
for _ in $(seq 200); do
  "$bin/pg_isready" --quiet && break
  sleep .1
done
"$bin/pg_isready" --quiet || {
  cat "$folder/log" >&2
  exit 3
}
"$@"
