#pragma once

#include <unordered_set>
#include <vector>

class YxDbStub;
class YxGeomConstraint;

namespace holdfast {

/// What may have changed in a database since somebody asked last, more rather than less. A database tells it to who has
/// asked for it, before the change is made.
struct HostChanges {
    std::unordered_set<YxDbStub*> objects;  ///< opened for write, added, replaced, erased, other reactors
    std::unordered_set<const YxGeomConstraint*> constraints;  ///< added, deleted, another value, other members
    /// Deleted ones in the order in which they went, members behind their composite. They stay listed until somebody
    /// who wants to know who deleted them takes them out.
    std::vector<const YxGeomConstraint*> deletions;

    bool empty() const { return objects.empty() && constraints.empty(); }
    void clear() {
        objects.clear();
        constraints.clear();
    }
};

}  // namespace holdfast
