#!/usr/bin/env bash
# Checks the format (clang-format) and the code (clang-tidy, clazy level 1) of the sources.
#   scripts/lint.sh              everything
#   scripts/lint.sh FILE...      these files; a header is checked through a source that includes it
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

need_packages build lint
# Builds everything first: the checkers read the compile commands and the sources that moc makes.
build release
database="$root/build/release"
cd "$root"

# sources_of <file>...: the sources among these files that the release build compiles; instead of a
# header, a source that includes it.
sources_of() {
    local file name source
    for file in "$@"; do
        source="$file"
        if [[ $file == *.h ]]; then
            name="${file%.h}"
            source="$name.cpp"
            # A test includes the headers of its own folder without the folder.
            [ -f "$source" ] || source="$(git grep -l --untracked -E \
                "#include \"($file|${file##*/})\"" -- '*.cpp' | sed -n 1p || true)"
        fi
        if [ -n "$source" ] && grep -qF "\"$root/$source\"" "$database/compile_commands.json"; then
            echo "$source"
        else
            say "not compiled here, so only its form is checked: $file" >&2
        fi
    done | sort -u
}

if [ "$#" -gt 0 ]; then
    files=()
    for file in "$@"; do
        files+=("$(realpath --relative-to="$root" "$file")")
    done
    mapfile -t sources < <(sources_of "${files[@]}")
else
    mapfile -t files < <(git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h')
    mapfile -t sources < <(sources_of $(printf '%s\n' "${files[@]}" | grep '\.cpp$'))
fi
[ "${#files[@]}" -gt 0 ] || die "no files to check"
failed=()

say "clang-format, ${#files[@]} files"
clang-format --dry-run -Werror "${files[@]}" || failed+=(clang-format)

# check_each <name> <command>...: runs the checker on each source, several at once. Prints a finding
# only once, even when several sources include the header.
check_each() {
    local name="$1" findings status=0
    shift
    say "$name, ${#sources[@]} sources"
    findings="$(printf '%s\n' "${sources[@]}" | xargs -P "$(jobs_wanted)" -n 1 "$@" 2>&1)" || status=$?
    # Some checkers exit with 0 even when they find something.
    if grep -E '(warning|error): ' <<<"$findings" | sort -u; then
        failed+=("$name")
    elif [ "$status" -ne 0 ]; then
        printf '%s\n' "$findings"
        failed+=("$name")
    fi
}

if [ "${#sources[@]}" -gt 0 ]; then
    # Clang takes a construct in Qt's log macros for a GNU extension.
    flags=(--extra-arg=-Wno-gnu-zero-variadic-macro-arguments)
    check_each clang-tidy clang-tidy -p "$database" --quiet "${flags[@]}"
    check_each clazy clazy-standalone -p "$database" -checks=level1 "${flags[@]}" \
        --header-filter="^$root/[a-z]+/[A-Za-z_]+\.h$" --ignore-dirs='.*_autogen.*'
fi

if [ "${#failed[@]}" -gt 0 ]; then
    say "FAILED: ${failed[*]}"
    exit 1
fi
say "lint is clean"
