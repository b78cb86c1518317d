#include "tests/module/commands/fillet/RandomFillet.h"

#include <gtest/gtest.h>

#include "tests/module/core/RandomNetwork.h"

namespace holdfast::module {

namespace {

using Mode = ConstraintFilletCmdCenter::PolylineTrimMode;

YxGePoint2d randomPoint() {
    const int x = *rc::gen::inRange(0, 12);
    const int y = *rc::gen::inRange(0, 9);
    return {5.0 * x, 5.0 * y};
}

std::string randomVertices(const std::string& name, RandomPolylineShape& shape, int least) {
    const auto vertices = *rc::gen::container<std::vector<std::tuple<int, int, int>>>(
        static_cast<std::size_t>(*rc::gen::inRange(least, 9)),
        rc::gen::tuple(rc::gen::inRange(0, 4), rc::gen::inRange(0, 4), rc::gen::inRange(-3, 8)));
    shape.count = static_cast<int>(vertices.size());
    std::string text = "polyline " + name;
    for (std::size_t k = 0; k < vertices.size(); ++k) {
        const auto& [x, y, bulge] = vertices[k];
        // Odd and even vertices on different columns: no segment has the length 0, but vertices may fall together.
        const int column = 2 * x + static_cast<int>(k % 2);
        text += " " + std::to_string(10 * column) + "," + std::to_string(10 * y) + "#" +
                std::to_string(7 + (37 * (k + 3)) % 101) + (bulge > 4 ? "^0." + std::to_string(bulge) : "");
    }
    return text;
}

}  // namespace

RandomPolylines randomPolylines(const std::vector<std::string>& names, int least, bool mayClose) {
    RandomPolylines random{
        .names = names,
        .polylines = std::vector<RandomPolylineShape>(names.size()),
        .repeatedIdentifier = *rc::gen::weightedElement<bool>({{4, false}, {1, true}}),
        .text = "line b 0,0 0,5; line away 0,500 9,500; line far 0,600 9,600; parallel away far; fixed away.end"};
    std::vector<std::string> curves = {"b"};
    for (std::size_t k = 0; k < names.size(); ++k) {
        RandomPolylineShape& shape = random.polylines[k];
        random.text += "; " + randomVertices(names[k], shape, least);
        // The first and the last vertex of a closed one must not fall together: an even number of vertices.
        shape.closed = mayClose && shape.count > 2 && shape.count % 2 == 0 && *rc::gen::arbitrary<bool>();
        random.text += shape.closed ? " closed" : "";
        for (int segment = 1; segment <= shape.segments(); ++segment)
            curves.push_back(names[k] + "[" + std::to_string(segment) + "]");
    }
    const auto constraints = *rc::gen::container<std::vector<std::string>>(randomConstraint(curves));
    for (const std::string& constraint : constraints)
        random.text += "; " + constraint;
    return random;
}

void RandomPolylines::prepare(Scene& scene) const {
    for (const std::string& name : names)
        scene.builder().addCornerCoincidences(scene.group(), scene.id(name));
    if (!repeatedIdentifier)
        return;
    auto* polyline = scene.entity<YxDbPolyline>(names[0]);
    const auto open = YxDbObjectIdImpl::openObject(scene.id(names[0]), YxDb::kForWrite, false);
    polyline->setVertexIdentifierAt(1, EntityAccess::vertex(*polyline, 0).identifier);
}

SelfFilletEdit randomSelfFillet(const RandomPolylineShape& shape) {
    std::vector<Mode> modes = {ConstraintFilletCmdCenter::kCorner, ConstraintFilletCmdCenter::kBetween,
                               ConstraintFilletCmdCenter::kNothing};
    if (shape.closed) {
        modes.push_back(ConstraintFilletCmdCenter::kClosingCorner);
        modes.push_back(ConstraintFilletCmdCenter::kBehind);
    } else {
        modes.push_back(ConstraintFilletCmdCenter::kClosing);
    }
    SelfFilletEdit edit{.mode = *rc::gen::elementOf(modes), .sharp = *rc::gen::arbitrary<bool>()};
    const int last = shape.segments() - 1;
    int first = 0;
    int second = last;
    if (edit.mode == ConstraintFilletCmdCenter::kCorner) {
        first = *rc::gen::inRange(0, last);
        second = first + 1;
    } else if (edit.mode == ConstraintFilletCmdCenter::kBetween) {
        first = *rc::gen::inRange(0, last - 1);
        second = edit.sharp ? *rc::gen::inRange(first + 2, last + 1) : first + 2;
    } else if (edit.mode == ConstraintFilletCmdCenter::kBehind) {
        second = *rc::gen::inRange(2, last);
    }
    edit.first = static_cast<unsigned int>(first);
    edit.second = static_cast<unsigned int>(second);
    edit.onFirst = randomPoint();
    edit.onSecond = randomPoint();
    edit.corner = randomPoint();
    return edit;
}

PolylineCutBack randomCutBack(const RandomPolylineShape& shape) {
    return {.segment = static_cast<unsigned int>(*rc::gen::inRange(0, shape.segments())),
            .dropBefore = *rc::gen::arbitrary<bool>(),
            .point = randomPoint()};
}

}  // namespace holdfast::module
