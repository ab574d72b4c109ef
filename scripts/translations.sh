#!/usr/bin/env bash
# Updates language/*.ts from the texts in the sources and lists the texts to be translated. With --check,
# changes nothing, and fails on a missing, unfinished, obsolete or broken text.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

need_packages build test
exec python3 -B "$root/scripts/translations/translations.py" "$@"
