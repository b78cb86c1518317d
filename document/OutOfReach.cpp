#include "document/OutOfReach.h"

#include <algorithm>

namespace holdfast::document {

namespace {

constexpr std::size_t kNamed = 6;  // as many as other sentences name

/// The layer of what names none.
constexpr const char* kFirstLayer = "0";

}  // namespace

OutOfReach::OutOfReach(const std::vector<Layer>& layers) {
    for (const Layer& layer : layers)
        if (layer.isOff || layer.isFrozen || layer.isLocked)
            m_closed.insert(layer.name);
}

bool OutOfReach::isClosed(const std::string& layer) const {
    return m_closed.contains(layer.empty() ? kFirstLayer : layer);
}

std::string leftOutOfReach(const std::vector<std::string>& names) {
    if (names.empty())
        return {};
    std::string list;
    const std::size_t named = std::min(names.size(), kNamed);
    for (std::size_t i = 0; i < named; ++i)
        list += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    if (names.size() > named)
        list += " and " + std::to_string(names.size() - named) + " more";
    const bool isSingle = names.size() == 1;
    return list + (isSingle ? " is invisible or on a layer that is frozen, off or locked, and was left as it is"
                            : " are invisible or on layers that are frozen, off or locked, and were left as they are");
}

}  // namespace holdfast::document
