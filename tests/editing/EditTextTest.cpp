#include "editing/text/EditText.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>

#include "editing/Verbs.h"

namespace holdfast::editing {
namespace {

constexpr std::array<std::string_view, 2> kEnds{"start", "end"};

std::string errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const EditError& error) {
        return error.what();
    }
    return "no error";
}

TEST(EditText, ReadsAnEditWordByWord) {
    EditText text("  break g3 at 4,-0.5\tto +6,1e1 ");
    text.expect("break");
    EXPECT_EQ(text.place("an entity"), (Place{"g3", PlaceKind::whole, 0}));
    text.expect("at");
    EXPECT_EQ(text.point("a point"), (Vec2{4.0, -0.5}));
    EXPECT_TRUE(text.accept("to"));
    EXPECT_EQ(text.point("a point"), (Vec2{6.0, 10.0}));
    EXPECT_NO_THROW(text.expectEnd());
}

TEST(EditText, ReadsPlacesOfEveryKind) {
    EditText text("g1 g1.end s2.control:3 p4.segment:1.centre");
    EXPECT_EQ(text.place("a place"), (Place{"g1", PlaceKind::whole, 0}));
    EXPECT_EQ(text.place("a place"), (Place{"g1", PlaceKind::end, 0}));
    EXPECT_EQ(text.place("a place"), (Place{"s2", PlaceKind::control, 3}));
    EXPECT_EQ(text.place("a place"), (Place{"p4", PlaceKind::segmentCentre, 1}));
}

TEST(EditText, PartsANameAtTheDotBeforeAWord) {
    constexpr std::array<std::string_view, 2> words{"end", "corner"};
    struct Row {
        const char* text;
        std::vector<std::string> parts;
    };
    const Row rows[] = {{"g3.end to g7", {"g3", "end", "to", "g7"}},
                        {"p4.corner:12 radius 2", {"p4", "corner", "12", "radius", "2"}},
                        {"\"a.b\".end to g7", {"a.b", "end", "to", "g7"}},
                        {"\"a.end\" to g7", {"a.end", "to", "g7"}},
                        {"a.end end to g7", {"a.end", "end", "to", "g7"}},
                        {"a.start to g7", {"a.start", "to", "g7"}}};
    for (const Row& row : rows) {
        EditText text(row.text);
        text.partAtDot(words);
        for (const std::string& part : row.parts)
            EXPECT_EQ(text.otherName("a word").value, part) << row.text;
        EXPECT_TRUE(text.atEnd()) << row.text;
    }
    EditText text("\"a b\".corner:7");
    text.partAtDot(words);
    for (const std::size_t column : {1u, 7u, 14u}) {
        text.otherName("a word");
        EXPECT_EQ(text.column(), column);
    }
}

TEST(EditText, GathersNamesUpToAnEndingWord) {
    constexpr std::array<std::string_view, 1> about{"about"};
    EditText text("g1 g2 about 0,0");
    EXPECT_EQ(text.names("entities", about), (std::vector<Name>{"g1", "g2"}));
    EXPECT_TRUE(text.nextIs("about"));
}

TEST(EditText, ReadsNamesInQuotes) {
    EditText text(R"(break "a b" "say \"hi\"" "back\\slash" "two\nlines" "" "a b".end)");
    text.expect("break");
    for (const char* name : {"a b", "say \"hi\"", "back\\slash", "two\nlines", ""})
        EXPECT_EQ(text.name("an entity"), Name(name));
    EXPECT_EQ(text.place("a place"), (Place{"a b", PlaceKind::end, 0}));
    EXPECT_NO_THROW(text.expectEnd());
}

TEST(EditText, TakesANameInQuotesForNoKeyword) {
    constexpr std::array<std::string_view, 1> about{"about"};
    EditText text(R"(g1 "about" about 0,0)");
    EXPECT_EQ(text.names("entities", about), (std::vector<Name>{"g1", "about"}));
    EXPECT_TRUE(text.accept("about"));
}

TEST(EditText, PointsAtTheWordThatIsWrong) {
    struct Row {
        const char* description;
        const char* text;
        std::function<void(EditText&)> read;
        const char* message;
    };
    const Row rows[] = {
        {"another keyword", "g3 on",
         [](EditText& t) {
             t.name("an entity");
             t.expect("at");
         },
         "edit \"g3 on\", column 4: expected \"at\", found \"on\""},
        {"an early end", "g3",
         [](EditText& t) {
             t.name("an entity");
             t.expect("at");
         },
         "edit \"g3\": expected \"at\", but the edit ends there"},
        {"a point without comma", "4", [](EditText& t) { t.point("the first point"); },
         "edit \"4\", column 1: expected the first point, a point such as 4,0.5 without spaces, found \"4\""},
        {"a number that is none", "4x", [](EditText& t) { t.number("a radius"); },
         "edit \"4x\", column 1: expected a radius, a number such as 2.5, found \"4x\""},
        {"an infinite number", "inf", [](EditText& t) { t.number("a radius"); },
         "edit \"inf\", column 1: expected a radius, a number such as 2.5, found \"inf\""},
        {"a fraction for a whole number", "2.5", [](EditText& t) { t.integer("a corner"); },
         "edit \"2.5\", column 1: expected a corner, a whole number, found \"2.5\""},
        {"a place that is none", "g1.ende", [](EditText& t) { t.place("a place"); },
         "edit \"g1.ende\", column 1: expected a place, a place such as g1.end, s2.control:3 or p4.segment:1, found "
         "\"g1.ende\"; did you mean \"end\"?"},
        {"a misspelt choice", "strat", [](EditText& t) { t.oneOfWords(kEnds, "an end"); },
         "edit \"strat\", column 1: expected an end (start or end), found \"strat\"; did you mean \"start\"?"},
        {"a quote without end", "\"a b", [](EditText& t) { t.name("an entity"); },
         "edit \"\"a b\", column 1: the quote before the name has no end; put another behind it, found \"a b\""},
        {"quotes that end within a word", "\"a b\"c", [](EditText& t) { t.name("an entity"); },
         "edit \"\"a b\"c\", column 1: expected an entity, and a space behind its quotes, found \"a bc\""},
        {"words left over", "g3 g4",
         [](EditText& t) {
             t.name("an entity");
             t.expectEnd();
         },
         "edit \"g3 g4\", column 4: nothing more was expected, found \"g4\""},
    };
    for (const Row& row : rows) {
        EditText text(row.text);
        EXPECT_EQ(errorOf([&] { row.read(text); }), row.message) << row.description;
    }
}

}  // namespace
}  // namespace holdfast::editing
