#include "editing/ties/Ties.h"

#include <algorithm>
#include <type_traits>

#include "editing/ties/BoundaryTies.h"
#include "editing/ties/BridgeTies.h"
#include "editing/ties/CarriedConstraints.h"
#include "editing/ties/CornerTies.h"
#include "editing/ties/MirrorTies.h"
#include "editing/ties/PieceTies.h"
#include "editing/ties/TieFilter.h"
#include "editing/ties/TieScene.h"
#include "geometry/GeometryError.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

namespace {

template <class Command, class... Commands>
constexpr bool isOneOf = (std::is_same_v<Command, Commands> || ...);

/// What each kind of edit gives of its own.
struct Proposer {
    const TieScene& scene;
    std::vector<Tie>& ties;

    void operator()(const Break& edit) const { tiePieces(scene, edit.entity.value, ties); }
    void operator()(const Trim& edit) const {
        tieToBoundaries(scene, edit.entity.value, edit.by, ties);
        tiePieces(scene, edit.entity.value, ties);
    }
    void operator()(const Extend& edit) const { tieToBoundaries(scene, edit.entity.value, edit.to, ties); }
    void operator()(const Mirror& edit) const { tieMirrored(scene, edit, ties); }
    void operator()(const Join&) const {}
    template <class Command>
    void operator()(const Command&) const {
        tieBridges(scene, ties);
    }
};

/// Edits of constraints and of entities as such do what they say and no more.
bool givesTies(const Edit& edit) {
    return std::visit(
        [](const auto& command) {
            return !isOneOf<std::decay_t<decltype(command)>, SetDimension, SetDriving, SetActive, Constrain, Delete,
                            Erase, Draw, Undo, Redo>;
        },
        edit);
}

bool saysTheSame(const Constraint& a, const Constraint& b) {
    return a.type == b.type && a.refs.size() == b.refs.size() &&
           std::is_permutation(a.refs.begin(), a.refs.end(), b.refs.begin());
}

std::vector<Tie> proposed(const TieScene& scene, const Edit& edit, const std::vector<Constraint>& deletedByUser) {
    std::vector<Tie> ties = rePointedConstraints(scene);
    tieCorner(scene, ties);
    for (Tie& tie : carriedConstraints(scene))
        ties.push_back(std::move(tie));
    std::visit(Proposer{scene, ties}, edit);
    // What the edit was made for comes first: an end on its boundary.
    for (Tie& tie : constraintsOfStandIns(scene))
        ties.push_back(std::move(tie));
    std::erase_if(ties, [&](const Tie& tie) {
        return std::any_of(deletedByUser.begin(), deletedByUser.end(),
                           [&](const Constraint& deleted) { return saysTheSame(tie.constraint, deleted); });
    });
    return ties;
}

std::vector<Tie> lasting(const TieScene& scene, const Edit& edit, const std::vector<Constraint>& deletedByUser) {
    try {
        return withoutImplied(scene.drawing(), proposed(scene, edit, deletedByUser));
    } catch (const UnsolvableDocument&) {
    } catch (const GeometryError&) {
    }
    return {};
}

/// Where the host has made another object of an entity, the places of the former one are none of its own.
bool canBeRestored(const TieScene& scene, const Constraint& constraint) {
    const auto isOfOneKind = [&](const Place& place) {
        const Shape *was = scene.before(place.entity), *is = scene.now(place.entity);
        return was != nullptr && is != nullptr && was->index() == is->index();
    };
    const std::optional<Constraint> there = scene.drawing().deletedConstraint(constraint.id);
    return there && there->refs == constraint.refs &&
           std::all_of(constraint.refs.begin(), constraint.refs.end(), isOfOneKind);
}

std::string add(const TieScene& scene, const Constraint& constraint) {
    Drawing& drawing = scene.drawing();
    if (drawing.hasConstraint(constraint.id))
        drawing.removeConstraint(constraint.id);
    else if (!constraint.id.empty() && canBeRestored(scene, constraint) && drawing.restoreConstraint(constraint.id))
        return constraint.id;
    return drawing.addConstraint(constraint);
}

}  // namespace

TieReasons giveTies(EditContext& context, const Edit& edit, const EditedPart& part,
                    const std::vector<Constraint>& deletedByUser) {
    TieReasons reasons;
    if (!givesTies(edit))
        return reasons;
    const TieScene scene(context, part);
    for (const Tie& tie : lasting(scene, edit, deletedByUser))
        reasons.emplace(add(scene, tie.constraint), tie.reason);
    return reasons;
}

}  // namespace holdfast::editing
