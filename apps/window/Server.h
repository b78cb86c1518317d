#pragma once

#include <memory>
#include <string>

#include "apps/window/Uses.h"

namespace holdfast::window {

class Tabs;

/// Answers the page, on this machine alone, in threads of its own from its construction to its end.
class Server {
public:
    /// Port 0 takes any that is free. Throws std::runtime_error when the port cannot be had.
    Server(Tabs& tabs, int port);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Where the page is, with the word that lets in.
    std::string address() const;

private:
    struct Inside;
    std::unique_ptr<Inside> m_inside;
};

}  // namespace holdfast::window
