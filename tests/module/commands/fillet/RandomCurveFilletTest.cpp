#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/module/commands/fillet/CurveFilletCommand.h"
#include "tests/module/commands/fillet/FilletOutcome.h"
#include "tests/module/commands/fillet/PlainCurveFillet.h"
#include "tests/module/commands/fillet/TestAccess.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/RandomCurves.h"

namespace holdfast::module {
namespace {

template <class Centre>
Outcome runOn(const std::string& text, const CurveEdit& first, const CurveEdit& second) {
    CheckedScene scene(text);
    scene.process().journal().clear();
    Centre centre;
    const int deleted = filletCurves(scene, centre, {.first = first.curve(), .second = second.curve()});
    RC_ASSERT(isElsewhereUntouched(scene));
    return outcomeOf(scene, deleted);
}

RC_GTEST_PROP(RandomCurveFillet, DeletesWhatPlainStepsDeleteInTheSameOrder, ()) {
    const RandomCurve a = randomCurve("a");
    const RandomCurve b = randomCurve("b");
    const std::string text = randomScene({a, b});
    const CurveEdit first = a.edit();
    const CurveEdit second = b.edit();
    const Outcome outcome = runOn<ConstraintFilletCmdCenter>(text, first, second);
    const Outcome expected = runOn<plain::PlainCurveFillet>(text, first, second);
    RC_ASSERT(outcome == expected);
}

}  // namespace
}  // namespace holdfast::module
