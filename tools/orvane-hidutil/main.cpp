// orvane-hidutil: Caps Lock in the kernel's keymap of every USB keyboard, set through the command line
// of the HID tool the mapping store runs:
//   orvane-hidutil property --set '{"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":30064771129,
//                                   "HIDKeyboardModifierMappingDst":30064771113}]}'
//   orvane-hidutil property --set '{"UserKeyMapping":[]}'
// Prints the property it set and exits 0; otherwise prints one line "error: …" and exits non-zero.
#include "platform/linux/CapsLockKeymap.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace {

int fail(const std::string& reason, int status) {
    std::fprintf(stderr, "error: %s\n", reason.c_str());
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4 || std::string_view(argv[1]) != "property" || std::string_view(argv[2]) != "--set")
        return fail(R"(usage: orvane-hidutil property --set '{"UserKeyMapping":[...]}')", 2);
    std::string error;
    const auto mapping = orvane::parseUserKeyMapping(argv[3], error);
    if (!mapping) return fail(error, 1);
    const auto result = orvane::setCapsLockMapping(mapping->capsLockTarget);
    if (!result.ok) return fail(result.error, 1);
    std::printf("%s\n", argv[3]);
    return 0;
}
