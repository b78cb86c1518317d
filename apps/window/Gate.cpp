#include "apps/window/Gate.h"

#include <array>
#include <cstdint>
#include <random>
#include <utility>

namespace holdfast::window {

namespace {

// Statuses of HTTP, RFC 9110 section 15.
constexpr int kForbidden = 403, kNotFound = 404, kNotAllowed = 405, kNoLength = 411, kTooLarge = 413,
              kUnsupported = 415;

constexpr std::array<std::string_view, 2> kOwnNames{"127.0.0.1", "localhost"};

}  // namespace

Gate::Gate(std::string word, int port) : m_prefix("/" + std::move(word) + "/"), m_port(port) {}

std::string Gate::freshWord() {
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr int kPieces = 4;  // of 32 bits each
    std::random_device random;
    std::string word;
    for (int piece = 0; piece < kPieces; ++piece)
        for (std::uint32_t bits = random(), digit = 0; digit < 8; ++digit, bits >>= 4U)
            word += kDigits[bits & 15U];
    return word;
}

int Gate::refusal(const Knock& knock) const {
    if (!isOwnHost(knock.host))
        return kForbidden;
    if (!knock.origin.empty() && !isOwnOrigin(knock.origin))
        return kForbidden;
    if (!hasWord(knock.path))
        return kNotFound;
    if (knock.method == "GET")
        return 0;
    if (knock.method != "POST")
        return kNotAllowed;
    // What changes the drawing says where it comes from: every browser does in a POST.
    if (knock.origin.empty() || knock.site == "cross-site")
        return kForbidden;
    if (!knock.transferEncoding.empty())
        return kNoLength;  // how much it is is known before it is read
    const bool drops = isDrop(knock.path);
    // Neither is a type that a form of another page can have.
    if (knock.contentType != (drops ? "application/octet-stream" : "application/json") ||
        !knock.contentEncoding.empty())
        return kUnsupported;
    return knock.length > (drops ? kLargestFile : kLongestEdit) ? kTooLarge : 0;
}

bool Gate::isOwnHost(std::string_view host) const {
    const std::string port = ":" + std::to_string(m_port);
    for (const std::string_view name : kOwnNames)
        if (host == std::string(name) + port)
            return true;
    return false;
}

bool Gate::isOwnOrigin(std::string_view origin) const {
    constexpr std::string_view kScheme = "http://";
    return origin.starts_with(kScheme) && isOwnHost(origin.substr(kScheme.size()));
}

/// Takes as long for a word that is nearly right as for any other.
bool Gate::hasWord(std::string_view path) const {
    if (path.size() < m_prefix.size())
        return false;
    unsigned difference = 0;
    for (std::size_t i = 0; i < m_prefix.size(); ++i)
        difference |= static_cast<unsigned>(path[i] ^ m_prefix[i]);
    return difference == 0;
}

}  // namespace holdfast::window
