#include "editing/constraints/ImpliedConstraints.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "editing/constraints/HalfConstraints.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

namespace {

/// A drawing with more constraints in the way than this has another fault: its tolerance is too coarse.
constexpr std::size_t kMostContrary = 20;

class Thinner {
public:
    Thinner(Document& document, std::size_t firstNew) : m_document(document), m_firstNew(firstNew) {}

    Thinning run() {
        while (thinned() || freed()) {
        }
        return m_result;
    }

private:
    /// The drawing without those new constraints that have a freedom of their own: however many there are, they say
    /// nothing about the others.
    struct Core {
        Document document;
        std::vector<std::size_t> numbers;  ///< of its constraints in the whole drawing
    };
    Core core() const {
        Core core{m_document, {}};
        core.document.constraints.clear();
        const std::vector<std::size_t> own = DocumentSketch(m_document).ownFreedoms();
        for (std::size_t i = 0; i < m_document.constraints.size(); ++i)
            if (i < m_firstNew || !std::binary_search(own.begin(), own.end(), i)) {
                core.document.constraints.push_back(m_document.constraints[i]);
                core.numbers.push_back(i);
            }
        return core;
    }

    /// One round: what a constraint implies only together with one that goes is found in the next.
    bool thinned() {
        const Core judged = core();
        // Within the tolerance the constraints hold only nearly, and seem to say more than they do.
        DocumentSketch sketch(judged.document);
        m_result.holds = sketch.solve({.namesConflicts = false}).isSolved();
        std::unordered_set<std::string> implied;
        bool halved = false;
        for (const auto& [place, isWhole] : sketch.diagnose().redundant) {
            const std::size_t number = judged.numbers[place];
            Constraint& constraint = m_document.constraints[number];
            if (number < m_firstNew)
                continue;
            if (halve(constraint, isWhole))
                halved = true;
            else if (isWhole)
                implied.insert(constraint.id);
        }
        m_result.implied +=
            std::erase_if(m_document.constraints, [&](const Constraint& each) { return implied.contains(each.id); });
        return halved || !implied.empty();
    }

    /// Takes out one new constraint that stands in the way of the others.
    bool freed() {
        if (m_result.holds || m_result.contrary == kMostContrary)
            return false;
        const std::optional<std::size_t> culprit = inTheWay(core());
        m_result.ownHold = culprit.has_value();
        if (!culprit)
            return false;
        m_document.constraints.erase(m_document.constraints.begin() + static_cast<std::ptrdiff_t>(*culprit));
        ++m_result.contrary;
        return true;
    }

    /// The latest new constraint of a conflict; where none is named, the first with which the drawing cannot be solved.
    std::optional<std::size_t> inTheWay(const Core& judged) const {
        const std::vector<std::size_t> conflict = DocumentSketch(judged.document).solve({}).conflicting;
        if (!conflict.empty()) {
            const std::size_t last = *std::max_element(conflict.begin(), conflict.end());
            return last < m_firstNew ? std::nullopt : std::optional(judged.numbers[last]);
        }
        std::size_t good = m_firstNew, bad = judged.numbers.size();
        if (!isSolvable(judged.document, good))
            return {};
        while (bad - good > 1) {
            const std::size_t middle = good + (bad - good) / 2;
            (isSolvable(judged.document, middle) ? good : bad) = middle;
        }
        return judged.numbers[good];
    }

    static bool isSolvable(Document part, std::size_t count) {
        part.constraints.resize(count);
        return DocumentSketch(part).solve({.namesConflicts = false}).isSolved();
    }

    /// A constraint that is implied in part becomes its first half, and that half, if it is implied, the second one.
    bool halve(Constraint& found, bool isWhole) {
        const auto known = m_wholes.find(found.id);
        const bool isFirst = known == m_wholes.end();
        if (isFirst == isWhole)
            return false;
        const Constraint whole = isFirst ? found : known->second;
        const std::optional<Constraint> half = halfOf(whole, isFirst);
        if (!half || found == *half)
            return false;
        m_wholes.emplace(whole.id, whole);
        found = *half;
        return true;
    }

    Document& m_document;
    std::size_t m_firstNew;
    Thinning m_result;
    std::unordered_map<std::string, Constraint> m_wholes;  ///< what was halved, by its id
};

}  // namespace

Thinning thinOut(Document& document, std::size_t firstNew) {
    return Thinner(document, firstNew).run();
}

}  // namespace holdfast::editing
