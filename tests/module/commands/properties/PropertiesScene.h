#pragma once

#include <string>
#include <vector>

#include "commands/properties/ConstraintPropertiesCmdCenter.h"
#include "tests/module/evaluation/FeedingScene.h"
#include "tests/module/evaluation/LvTestAccess.h"

namespace holdfast::module {

/// A palette in front of a scene, with the centre behind it.
class Palette {
public:
    explicit Palette(std::string_view drawing) : scene(drawing) {}

    /// A whole point of a property.
    bool point(const char* name, int property, double x, double y, double z = 0.0) {
        return centre.addOriInfo(scene.id(name), property, std::vector<double>{x, y, z});
    }
    /// A scalar property, or one coordinate of a point.
    bool value(const char* name, int property, double value, int coordinate = 0) {
        return centre.addOriInfo(scene.id(name), property, coordinate, value);
    }
    /// A row of the vertex list.
    int row(const char* name, int property, int row, double value) {
        return centre.addExpanderOriInfo(scene.id(name), -999, property, row, value);
    }
    /// The entity's record: "kind 1 delta 2,0,0 values 0 0 identity type 1", or "nothing".
    std::string recorded(const char* name) {
        const auto& records = LvTestAccess::records(centre);
        const auto found = records.find(scene.id(name));
        if (found == records.end())
            return "nothing";
        const PropertiesOriRecord& record = found->second;
        char values[80];
        std::snprintf(values, sizeof values, " values %.12g %.12g ", record.value1, record.value2);
        return "kind " + std::to_string(record.changeKind) + " delta " + textOf(record.delta) + values +
               textOf(record.transform) + " type " + std::to_string(record.entType);
    }
    const PropertiesOriRecord& record(const char* name) { return LvTestAccess::records(centre).at(scene.id(name)); }

    FeedingScene scene;
    ConstraintPropertiesCmdCenter centre;
};

}  // namespace holdfast::module
