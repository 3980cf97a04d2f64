#!/usr/bin/env bash
# Builds the Debian package, installs it (as root, with apt, so that its
# dependencies come along) and upgrades a sample repository with the
# installed runner, away from the build tree. Meant for a throw-away
# machine: ../shared/fresh-machine ./scripts/package-check.sh
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT=$(pwd)
JOBS=$(nproc 2>/dev/null || echo 2)

"$ROOT/scripts/install-deps.sh"
cmake -S "$ROOT" -B "$ROOT/build-package" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$ROOT/build-package" -j "$JOBS" --target kdvq-upgrade kdVqUpgraders kdvq-help-pages >/dev/null
(cd "$ROOT/build-package" && cpack >/dev/null)
deb=$(ls "$ROOT"/build-package/kdvq-upgraders_*.deb)
echo "Package: $deb"
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "$deb" >/dev/null

WORK=$(mktemp -d /tmp/kdvq-package.XXXXXX)
cd "$WORK"
export KDVQ_REGISTRY="$WORK/registry.ini"
# The build tree must play no part: move it out of the way while the
# installed runner works.
mv "$ROOT/build-package" "$ROOT/build-package.away"
trap 'mv "$ROOT/build-package.away" "$ROOT/build-package"' EXIT
kdvq-upgrade sample --release 8.2 --db "$WORK/repository.db"
kdvq-upgrade upgrade --db "$WORK/repository.db" --database-id PACKAGE-CHECK
kdvq-upgrade status --db "$WORK/repository.db"
man -w kdvq-upgrade >/dev/null 2>&1 || test -f /usr/share/man/man1/kdvq-upgrade.1
test -f /usr/share/bash-completion/completions/kdvq-upgrade
echo "The installed package upgraded a sample repository."
