#!/usr/bin/env bash
# Links the macOS build's platform layer for Apple silicon and for Intel Macs against the SDK's .tbd
# stubs with ld64.lld: every macOS object (those check-macos-sources.sh compiles, and the shared
# platform code they link: the instance channel's rules, diagnostics, the in-memory login item), with
# link-main.cpp reaching every platform entry point, and the frameworks src/platform/mac/CMakeLists.txt
# links. A symbol left unresolved fails the check with its name, unless it belongs to a runtime the SDK
# mirror has no stubs for (see `allowed` below): a misspelt or missing system function, or a framework
# missing from the CMake lines, shows here and not first on a Mac.
#   check-macos-link.sh WORK_DIR MOC [QT_INCLUDE_DIRS]
# ORVANE_MACOS_SDK as for check-macos-sources.sh (skipped, exit 77, without it).
set -euo pipefail
work=$1 moc=$2
source "$(dirname "$0")/macos-sources.sh" "${3:-}"

linker=$(command -v ld64.lld || command -v "ld64.lld-$major" || echo "/usr/lib/llvm-$major/bin/ld64.lld")
[ -x "$linker" ] || { echo "macOS link check: no ld64.lld (install lld)"; exit 1; }

# The symbols that may stay unresolved, by family (mangled names): Qt's (no macOS Qt here); libc++'s and
# libc++abi's; the C library's and the compiler runtime's (lowercase C names and double-underscore ones:
# a system framework's C names are capitalised and its constants start with k); the blocks runtime;
# and SMAppService where the mirror has no ServiceManagement.
allowed=(
  '^__ZN?K?[0-9]+Q' '^__ZT[ISV]N?[0-9]+Q' '^__Z[0-9]+q[A-Z_t]' '^__Z(ls|rs)R[0-9]+Q' '^_qt_'
  '^__ZN?K?St' '^__ZT[ISV]N?St' '^__ZTVN10__cxxabiv' '^__ZSt' '^__Zd[la]' '^__Zn[wa]' '^___cxa_' '^___gxx_personality' '^__Unwind_'
  '^_[a-jl-z]' '^___[a-z]' '^dyld_stub_binder$'
  '^__NSConcrete[A-Za-z]*Block$' '^__Block_'
)
[ -d "$sdk/Frameworks/ServiceManagement.framework" ] || allowed+=('^_OBJC_CLASS_\$_SMAppService$')

rm -rf "$work" && mkdir -p "$work/objects"
# A .tbd may hold several libraries (an umbrella inlines its sub-frameworks); ld64.lld finds a
# re-exported library at its install name under the system root, so each one gets a file there.
for tbd in $(find "$sdk/Frameworks" "$sdk/lib" -name '*.tbd'); do
  awk -v root="$work/root" '
    /^--- !tapi-tbd/ { n++ }
    { doc[n] = doc[n] $0 "\n" }
    /^install-name:/ { name = $2; gsub(/\047/, "", name); path[n] = root name ".tbd" }
    END { for (i = 1; i <= n; i++) if (i in path) { dir = path[i]; sub(/\/[^\/]*$/, "", dir); system("mkdir -p \"" dir "\""); printf "%s", doc[i] > path[i]; close(path[i]) } }
  ' "$tbd"
done

frameworks=()
for framework in $(grep -o -- '-framework [A-Za-z]*' "$root/src/platform/mac/CMakeLists.txt" | awk '{ print $2 }' | sort -u); do
  if [ -d "$sdk/Frameworks/$framework.framework" ]; then frameworks+=(-framework "$framework")
  else echo "macOS link check: the SDK mirror has no $framework; its symbols are allowed to stay unresolved"; fi
done

"$moc" -fplatform/InstanceChannel.h -o "$work/moc_InstanceChannel.cpp" "$root/src/platform/InstanceChannel.h"
objects_from=("${sources[@]}" src/platform/InstanceChannel.cpp src/platform/DesktopWords.cpp src/platform/Diagnostics.cpp src/platform/sim/SimLoginItem.cpp
              tools/macos-check/link-main.cpp)
failed=0
for arch in arm64 x86_64; do
  objects=()
  for source in "${objects_from[@]}" "$work/moc_InstanceChannel.cpp"; do
    path=$source; [ "${source#/}" != "$source" ] || path=$root/$source
    object=$work/objects/$arch-$(basename "$source").o
    "$compiler" -c "${flags[@]}" -target "$arch-apple-macos13" -x "$(language_of "$source")" "$path" -o "$object"
    objects+=("$object")
  done
  # -flat_namespace with -undefined warning lists every unresolved symbol (an error stops after a few).
  "$linker" -arch "$arch" -platform_version macos 13.0 13.0 -syslibroot "$work/root" -F "$sdk/Frameworks" \
    -L "$sdk/lib" -lobjc "${frameworks[@]}" -flat_namespace -undefined warning -o "$work/orvane-$arch" "${objects[@]}" \
    2> "$work/link-$arch.log" || { cat "$work/link-$arch.log"; echo "macOS link check: linking for $arch fails"; failed=1; continue; }
  unresolved=$(sed -n 's/.*undefined symbol: //p' "$work/link-$arch.log" | sort -u)
  pattern=$(IFS='|'; echo "${allowed[*]}")
  unexpected=$(grep -Ev "$pattern" <<< "$unresolved" || true)
  if [ -n "$unexpected" ]; then
    echo "macOS link check: unresolved for $arch:"
    c++filt -_ <<< "$unexpected" | sed 's/^/  /'
    failed=1
  fi
  echo "macOS link check: $arch, $(grep -cE "$pattern" <<< "$unresolved") symbols of those runtimes left to the Mac"
done
[ "$failed" -eq 0 ] || exit 1
echo "macOS link check: ${#objects_from[@]} sources link for arm64 and x86_64 against the SDK's stubs"
