#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosting/Drawing.h"
#include "hosting/Uses.h"

class AssocConstraintHeader;

namespace holdfast::hosting {

class HostDrag;

/// A drag that is looked at before it is done: at one place after another, what would move if it ended there at once.
/// What does not depend on the place is made once, so that a place costs its solve. The drawing stays as it is, and is
/// to stay so as long as this lives.
class HostPull {
public:
    /// The names are those of the edited entities, which the header has, and of all that may not hold.
    HostPull(Drawing& drawing, std::unique_ptr<AssocConstraintHeader> header, std::vector<std::string> names);
    ~HostPull();
    HostPull(const HostPull&) = delete;
    HostPull& operator=(const HostPull&) = delete;

    /// The entities that would be elsewhere, where they would be, to the last bit as the drag itself would write them.
    /// Nothing where constraints hold the edited entities back, or did not hold before: how the drag ends then, only
    /// the drag itself tells.
    /// Those that need not be told, of how they are and how they would be, are left out.
    using IsTold = std::function<bool(const Entity& before, const Shape& after)>;
    std::optional<std::vector<Entity>> movedBy(const YxGeMatrix3d& transform, const IsTold& isTold);

private:
    HostDrag* placed(const YxGeMatrix3d& transform);

    Drawing& m_drawing;
    std::unique_ptr<AssocConstraintHeader> m_header;
    std::vector<std::string> m_names;
    std::unique_ptr<HostDrag> m_near, m_far;  ///< the second looks farther; made when the first cannot tell
};

}  // namespace holdfast::hosting
