#include "host/src/yxdb/ReactorList.h"

#include <algorithm>
#include <functional>

#include "host/model/state/HostAccess.h"

namespace holdfast {

namespace {
constexpr std::size_t kShort = 16;  // up to here a plain search is faster than an index
}

std::size_t ReactorList::Hash::operator()(const YxDbObjectId& id) const {
    return std::hash<const void*>()(HostAccess::stub(id));
}

void ReactorList::add(const YxDbObjectId& reactor) {
    m_entries.push_back(reactor);
    ++m_live;
    ++m_changes;
    if (m_places != nullptr)
        m_places->emplace(reactor, m_entries.size() - 1);
    else
        index();
}

bool ReactorList::remove(const YxDbObjectId& reactor) {
    if (reactor.isNull())
        return false;
    std::size_t place = m_entries.size();
    if (m_entries.size() <= kShort) {
        place = static_cast<std::size_t>(std::find(m_entries.begin(), m_entries.end(), reactor) - m_entries.begin());
    } else {
        const auto [first, last] = m_places->equal_range(reactor);
        const auto least = std::min_element(first, last, [](auto& a, auto& b) { return a.second < b.second; });
        if (least != last) {
            place = least->second;
            m_places->erase(least);
        }
    }
    if (place == m_entries.size())
        return false;
    m_entries[place] = YxDbObjectId();
    --m_live;
    ++m_changes;
    if (m_entries.size() <= kShort || m_live < m_entries.size() / 2)
        compact();
    return true;
}

std::vector<YxDbObjectId> ReactorList::ids() const {
    std::vector<YxDbObjectId> live;
    live.reserve(m_live);
    std::copy_if(m_entries.begin(), m_entries.end(), std::back_inserter(live),
                 [](const YxDbObjectId& id) { return id.isValid(); });
    return live;
}

std::size_t ReactorList::count(const YxDbObjectId& reactor) const {
    if (m_entries.size() > kShort)
        return m_places->count(reactor);
    return static_cast<std::size_t>(std::count(m_entries.begin(), m_entries.end(), reactor));
}

void ReactorList::compact() {
    m_entries = ids();
    index();
}

void ReactorList::index() {
    m_places.reset();
    if (m_entries.size() <= kShort)
        return;
    m_places = std::make_unique<Places>();
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        m_places->emplace(m_entries[i], i);
}

}  // namespace holdfast
