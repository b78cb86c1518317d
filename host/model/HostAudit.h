#pragma once

#include <string>
#include <vector>

#include "host/model/HostProcess.h"

namespace holdfast {

/// What is wrong with the host after a command; empty when all is well: objects left open, copies and converters that
/// nobody owns, misuse, and a network that does not hang together.
std::vector<std::string> auditHost(HostProcess& host);

/// The part of the audit that looks at the network only: reactors and dependencies that do not know each other, nodes
/// that name what is gone, composites and members that disagree. Linear in the database.
std::vector<std::string> auditNetwork(const HostProcess& host);

}  // namespace holdfast
