#include "host/model/scene/SceneStatement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> words(SceneStatement statement) {
    std::vector<std::string> taken;
    while (!statement.atEnd())
        taken.push_back(statement.take("a word"));
    return taken;
}

std::string complaint(const std::function<void()>& reading) {
    try {
        reading();
    } catch (const SceneError& error) {
        return error.what();
    }
    return "no complaint";
}

TEST(SceneStatements, EndAtSemicolonsAndLineEnds) {
    const auto statements = sceneStatements("line a 0,0 1,0; fixed a\n\n;; horizontal a ");
    ASSERT_EQ(statements.size(), 3U);
    EXPECT_THAT(words(statements[1]), ElementsAre("fixed", "a"));
    EXPECT_THAT(words(statements[2]), ElementsAre("horizontal", "a"));
    EXPECT_THAT(sceneStatements(" \n ; "), IsEmpty());
}

TEST(SceneStatements, KeepBlocksAndQuotedTextsWhole) {
    const auto statements =
        sceneStatements("composite { fixed a;\n fixed b }; text t 0,0 \"a; b } // \\\" c\"; fixed c");
    ASSERT_EQ(statements.size(), 3U);
    EXPECT_THAT(words(statements[0]), ElementsAre("composite", "{ fixed a;\n fixed b }"));
    EXPECT_THAT(words(statements[1]), ElementsAre("text", "t", "0,0", "\"a; b } // \\\" c\""));
}

TEST(SceneStatements, LoseTheirComments) {
    const auto statements = sceneStatements("fixed a // whole; fixed b\n// nothing\nfixed c");
    ASSERT_EQ(statements.size(), 2U);
    EXPECT_THAT(words(statements[0]), ElementsAre("fixed", "a"));
    EXPECT_THAT(words(statements[1]), ElementsAre("fixed", "c"));
}

TEST(SceneStatements, SeparateABlockFromTheWordBeforeIt) {
    EXPECT_THAT(words(sceneStatements("composite{fixed a}")[0]), ElementsAre("composite", "{fixed a}"));
}

TEST(SceneStatements, SayOnWhichLineTheyStand) {
    auto statements = sceneStatements("fixed a\n\ncomposite {\n fixed b\n\n wrong }; late");
    EXPECT_THAT(complaint([&] { statements[0].fail("x"); }), "scene line 1, \"fixed a\": x");
    EXPECT_THAT(complaint([&] { statements[2].fail("x"); }), "scene line 6, \"late\": x");
    statements[1].expect("composite");
    const auto members = statements[1].block("members");
    EXPECT_THAT(complaint([&] { members[1].fail("x"); }), "scene line 6, \"wrong\": x");
}

TEST(SceneStatements, ReadNumbersAnglesAndPoints) {
    SceneStatement statement("-1.5e2 90 0.25rad 1,-2 1,2,3", 1);
    EXPECT_EQ(statement.number("a number"), -150.0);
    EXPECT_EQ(statement.angle("an angle"), 0.5 * std::numbers::pi);
    EXPECT_EQ(statement.angle("an angle"), 0.25);
    EXPECT_EQ(statement.point("a point").y, -2.0);
    EXPECT_EQ(statement.vector("a vector").z, 3.0);
    EXPECT_TRUE(statement.atEnd());
}

struct WrongWord {
    const char* text;
    std::function<void(SceneStatement&)> read;
    const char* message;
};

TEST(SceneStatements, SayWhatTheyExpectAndWhatTheyFound) {
    const WrongWord rows[] = {
        {"ten", [](auto& s) { s.number("the radius"); }, "expected the radius, a number, found \"ten\""},
        {"1x", [](auto& s) { s.number("the radius"); }, "expected the radius, a number, found \"1x\""},
        {"nan", [](auto& s) { s.number("the radius"); }, "expected the radius, a number, found \"nan\""},
        {"30deg", [](auto& s) { s.angle("the angle"); },
         "expected the angle such as 30 (degrees) or 0.5rad, found \"30deg\""},
        {"1;", [](auto& s) { s.point("the end"); }, "expected the end such as 10,0.5, found \"1;\""},
        {"1,2,3,4", [](auto& s) { s.point("the end"); }, "expected the end such as 10,0.5, found \"1,2,3,4\""},
        {"centr", [](auto& s) { s.expect("centre"); }, "expected \"centre\", found \"centr\""},
        {"a", [](auto& s) { s.expectEnd(); }, "nothing more was expected, found \"a\""},
        {"abc", [](auto& s) { s.quoted("a text"); }, "expected a text in double quotes, found \"abc\""},
        {"abc", [](auto& s) { s.block("members"); }, "expected members in braces, found \"abc\""},
    };
    for (const WrongWord& row : rows) {
        SceneStatement statement(row.text, 4);
        EXPECT_EQ(complaint([&] { row.read(statement); }),
                  std::string("scene line 4, \"") + row.text + "\": " + row.message);
    }
}

TEST(SceneStatements, SayThatTheyEndTooEarly) {
    SceneStatement statement("", 1);
    EXPECT_THAT(complaint([&] { statement.take("a place"); }),
                "scene line 1, \"\": expected a place, but the statement ends");
    EXPECT_THAT(complaint([&] { statement.expect("dir"); }),
                "scene line 1, \"\": expected \"dir\", but the statement ends");
}

TEST(SceneStatements, SayThatQuotesAndBracesDoNotClose) {
    EXPECT_THAT(complaint([] { sceneStatements("text t 0,0 \"abc"); }),
                "scene line 1, \"text t 0,0 \"abc\": a text begins with \" but has no closing \"");
    EXPECT_THAT(complaint([] { sceneStatements("composite { fixed a"); }),
                "scene line 1, \"composite { fixed a\": a { has no closing }");
    EXPECT_THAT(complaint([] { sceneStatements("fixed a }"); }), "scene line 1, \"fixed a }\": a } has no opening {");
}

TEST(SceneNames, BeginWithALetterAndHaveNoMarks) {
    for (const char* good : {"a", "line-1", "_x", "Plate_2"})
        EXPECT_TRUE(isSceneName(good)) << good;
    for (const char* bad : {"", "1a", "-a", "a.b", "a:", "a[1]", "a b", "a#1"})
        EXPECT_FALSE(isSceneName(bad)) << bad;
}

}  // namespace
}  // namespace holdfast
