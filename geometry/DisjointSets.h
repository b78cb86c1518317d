#pragma once

#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace holdfast::geometry {

/// Sets of numbers that grow together: union by size, find with path halving (Tarjan, Efficiency of a good but not
/// linear set union algorithm).
class DisjointSets {
public:
    explicit DisjointSets(std::size_t count) : m_parent(count), m_size(count, 1) {
        std::iota(m_parent.begin(), m_parent.end(), std::size_t{0});
    }

    std::size_t find(std::size_t item) {
        while (m_parent[item] != item) {
            m_parent[item] = m_parent[m_parent[item]];
            item = m_parent[item];
        }
        return item;
    }

    bool same(std::size_t a, std::size_t b) { return find(a) == find(b); }

    /// Joins two sets; false when they were one already.
    bool join(std::size_t a, std::size_t b) {
        a = find(a);
        b = find(b);
        if (a == b)
            return false;
        if (m_size[a] < m_size[b])
            std::swap(a, b);
        m_parent[b] = a;
        m_size[a] += m_size[b];
        return true;
    }

private:
    std::vector<std::size_t> m_parent;
    std::vector<std::size_t> m_size;
};

}  // namespace holdfast::geometry
