// What formulas come to, and what is wrong with those that come to nothing.

#include "document/formulas/Formula.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "document/formulas/Calculation.h"
#include "geometry/Angles.h"

namespace holdfast::document {
namespace {

const std::map<std::string, Quantity> kValues = {
    {"width", {80.0}},  {"side", {40.0, 1, 0}}, {"open", {kPi / 6.0, 0, 1}}, {"wall thickness", {3.0, 1, 0}},
    {"m", {7.0, 1, 0}}, {"zero", {0.0, 1, 0}},
};

Quantity formulaValueOf(std::string_view text, std::string_view unit = "mm") {
    return Formula(text).value(unit, [](const Formula::NameInIt& name) {
        const auto found = kValues.find(name.name);
        if (found == kValues.end())
            throw FormulaError("there is nothing called " + name.name, name.column);
        return found->second;
    });
}

std::string formulaErrorOf(std::string_view text) {
    try {
        formulaValueOf(text);
        return "none";
    } catch (const FormulaError& error) {
        return std::to_string(error.column()) + ": " + error.message() + error.hint();
    }
}

void expectValue(std::string_view text, const Quantity& expected, std::string_view unit = "mm") {
    const Quantity found = formulaValueOf(text, unit);
    EXPECT_NEAR(found.value, expected.value, 1e-12 * std::max(1.0, std::abs(expected.value))) << text;
    EXPECT_TRUE(found.measuresAs(expected)) << text << " is " << spokenKind(found);
}

TEST(Formula, CalculatesAsMathematicsDoes) {
    const std::pair<const char*, double> rows[] = {
        {"1 + 2 * 3", 7},    {"(1 + 2) * 3", 9}, {"7 - 2 - 3", 2},          {"24 / 4 / 2", 3},
        {"2^3^2", 512},      {"-2^2", -4},       {"2 ^ -1", 0.5},           {"--3", 3},
        {"+.5e1", 5},        {"2*pi", 2 * kPi},  {"sqrt(16) + abs(-2)", 6}, {"min(3, 1, 2)", 1},
        {"max(3, 1, 2)", 3}, {"round(2.5)", 3},  {"floor(-2.5)", -3},       {"ceil(2.1)", 3},
        {"round(7, 5)", 5},  {"mod(-7, 5)", 3},  {"hypot(3, 4)", 5},        {"width / 2", 40}};
    for (const auto& [text, value] : rows)
        expectValue(text, {value});
}

TEST(Formula, KnowsLengthsInEveryUnit) {
    expectValue("3 mm", {3, 1, 0});
    expectValue("3mm", {3, 1, 0});
    expectValue("2 in", {50.8, 1, 0});
    expectValue("2 inch + 1 cm", {60.8, 1, 0});
    expectValue("1 ft", {12, 1, 0}, "in");
    expectValue("25.4 mm", {1, 1, 0}, "in");
    expectValue("1.5 m", {150, 1, 0}, "cm");
    expectValue("500 um", {0.5, 1, 0});
    expectValue("(3/8) in", {9.525, 1, 0});
    expectValue("3 mm^2", {3, 2, 0});
    expectValue("(3 mm)^2", {9, 2, 0});
    EXPECT_EQ(formulaValueOf("1 in").value, 25.4);
}

TEST(Formula, TakesPlainNumbersForLengthsInTheDrawingsUnitAndForDegrees) {
    expectValue("width / 2 + 3 mm", {43, 1, 0});
    expectValue("side + 2", {42, 1, 0});
    expectValue("open + 15", {kPi / 4, 0, 1});
    expectValue("max(width, side)", {80, 1, 0});
    expectValue("max(1, 2, side)", {40, 1, 0});
}

TEST(Formula, CalculatesWithAngles) {
    expectValue("sin(30)", {0.5});
    expectValue("cos(60 deg)", {0.5});
    expectValue("tan(45)", {1.0});
    expectValue("sin(pi / 6 * 1 rad)", {0.5});
    expectValue("sin(open)", {0.5});
    expectValue("asin(0.5)", {kPi / 6, 0, 1});
    expectValue("atan2(side, side)", {kPi / 4, 0, 1});
    expectValue("30 deg", {kPi / 6, 0, 1});
    expectValue("30\u00B0", {kPi / 6, 0, 1});
    EXPECT_EQ(formulaValueOf("cos(90)").value, 0.0);
    EXPECT_EQ(formulaValueOf("sin(180)").value, 0.0);
}

TEST(Formula, NamesInQuotesWhatIsNoWordOrAUnit) {
    expectValue("\"wall thickness\" * 2", {6, 1, 0});
    expectValue("\"m\"", {7, 1, 0});
    expectValue("1 m", {1000, 1, 0});
}

TEST(Formula, MeasuresWhatProductsAndRootsAre) {
    expectValue("side * side", {1600, 2, 0});
    expectValue("sqrt(side * side + (30 mm)^2)", {50, 1, 0});
    expectValue("side / m", {40.0 / 1000, 0, 0});
    expectValue("side / \"m\"", {40.0 / 7, 0, 0});
    expectValue("1 / side", {1.0 / 40, -1, 0});
}

TEST(Formula, PointsAtWhatIsWrongInIt) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "1: expected a formula, such as width / 2 + 3 mm"},
        {"1 +", "4: expected a number or a name, but the formula ends there"},
        {"1 + * 2", "5: expected a number or a name, found \"*\""},
        {"(1 + 2", "7: expected \")\" behind what stands in brackets, but the formula ends there"},
        {"1 2", "3: nothing more was expected, found \"2\""},
        {"side 2", "6: nothing more was expected, found \"2\""},
        {"3 kg", "3: expected + - * / or ^ before \"kg\""},
        {"3 inhc", "3: expected + - * / or ^ before \"inhc\"; did you mean \"inch\"?"},
        {"1 / 0", "3: division by zero"},
        {"side / zero", "6: division by zero"},
        {"0 ^ -1", "3: division by zero"},
        {"mod(3, 0)", "1: mod by zero"},
        {"2 * sqrt(-4)", "5: sqrt has no value of a negative number (-4.0)"},
        {"sqrt(side)", "1: sqrt of a length is nothing that can be measured; it takes a number or an area"},
        {"side + open", "6: a length and an angle cannot be added"},
        {"side - side * side", "6: a length and an area cannot be subtracted"},
        {"max(1, side, open)", "1: a length and an angle cannot be compared"},
        {"sin(side)", "1: sin takes an angle, or a number of degrees, not a length"},
        {"asin(2)", "1: asin takes a number from -1 to 1, not 2.0"},
        {"tan(90)", "1: tan has no value at 90.0 degrees"},
        {"2 ^ side", "3: a power is a number, not a length"},
        {"side ^ 0.5", "6: a length can be raised to whole powers up to 9 only"},
        {"(-8) ^ 0.5", "6: a negative number has no power of 0.5"},
        {"1e300 * 1e300", "7: the result is beyond what numbers can be"},
        {"1e400", "1: \"1e400\" is beyond what numbers can be"},
        {"sqr(4)", "1: there is no function sqr; did you mean \"sqrt\"?"},
        {"sqrt(4, 5)", "1: sqrt takes 1 value, not 2"},
        {"round()", "1: round takes 1 to 2 values, not 0"},
        {"min()", "1: min takes 1 value or more, not 0"},
        {"nothere", "1: there is nothing called nothere"},
        {"\"open", "1: the quote before the name has no end; put another behind it"},
        {"1 # 2", "3: found \"#\", which means nothing in a formula"},
    };
    for (const auto& [text, error] : rows)
        EXPECT_EQ(formulaErrorOf(text), error) << text;
}

