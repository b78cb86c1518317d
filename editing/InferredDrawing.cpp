#include "editing/InferredDrawing.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>

#include "document/OutOfReach.h"
#include "document/Polylines.h"

namespace holdfast::editing {

namespace {

/// What is not to be edited by chance.
std::vector<std::string> outOfReachIn(const Document& document) {
    const OutOfReach outOfReach(document.layers);
    std::vector<std::string> names;
    for (const Entity& entity : document.entities)
        if (outOfReach.holds(*entity.look))
            names.push_back(entity.id);
    return names;
}

bool isOn(const Constraint& constraint, const std::unordered_set<std::string>& entities) {
    return std::any_of(constraint.refs.begin(), constraint.refs.end(),
                       [&](const Place& place) { return entities.contains(place.entity); });
}

/// New joints of what is not to be edited by chance.
void dropAtOutOfReach(Document& document, std::size_t firstNew) {
    const std::vector<std::string> names = outOfReachIn(document);
    const std::unordered_set<std::string> left(names.begin(), names.end());
    auto& constraints = document.constraints;
    const auto first = constraints.begin() + static_cast<std::ptrdiff_t>(firstNew);
    const auto goes = [&](const Constraint& constraint) { return isOn(constraint, left); };
    constraints.erase(std::remove_if(first, constraints.end(), goes), constraints.end());
}

}  // namespace

Document withPolylines(const Document& plain, InferOptions& options) {
    InferOptions joints = options;
    joints.kinds = {ConstraintType::coincident};
    const std::size_t given = plain.constraints.size();
    Inference joined = inferConstraints(plain, joints);
    dropAtOutOfReach(joined.document, given);
    options.length = joined.length;
    std::unordered_set<std::string> added;
    for (std::size_t i = given; i < joined.document.constraints.size(); ++i)
        added.insert(joined.document.constraints[i].id);
    Document chained = chainsToPolylines(joined.document, joined.length).document;
    std::erase_if(chained.constraints, [&](const Constraint& constraint) { return added.contains(constraint.id); });
    return chained;
}

namespace {

/// The drawing as far as it is in reach, with the names of what is not.
struct Reach {
    Document document;
    std::vector<std::string> left;
};

Reach reachOf(const Document& document) {
    Reach reach{document, outOfReachIn(document)};
    if (reach.left.empty())
        return reach;
    const std::unordered_set<std::string> left(reach.left.begin(), reach.left.end());
    std::erase_if(reach.document.entities, [&](const Entity& entity) { return left.contains(entity.id); });
    std::unordered_set<std::string> gone;
    std::erase_if(reach.document.constraints, [&](const Constraint& constraint) {
        const bool goes = isOn(constraint, left);
        if (goes)
            gone.insert(constraint.id);
        return goes;
    });
    std::erase_if(reach.document.constraints, [&](const Constraint& constraint) {
        return std::any_of(constraint.members.begin(), constraint.members.end(),
                           [&](const std::string& member) { return gone.contains(member); });
    });
    return reach;
}

/// The whole drawing with the new constraints of its part, under ids that it has not.
Document withNew(const Document& whole, const Document& part, std::size_t firstNew) {
    Document document = whole;
    std::unordered_set<std::string> known;
    for (const Constraint& constraint : whole.constraints)
        known.insert(constraint.id);
    std::size_t next = 0;
    for (std::size_t i = firstNew; i < part.constraints.size(); ++i) {
        Constraint added = part.constraints[i];
        while (!known.insert(added.id).second)
            added.id = "c" + std::to_string(next++);
        document.constraints.push_back(std::move(added));
    }
    return document;
}

}  // namespace

InferredDrawing inferredDrawing(const Document& plain, const InferOptions& options) {
    Reach reach = reachOf(plain);
    Inference inference = inferConstraints(reach.document, options);
    InferredDrawing found{{}, plain.constraints.size(), inference.length, {}, std::move(reach.left)};
    found.document = found.outOfReach.empty() ? std::move(inference.document)
                                              : withNew(plain, inference.document, reach.document.constraints.size());
    found.thinning = thinOut(found.document, found.firstNew);
    return found;
}

}  // namespace holdfast::editing
