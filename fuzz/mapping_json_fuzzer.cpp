// Feeds arbitrary bytes to the mapping decoder; any crash, hang or out-of-bounds read is a finding.
#include "model/MappingJson.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto result = orvane::decodeMappings(text);
    if (result.error) {
        if (!result.mappings.empty()) std::abort();  // a failed decode never yields a partial list
        (void)result.error->description();
        return 0;
    }
    // Whatever decodes must survive a round trip unchanged.
    const auto again = orvane::decodeMappings(orvane::encodeMappings(result.mappings));
    if (again.error || again.mappings != result.mappings) std::abort();
    return 0;
}
