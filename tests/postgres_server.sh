# A PostgreSQL server of its own, on a socket in a temporary folder and on no network. Source it.
# shellcheck shell=bash

# start_server FOLDER: the roles owner (no password) and appliance (password "right:p@ss"), the
# database quilp. Sets $server_pid, and $socket for addresses.
start_server() {
  local folder=$1 programs=() as=()
  for programs in /usr/lib/postgresql/*/bin; do :; done
  if [ ! -x "$programs/initdb" ]; then
    echo "skipped: Debian's package postgresql is not installed" >&2
    exit 77
  fi
  mkdir "$folder/server"
  chmod 711 "$folder"
  if [ "$(id -u)" -eq 0 ]; then  # which the server refuses
    chown nobody "$folder/server"
    as=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
  fi
  socket=$folder/server
  (
    cd /
    "${as[@]}" "$programs/initdb" -D "$socket/data" -U owner -A trust -E UTF8 --locale=C.UTF-8 \
      --no-sync >"$folder/initdb.log" 2>&1
  ) || { cat "$folder/initdb.log" >&2; exit 1; }
  printf 'local all owner trust\nlocal all all scram-sha-256\n' >"$socket/data/pg_hba.conf"
  (
    cd /
    exec "${as[@]}" "$programs/postgres" -D "$socket/data" -k "$socket" -c listen_addresses= \
      -c fsync=off -c max_connections=200 >"$folder/server.log" 2>&1
  ) &
  server_pid=$!
  for _ in {1..100}; do
    "$programs/pg_isready" -q -h "$socket" && break
    sleep 0.1
  done
  sql postgres "CREATE DATABASE quilp" "CREATE ROLE appliance LOGIN PASSWORD 'right:p@ss'"
}

stop_server() {
  kill -INT "$server_pid"  # ends what is connected, too
  wait "$server_pid"
}

# sql DATABASE STATEMENT...
sql() {
  local database=$1 statement words=()
  shift
  for statement; do
    words+=(-c "$statement")
  done
  psql -X -q -A -t -h "$socket" -U owner -d "$database" "${words[@]}"
}
