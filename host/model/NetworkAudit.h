#pragma once

#include <string>
#include <vector>

#include "host/model/HostProcess.h"

namespace holdfast {

/// What is wrong with a host's constraint network: reactors and dependencies that do not know each other, nodes that
/// name what is gone, composites and members that disagree. Takes the time of one walk over the database.
std::vector<std::string> auditNetwork(const HostProcess& host);

/// Dependencies whose persistent name finds no segment of the polyline on which they stand, although their status does
/// not say that the segment was removed. Sound between the edits of a drawing; within one, hosts may be elsewhere.
std::vector<std::string> auditSegments(const HostProcess& host);

}  // namespace holdfast
