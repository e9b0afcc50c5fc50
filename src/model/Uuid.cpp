#include "model/Uuid.h"

#include <cstring>
#include <random>

namespace orvane {
namespace {

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

constexpr bool isHyphenPosition(std::size_t i) { return i == 8 || i == 13 || i == 18 || i == 23; }

}  // namespace

Uuid Uuid::random() {
    thread_local std::mt19937_64 generator{[] {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device(), device(), device(), device(), device()};
        return std::mt19937_64(seed);
    }()};
    Bytes bytes;
    const std::uint64_t high = generator(), low = generator();
    std::memcpy(bytes.data(), &high, 8);
    std::memcpy(bytes.data() + 8, &low, 8);
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // RFC 4122 variant
    return Uuid(bytes);
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != 36) return std::nullopt;
    Bytes bytes{};
    std::size_t nibble = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isHyphenPosition(i)) {
            if (text[i] != '-') return std::nullopt;
            continue;
        }
        const int value = hexValue(text[i]);
        if (value < 0) return std::nullopt;
        bytes[nibble / 2] = static_cast<std::uint8_t>(bytes[nibble / 2] | (nibble % 2 == 0 ? value << 4 : value));
        ++nibble;
    }
    return Uuid(bytes);
}

std::string Uuid::toString() const {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text.push_back('-');
        text.push_back(digits[bytes_[i] >> 4]);
        text.push_back(digits[bytes_[i] & 0x0F]);
    }
    return text;
}

}  // namespace orvane
