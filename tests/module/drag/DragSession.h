#pragma once

#include "drag/LvConstraintDropData.h"
#include "tests/module/evaluation/FeedingScene.h"
#include "tests/module/evaluation/LvTestAccess.h"

namespace holdfast::module {

/// A drawing with the process's one drag session, which ends with it.
class DragScene : public FeedingScene {
public:
    using FeedingScene::FeedingScene;
    ~DragScene() { LvConstraintDropData::reset(); }

    void drag(std::initializer_list<const char*> names) const { LvConstraintDropData::init(ids(names)); }
    bool step(double dx, double dy) const { return LvConstraintDropData::addDataToWork(translation(dx, dy)); }
};

/// Constrained: b, a, p, q. Free: f, g.
inline constexpr const char* kDragDrawing =
    "polyline p 0,0 10,0 10,10; circle f centre 70,0 radius 5; line b 0,0 0,3; polyline q 0,20 9,20; line a 0,0 4,0;"
    "polyline g 40,0 50,0; dependency a; dependency b; dependency p[1]; dependency q[1]";

}  // namespace holdfast::module
