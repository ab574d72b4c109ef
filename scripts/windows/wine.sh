# Sets up Wine, to try the Windows program; source it after lib.sh.

# make_wine_prefix <folder> [dots per inch]: sets up a Chinese Windows in this folder, which every later
# wine command uses. Needs a display.
make_wine_prefix() {
    say "setting up Wine"
    export WINEPREFIX="$1/wine" WINEARCH=win64 WINEDEBUG=-all
    mkdir -p "$1/locale" "$WINEPREFIX"
    localedef -f UTF-8 -i zh_CN "$1/locale/zh_CN.UTF-8"
    # The running shell cannot load the locale and would warn of it.
    export LOCPATH="$1/locale"
    { export LC_ALL=zh_CN.UTF-8; } 2>/dev/null
    # Wine must not offer to fetch a browser, or add entries to this machine's menus.
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
    wine wineboot -i >"$WINEPREFIX/setup.log" 2>&1 || { cat "$WINEPREFIX/setup.log" >&2; die "Wine does not start"; }
    # This machine's fonts replace those of Windows.
    local font
    for font in "MS Shell Dlg" "MS Shell Dlg 2" "Segoe UI" "Microsoft YaHei" "Microsoft YaHei UI" SimSun 宋体; do
        wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes' \
            /v "$font" /d "Noto Sans CJK SC" /f >/dev/null
    done
    wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes' \
        /v "Courier New" /d "DejaVu Sans Mono" /f >/dev/null
    wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "${2:-96}" /f >/dev/null
    # Wine reads these settings only when it starts.
    wineserver -k
    wineserver -w
}

# Ends only the programs that run under this Wine prefix.
end_wine() { [ -z "${WINEPREFIX:-}" ] || wineserver -k 2>/dev/null || true; }
