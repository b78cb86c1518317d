#pragma once

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

#include <yxdb/YxDbObjectId.h>

namespace holdfast {

/// The persistent reactors of one object, in the order in which they were attached; one may stand there twice. Adding
/// and removing take constant time on average, so that a polyline may carry a dependency for each of 100,000 segments.
class ReactorList {
public:
    void add(const YxDbObjectId& reactor);
    /// Removes the first entry that names the reactor; false when there is none.
    bool remove(const YxDbObjectId& reactor);
    std::vector<YxDbObjectId> ids() const;
    std::size_t count(const YxDbObjectId& reactor) const;
    /// Grows with every change of the list.
    std::size_t changes() const { return m_changes; }

private:
    struct Hash {
        std::size_t operator()(const YxDbObjectId& id) const;
    };
    using Places = std::unordered_multimap<YxDbObjectId, std::size_t, Hash>;
    void index();
    void compact();

    std::vector<YxDbObjectId> m_entries;  // removed ones are null until the list is compacted
    std::size_t m_live = 0;
    std::size_t m_changes = 0;
    std::unique_ptr<Places> m_places;  // only for long lists: most objects have a few reactors or none
};

}  // namespace holdfast
