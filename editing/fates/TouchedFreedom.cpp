#include "editing/fates/TouchedFreedom.h"

#include <string_view>
#include <unordered_set>

#include "editing/fates/Freedom.h"

namespace holdfast::editing {

namespace {

/// What a change names before or after it, and the entities of its constraints.
class NamesIn {
public:
    explicit NamesIn(const DrawingChange& change) {
        for (const EntityChange& entity : change.entities)
            for (const auto* side : {&entity.before, &entity.after})
                if (*side)
                    take((*side)->id);
        for (const ConstraintChange& constraint : change.constraints)
            for (const auto* side : {&constraint.before, &constraint.after})
                if (*side)
                    for (const Place& place : (*side)->refs)
                        take(place.entity);
    }
    const std::vector<std::string>& names() const { return m_names; }

private:
    void take(const std::string& name) {
        if (m_known.insert(name).second)
            m_names.push_back(name);
    }

    std::unordered_set<std::string> m_known;
    std::vector<std::string> m_names;
};

template <class Item, class Change>
void changeItems(std::vector<Item>& items, const std::vector<Change>& changes) {
    std::unordered_set<std::string_view> former;
    for (const Change& each : changes)
        if (each.before)
            former.insert(each.before->id);
    std::erase_if(items, [&](const Item& item) { return former.contains(item.id); });
    for (const Change& each : changes)
        if (each.after)
            items.push_back(*each.after);
}

/// A part of a drawing as a change leaves it.
Document changed(Document part, const DrawingChange& by) {
    changeItems(part.entities, by.entities);
    changeItems(part.constraints, by.constraints);
    return part;
}

}  // namespace

/// All constraints that come or go are between entities that the change names, so that what can be reached from these
/// is the same before and after.
FreedomChange freedomOfTouched(const Drawing& drawing, const DrawingChange& change, bool isMade) {
    const Document part = drawing.partAround(NamesIn(change).names(), kAllSteps).document;
    const Document other = changed(part, isMade ? reversed(change) : change);
    return {degreesOfFreedom(isMade ? other : part), degreesOfFreedom(isMade ? part : other)};
}

}  // namespace holdfast::editing
