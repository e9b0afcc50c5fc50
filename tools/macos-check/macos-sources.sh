# What both macOS checks share, sourced by them: the SDK (ORVANE_MACOS_SDK; without it the check is
# skipped, exit 77), clang with libc++'s headers, the flags a Mac build compiles with, and the sources.
#   $1: Qt's include folders, colon-separated (for the sources that use Qt)
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

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

flags=(-std=c++20 -fobjc-arc -Wall -Wextra -Werror -nostdinc++ -isystem "$libcxx"
       -iframework "$sdk/Frameworks" -isystem "$sdk/include" -I "$root/src")
IFS=: read -r -a qt_dirs <<< "${1:-}"
for dir in "${qt_dirs[@]}"; do flags+=(-isystem "$dir"); done
# The mirror of the SDK's headers lacks ServiceManagement: the check declares what the login item uses.
[ -d "$sdk/Frameworks/ServiceManagement.framework" ] || flags+=(-isystem "$root/tools/macos-check/missing-headers")

# Every source of the macOS build's own (src/platform/mac, and src/platform/posix, which it shares).
mapfile -t sources < <(cd "$root" && find src/platform/mac src/platform/posix -name '*.cpp' -o -name '*.mm' | sort)

language_of() { case $1 in *.mm) echo objective-c++ ;; *) echo c++ ;; esac; }
