#include "hosting/OpenReferences.h"

#include <algorithm>
#include <utility>

namespace holdfast::hosting {

OpenReferences::OpenReferences(const std::vector<BlockReference>& references, const std::vector<std::size_t>* orders) {
    for (std::size_t i = 0; i < references.size(); ++i) {
        const std::size_t order = orders == nullptr ? i : (*orders)[i];
        put(order, references[i]);
        m_next = order + 1;
    }
}

const BlockReference* OpenReferences::find(std::string_view name) const {
    const auto found = m_orders.find(std::string(name));
    return found == m_orders.end() ? nullptr : &m_references.at(found->second);
}

std::vector<BlockReference> OpenReferences::all() const {
    std::vector<BlockReference> all;
    all.reserve(m_references.size());
    for (const auto& [order, reference] : m_references)
        all.push_back(reference);
    return all;
}

void OpenReferences::put(std::size_t order, const std::optional<BlockReference>& reference) {
    if (const auto known = m_references.find(order); known != m_references.end()) {
        m_cost -= costOf(known->second);
        if (!reference || reference->id != known->second.id)
            m_nextNumbers.clear();  // its name is free
        m_orders.erase(known->second.id);
        m_references.erase(known);
    }
    if (!reference)
        return;
    m_orders.insert_or_assign(reference->id, order);
    m_references.insert_or_assign(order, *reference);
    m_cost += costOf(*reference);
}

void OpenReferences::write(BlockReference reference) {
    const auto known = m_orders.find(reference.id);
    const bool isNew = known == m_orders.end();
    const std::size_t order = isNew ? m_next++ : known->second;
    m_before.try_emplace(order, isNew ? std::nullopt : std::optional(m_references.at(order)));
    put(order, reference);
}

void OpenReferences::erase(std::string_view name) {
    const auto known = m_orders.find(std::string(name));
    if (known == m_orders.end())
        return;
    const std::size_t order = known->second;
    m_before.try_emplace(order, m_references.at(order));
    put(order, std::nullopt);
}

std::string OpenReferences::freshName(const std::string& base) {
    constexpr int firstNumber = 2;  // the first copy of a is a_2
    for (int& number = m_nextNumbers.try_emplace(base, firstNumber).first->second;; ++number)
        if (std::string name = base + "_" + std::to_string(number); !m_orders.contains(name))
            return name;
}

std::vector<ReferenceChange> OpenReferences::change() const {
    std::vector<ReferenceChange> changes;
    for (const auto& [order, before] : m_before) {
        const auto now = m_references.find(order);
        std::optional<BlockReference> after = now == m_references.end() ? std::nullopt : std::optional(now->second);
        if (before != after)
            changes.push_back({order, before, std::move(after)});
    }
    return changes;
}

void OpenReferences::put(const std::vector<ReferenceChange>& changes, std::size_t next) {
    for (const ReferenceChange& change : changes)
        put(change.order, std::nullopt);
    for (const ReferenceChange& change : changes)
        put(change.order, change.after);
    m_before.clear();
    m_next = next;
}

}  // namespace holdfast::hosting
