# Shared by scripts/windows.sh; source it, do not run it. Needs scripts/lib.sh.
#
# Builds SQLite and Qt for Windows, as static libraries, from the source packages of Debian's own
# libraries. This takes half an hour or more, so a cache outside the tree keeps the result, in a folder
# for each set of versions and flags. The cache may be removed at any time.

windows_target=x86_64-w64-mingw32

qt_flags=(
    -xplatform win32-g++ -device-option "CROSS_COMPILE=$windows_target-"
    -release -static -opensource -confirm-license
    -no-opengl -no-icu -no-openssl -no-dbus -no-pch
    -no-feature-tabletevent -no-feature-direct2d
    -qt-zlib -qt-libpng -qt-pcre -qt-freetype -qt-harfbuzz -qt-libjpeg
    -nomake examples -nomake tests -nomake tools
    -sql-sqlite -system-sqlite)
# The program loads no SQLite extensions at run time.
sqlite_flags=(-O2 -DNDEBUG -DSQLITE_THREADSAFE=1 -DSQLITE_ENABLE_COLUMN_METADATA
    -DSQLITE_OMIT_LOAD_EXTENSION)

# installed_version <package>
installed_version() { dpkg-query -W -f='${Version}' "$1"; }

# The Linux and the Windows program use the same versions, so an update of Debian's packages causes a
# new build of these libraries too.
windows_cache() {
    local recipe
    recipe="$(printf '%s\n' "${qt_flags[@]}" "${sqlite_flags[@]}" \
        "$("$windows_target-g++-posix" -dumpfullversion)" \
        "$(installed_version libqt5core5a)" "$(installed_version libsqlite3-0)")"
    echo "${XDG_CACHE_HOME:-$HOME/.cache}/vlmanager-windows/$(sha256sum <<<"$recipe" | cut -c 1-16)"
}

# fetch_source <source package> <a package made from it> <folder>: unpacks the source, with Debian's
# patches, into the folder. It uses the archives of this machine's packages, with apt settings of its
# own, so that the system's settings do not change.
fetch_source() {
    local source="$1" binary="$2" folder="$3" apt_folder version
    apt_folder="$(mktemp -d)"
    mkdir -p "$apt_folder/lists/partial" "$apt_folder/sources.list.d"
    version="$(installed_version "$binary")"
    apt-cache policy libc6 "$binary" \
        | awk '$2 ~ /^[a-z+]+:\/\// { split($3, at, "/"); print "deb-src", $2, at[1], at[2] }' \
        | sort -u >"$apt_folder/sources.list"
    [ -s "$apt_folder/sources.list" ] || die "apt does not know the archive of $binary"
    local apt=(apt-get -q -y -o Acquire::Retries=3
               -o "Dir::Etc::sourcelist=$apt_folder/sources.list"
               -o "Dir::Etc::sourceparts=$apt_folder/sources.list.d"
               -o "Dir::State::lists=$apt_folder/lists" -o APT::Sandbox::User=root)
    "${apt[@]}" update >/dev/null || { sleep 5; "${apt[@]}" update; }
    (cd "$apt_folder" && { "${apt[@]}" --download-only source "$source=$version" \
        || "${apt[@]}" --download-only source "$source"; }) || die "cannot fetch the source of $source"
    rm -rf "$folder"
    dpkg-source --no-check --no-copy -x "$apt_folder/$source"_*.dsc "$folder" >"$apt_folder/unpacked.log" \
        || { cat "$apt_folder/unpacked.log" >&2; die "cannot unpack the source of $source"; }
    rm -rf "$apt_folder"
}

# once <name> <command>...: runs the command unless it has succeeded in this cache.
once() {
    local stamp="$cache/done-$1"
    shift
    [ -f "$stamp" ] && return
    "$@"
    touch "$stamp"
}

# logged <name> <command>...: writes the command's output to a file; shows the end of the file if the
# command fails.
logged() {
    local log="$cache/$1.log"
    shift
    "$@" >"$log" 2>&1 </dev/null || { tail -n 40 "$log" >&2; die "failed: $* (see $log)"; }
}

fetch_sqlite() { fetch_source sqlite3 libsqlite3-0 "$cache/sqlite-source"; }
fetch_qt() { fetch_source qtbase-opensource-src libqt5core5a "$cache/qt-source"; }

make_sqlite() {
    say "SQLite for Windows"
    mkdir -p "$cache/sqlite"
    logged sqlite sh -euc '
        cd "$1/sqlite"
        ../sqlite-source/configure --disable-readline
        make sqlite3.c sqlite3.h
        target="$2"
        shift 2
        "$target-gcc" "$@" -c sqlite3.c -o sqlite3.o
        rm -f libsqlite3.a
        "$target-ar" rcs libsqlite3.a sqlite3.o' sh "$cache" "$windows_target" "${sqlite_flags[@]}"
}

configure_qt() {
    say "Qt for Windows: configuring"
    rm -rf "$cache/qt"
    mkdir -p "$cache/qt"
    # The build folder is the prefix, because Qt is used from there and never installed.
    logged qt-configure env -C "$cache/qt" ../qt-source/configure "${qt_flags[@]}" -prefix "$cache/qt" \
        "SQLITE_INCDIR=$cache/sqlite" "SQLITE_LIBDIR=$cache/sqlite"
}

make_qt() {
    say "Qt for Windows: compiling, 20 to 60 minutes (log: $cache/qt-make.log)"
    logged qt-make make -C "$cache/qt" -j "$(jobs_wanted)"
}

# Builds the libraries in $cache, and puts the right compiler first in $PATH.
make_windows_libraries() {
    cache="$(windows_cache)"
    mkdir -p "$cache/bin"
    # This is the variant with POSIX threads. A machine may also have the other variant of the
    # compiler, under the same plain name.
    local tool
    for tool in gcc g++; do
        ln -sf "$(command -v "$windows_target-$tool-posix")" "$cache/bin/$windows_target-$tool"
    done
    export PATH="$cache/bin:$PATH"

    once sqlite-source fetch_sqlite
    once sqlite make_sqlite
    once qt-source fetch_qt
    once qt-configure configure_qt
    once qt make_qt
    export VL_WINDOWS_LIBRARIES="$cache"
}
