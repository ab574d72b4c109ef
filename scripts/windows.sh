#!/usr/bin/env bash
# Builds the Windows program and its two packages on Linux; installs missing Debian packages first. The
# first run also builds Qt and SQLite for Windows (half an hour or more), and keeps them in
# ~/.cache/vlmanager-windows for later runs.
#   scripts/windows.sh          build/windows/VlManager-<version>-setup.exe and -portable.zip
#   scripts/windows.sh --test   then runs the unit tests under Wine, and installs, uses and removes
#                               the program there on a virtual screen, at 100% and 150%
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
. "$root/scripts/windows/libraries.sh"

out="$root/build/windows"
test_out="$out/test"
version="$(sed -n 's/^project(VlManager VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")"
installer="$out/VlManager-$version-setup.exe"
archive="$out/VlManager-$version-portable.zip"
largest_bytes=$((30 * 1000 * 1000))
# Every Windows has these libraries. Any other would have to be shipped.
windows_libraries='advapi32|bcrypt|comdlg32|comctl32|crypt32|d3d9|dnsapi|dwmapi|gdi32|imm32|iphlpapi|kernel32|mpr|msvcrt|netapi32|ntdll|ole32|oleaut32|secur32|setupapi|shell32|shlwapi|user32|userenv|usp10|uxtheme|version|winmm|winspool|ws2_32|wtsapi32'

check_program() {
    local program="$1" size needed strange
    size="$(stat -c %s "$program")"
    needed="$(x86_64-w64-mingw32-objdump -p "$program" | sed -n 's/^\s*DLL Name: //p' | tr '[:upper:]' '[:lower:]' | sort -u)"
    say "VlManager.exe: $size bytes; needs ${needed//$'\n'/ }"
    [ "$size" -lt "$largest_bytes" ] || die "the program is larger than $largest_bytes bytes"
    strange="$(grep -vxE "($windows_libraries)\.(dll|drv)" <<<"$needed" || true)"
    [ -z "$strange" ] || die "the program needs libraries that not every Windows has: $strange"
}

# lay_package <folder>: copies there what a user gets: the program and the files that it reads.
lay_package() {
    local folder="$1"
    rm -rf "$folder"
    mkdir -p "$folder"
    cp "$out/bin/VlManager.exe" "$folder/"
    sed 's/$/\r/' "$root/LICENSE" >"$folder/LICENSE.txt"
    cmake -DSOURCE_DIR="$root" -DBIN_DIR="$folder" -DCATALOGUE_DIR="$out/catalogues" \
        -P "$root/cmake/CopyRuntimeFiles.cmake"
}

make_packages() {
    say "packing"
    lay_package "$out/package/VlManager"
    check_program "$out/package/VlManager/VlManager.exe"
    rm -f "$archive" "$installer"
    convert -size 164x314 'gradient:#1f6feb-#0b2f6b' \
        '(' "$root/resource/icons/logo_256.png" -resize 96x96 ')' -gravity center -composite \
        "BMP3:$out/package/side.bmp"
    (cd "$out/package" && zip -q -r -X "$archive" VlManager)
    makensis -V2 -INPUTCHARSET UTF8 -DVERSION="$version" -DPROJECT="$root" \
        -DPICTURES="$out/package" -DPROGRAM="$out/package/VlManager" -DOUTPUT="$installer" "$root/packaging/installer.nsi"
    ls -l "$installer" "$archive"
}

case "${1:-}" in
    --inside)
        out="$test_out"
        . "$root/scripts/tour/stage.sh"
        set_stage "$2" 1366x768
        . "$root/scripts/windows/wine.sh"
        trap 'end_wine; cleanup' EXIT
        for dpi in 96 144; do
            say "at $dpi dpi"
            out="$test_out/$dpi"
            mkdir -p "$out"
            make_wine_prefix "$work/$dpi" "$dpi"
            play "$root/tests/windows/run.py" "$out" "$installer" "$archive"
            end_wine
        done
        exit
        ;;
    --test | "") ;;
    *) die "usage: scripts/windows.sh [--test]" ;;
esac

need_packages build cross windows
make_windows_libraries
build windows
make_packages
[ "${1:-}" = --test ] || exit 0

need_packages tour
rm -rf "$test_out"
mkdir -p "$test_out"
"$root/scripts/windows/unit-tests.sh"
. "$root/scripts/tour/stage.sh"
enter_network
