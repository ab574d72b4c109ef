#!/usr/bin/env bash
# Checks form (clang-format) and habits (clang-tidy, clazy level 1) of our sources.
#   scripts/lint.sh              everything
#   scripts/lint.sh FILE...      these files; a header is checked through a source
#                                that includes it
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

need_packages build lint
# Everything is built first: the checkers read the compile commands and the sources
# that moc makes.
build release
database="$root/build/release"
cd "$root"

# Of these files, the sources that the release build compiles; headers are replaced by
# a source that includes them.
sources_of() {
    local file name source
    for file in "$@"; do
        source="$file"
        if [[ $file == *.h ]]; then
            name="${file%.h}"
            source="$name.cpp"
            [ -f "$source" ] || source="$(git grep -l --untracked -F "#include \"$file\"" -- '*.cpp' | head -n 1)"
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

# each <command>...: the command for each source, some side by side, with what it says
# about our own files only.
each() {
    printf '%s\n' "${sources[@]}" | xargs -r -P "$(jobs_wanted)" -n 1 "$@"
}

if [ "${#sources[@]}" -gt 0 ]; then
    say "clang-tidy, ${#sources[@]} sources"
    # The compiler's own warnings are gcc's business; clang does not know all its flags.
    each clang-tidy -p "$database" --quiet --extra-arg=-Wno-unknown-warning-option 2>&1 \
        | grep -vE '^[0-9]+ warnings? (generated|treated)' || true
    [ "${PIPESTATUS[0]}" -eq 0 ] || failed+=(clang-tidy)

    say "clazy, ${#sources[@]} sources"
    # It ends with 0 whatever it has found.
    findings="$(each clazy-standalone -p "$database" -checks=level1 \
        --header-filter="^$root/[a-z]+/[A-Za-z_]+\.h$" --ignore-dirs='.*_autogen.*' 2>&1)" \
        || failed+=(clazy)
    if grep -E 'warning: |error: ' <<<"$findings"; then
        failed+=(clazy)
    fi
fi

if [ "${#failed[@]}" -gt 0 ]; then
    say "FAILED: ${failed[*]}"
    exit 1
fi
say "lint is clean"
