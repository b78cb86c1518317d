#pragma once

#include <string>
#include <vector>

#include "host/model/HostProcess.h"
#include "host/model/NetworkAudit.h"

namespace holdfast {

/// What is wrong with the host after a command; empty when all is well: objects left open, copies and converters that
/// nobody owns, misuse, and a network that does not hang together.
std::vector<std::string> auditHost(HostProcess& host);

/// Entities and converters that a group's header names although they are freed. Lists of a header borrow: the objects
/// must be there while the command runs, but what they borrowed may be gone when it has ended.
std::vector<std::string> auditHeaders(HostProcess& host);

}  // namespace holdfast
