#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs clang-tidy over the sources with the checks of .clang-tidy; any finding fails.
# A file is looked at again only when it, a header of ours or the set of checks has changed.
# usage: scripts/check_tidy.sh BUILD_FOLDER   (with compile_commands.json, fully built)
set -eu
cd "$(dirname "$0")/.."
build=$1
passed="$build/tidy-passed"
mkdir -p "$passed"
common=$(cat .clang-tidy $(find src -name '*.h' | sort) | sha256sum | cut -d' ' -f1)
todo=()
while IFS= read -r source; do
    stamp="$passed/$(cat "$source" <(echo "$common $source") | sha256sum | cut -d' ' -f1)"
    [ -e "$stamp" ] || todo+=("$source=$stamp")
done < <(find src -name '*.cpp' | sort)
check_one() {
    local source=${1%=*} stamp=${1##*=}
    if clang-tidy-19 --quiet -p "$TIDY_BUILD" "$source" 2>/dev/null; then
        touch "$stamp"
    else
        echo "clang-tidy: $source" >&2
        return 1
    fi
}
export -f check_one
export TIDY_BUILD=$build
if [ "${#todo[@]}" -gt 0 ]; then
    printf '%s\0' "${todo[@]}" | xargs -0 -n1 -P"$(nproc)" bash -c 'check_one "$1"' _
fi
echo "clang-tidy: ${#todo[@]} files looked at, none with a finding"
