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
        for (const std::string& finding : audit())
            ADD_FAILURE() << "after the command: " << finding;
    }
};

}  // namespace holdfast
