# Sourced by test.sh: starts a PostgreSQL server on loopback in a temporary
# directory as an unprivileged user, and stops it. Exports KDVQ_PG_CONNECT
# (an ODBC connection string) for the server tests.
pg_start() {
  local bindir
  bindir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -1)
  [ -n "$bindir" ] || return 1
  PG_DIR=$(mktemp -d /tmp/kdvq-pg.XXXXXX)
  local user=postgres
  id "$user" >/dev/null 2>&1 || user=$(id -un)
  PG_USER=$user
  chmod 777 "$PG_DIR"
  local run=""
  [ "$(id -u)" -eq 0 ] && run="runuser -u $user --"
  PG_PORT=$(( 20000 + RANDOM % 20000 ))
  $run "$bindir/initdb" -D "$PG_DIR/data" -A trust -U kdvq >/dev/null || return 1
  $run "$bindir/pg_ctl" -D "$PG_DIR/data" -l "$PG_DIR/log" -w \
      -o "-k $PG_DIR -h 127.0.0.1 -p $PG_PORT" start >/dev/null || return 1
  PG_RUN=$run
  PG_BIN=$bindir
  local driver
  driver=$(odbcinst -q -d 2>/dev/null | grep -i -m1 'PostgreSQL Unicode' | tr -d '[]' || true)
  [ -n "$driver" ] || driver="PostgreSQL Unicode"
  export KDVQ_PG_CONNECT="Driver={$driver};Server=127.0.0.1;Port=$PG_PORT;Database=postgres;Uid=kdvq;Pwd=;"
  export KDVQ_PG_PORT=$PG_PORT
  export KDVQ_PG_BIN=$bindir
}

pg_stop() {
  if [ -n "${PG_DIR:-}" ] && [ -d "$PG_DIR/data" ]; then
    ${PG_RUN:-} "$PG_BIN/pg_ctl" -D "$PG_DIR/data" -m immediate stop >/dev/null 2>&1 || true
    rm -rf "$PG_DIR"
  fi
}
