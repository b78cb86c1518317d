#include "hosting/evaluator/Implied.h"

#include <algorithm>
#include <span>

#include "geometry/Tolerances.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/diagnosis/Diagnose.h"
#include "solver/src/diagnosis/Extract.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::hosting {

namespace {

int numberOf(const SketchData& sketch, const std::string& id) {
    for (std::size_t i = 0; i < sketch.constraints.size(); ++i)
        if (sketch.constraints[i].id == id)
            return static_cast<int>(i);
    throw SketchError("the drawing has no constraint " + id);
}

/// Looks for the constraints that imply one. What is not needed goes by halves, which takes few questions where few
/// constraints matter.
class Implication {
public:
    Implication(const SketchData& sketch, int implied) : m_sketch(sketch), m_implied(implied) {}

    std::vector<int> find() const {
        std::vector<int> others;
        for (int c = 0; c < static_cast<int>(m_sketch.constraints.size()); ++c)
            if (c != m_implied && m_sketch.constraints[at(c)].binds())
                others.push_back(c);
        return isImplied(others) ? needed({}, others, false) : std::vector<int>();
    }

private:
    /// The implied one is put last: of two constraints that say the same the later one is called redundant.
    bool isImplied(std::vector<int> by) const {
        by.push_back(m_implied);
        const Extract extract(m_sketch, by);
        const auto last = static_cast<int>(by.size()) - 1;
        const Diagnosis diagnosis = diagnose(extract.sketch());
        return std::any_of(diagnosis.redundant.begin(), diagnosis.redundant.end(),
                           [last](const Redundancy& each) { return each.isWhole && each.constraint == last; });
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

    const SketchData& m_sketch;
    int m_implied;
};

}  // namespace

double measureOf(const Document& document, const std::string& dimension) {
    const SketchData sketch = sketchFrom(document);
    return measured(sketch, numberOf(sketch, dimension));
}

bool isHeld(const Document& document, const std::string& constraint) {
    const SketchData sketch = sketchFrom(document);
    const int number = numberOf(sketch, constraint);
    return violationsOf(Extract(sketch, {&number, 1}).sketch()).front() <= kHolds * sketch.size();
}

std::vector<std::string> implying(const Document& document, const std::string& constraint) {
    const SketchData sketch = sketchFrom(document);
    std::vector<std::string> ids;
    for (const int c : Implication(sketch, numberOf(sketch, constraint)).find())
        ids.push_back(sketch.constraints[at(c)].id);
    return ids;
}

}  // namespace holdfast::hosting
