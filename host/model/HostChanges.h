#pragma once

#include <unordered_set>

class YxDbStub;
class YxGeomConstraint;

namespace holdfast {

/// What may have changed in a database since somebody asked last, more rather than less. A database tells it to who has
/// asked for it, before the change is made.
struct HostChanges {
    std::unordered_set<YxDbStub*> objects;  ///< opened for write, added, replaced, erased, other reactors
    std::unordered_set<const YxGeomConstraint*> constraints;  ///< added, deleted, another value, other members

    bool empty() const { return objects.empty() && constraints.empty(); }
    void clear() {
        objects.clear();
        constraints.clear();
    }
};

}  // namespace holdfast
