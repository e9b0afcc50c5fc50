#!/usr/bin/env bash
# Compiles every macOS source (src/platform/mac, and src/platform/posix, which the macOS build shares)
# for Apple silicon and for Intel Macs against the macOS SDK headers: clang with libc++, Objective-C
# ARC, -Wall -Wextra -Werror. Nothing is linked; a machine without a Mac checks every call this way.
#   check-macos-sources.sh [QT_INCLUDE_DIRS]    (colon-separated; Qt's headers for sources that use Qt)
# ORVANE_MACOS_SDK names the SDK headers (a folder with Frameworks/ and include/); without it the check
# is skipped (exit 77).
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)

sdk=${ORVANE_MACOS_SDK:-}
if [ -z "$sdk" ]; then
  echo "macOS check: skipped, no SDK (set ORVANE_MACOS_SDK to a folder with the macOS SDK's Frameworks/ and include/)"
  exit 77
fi
[ -d "$sdk/Frameworks" ] && [ -d "$sdk/include" ] || { echo "macOS check: $sdk has no Frameworks/ and include/"; exit 1; }

compiler=${CXX_FOR_MACOS_CHECK:-clang++}
major=$("$compiler" -dumpversion | cut -d. -f1)
libcxx=/usr/lib/llvm-$major/include/c++/v1
[ -d "$libcxx" ] || { echo "macOS check: no libc++ headers at $libcxx (install libc++-dev)"; exit 1; }

flags=(-fsyntax-only -std=c++20 -fobjc-arc -Wall -Wextra -Werror -nostdinc++ -isystem "$libcxx"
       -iframework "$sdk/Frameworks" -isystem "$sdk/include" -I "$root/src")
IFS=: read -r -a qt_dirs <<< "${1:-}"
for dir in "${qt_dirs[@]}"; do flags+=(-isystem "$dir"); done
# The mirror of the SDK's headers lacks ServiceManagement: the check declares what the login item uses.
[ -d "$sdk/Frameworks/ServiceManagement.framework" ] || flags+=(-isystem "$root/tools/macos-check/missing-headers")

mapfile -t sources < <(cd "$root" && find src/platform/mac src/platform/posix -name '*.cpp' -o -name '*.mm' | sort)
targets=(arm64-apple-macos13 x86_64-apple-macos13)
failed=0
for target in "${targets[@]}"; do
  for source in "${sources[@]}"; do
    case $source in *.mm) language=objective-c++ ;; *) language=c++ ;; esac
    "$compiler" "${flags[@]}" -target "$target" -x "$language" "$root/$source" || { echo "macOS check: $source fails for $target"; failed=1; }
  done
done
[ "$failed" -eq 0 ] || exit 1
echo "macOS check: ${#sources[@]} sources compile for ${targets[*]}"
