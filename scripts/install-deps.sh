#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, when run as
# root and some are missing; otherwise only reports what is missing.
set -euo pipefail
PACKAGES=(build-essential cmake pkg-config libsqlite3-dev sqlite3 googletest libgtest-dev libgmock-dev nlohmann-json3-dev
          libcli11-dev unixodbc unixodbc-dev odbc-postgresql libsqliteodbc postgresql
          clang libclang-rt-14-dev)
missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi
if [ "$(id -u)" -eq 0 ]; then
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}"
else
  echo "Missing Debian packages (run as root to install): ${missing[*]}" >&2
fi
