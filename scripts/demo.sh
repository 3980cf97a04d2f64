#!/usr/bin/env bash
# Installs missing Debian packages (when run as root, as scripts/test.sh
# does), builds the runner, creates a sample repository of release 8.2 in a
# temporary folder and upgrades it, showing the progress of every upgrader
# and the versions before and after.
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT=$(pwd)
JOBS=$(nproc 2>/dev/null || echo 2)

"$ROOT/scripts/install-deps.sh"

echo "Building kdvq-upgrade in build/ (a few minutes the first time)..."
cmake -S "$ROOT" -B "$ROOT/build" >/dev/null
cmake --build "$ROOT/build" -j "$JOBS" --target kdvq-upgrade >/dev/null

WORK=$(mktemp -d /tmp/kdvq-demo.XXXXXX)
# A registry of its own, so that the demo leaves the user's alone.
export KDVQ_REGISTRY="$WORK/registry.ini"
RUNNER="$ROOT/build/bin/kdvq-upgrade"
DB="$WORK/repository.db"

"$RUNNER" sample --release 8.2 --db "$DB"
echo
"$RUNNER" status --db "$DB"
echo
status=0
"$RUNNER" upgrade --db "$DB" --database-id "DEMO-REPOSITORY-01" \
    --setting "BulletinBoard Version/VersionName=9.3.1" || status=$?
echo
"$RUNNER" status --db "$DB"
if [ "$status" -eq 0 ]; then
  rm -rf "$WORK"
else
  # Kept so that the repository and its log can be looked at.
  echo
  echo "The repository and the upgrade's log are kept in $WORK"
fi
exit "$status"
