#!/usr/bin/env bash
# Makes the Windows program and its packages, on Linux; installs first what is missing
# for that.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
. "$root/scripts/windows/libraries.sh"

need_packages build cross windows
make_windows_libraries
