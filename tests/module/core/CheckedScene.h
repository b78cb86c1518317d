#pragma once

#include <string>
#include <vector>

#include "tests/support/TestScene.h"

namespace holdfast::module {

/// A test scene that speaks of the lists which the clean-up centres hand round.
class CheckedScene : public TestScene {
public:
    using TestScene::TestScene;
    ~CheckedScene() { host().clear(); }

    /// The names of constraints, in order: "c1 c3".
    std::string names(const YxArray<YxGeomConstraint*>& constraints) {
        std::string text;
        for (const YxGeomConstraint* constraint : constraints)
            text += (text.empty() ? "" : " ") + process().nameOf(constraint);
        return text;
    }
    /// The dependencies on these places, in order; "" gives a null one.
    YxArray<YxDbAssocGeomDependency*> dependenciesOn(const std::vector<std::string>& places) {
        YxArray<YxDbAssocGeomDependency*> dependencies;
        for (const std::string& place : places)
            dependencies.append(place.empty() ? nullptr : dependency(place));
        return dependencies;
    }
};

}  // namespace holdfast::module
