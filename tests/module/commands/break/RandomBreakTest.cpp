#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/module/commands/break/CutCommand.h"
#include "tests/module/commands/break/PlainBreak.h"
#include "tests/module/commands/break/TestAccess.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/RandomNetwork.h"

namespace holdfast::module {
namespace {

struct Cut {
    double start = 0.0;
    double end = 0.0;
};

/// A cut of a polyline that leaves a first piece: parameters at vertices and inside segments.
Cut randomCut(int count) {
    const auto quarter = rc::gen::map(rc::gen::inRange(1, 4 * (count - 1) + 1), [](int k) { return k / 4.0; });
    const auto [p, q] = *rc::gen::pair(quarter, quarter);
    return {.start = std::min(p, q), .end = std::max(p, q)};
}

template <class Centre>
void breakAt(Scene& scene, Centre& centre, Cut cut, int& deleted) {
    const PolylineData data = EntityAccess::polyline(*scene.entity<YxDbPolyline>("p"));
    const CutPieces pieces = cutPolyline(data, cut.start, cut.end);
    deleted = finishCut(scene, "p", centre, EntityAccess::makePolyline(pieces.first),
                        pieces.second.vertices.empty() ? nullptr : EntityAccess::makePolyline(pieces.second));
}

const std::vector<std::string> kChanges = {"deleteConstraint",        "setIsImplied",     "setStatus",
                                           "removePersistentReactor", "detachFromObject", "attachToObject",
                                           "setVertexIdentifierAt"};

/// Every change of the host, with its arguments, in order.
std::string changes(Scene& scene) {
    std::string text;
    for (const JournalEntry& entry : scene.process().journal().entries()) {
        for (const std::string& change : kChanges) {
            if (namesOperation(entry.operation, change))
                text += entry.operation + " " + entry.subjectName + " (" + entry.arguments + ")\n";
        }
    }
    return text;
}

/// What a break did and left.
struct Outcome {
    int deleted = 0;
    std::string changes;
    std::string text;
    std::string dependencies;
};

template <class Centre>
Outcome outcomeOf(const RandomPolyline& random, Cut cut, bool repeatedIdentifier, Centre& centre) {
    CheckedScene scene(random.text);
    scene.builder().addCornerCoincidences(scene.group(), scene.id("p"));
    if (repeatedIdentifier) {
        const auto open = YxDbObjectIdImpl::openObject(scene.id("p"), YxDb::kForWrite, false);
        auto* polyline = scene.entity<YxDbPolyline>("p");
        polyline->setVertexIdentifierAt(1, EntityAccess::vertex(*polyline, 0).identifier);
    }
    scene.process().journal().clear();
    Outcome outcome;
    breakAt(scene, centre, cut, outcome.deleted);
    outcome.changes = changes(scene);
    outcome.text = scene.text();
    outcome.dependencies = scene.dependencies();
    return outcome;
}

RC_GTEST_PROP(RandomBreak, ChangesTheHostAsPlainStepsDoInTheSameOrder, ()) {
    const RandomPolyline random = randomPolyline(2, false);
    const bool repeated = *rc::gen::weightedElement<bool>({{4, false}, {1, true}});
    const Cut cut = randomCut(random.count);
    ConstraintBreakCmdCenter centre;
    LvTestAccess::startParam(centre) = cut.start;
    LvTestAccess::endParam(centre) = cut.end;
    plain::PlainPolylineBreak plainCentre(cut.start, cut.end);
    const Outcome outcome = outcomeOf(random, cut, repeated, centre);
    const Outcome expected = outcomeOf(random, cut, repeated, plainCentre);
    RC_ASSERT(outcome.deleted == expected.deleted);
    RC_ASSERT(outcome.changes == expected.changes);
    RC_ASSERT(outcome.text == expected.text);
    RC_ASSERT(outcome.dependencies == expected.dependencies);
}

RC_GTEST_PROP(RandomBreak, LeavesOtherEntitiesAndTheirConstraintsAlone, ()) {
    const RandomPolyline random = randomPolyline(3, false);
    const Cut cut = randomCut(random.count);
    CheckedScene scene(random.text + "; line away 0,50 9,50; line far 0,60 9,60; parallel away far; fixed away.end");
    const LineData before = EntityAccess::line(*scene.entity<YxDbLine>("away"));
    ConstraintBreakCmdCenter centre;
    LvTestAccess::startParam(centre) = cut.start;
    LvTestAccess::endParam(centre) = cut.end;
    int deleted = 0;
    breakAt(scene, centre, cut, deleted);
    const LineData after = EntityAccess::line(*scene.entity<YxDbLine>("away"));
    RC_ASSERT(after.start.isEqualTo(before.start) && after.end.isEqualTo(before.end));
    RC_ASSERT(scene.constraints().ends_with("parallel away far; fixed away.end"));
    RC_ASSERT(centre.deleteConstraint() == 0);
}

RC_GTEST_PROP(RandomBreak, OfALineKeepsExactlyWhatHoldsAtEndsThatStayed, (bool fromStart)) {
    const auto constraints = *rc::gen::container<std::vector<std::string>>(randomConstraint({"a", "b", "c"}));
    std::string text = "line b 0,0 0,5; line c 3,3 4,5; line a 0,0 10,1";
    for (const std::string& constraint : constraints)
        text += "; " + constraint;
    CheckedScene scene(text);
    const YxDbAssocGeomDependency* dependency = scene.dependency("a");
    const plain::Points before = {{0, 0, 0}, {10, 1, 0}};
    const plain::Points after =
        fromStart ? plain::Points{{5, 0.5, 0}, {10, 1, 0}} : plain::Points{{0, 0, 0}, {5, 0.5, 0}};
    std::vector<const YxGeomConstraint*> gone;
    if (dependency != nullptr) {
        for (const YxGeomConstraint* constraint : plain::constraintsOn(scene.group(), *dependency)) {
            if (plain::lineRule(scene.group(), *dependency, before, after, *constraint))
                gone.push_back(constraint);
        }
    }
    ConstraintBreakCmdCenter centre;
    RC_ASSERT(finishCut(scene, "a", centre, EntityAccess::makeLine(after[0], after[1])) ==
              static_cast<int>(gone.size()));
    for (const YxGeomConstraint* constraint : gone)
        RC_ASSERT(HostAccess::isDeleted(*constraint));
}

}  // namespace
}  // namespace holdfast::module
