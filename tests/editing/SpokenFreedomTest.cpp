#include "editing/fates/SpokenFreedom.h"

#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

Document lineFrom(std::vector<Constraint> constraints) {
    Document document;
    document.name = "one line";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("g3", {0, 5}, {20, 5})};
    document.entities.back().fixed = true;
    document.constraints = std::move(constraints);
    return document;
}

Constraint lengthOf(std::string line, double value) {
    Constraint length = constraintOf("d", ConstraintType::distance, {{std::move(line)}});
    length.value = value;
    return length;
}

const Constraint kHere = constraintOf("f", ConstraintType::fixed, {{"a", PlaceKind::start}});
const Constraint kLevel = constraintOf("h", ConstraintType::horizontal, {{"a"}});
const Constraint kAlong = constraintOf("p", ConstraintType::parallel, {{"a"}, {"g3"}});

Constraint heightOf(std::string line) {
    Constraint height =
        constraintOf("y", ConstraintType::distanceY, {{"g3", PlaceKind::start}, {line, PlaceKind::start}});
    height.value = -5.0;
    return height;
}

TEST(SpokenFreedom, SaysHowALineCanMove) {
    const std::pair<std::vector<Constraint>, const char*> rows[] = {
        {{}, "free"},
        {{kLevel}, "free to shift and to change its length"},
        {{kHere}, "free to turn about its start and to change its length"},
        {{kHere, lengthOf("a", 10)}, "free to turn about its start"},
        {{kHere, kLevel}, "free to change its length"},
        {{kHere, kLevel, lengthOf("a", 10)}, "fully determined"},
        {{kAlong, heightOf("a"), lengthOf("a", 10)}, "free to slide along g3"},
        {{lengthOf("a", 10)}, "free to shift and to turn"},
    };
    for (const auto& [constraints, words] : rows)
        EXPECT_EQ(spokenFreedom(lineFrom(constraints)).front().words, words);
    EXPECT_EQ(spokenFreedom(lineFrom({})).back().words, "fixed");
}

TEST(SpokenFreedom, NamesTheCurveThatAPointIsOn) {
    Document document;
    document.name = "ring";
    document.entities = {shapeEntity("ring", CircleShape{{0, 0}, 5}), shapeEntity("p", PointShape{{3, 4}})};
    document.entities.front().fixed = true;
    document.constraints = {constraintOf("on", ConstraintType::pointOnCurve, {{"p"}, {"ring"}})};
    EXPECT_EQ(spokenFreedom(document).back().words, "free to slide along ring");
}

}  // namespace
}  // namespace holdfast::editing
