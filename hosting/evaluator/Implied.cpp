#include "hosting/evaluator/Implied.h"

#include <algorithm>

#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/diagnosis/Diagnose.h"
#include "solver/src/diagnosis/Extract.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::hosting {

namespace {

/// Looks for the constraints that imply one. What is not needed goes by halves, which takes few questions where few
/// constraints matter.
class Implication {
public:
    Implication(const SketchData& sketch, int implied) : m_with(sketch), m_without(sketch), m_implied(implied) {
        m_with.constraints[at(implied)].driving = m_with.constraints[at(implied)].active = true;
        m_without.constraints[at(implied)].active = false;
    }

    std::optional<std::vector<int>> find() const {
        std::vector<int> others;
        for (int c = 0; c < static_cast<int>(m_with.constraints.size()); ++c)
            if (c != m_implied && m_with.constraints[at(c)].binds())
                others.push_back(c);
        if (!isImplied(others))
            return std::nullopt;
        return isImplied({}) ? std::vector<int>() : needed({}, others, false);
    }

private:
    /// A constraint that takes no freedom says nothing of its own.
    bool isImplied(std::vector<int> by) const {
        by.push_back(m_implied);
        return diagnose(Extract(m_with, by).sketch()).freedom == diagnose(Extract(m_without, by).sketch()).freedom;
    }

    /// Those of some constraints that are needed beside others that are kept (QuickXplain).
    std::vector<int> needed(const std::vector<int>& kept, const std::vector<int>& some, bool hasGrown) const {
        if (hasGrown && isImplied(kept))
            return {};
        if (some.size() == 1)
            return some;
        const auto middle = some.begin() + static_cast<std::ptrdiff_t>(some.size() / 2);
        const std::vector<int> first(some.begin(), middle), second(middle, some.end());
        const std::vector<int> late = needed(joined(kept, first), second, true);
        const std::vector<int> early = needed(joined(kept, late), first, !late.empty());
        return joined(early, late);
    }

    static std::vector<int> joined(std::vector<int> a, const std::vector<int>& b) {
        a.insert(a.end(), b.begin(), b.end());
        std::sort(a.begin(), a.end());
        return a;
    }

    SketchData m_with, m_without;
    int m_implied;
};

}  // namespace

std::optional<std::vector<std::string>> implying(const Document& document, const std::string& constraint) {
    const SketchData sketch = sketchFrom(document);
    const int number = constraintNumber(sketch, constraint);
    if (number < 0)
        throw SketchError("the drawing has no constraint " + constraint);
    const std::optional<std::vector<int>> found = Implication(sketch, number).find();
    if (!found)
        return std::nullopt;
    std::vector<std::string> ids;
    for (const int c : *found)
        ids.push_back(sketch.constraints[at(c)].id);
    return ids;
}

}  // namespace holdfast::hosting
