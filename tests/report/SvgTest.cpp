#include "report/picture/Svg.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <tuple>

#include "report/picture/Outline.h"
#include "tests/report/Samples.h"
#include "tests/report/XmlTree.h"

namespace holdfast::report {

namespace {

using test::parseXml;
using test::XmlNode;
using ::testing::HasSubstr;
using ::testing::Not;

const XmlNode* entityNode(const XmlNode& picture, const std::string& id) {
    for (const XmlNode* node : picture.withClass("e"))
        if ((*node)["data-e"] == id)
            return node;
    return nullptr;
}

std::vector<const XmlNode*> marksOfConstraint(const XmlNode& picture, const std::string& id) {
    std::vector<const XmlNode*> marks = picture.withClass("m");
    std::erase_if(marks, [&](const XmlNode* node) { return (*node)["data-c"] != id; });
    return marks;
}

TEST(Picture, DrawsEveryKindOfEntity) {
    const XmlNode picture = parseXml(writePicture(test::everyShape()));
    for (const Entity& entity : test::everyShape().entities) {
        const XmlNode* node = entityNode(picture, entity.id);
        ASSERT_NE(node, nullptr) << entity.id;
        EXPECT_TRUE(node->name != "path" || !(*node)["d"].empty()) << entity.id;
    }
}

TEST(Picture, KeepsCurvesAsCurves) {
    const XmlNode picture = parseXml(writePicture(test::everyShape()));
    for (const char* id : {"arc", "circle", "ellipse", "earc", "polyline"})
        EXPECT_THAT((*entityNode(picture, id))["d"], HasSubstr("A")) << id;
    EXPECT_THAT((*entityNode(picture, "cubic"))["d"], HasSubstr("C"));
    EXPECT_THAT((*entityNode(picture, "rational"))["d"], HasSubstr("L"));
    EXPECT_THAT((*entityNode(picture, "text")).allText(), "a < bsecond");
}

TEST(Picture, ShowsTheNamesOfEntitiesOnRequest) {
    const Document document = test::everyShape();
    const XmlNode plain = parseXml(writePicture(document));
    EXPECT_TRUE(plain.withClass("name").empty());
    const XmlNode picture = parseXml(writePicture(document, {}, {.names = true}));
    std::set<std::string> names;
    for (const XmlNode* node : picture.withClass("name")) {
        EXPECT_EQ(node->allText(), (*node)["data-e"]);
        names.insert((*node)["data-e"]);
    }
    for (const char* id : {"arc", "circle", "ellipse", "polyline"})
        EXPECT_TRUE(names.contains(id)) << id;
}

TEST(Picture, HasStrokesThatDoNotDependOnTheScale) {
    const XmlNode picture = parseXml(writePicture(test::everyShape()));
    for (const XmlNode* path : picture.withClass("geometry").at(0)->all("path"))
        EXPECT_TRUE((*path)["vector-effect"] == "non-scaling-stroke" || path->hasClass("z")) << (*path)["d"];
}

TEST(Picture, TellsConstructionAndReferencesByTheirClass) {
    Document drawing = test::plate();
    drawing.entities[0].construction = true;
    drawing.entities[1].fixed = true;
    const XmlNode picture = parseXml(writePicture(drawing));
    EXPECT_TRUE(entityNode(picture, "base")->hasClass("construction"));
    EXPECT_TRUE(entityNode(picture, "right")->hasClass("fixed"));
    EXPECT_FALSE(entityNode(picture, "top")->hasClass("construction"));
}

TEST(Picture, PutsAKeptCoincidenceOnItsPoint) {
    const XmlNode picture = parseXml(writePicture(test::plate()));
    const auto marks = marksOfConstraint(picture, "c0");
    ASSERT_EQ(marks.size(), 1u);
    const std::string start = (*entityNode(picture, "right"))["d"];  // starts where base ends
    EXPECT_EQ("M" + (*marks[0])["transform"].substr(10), start.substr(0, start.find('L')) + ")");
}

TEST(Picture, StrikesOutWhatWasDeleted) {
    PictureNotes notes;
    notes.constraints = {{"c5", MarkTone::deleted}, {"c6", MarkTone::added}};
    notes.remarks = {{"c5", "deleted, because <b>"}};
    const XmlNode picture = parseXml(writePicture(test::plate(), notes));
    const auto marks = marksOfConstraint(picture, "c5");
    ASSERT_EQ(marks.size(), 1u);
    EXPECT_TRUE(marks[0]->hasClass("deleted"));
    EXPECT_EQ(marks[0]->withClass("strike").size(), 1u);
    EXPECT_EQ(marks[0]->all("title").at(0)->text, "deleted, because <b>");
    EXPECT_EQ(picture.withClass("strike").size(), 1u);
}

TEST(Picture, GivesEveryChangeASignBesideItsColour) {
    for (const MarkTone tone : {MarkTone::rePointed, MarkTone::added, MarkTone::broken}) {
        PictureNotes notes;
        notes.constraints = {{"c5", tone}};
        const XmlNode picture = parseXml(writePicture(test::plate(), notes));
        EXPECT_EQ(picture.withClass("badge-sign").size(), 1u);
    }
}

TEST(Picture, WritesDimensionsWithTheirValue) {
    const XmlNode picture = parseXml(writePicture(test::plate()));
    EXPECT_EQ(marksOfConstraint(picture, "c8").at(0)->allText(), "100");
    EXPECT_EQ(marksOfConstraint(picture, "c9").at(0)->allText(), "\u2300 20");
    EXPECT_EQ(marksOfConstraint(picture, "c8").at(0)->withClass("arrow").size(), 2u);
}

TEST(Picture, LeavesMarksOutOnRequest) {
    PictureOptions options;
    options.marks = false;
    const XmlNode picture = parseXml(writePicture(test::plate(), {}, options));
    EXPECT_TRUE(picture.withClass("m").empty());
}

TEST(Picture, UsesOnlySignsThatItBringsAlong) {
    const XmlNode picture = parseXml(writePicture(test::plate()));
    std::set<std::string> ids;
    for (const XmlNode* node : picture.all())
        if (!(*node)["id"].empty())
            ids.insert("#" + (*node)["id"]);
    for (const XmlNode* use : picture.all("use"))
        EXPECT_TRUE(ids.count((*use)["href"])) << (*use)["href"];
}

TEST(Picture, EscapesNamesAndTexts) {
    Document drawing;
    drawing.name = "</title><script>alert(1)</script>";
    drawing.entities = {test::line("\"><script>", {0, 0}, {1, 1})};
    const std::string svg = writePicture(drawing);
    const XmlNode picture = parseXml(svg);
    EXPECT_THAT(svg, Not(HasSubstr("<script>")));
    EXPECT_NE(entityNode(picture, "\"><script>"), nullptr);
}

TEST(Picture, OfNothingIsStillAPicture) {
    EXPECT_EQ(parseXml(writePicture({})).name, "svg");
}

TEST(Picture, SurvivesNumbersThatAreNone) {
    Document drawing = test::plate();
    drawing.entities.push_back(test::line("bad", {NAN, 0}, {1, INFINITY}));
    drawing.constraints.push_back(test::constraint("c99", ConstraintType::horizontal, {test::at("bad")}));
    const std::string svg = writePicture(drawing);
    EXPECT_THAT(svg, Not(HasSubstr("nan")));
    EXPECT_EQ(parseXml(svg).name, "svg");
}

TEST(TrueSizeSvg, MeasuresInTheDrawingsUnit) {
    Document drawing;
    drawing.entities = {test::line("a", {0, 0}, {100, 0}), test::line("b", {0, 0}, {0, 50})};
    const XmlNode picture = parseXml(writeTrueSizeSvg(drawing));
    const double width = std::stod(picture["width"]);
    EXPECT_NEAR(width, 100.0, 1.0);
    EXPECT_THAT(picture["width"], ::testing::EndsWith("mm"));
    const std::string path = (*picture.all("path").at(0))["d"];
    const std::size_t line = path.find('L');
    EXPECT_NEAR(std::stod(path.substr(line + 1)) - std::stod(path.substr(1)), 100.0, 1e-6);
}

TEST(TrueSizeSvg, ShowsEveryKindOfEntity) {
    const Document drawing = test::everyShape();
    const XmlNode picture = parseXml(writeTrueSizeSvg(drawing));
    std::set<std::string> shown;
    for (const char* kind : {"path", "text"})
        for (const XmlNode* node : picture.all(kind))
            shown.insert((*node)["id"]);
    for (const Entity& entity : drawing.entities)
        EXPECT_TRUE(shown.contains(entity.id)) << entity.id;
}

TEST(TrueSizeSvg, TellsEveryUnitInOneThatBrowsersHave) {
    Document drawing;
    drawing.entities = {test::line("a", {0, 0}, {9, 0}), test::line("b", {0, 0}, {0, 12})};  // 15 from corner to corner
    const double side = 9 + 15 / 225.0;
    for (const auto& [unit, factor, shown] : {std::tuple{"m", 1000.0, "mm"}, {"um", 0.001, "mm"}, {"ft", 12.0, "in"}}) {
        drawing.lengthUnit = unit;
        const std::string width = parseXml(writeTrueSizeSvg(drawing))["width"];
        EXPECT_NEAR(std::stod(width), side * factor, 1e-5 * factor) << unit;
        EXPECT_THAT(width, ::testing::EndsWith(shown));
    }
}

TEST(TrueSizeSvg, KeepsTheShapeOfTinyDrawingsAndOfSinglePoints) {
    Document drawing;
    drawing.entities = {test::line("a", {0, 0}, {1e-5, 0}), test::line("b", {0, 0}, {0, 5e-6})};
    const XmlNode picture = parseXml(writeTrueSizeSvg(drawing));
    EXPECT_NEAR(std::stod(picture["width"]) / std::stod(picture["height"]), 2.0, 0.02);
    const std::string path = (*picture.all("path").at(0))["d"];
    EXPECT_NEAR(std::stod(path.substr(path.find('L') + 1)) - std::stod(path.substr(1)), 1e-5, 1e-11);
    drawing.entities = {{"p", PointShape{{3, 4}}}};
    EXPECT_EQ(std::stod(parseXml(writeTrueSizeSvg(drawing))["width"]), 1.0);
}

TEST(Picture, HangsParagraphsFromTheirPosition) {
    Document drawing;
    drawing.entities = {test::line("a", {0, 0}, {10, 0}),
                        {"t", TextShape{{0, 0}, 0, 1, "one\ntwo", true}},
                        {"s", TextShape{{0, 0}, 0, 1, "one", false}}};
    const XmlNode picture = parseXml(writePicture(drawing));
    const auto rows = entityNode(picture, "t")->all("tspan");
    const double first = std::stod((*rows.at(0))["dy"]), second = std::stod((*rows.at(1))["dy"]);
    EXPECT_GT(first, 10.0);
    EXPECT_NEAR(second, first * 5 / 3, 0.02);
    EXPECT_EQ((*entityNode(picture, "s")->all("tspan").at(0))["dy"], "0");
    const geometry::Box box = report::boundsOf(drawing.entities[1].shape);
    EXPECT_NEAR(box.low.y, -1 - 5.0 / 3, 1e-9);
    EXPECT_NEAR(box.high.y, 0, 1e-9);
}

}  // namespace
}  // namespace holdfast::report
