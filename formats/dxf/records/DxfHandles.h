#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <string>

#include "formats/Uses.h"

namespace holdfast::formats {

/// Hands out handles that nothing in a file has.
class DxfHandles {
public:
    explicit DxfHandles(std::uint64_t next) : m_next(next) {}

    std::string take() { return text(m_next++); }
    /// The next one: where the file has to say it counts on from.
    std::uint64_t next() const { return m_next; }
    std::string nextText() const { return text(m_next); }

private:
    static std::string text(std::uint64_t handle) {
        std::array<char, 16> digits{};  // as many as 64 bits have
        const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), handle, 16);
        std::string text(digits.data(), end);
        for (char& digit : text)
            digit = digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit;
        return text;
    }

    std::uint64_t m_next;
};

}  // namespace holdfast::formats
