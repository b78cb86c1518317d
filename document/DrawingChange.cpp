#include "document/DrawingChange.h"

#include <algorithm>
#include <cassert>
#include <numeric>
#include <utility>

namespace holdfast::document {

namespace {

std::vector<std::size_t> counted(std::size_t count) {
    std::vector<std::size_t> orders(count);
    std::iota(orders.begin(), orders.end(), std::size_t{0});
    return orders;
}

/// Takes the listed positions, ascending, out of a list.
template <class T>
void removeAt(std::vector<T>& list, const std::vector<std::size_t>& positions) {
    if (positions.empty())
        return;
    std::size_t kept = positions.front(), next = 0;
    for (std::size_t i = kept; i < list.size(); ++i) {
        if (next < positions.size() && positions[next] == i)
            ++next;
        else
            list[kept++] = std::move(list[i]);
    }
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(kept), list.end());
}

/// A change of one list, with everything that takes memory done beforehand.
template <class T>
class ListChange {
public:
    template <class Change>
    ListChange(std::vector<T>& list, std::vector<std::size_t>& orders, const std::vector<Change>& changes)
        : m_list(list), m_orders(orders) {
        assert(list.size() == orders.size() && std::is_sorted(orders.begin(), orders.end()));
        assert(std::is_sorted(changes.begin(), changes.end(),
                              [](const Change& a, const Change& b) { return a.order < b.order; }));
        for (const Change& change : changes) {
            const auto found = std::lower_bound(orders.begin(), orders.end(), change.order);
            const bool isThere = found != orders.end() && *found == change.order;
            const auto position = static_cast<std::size_t>(found - orders.begin());
            if (isThere && !change.after)
                m_gone.push_back(position);
            else if (change.after)
                (isThere ? m_changed : m_made).emplace_back(isThere ? position : change.order, *change.after);
        }
        list.reserve(list.size() + m_made.size());
        orders.reserve(list.size() + m_made.size());
    }

    void make() noexcept {
        for (auto& [position, item] : m_changed)
            m_list[position] = std::move(item);
        removeAt(m_list, m_gone);
        removeAt(m_orders, m_gone);
        insert();
    }

private:
    /// Both lists ascend by their orders.
    void insert() {
        std::size_t from = m_list.size(), to = from + m_made.size();
        m_list.resize(to);
        m_orders.resize(to);
        for (std::size_t left = m_made.size(); left > 0;) {
            --to;
            if (from > 0 && m_orders[from - 1] > m_made[left - 1].first) {
                --from;
                m_list[to] = std::move(m_list[from]);
                m_orders[to] = m_orders[from];
            } else {
                --left;
                m_list[to] = std::move(m_made[left].second);
                m_orders[to] = m_made[left].first;
            }
        }
    }

    std::vector<T>& m_list;
    std::vector<std::size_t>& m_orders;
    std::vector<std::size_t> m_gone;
    std::vector<std::pair<std::size_t, T>> m_changed;  // by position
    std::vector<std::pair<std::size_t, T>> m_made;     // by order
};

}  // namespace

DrawingChange reversed(DrawingChange change) {
    for (EntityChange& entity : change.entities)
        std::swap(entity.before, entity.after);
    for (ConstraintChange& constraint : change.constraints)
        std::swap(constraint.before, constraint.after);
    for (ReferenceChange& reference : change.references)
        std::swap(reference.before, reference.after);
    if (change.parameters)
        std::swap(change.parameters->before, change.parameters->after);
    return change;
}

OrderedDocument::OrderedDocument(Document plain)
    : document(std::move(plain)),
      entityOrders(counted(document.entities.size())),
      constraintOrders(counted(document.constraints.size())),
      referenceOrders(counted(document.references.size())) {}

void OrderedDocument::apply(const DrawingChange& change) {
    ListChange<Entity> entities(document.entities, entityOrders, change.entities);
    ListChange<Constraint> constraints(document.constraints, constraintOrders, change.constraints);
    ListChange<BlockReference> references(document.references, referenceOrders, change.references);
    std::vector<Parameter> parameters;
    if (change.parameters)
        parameters = change.parameters->after;
    entities.make();
    constraints.make();
    references.make();
    if (change.parameters)
        document.parameters.swap(parameters);
}

}  // namespace holdfast::document
