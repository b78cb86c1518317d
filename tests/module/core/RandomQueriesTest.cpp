#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <yxdb/YxDbPolyline.h>

#include "core/CurveEnds.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/PlainSteps.h"
#include "tests/module/core/RandomNetwork.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

template <class T>
std::vector<T> listed(const YxArray<T>& array) {
    return {array.begin(), array.end()};
}

YxArray<YxGePoint3d> pairOf(const plain::Points& points) {
    return endPair(points[0], points[1]);
}

RC_GTEST_PROP(RandomNetwork, IsListedAsPlainStepsListIt, ()) {
    CheckedScene scene(randomPolyline(2, true).text);
    const auto& group = scene.group();
    for (const char* name : {"p", "b"}) {
        const YxDbEntity& entity = *scene.entity(name);
        RC_ASSERT(listed(LvTestAccess::onEntity(&scene.group(), scene.id(name))) ==
                  plain::constraintsOnEntity(group, entity));
        for (const YxDbAssocGeomDependency* dependency : plain::dependenciesOf(entity))
            RC_ASSERT(listed(LvTestAccess::onDependency(&scene.group(), dependency)) ==
                      plain::constraintsOn(group, *dependency));
    }
}

RC_GTEST_PROP(RandomNetwork, IsJudgedAsPlainStepsJudgeIt, ()) {
    CheckedScene scene(randomPolyline(2, true).text);
    const auto& group = scene.group();
    const plain::Points before = {{0, 0, 0}, {*rc::gen::inRange(0, 2) + 0.0, *rc::gen::inRange(0, 2) + 0.0, 0}};
    const plain::Points after = {{*rc::gen::inRange(0, 2) + 0.0, 0, 0}, before[1]};
    for (const YxDbAssocGeomDependency* dependency : plain::dependenciesOf(*scene.entity("p"))) {
        for (YxGeomConstraint* constraint : plain::constraintsOn(group, *dependency)) {
            RC_ASSERT(LvTestAccess::lineRule(&group, dependency, pairOf(before), pairOf(after), constraint) ==
                      plain::lineRule(group, *dependency, before, after, *constraint));
            RC_ASSERT(LvTestAccess::arcRule(&group, dependency, pairOf(before), pairOf(after), constraint) ==
                      plain::arcRule(group, *dependency, before, after, *constraint));
        }
    }
}

}  // namespace
}  // namespace holdfast::module
