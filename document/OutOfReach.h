#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"

namespace holdfast::document {

/// Tells which entities are not to be edited by chance: what is invisible, and what is on a layer that is frozen,
/// switched off or locked. Who names such an entity has it edited all the same.
class OutOfReach {
public:
    /// Cost: linear in the layers.
    explicit OutOfReach(const std::vector<Layer>& layers);

    bool holds(const Look& look) const { return !look.visible || (!m_closed.empty() && isClosed(look.layer)); }

private:
    bool isClosed(const std::string& layer) const;

    std::unordered_set<std::string> m_closed;
};

/// "a, b and 3 more are invisible or on layers that are frozen, off or locked, and were left as they are". Empty for
/// none.
std::string leftOutOfReach(const std::vector<std::string>& names);

}  // namespace holdfast::document
