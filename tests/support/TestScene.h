#pragma once

#include <gtest/gtest.h>

#include "host/model/Scene.h"

namespace holdfast {

/// A scene that fails its test when the host is not in order at its end: something left open, leaked or dangling.
/// Copies that the test itself owns have to be gone by then: declare them after the scene.
class TestScene : public Scene {
public:
    using Scene::Scene;
    ~TestScene() {
        std::string findings;
        for (const std::string& finding : audit())
            findings += "after the command: " + finding + "\n";
        if (!findings.empty())
            ADD_FAILURE() << findings << "the scene is now:\n" << text();
    }
};

}  // namespace holdfast
