// Parameters and formulas in drawing files.

#include "formats/json/JsonWriter.h"
#include "tests/formats/FaultyDrawings.h"

namespace holdfast::formats {
namespace {

/// A line of 10 with a dimension, parameters written into the file as they are given.
std::string sized(const std::string& parameters, const std::string& fields, const std::string& more = "") {
    return json("{'units': {'length': 'mm', 'angle': 'rad'},\n'parameters': [" + parameters +
                "],\n'entities': [\n{'id': 'a', 'type': 'line', 'start': [0.0, 0.0], 'end': [10.0, 0.0]}\n],\n"
                "'constraints': [\n{'id': 'c0', 'type': 'distance', 'refs': [{'entity': 'a', 'point': 'whole'}]" +
                fields + "}" + more + "\n]\n}\n");
}

const std::string kWidth = "{'name': 'width', 'formula': '5', 'value': 5.0}";
const std::string kTwice = ", 'value': 10.0, 'formula': 'width * 2'";

TEST(JsonParameters, AreReadAndWrittenAgain) {
    const Document document = readJson(sized(kWidth, kTwice), "test.json");
    EXPECT_EQ(document.parameters, (std::vector<Parameter>{{"width", "5", 5.0}}));
    EXPECT_EQ(document.constraints.at(0).formula, "width * 2");
    EXPECT_EQ(readJson(jsonText(document), "test.json"), document);
}

TEST(JsonParameters, LeaveADrawingWithoutThemAsItWas) {
    const std::string text = json(
        "{\n'units': {'length': 'mm', 'angle': 'rad'},\n'entities': [\n{'id': 'a', 'type': 'point', 'position': "
        "[0.0, 1.0]}\n],\n'constraints': [\n\n]\n}\n");
    const std::string written = jsonText(readJson(text, "test.json"));
    EXPECT_EQ(written.find("parameters"), std::string::npos);
    EXPECT_EQ(written.find("formula"), std::string::npos);
    EXPECT_EQ(jsonText(readJson(written, "test.json")), written);
}

TEST(JsonParameters, AreRefusedByTheirPlaceInTheFile) {
    const FaultyDrawing rows[] = {
        {"no formula", sized("{'name': 'a', 'value': 1}", ", 'value': 10"), "/parameters/0", "no \"formula\"",
         "\"formula\""},
        {"misspelt field", sized("{'name': 'a', 'fromula': '1', 'formula': '1', 'value': 1}", ", 'value': 10"),
         "/parameters/0", "\"fromula\"", "did you mean \"formula\"?"},
        {"empty formula", sized("{'name': 'a', 'formula': '', 'value': 1}", ", 'value': 10"), "/parameters/0/formula",
         "an empty formula", "such as"},
        {"name of a unit", sized("{'name': 'mm', 'formula': '1', 'value': 1}", ", 'value': 10"), "/parameters/0/name",
         "\"mm\"", "mm is a unit"},
        {"name twice", sized(kWidth + ", " + kWidth, ", 'value': 10"), "/parameters/1/name",
         "the name \"width\", which /parameters/0/name has already", "its own"},
        {"name of a constraint", sized("{'name': 'c0', 'formula': '1', 'value': 1}", ", 'value': 10"),
         "/parameters/0/name", "the name \"c0\", which /constraints/0/id has already", "its own"},
        {"no formula at all", sized("{'name': 'a', 'formula': '1 +', 'value': 1}", ", 'value': 10"),
         "/parameters/0/formula", "\"1 +\"", "column 4, expected a number or a name"},
        {"wrong value", sized("{'name': 'a', 'formula': '1 + 1', 'value': 3}", ", 'value': 10"), "/parameters/0/value",
         "3.0", "2.0, which the formula \"1 + 1\" comes to"},
        {"circle",
         sized("{'name': 'a', 'formula': 'b', 'value': 1}, {'name': 'b', 'formula': 'a', 'value': 1}", ", 'value': 10"),
         "/parameters/0/formula", "whose b is \"a\"", "a would be calculated from itself (a -> b -> a)"},
        {"unknown name", sized(kWidth, ", 'value': 10, 'formula': 'widht * 2'"), "/constraints/0/formula",
         "\"widht * 2\"", "column 1, there is no parameter or dimension widht; did you mean \"width\"?"},
        {"wrong unit", sized(kWidth, ", 'value': 10, 'formula': '10 deg'"), "/constraints/0/formula", "\"10 deg\"",
         "it comes to an angle; c0 is a length"},
        {"value of another formula", sized(kWidth, ", 'value': 10, 'formula': 'width * 3'"), "/constraints/0/value",
         "10.0", "15.0, which the formula \"width * 3\" comes to"},
        {"measured", sized(kWidth, kTwice + ", 'driving': false"), "/constraints/0/formula",
         "a formula on a measured dimension", "driving dimensions only"},
        {"of a relation",
         sized(kWidth, kTwice,
               ",\n{'id': 'h', 'type': 'horizontal', 'refs': [{'entity': 'a', 'point': 'whole'}], 'formula': '1'}"),
         "/constraints/1/formula", "a formula on a constraint of type horizontal", "dimensions only"},
    };
    expectFaults(rows);
}

}  // namespace
}  // namespace holdfast::formats
