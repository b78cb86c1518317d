#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/commands/extend/ExtendCommand.h"
#include "tests/commands/extend/TestAccess.h"
#include "tests/core/CheckedScene.h"
#include "tests/core/PlainSteps.h"
#include "tests/core/RandomNetwork.h"

namespace holdfast {
namespace {

std::vector<YxGeomConstraint*> listed(const YxArray<YxGeomConstraint*>& array) {
    return {array.begin(), array.end()};
}

/// What an extension of the polyline's end collects, step by step.
plain::Constraints plainlyCollected(CheckedScene& scene, const YxGePoint3d& newEnd, int code) {
    const auto& polyline = *scene.entity<YxDbPolyline>("p");
    const int last = static_cast<int>(polyline.numVerts()) - 1;
    plain::Constraints collected;
    for (const YxDbAssocGeomDependency* dependency : plain::dependenciesOf(polyline)) {
        plain::Ends ends;
        if (!plain::segmentOf(*dependency, polyline, ends) ||
            !((ends.start == 0 && code == 1) || (ends.end == last && code == 2)))
            continue;
        const plain::Points before = {plain::pointAt(polyline, ends.start), plain::pointAt(polyline, ends.end)};
        plain::Points after = before;
        after[code == 1 ? 0 : 1] = newEnd;
        plain::segmentRule(scene.group(), *dependency, before, after, collected);
        return collected;
    }
    return collected;
}

RC_GTEST_PROP(RandomExtend, OfAPolylineCollectsAsPlainStepsDo, ()) {
    CheckedScene scene(randomPolyline(2, true).text);
    const int code = *rc::gen::inRange(0, 4);
    const YxGePoint3d newEnd{*rc::gen::inRange(-1, 2) * 10.0, *rc::gen::inRange(0, 3) * 10.0, 0};
    const bool isConstrained = !plain::constraintsOnEntity(scene.group(), *scene.entity("p")).empty();
    const plain::Constraints expected = isConstrained ? plainlyCollected(scene, newEnd, code) : plain::Constraints();
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("p"), newEnd, code);
    RC_ASSERT(listed(LvTestAccess::collected(centre)) == expected);
}

RC_GTEST_PROP(RandomExtend, OfALineLeavesWhatHoldsAtTheOtherEnd, ()) {
    const auto constraints = *rc::gen::container<std::vector<std::string>>(randomConstraint({"a", "b", "c"}));
    const int code = *rc::gen::inRange(1, 3);
    std::string text = "line b 0,0 0,5; line c 3,3 4,5; line a 0,0 10,1";
    for (const std::string& constraint : constraints)
        text += "; " + constraint;
    CheckedScene scene(text);
    const plain::Points before = {{0, 0, 0}, {10, 1, 0}};
    plain::Points after = before;
    after[code == 1 ? 0 : 1] = code == 1 ? YxGePoint3d(-10, -1, 0) : YxGePoint3d(20, 2, 0);
    plain::Constraints expected;
    if (const YxDbAssocGeomDependency* dependency = scene.dependency("a"))
        plain::segmentRule(scene.group(), *dependency, before, after, expected);
    const std::string dependencies = scene.dependencies();
    ConstraintExtendCmdCenter centre;
    RC_ASSERT(extendLine(scene, "a", centre, after[code == 1 ? 0 : 1], code) == static_cast<int>(expected.size()));
    for (const YxGeomConstraint* constraint : expected)
        RC_ASSERT(HostAccess::isDeleted(*constraint));
    RC_ASSERT(scene.dependencies() == dependencies);
    RC_ASSERT(centre.deleteConstraint() == 0);
}

}  // namespace
}  // namespace holdfast
