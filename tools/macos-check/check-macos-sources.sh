#!/usr/bin/env bash
# Compiles every macOS source (src/platform/mac, and src/platform/posix, which the macOS build shares)
# for Apple silicon and for Intel Macs against the macOS SDK headers, for the oldest macOS we run on
# (13) and for 14, where calls that 13 needs are deprecated: clang with libc++, Objective-C ARC,
# -Wall -Wextra -Werror. Nothing is linked here (check-macos-link.sh links).
#   check-macos-sources.sh [QT_INCLUDE_DIRS]    (colon-separated; Qt's headers for sources that use Qt)
# ORVANE_MACOS_SDK names the SDK headers (a folder with Frameworks/ and include/); without it the check
# is skipped (exit 77).
set -euo pipefail
source "$(dirname "$0")/macos-sources.sh" "${1:-}"

targets=(arm64-apple-macos13 x86_64-apple-macos13 arm64-apple-macos14 x86_64-apple-macos14)
failed=0
for target in "${targets[@]}"; do
  for source in "${sources[@]}"; do
    "$compiler" -fsyntax-only "${flags[@]}" -target "$target" -x "$(language_of "$source")" "$root/$source" ||
      { echo "macOS check: $source fails for $target"; failed=1; }
  done
done
[ "$failed" -eq 0 ] || exit 1
echo "macOS check: ${#sources[@]} sources compile for ${targets[*]}"
