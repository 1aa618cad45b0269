#!/usr/bin/env bash
# Compiles the Windows half of the platform room for 32-bit Windows, so that it cannot rot unseen.
# It needs a configured build for the generated headers. usage: scripts/check_windows.sh BUILD_FOLDER
set -euo pipefail
generated=$1/generated
compiler=i686-w64-mingw32-g++-posix
shopt -s nullglob
sources=(skuan/platform/windows/*.cpp)
[[ ${#sources[@]} -gt 0 ]] || { echo "no Windows sources found" >&2; exit 1; }

failed=0
for source in "${sources[@]}"; do
    echo "$source"
    # SSE arithmetic, so that doubles give the same results as on the 64-bit systems.
    "$compiler" -std=c++20 -O1 -c -o /dev/null -Wall -Wextra -Wpedantic -Wshadow -Werror -Wno-attributes \
        -msse2 -mfpmath=sse -DSKUAN_EXPORT= -I. -I"$generated" "$source" || failed=1
done
exit "$failed"
