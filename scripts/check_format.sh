#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails when a source file is not laid out as .clang-format says, or lacks its licence line.
# usage: scripts/check_format.sh [--fix]
set -eu
cd "$(dirname "$0")/.."
mode=(--dry-run --Werror)
[ "${1:-}" != --fix ] || mode=(-i)
mapfile -t sources < <(find src resources tests bench fuzz -name '*.h' -o -name '*.cpp' | sort)
clang-format-19 "${mode[@]}" "${sources[@]}"
missing=$(grep -L 'SPDX-License-Identifier: MIT' "${sources[@]}" || true)
if [ -n "$missing" ]; then
    printf 'No licence line in:\n%s\n' "$missing" >&2
    exit 1
fi
echo "format: ${#sources[@]} files"
