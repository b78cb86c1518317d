#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "apps/window/Uses.h"

namespace holdfast::window {

/// What of a request decides whether it is answered; empty where the request has no such header.
struct Knock {
    std::string method, path, host, origin, contentType, contentEncoding, transferEncoding;
    std::string site;  ///< Sec-Fetch-Site: who asks, as the browser knows it
    std::size_t length = 0;
};

/// Lets in what comes from the page itself and nobody else: other programs' pages in the same browser can send requests
/// here, too, and a name of somebody's may be made to lead here. The page's address holds a word that only it knows.
class Gate {
public:
    /// The word is random; the port is the one that the server listens on.
    Gate(std::string word, int port);

    /// 128 random bits as a word.
    static std::string freshWord();

    /// "/WORD/": what all addresses begin with.
    const std::string& prefix() const { return m_prefix; }

    /// The status to refuse it with, in the numbers of HTTP; 0: let it in.
    int refusal(const Knock& knock) const;

    /// Longest edit, in bytes. Edits name entities, by the hundred when all of a drawing is moved.
    static constexpr std::size_t kLongestEdit = 1 << 20;
    /// Largest file that may be dropped, in bytes.
    static constexpr std::size_t kLargestFile = 64 << 20;
    /// What comes behind the word where a file is dropped.
    static constexpr std::string_view kDrop = "do/drop";

private:
    bool isOwnHost(std::string_view host) const;
    bool isOwnOrigin(std::string_view origin) const;
    bool hasWord(std::string_view path) const;
    bool isDrop(std::string_view path) const { return path.substr(m_prefix.size()) == kDrop; }

    std::string m_prefix;
    int m_port;
};

}  // namespace holdfast::window