TEST(Formula, IsRefusedWhereItIsTooDeepOrTooLong) {
    EXPECT_EQ(formulaErrorOf(std::string(100, '(') + "1" + std::string(100, ')')), "65: nested more than 64 deep");
    EXPECT_EQ(formulaErrorOf(std::string(100, '-') + "1"), "65: nested more than 64 deep");
    std::string sum = "1";
    for (int i = 0; i < 600; ++i)
        sum += "+1";
    EXPECT_EQ(formulaErrorOf(sum), "1000: longer than 1000 signs; part it into parameters");
}

TEST(Formula, TellsTheNamesInItWithTheirColumns) {
    const Formula formula("width / 2 + max(\"wall thickness\", c9 * 3 mm) * pi");
    std::string names;
    for (const Formula::NameInIt& name : formula.names())
        names += name.name + "@" + std::to_string(name.column) + " ";
    EXPECT_EQ(names, "width@1 wall thickness@17 c9@35 ");
}

TEST(FormulaName, IsAWordThatMeansNothingElse) {
    EXPECT_EQ(faultInFormulaName("width_2"), "");
    EXPECT_EQ(faultInFormulaName("h\u00F6he"), "");
    EXPECT_EQ(faultInFormulaName("mm"), "mm is a unit");
    EXPECT_EQ(faultInFormulaName("sqrt"), "sqrt is a function");
    EXPECT_EQ(faultInFormulaName("pi"), "pi is a number already");
    for (const char* name : {"", "2x", "a b", "a.b", "a-b"})
        EXPECT_NE(faultInFormulaName(name), "") << name;
}

Document calculatedDrawing(std::vector<Parameter> parameters) {
    Document document;
    document.parameters = std::move(parameters);
    return document;
}

TEST(Calculation, FollowsFormulasThroughEachOther) {
    const Document document = calculatedDrawing({{"a", "b / 2"}, {"b", "c + 4"}, {"c", "16"}});
    Calculation calculation = calculationOver(document);
    EXPECT_EQ(calculation.value(itemOf(document.parameters[0])).value, 10.0);
    EXPECT_EQ(calculation.value(itemOf(document.parameters[1])).value, 20.0);
}

TEST(Calculation, TellsWhichFormulasGoRoundInACircle) {
    const Document document = calculatedDrawing({{"a", "b / 2"}, {"b", "1 + c"}, {"c", "2 * a"}});
    try {
        calculationOver(document).value(itemOf(document.parameters[0]));
        ADD_FAILURE();
    } catch (const FormulaError& error) {
        EXPECT_EQ(error.message(), "a would be calculated from itself (a -> b -> c -> a)");
        EXPECT_EQ(error.owner(), "c");
        EXPECT_EQ(error.column(), 5u);
    }
}

TEST(Calculation, SuggestsANameThatIsNear) {
    const Document document = calculatedDrawing({{"width", "80"}, {"half", "widht / 2"}});
    try {
        calculationOver(document).value(itemOf(document.parameters[1]));
        ADD_FAILURE();
    } catch (const FormulaError& error) {
        EXPECT_EQ(error.message() + error.hint(), "there is no parameter or dimension widht; did you mean \"width\"?");
    }
}

}  // namespace
}  // namespace holdfast::document
