#pragma once

#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

namespace holdfast::module {

/// The text of one constraint on places drawn from a list such as "p[1]", "b". Points are ends and middles of these,
/// and the further ones.
inline rc::Gen<std::string> randomConstraint(std::vector<std::string> curves, std::vector<std::string> points = {}) {
    const auto curve = rc::gen::elementOf(curves);
    const rc::Gen<std::string> ends =
        rc::gen::map(rc::gen::pair(curve, rc::gen::element<std::string>(".start", ".end", ".start", ".end", ".mid")),
                     [](const auto& parts) { return parts.first + parts.second; });
    const rc::Gen<std::string> point = points.empty() ? ends : rc::gen::oneOf(ends, rc::gen::elementOf(points));
    const auto two = [](const char* kind, const auto& a, const auto& b, const char* value = "") {
        return rc::gen::map(rc::gen::pair(a, b),
                            [kind = std::string(kind), value = std::string(value)](const auto& places) {
                                return kind + " " + places.first + " " + places.second + value;
                            });
    };
    const auto three = [&](const char* kind, const auto& a, const auto& b, const auto& c) {
        return rc::gen::map(rc::gen::tuple(a, b, c), [kind = std::string(kind)](const auto& places) {
            const auto& [first, second, third] = places;
            return kind + " " + first + " " + second + " " + third;
        });
    };
    const auto one = [](const char* kind, const auto& a) {
        return rc::gen::map(a, [kind = std::string(kind)](const std::string& place) { return kind + " " + place; });
    };
    const auto simple = rc::gen::oneOf(one("fixed", curve), one("fixed", point), one("internal fixed", point),
                                       two("coincident", point, point), two("implied coincident", point, point),
                                       two("horizontal", point, point), one("vertical", curve),
                                       two("equal", curve, curve), two("parallel", curve, curve),
                                       two("distance", point, point, " = 1"), three("symmetric", point, point, curve));
    const auto composite = rc::gen::map(rc::gen::pair(simple, simple), [](const auto& members) {
        return "composite { " + members.first + "; " + members.second + " }";
    });
    return rc::gen::weightedOneOf<std::string>({{5, simple}, {1, composite}});
}

/// A polyline p on a coarse grid, with arcs among its segments and identifiers that are no indices, a line b, and
/// random constraints on both.
struct RandomPolyline {
    int count = 2;
    bool closed = false;
    std::string text;

    int segments() const { return closed ? count : count - 1; }
};

inline RandomPolyline randomPolyline(int least, bool mayClose) {
    RandomPolyline random;
    const auto vertices = *rc::gen::container<std::vector<std::tuple<int, int, int>>>(
        static_cast<std::size_t>(*rc::gen::inRange(least, 9)),
        rc::gen::tuple(rc::gen::inRange(0, 4), rc::gen::inRange(0, 3), rc::gen::inRange(-3, 8)));
    random.count = static_cast<int>(vertices.size());
    random.closed = mayClose && random.count > 2 && *rc::gen::arbitrary<bool>();
    random.text = "line b 0,0 0,5; polyline p";
    for (std::size_t k = 0; k < vertices.size(); ++k) {
        const auto& [x, y, bulge] = vertices[k];
        // A step along x for every vertex, so that no segment has the length 0.
        random.text += " " + std::to_string(10 * static_cast<int>(k) + x) + "," + std::to_string(10 * y) + "#" +
                       std::to_string(7 + (37 * (k + 3)) % 101) + (bulge > 4 ? "^0." + std::to_string(bulge) : "");
    }
    random.text += random.closed ? " closed" : "";
    std::vector<std::string> curves = {"b"};
    for (int k = 1; k <= random.segments(); ++k)
        curves.push_back("p[" + std::to_string(k) + "]");
    const auto constraints = *rc::gen::container<std::vector<std::string>>(randomConstraint(curves));
    for (const std::string& constraint : constraints)
        random.text += "; " + constraint;
    return random;
}

}  // namespace holdfast::module
