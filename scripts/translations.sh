#!/usr/bin/env bash
# Updates language/*.ts to the texts in the sources and lists what is to be translated. With
# --check it changes nothing and fails on a missing, unfinished or obsolete text.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

need_packages build test
exec python3 -B "$root/scripts/translations/translations.py" "$@"
