#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, when run as
# root and some are missing; otherwise only reports what is missing.
set -euo pipefail
# file: the Debian package's library dependencies are found with it (cpack).
PACKAGES=(build-essential cmake pkg-config libsqlite3-dev sqlite3 googletest libgtest-dev libgmock-dev nlohmann-json3-dev
          libcli11-dev unixodbc unixodbc-dev odbc-postgresql libsqliteodbc postgresql
          clang libclang-rt-14-dev file)
missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi
if [ "$(id -u)" -eq 0 ]; then
  export DEBIAN_FRONTEND=noninteractive
  echo "Installing ${#missing[@]} missing Debian packages: ${missing[*]}"
  # The package tools' own output goes to a file, shown when they fail.
  log=$(mktemp /tmp/kdvq-install-deps.XXXXXX)
  if ! { apt-get update -qq && apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 30 "$log" >&2
    echo "Installing the packages failed; the whole output is in $log" >&2
    exit 1
  fi
  rm -f "$log"
else
  echo "Missing Debian packages (run as root to install): ${missing[*]}" >&2
fi
