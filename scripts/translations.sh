#!/usr/bin/env bash
# Brings language/*.ts up to the texts in the sources and tells what is to be translated;
# with --check it changes nothing and fails on whatever is missing, unfinished or obsolete.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

need_packages build test
exec python3 -B "$root/scripts/translations/translations.py" "$@"
