# Sourced by test.sh (or by hand in a development shell): pg_start starts a
# throw-away PostgreSQL server on loopback in a temporary directory, run by
# an unprivileged user, and creates the test database; pg_stop stops it and
# removes the directory. Safe under "set -euo pipefail".
#
# Exports for the tests:
#   KDVQ_PG_CONNECT          ODBC connection string of the test database
#   KDVQ_PG_PORT, KDVQ_PG_BIN, KDVQ_PG_SOCKET_DIR
#                            the server's port, its programs and its socket
#                            directory (for psql)
#   KDVQ_PG_PASSWORD_ROLE    "kdvq_password": a role that must give the
#                            password "kdvq-secret" (over TCP)
#   KDVQ_SQLITE_ODBC_DRIVER  the SQLite 3 ODBC driver (registered name or
#                            the library's path); unset when not installed
# A KDVQ_PG_CONNECT already set names a server of the caller's own: then no
# server is started.

# The registered name of the first ODBC driver whose name or library
# matches pattern (extended regular expression), else the path of the
# library itself when it exists, else nothing.
_kdvq_odbc_driver() {
  local pattern=$1 library=$2
  local ini name
  ini=$(odbcinst -j 2>/dev/null | sed -n 's/^DRIVERS[^:]*: *//p' || true)
  if [ -n "$ini" ] && [ -r "$ini" ]; then
    name=$(awk -v pat="$pattern" '
      /^\[/ { section = substr($0, 2, index($0, "]") - 2); if (section ~ pat) { print section; exit } }
      /^[Dd]river *=/ && section != "" && $0 ~ pat { print section; exit }' "$ini")
    if [ -n "$name" ]; then echo "$name"; return 0; fi
  fi
  local path
  for path in /usr/lib/*/odbc/"$library" /usr/lib/odbc/"$library"; do
    if [ -e "$path" ]; then echo "$path"; return 0; fi
  done
  return 1
}

# Runs a server program as the server's user, from its directory (the
# user may not read the caller's working directory).
_kdvq_pg_run() {
  (cd "$PG_DIR" && ${PG_RUN:-} "$@")
}

_kdvq_pg_sql() {  # database, statements
  _kdvq_pg_run "$PG_BIN/psql" -X -q -v ON_ERROR_STOP=1 -h "$PG_DIR" -p "$PG_PORT" -U kdvq -d "$1" -c "$2" >/dev/null
}

pg_start() {
  local sqlite_driver
  if sqlite_driver=$(_kdvq_odbc_driver 'libsqlite3odbc|^SQLite3$' libsqlite3odbc.so); then
    export KDVQ_SQLITE_ODBC_DRIVER=$sqlite_driver
  fi
  if [ -n "${KDVQ_PG_CONNECT:-}" ]; then
    return 0
  fi

  PG_BIN=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1 || true)
  if [ -z "$PG_BIN" ]; then
    echo "pg_start: no PostgreSQL server installed" >&2
    return 1
  fi
  local pg_driver
  if ! pg_driver=$(_kdvq_odbc_driver '^PostgreSQL Unicode$|psqlodbcw' psqlodbcw.so); then
    echo "pg_start: no PostgreSQL ODBC driver installed" >&2
    return 1
  fi

  PG_DIR=$(mktemp -d /tmp/kdvq-pg.XXXXXX)
  PG_RUN=""
  if [ "$(id -u)" -eq 0 ]; then
    # The server refuses to run as root.
    chown postgres: "$PG_DIR"
    PG_RUN="runuser -u postgres --"
  fi
  if ! _kdvq_pg_run "$PG_BIN/initdb" -D "$PG_DIR/data" -A trust -U kdvq -E UTF8 --no-sync >"$PG_DIR/initdb.log" 2>&1; then
    echo "pg_start: initdb failed:" >&2
    cat "$PG_DIR/initdb.log" >&2
    pg_stop
    return 1
  fi

  # One role logs in with a password, so that tests can present wrong
  # credentials; every other local connection is trusted.
  _kdvq_pg_run sed -i '1i host all kdvq_password 127.0.0.1/32 scram-sha-256' "$PG_DIR/data/pg_hba.conf"

  # A random port may be taken by another server: try a few.
  local attempt started=""
  for attempt in 1 2 3 4 5; do
    PG_PORT=$(( 20000 + RANDOM % 20000 ))
    if _kdvq_pg_run "$PG_BIN/pg_ctl" -D "$PG_DIR/data" -l "$PG_DIR/server.log" -w -t 60 \
        -o "-k $PG_DIR -h 127.0.0.1 -p $PG_PORT -c fsync=off" start >/dev/null 2>&1; then
      started=yes
      break
    fi
  done
  if [ -z "$started" ]; then
    echo "pg_start: the server did not start:" >&2
    cat "$PG_DIR/server.log" >&2 2>/dev/null || true
    pg_stop
    return 1
  fi

  # The upgraders' SQL Server statements use TINYINT and DATETIME columns;
  # as domains in the template every database created later has them too.
  if ! _kdvq_pg_sql template1 "CREATE DOMAIN tinyint AS smallint; CREATE DOMAIN datetime AS timestamp;" ||
     ! _kdvq_pg_sql template1 "CREATE DATABASE kdvq_test" ||
     ! _kdvq_pg_sql template1 "CREATE ROLE kdvq_password LOGIN PASSWORD 'kdvq-secret'"; then
    echo "pg_start: creating the test database failed" >&2
    pg_stop
    return 1
  fi

  export KDVQ_PG_CONNECT="Driver={$pg_driver};Server=127.0.0.1;Port=$PG_PORT;Database=kdvq_test;Uid=kdvq;Pwd=;"
  export KDVQ_PG_PORT=$PG_PORT
  export KDVQ_PG_BIN=$PG_BIN
  export KDVQ_PG_SOCKET_DIR=$PG_DIR
  export KDVQ_PG_PASSWORD_ROLE=kdvq_password
}

pg_stop() {
  if [ -n "${PG_DIR:-}" ] && [ -d "$PG_DIR" ]; then
    if [ -f "$PG_DIR/data/postmaster.pid" ]; then
      _kdvq_pg_run "$PG_BIN/pg_ctl" -D "$PG_DIR/data" -m immediate -w stop >/dev/null 2>&1 || true
    fi
    rm -rf "$PG_DIR"
    unset KDVQ_PG_CONNECT KDVQ_PG_PORT KDVQ_PG_BIN KDVQ_PG_SOCKET_DIR KDVQ_PG_PASSWORD_ROLE
  fi
  PG_DIR=""
}
