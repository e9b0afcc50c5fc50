// A 128-bit identifier with random generation and the canonical upper-case text form.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

class Uuid {
public:
    using Bytes = std::array<std::uint8_t, 16>;

    constexpr Uuid() = default;
    constexpr explicit Uuid(const Bytes& bytes) : bytes_(bytes) {}

    // A fresh version-4 identifier from the system's random source.
    static Uuid random();
    // Accepts exactly 8-4-4-4-12 hexadecimal digits in either letter case.
    static std::optional<Uuid> parse(std::string_view text);

    // 36 characters, hexadecimal digits in upper case.
    std::string toString() const;
    const Bytes& bytes() const { return bytes_; }

    friend bool operator==(const Uuid&, const Uuid&) = default;

private:
    Bytes bytes_{};
};

}  // namespace orvane
