#include "tests/report/Samples.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "formats/json/JsonReader.h"

namespace holdfast::report::test {

using namespace formats;

using enum ConstraintType;
using enum PlaceKind;

Document plate() {
    Document drawing;
    drawing.name = "plate";
    drawing.entities = {line("base", {0, 0}, {100, 0}),
                        line("right", {100, 0}, {100, 60}),
                        line("top", {100, 60}, {12, 60}),
                        {.id = "corner", .shape = ArcShape{{12, 48}, 12, 1.5707963267948966, 3.141592653589793}},
                        line("left", {0, 48}, {0, 0}),
                        {.id = "hole", .shape = CircleShape{{50, 30}, 10}}};
    drawing.constraints = {constraint("c0", coincident, {at("base", end), at("right", start)}),
                           constraint("c1", coincident, {at("right", end), at("top", start)}),
                           constraint("c2", tangent, {at("top", end), at("corner", start)}),
                           constraint("c3", tangent, {at("corner", end), at("left", start)}),
                           constraint("c4", coincident, {at("left", end), at("base", start)}),
                           constraint("c5", horizontal, {at("base")}),
                           constraint("c6", parallel, {at("base"), at("top")}),
                           constraint("c7", perpendicular, {at("base"), at("left")}),
                           dimension("c8", distance, {at("base")}, 100),
                           dimension("c9", diameter, {at("hole")}, 20),
                           dimension("c10", distanceX, {at("base", start), at("hole", centre)}, 50)};
    return drawing;
}

FateReport brokenPlate() {
    FateReport report;
    report.before = report.after = plate();
    Document& after = report.after;
    after.entities[0] = line("base", {0, 0}, {40, 0});
    after.entities.push_back(line("base2", {60, 0}, {100, 0}));
    after.constraints[0].refs[0] = at("base2", end);
    std::erase_if(after.constraints, [](const Constraint& each) { return each.id == "c8"; });
    after.constraints.push_back(constraint("c11", collinear, {at("base"), at("base2")}));
    report.edits = {{"break base at 40,0 to 60,0", ""},
                    {"fillet base left radius 900", "the radius <900> is too large"}};
    report.constraints = {{"c8", ConstraintFate::deleted, "the end of base moved from (100, 0) to (40, 0)", {}, 0},
                          {"c0",
                           ConstraintFate::rePointed,
                           "its place is now on the new piece",
                           {{at("base", end), at("base2", end)}},
                           0},
                          {"c11", ConstraintFate::added, "both pieces stay on one line", {}, 0}};
    report.entities = {
        {"base", EntityFate::edited, 0}, {"base2", EntityFate::created, 0}, {"hole", EntityFate::followed, 2.5}};
    report.solver = SolverFigures{4, 6, 3e-13};
    return report;
}

Document everyShape() {
    Document drawing;
    drawing.name = "every shape";
    const auto add = [&drawing](const std::string& id, Shape shape) {
        drawing.entities.push_back({.id = id, .shape = std::move(shape), .construction = false, .fixed = false});
    };
    add("line", LineShape{{0, 0}, {10, 0}});
    add("arc", ArcShape{{20, 0}, 5, 0.5, 2.5});
    add("circle", CircleShape{{40, 0}, 5});
    add("ellipse", EllipseShape{{60, 0}, {6, 2}, 0.5});
    add("earc", EllipticalArcShape{{80, 0}, {6, 0}, 0.5, 0.0, 2.0});
    add("cubic", SplineShape{3, false, {{0, 20}, {3, 30}, {7, 10}, {10, 20}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}});
    add("rational", SplineShape{2, false, {{20, 20}, {25, 30}, {30, 20}}, {0, 0, 0, 1, 1, 1}, {1, 0.5, 1}});
    add("point", PointShape{{40, 20}});
    add("xline", XlineShape{{0, 40}, {1, 0}});
    add("ray", RayShape{{0, 50}, {1, 0.1}});
    add("polyline", PolylineShape{{{60, 20}, {70, 20}, {70, 30}}, {0, -0.5, 0}, {1, 2, 3}, true});
    add("text", TextShape{{80, 20}, 0.3, 2.5, "a < b\nsecond", true});
    return drawing;
}

std::vector<std::filesystem::path> realDrawings() {
    const char* named = std::getenv("HOLDFAST_DRAWINGS");
    std::vector<std::filesystem::path> paths;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(named != nullptr ? named : "examples/drawings"))
        if (entry.path().extension() == ".json")
            paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    return paths;
}

Document readDrawing(const std::filesystem::path& path) {
    std::ifstream in(path);
    return readJson(in, path.string());
}

}  // namespace holdfast::report::test
