#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/DrawingChange.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// The block references of a drawing that is open, and what has changed about them since changes were taken last. The
/// host knows nothing of them.
class OpenReferences {
public:
    /// Orders count from 0 where none are given.
    explicit OpenReferences(const std::vector<BlockReference>& references,
                            const std::vector<std::size_t>* orders = nullptr);

    /// Null for a name that none has.
    const BlockReference* find(std::string_view name) const;
    /// In the order in which they were drawn.
    std::vector<BlockReference> all() const;
    /// How much all of them show.
    double cost() const { return m_cost; }

    /// Gives the one of this name another place, or adds it.
    void write(BlockReference reference);
    void erase(std::string_view name);
    /// "insert:3_2" for a copy of "insert:3" or, where that is one itself, of "insert:3_2_2".
    std::string freshName(const std::string& base);

    std::vector<ReferenceChange> change() const;
    bool isUntouched() const { return m_before.empty(); }
    void take() { m_before.clear(); }
    /// All is to be as changes leave it; then orders count from `next` on.
    void put(const std::vector<ReferenceChange>& changes, std::size_t next);
    std::size_t next() const { return m_next; }
    void countOnFrom(std::size_t next) { m_next = next; }

private:
    void put(std::size_t order, const std::optional<BlockReference>& reference);

    std::map<std::size_t, BlockReference> m_references;  // by order
    std::unordered_map<std::string, std::size_t> m_orders;
    std::map<std::size_t, std::optional<BlockReference>> m_before;  // of those that were touched
    std::unordered_map<std::string, int> m_nextNumbers;             // by base: below it, no number is free
    std::size_t m_next = 0;
    double m_cost = 0.0;
};

}  // namespace holdfast::hosting
