#include "editing/constraints/NewConstraints.h"

#include <string>

#include "document/EntityIndex.h"
#include "document/Places.h"
#include "document/checks/ConstraintCheck.h"
#include "editing/constraints/ImpliedConstraints.h"
#include "geometry/Tolerances.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

namespace {

/// All that hangs together with the entities of some constraints.
Document surroundingsOf(const Drawing& drawing, const std::vector<Constraint>& constraints) {
    std::vector<std::string> names;
    for (const Constraint& constraint : constraints)
        for (std::string& name : entitiesOf(constraint))
            names.push_back(std::move(name));
    return drawing.partAround(names, kAllSteps).document;
}

/// Those that make sense, behind the others, each with an id of its own.
void append(Document& part, std::vector<Constraint> wanted, const std::string& id) {
    std::vector<Constraint> sound;
    const EntityIndex entities(part);
    for (Constraint& constraint : wanted)
        if (!faultIn(constraint, entities)) {
            constraint.id = id + "_" + std::to_string(sound.size());
            sound.push_back(std::move(constraint));
        }
    part.constraints.insert(part.constraints.end(), sound.begin(), sound.end());
}

void dropFalse(Document& part, std::size_t firstNew, double holds) {
    const std::vector<double> misses = DocumentSketch(part).shortfalls();
    std::vector<Constraint> holding(part.constraints.begin(),
                                    part.constraints.begin() + static_cast<std::ptrdiff_t>(firstNew));
    for (std::size_t i = firstNew; i < part.constraints.size(); ++i)
        if (misses[i] <= holds)
            holding.push_back(part.constraints[i]);
    part.constraints = std::move(holding);
}

/// What thinning leaves of several equations may say some of them twice.
void dropPartlyImplied(Document& part, std::size_t firstNew) {
    std::vector<std::size_t> numbers;
    for (const auto& [number, isWhole] : DocumentSketch(part).diagnose().redundant)
        if (number >= firstNew)
            numbers.push_back(number);
    for (auto number = numbers.rbegin(); number != numbers.rend(); ++number)
        part.constraints.erase(part.constraints.begin() + static_cast<std::ptrdiff_t>(*number));
}

/// How many equations are spare among the first constraints of a part.
int spareWith(const Document& part, std::size_t count) {
    Document first = part;
    first.constraints.resize(count);
    return DocumentSketch(first).redundancies().equations;
}

/// Where something is said twice it may be an older constraint that is named for it: the first new one with which that
/// happens goes. Each costs as many eliminations as the number of new ones has binary digits.
void dropTwiceSaid(Document& part, std::size_t firstNew) {
    const int given = spareWith(part, firstNew);
    while (part.constraints.size() > firstNew && spareWith(part, part.constraints.size()) > given) {
        std::size_t good = firstNew, bad = part.constraints.size();
        while (bad - good > 1) {
            const std::size_t middle = good + (bad - good) / 2;
            (spareWith(part, middle) > given ? bad : good) = middle;
        }
        part.constraints.erase(part.constraints.begin() + static_cast<std::ptrdiff_t>(good));
    }
}

}  // namespace

void addNew(Drawing& drawing, std::vector<Constraint> wanted) {
    if (wanted.empty())
        return;
    Document part = surroundingsOf(drawing, wanted);
    const std::size_t first = part.constraints.size();
    append(part, std::move(wanted), drawing.freeConstraintId());
    // Nothing is to move for them later: kHolds would let in what is only nearly true.
    dropFalse(part, first, kSamePoint * drawing.extent());
    thinOut(part, first);
    dropPartlyImplied(part, first);
    dropTwiceSaid(part, first);
    for (std::size_t i = first; i < part.constraints.size(); ++i) {
        part.constraints[i].id.clear();
        drawing.addConstraint(part.constraints[i]);
    }
}

}  // namespace holdfast::editing
