#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/module/commands/fillet/FilletOutcome.h"
#include "tests/module/commands/fillet/PlainPolylineFillet.h"
#include "tests/module/commands/fillet/PolylineFilletCommand.h"
#include "tests/module/commands/fillet/RandomFillet.h"
#include "tests/module/commands/fillet/SelfFilletCommand.h"
#include "tests/module/commands/fillet/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

template <class Centre, class Command>
Outcome runOn(const RandomPolylines& random, const Command& command) {
    CheckedScene scene(random.text);
    random.prepare(scene);
    scene.process().journal().clear();
    Centre centre;
    const int deleted = command(scene, centre);
    RC_ASSERT(isElsewhereUntouched(scene));
    return outcomeOf(scene, deleted);
}

/// The centre and the plain steps change the same things in the same order.
template <class Command>
void expectPlainSteps(const RandomPolylines& random, const Command& command) {
    const auto outcome = runOn<ConstraintFilletCmdCenter>(random, command);
    const auto expected = runOn<plain::PlainPolylineFillet>(random, command);
    RC_ASSERT(outcome == expected);
}

RC_GTEST_PROP(RandomSelfFillet, ChangesTheHostAsPlainStepsDoInTheSameOrder, ()) {
    const RandomPolylines random = randomPolylines({"p"}, 4, true);
    const SelfFilletEdit edit = randomSelfFillet(random.polylines[0]);
    const bool swapped = *rc::gen::weightedElement<bool>({{7, false}, {1, true}});
    expectPlainSteps(random, [&](Scene& scene, auto& centre) {
        const auto open = YxDbObjectIdImpl::openObject(scene.id("p"), YxDb::kForWrite, false);
        auto& polyline = static_cast<YxDbPolyline&>(*open);
        centre.setSelfPolyLineDate(&polyline, swapped ? edit.second : edit.first, swapped ? edit.first : edit.second,
                                   edit.mode, edit.sharp);
        filletVertices(polyline, edit);
        centre.setSelfPolyLineConstraint(&polyline);
        return centre.deleteConstraint();
    });
}

RC_GTEST_PROP(RandomFilletWithCurve, ChangesTheHostAsPlainStepsDoInTheSameOrder, (bool turnRound)) {
    const RandomPolylines random = randomPolylines({"p"}, 2, false);
    const PolylineCutBack cut = randomCutBack(random.polylines[0]);
    expectPlainSteps(random,
                     [&](Scene& scene, auto& centre) { return filletWithCurve(scene, "p", centre, cut, turnRound); });
}

RC_GTEST_PROP(RandomFilletOfTwo, ChangesTheHostAsPlainStepsDoInTheSameOrder, (bool touch)) {
    const RandomPolylines random = randomPolylines({"q", "r"}, 2, false);
    const PolylineCutBack first = randomCutBack(random.polylines[0]);
    PolylineCutBack second = randomCutBack(random.polylines[1]);
    if (touch)
        second.point = first.point;
    expectPlainSteps(random,
                     [&](Scene& scene, auto& centre) { return filletTwoPolylines(scene, centre, first, second); });
}

}  // namespace
}  // namespace holdfast::module
