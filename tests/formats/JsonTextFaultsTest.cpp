// Text that is not JSON, or not a drawing at its upper levels.

#include "tests/formats/FaultyDrawings.h"

namespace holdfast::formats {
namespace {

const std::string kUnits = json("'units': {'length': 'mm', 'angle': 'rad'}");
const std::string kLists = json("'entities': [], 'constraints': []");

TEST(JsonText, IsRefusedWithLineAndColumnWhereItIsNoJson) {
    const FaultyDrawing rows[] = {
        {"empty file", "", "", "an empty file", "a drawing in JSON"},
        {"only white space", " \n\t\n", "", "an empty file", "a drawing in JSON"},
        {"truncated in a list", json("{'entities': [\n{'id': 'g0'},"), "line 2, column 13", "the end of the text",
         "literal"},
        {"truncated in a text", json("{'entities': [\n{'id': 'g"), "line 2, column 9", "\"g", "JSON value"},
        {"two values without a comma", "{\"name\": \"a\" \"b\"}", "line 1, column 16", "\"b\"", "'}'"},
        {"comma before the closing bracket", "{\"entities\": [1,]}", "line 1, column 17", "]", "literal"},
        {"text behind the drawing", "{} {}", "line 1, column 4", "{", "end of input"},
        {"NaN", "{\"radius\": NaN}", "line 1, column 12", "\"NaN\"", "a finite number"},
        {"infinity", "{\"radius\": Infinity}", "line 1, column 12", "\"Infinity\"", "a finite number"},
        {"minus infinity", "{\"radius\": -Infinity}", "line 1, column 13", "\"-Infinity\"", "a finite number"},
        {"a number beyond doubles", "{\"radius\":\n 1e999}", "line 2, column 6", "1e999", "fits into a double"},
        {"a name twice", json("{'name': 'a',\n 'source': {'file': 'a',\n'file': 'b'}}"), "/source",
         "the name \"file\" twice", "remove or rename"},
        {"broken UTF-8", "{\"name\": \"\xC3\x28\"}", "line 1, column 12", "", "UTF-8"},
        {"nested too deep", std::string(100, '['), "", "nested more than 64 deep", "a drawing"},
    };
    expectFaults(rows);
}

TEST(JsonText, IsRefusedWithAPointerWhereItIsNoDrawing) {
    const FaultyDrawing rows[] = {
        {"a list", "[]", "", "a list of 0 items", "an object"},
        {"a number", "3.5", "", "the number 3.5", "an object"},
        {"no units", "{" + kLists + "}", "", "no \"units\"", "the field \"units\""},
        {"no entities", "{" + kUnits + ", \"constraints\": []}", "", "no \"entities\"", "the field \"entities\""},
        {"no constraints", "{" + kUnits + ", \"entities\": []}", "", "no \"constraints\"", "\"constraints\""},
        {"misspelt top-level field", "{\"entitys\": []," + kUnits + ", \"constraints\": []}", "",
         "the unknown field \"entitys\"", "did you mean \"entities\"?"},
        {"entities not a list", "{" + kUnits + json(", 'entities': {}, 'constraints': []}"), "/entities", "an object",
         "a list"},
        {"name not a text", "{\"name\": 7, " + kUnits + ", " + kLists + "}", "/name", "the number 7.0", "a text"},
        {"angles in degrees", "{" + json("'units': {'length': 'mm', 'angle': 'deg'}, ") + kLists + "}", "/units/angle",
         "the text \"deg\"", "radians"},
        {"no length unit", "{" + json("'units': {'angle': 'rad'}, ") + kLists + "}", "/units", "no \"length\"",
         "\"length\""},
        {"unknown length unit", "{" + json("'units': {'length': 'MM', 'angle': 'rad'}, ") + kLists + "}",
         "/units/length", "\"MM\"", "did you mean \"mm\"?"},
        {"unknown field of the source", "{\"source\": {\"url\": \"\"}, " + kUnits + ", " + kLists + "}", "/source",
         "the unknown field \"url\"", "repository, revision, file or sketch"},
        {"fewer numbers than none", "{\"constraint_numbers\": -1, " + kUnits + ", " + kLists + "}",
         "/constraint_numbers", "-1", "a whole number, 0 or more"},
        {"more numbers than are given", "{\"constraint_numbers\": 2000000000, " + kUnits + ", " + kLists + "}",
         "/constraint_numbers", "a number of constraints that cannot be", "from 0 to 1000000000"},
        {"license null", "{\"license\": null, " + kUnits + ", " + kLists + "}", "/license", "nothing (null)", "a text"},
    };
    expectFaults(rows);
}

TEST(JsonText, IsRefusedForAPlaneThatIsNone) {
    const auto withPlane = [](const char* plane) {
        return "{" + kUnits + json(std::string(", 'plane': ") + plane + ", ") + kLists + "}";
    };
    const FaultyDrawing rows[] = {
        {"missing axis", withPlane("{'origin': [0, 0, 0], 'x_axis': [1, 0, 0]}"), "/plane", "no \"y_axis\"", "y_axis"},
        {"two coordinates", withPlane("{'origin': [0, 0], 'x_axis': [1, 0, 0], 'y_axis': [0, 1, 0]}"), "/plane/origin",
         "a list of 2 items", "three numbers"},
        {"long axis", withPlane("{'origin': [0, 0, 0], 'x_axis': [2, 0, 0], 'y_axis': [0, 1, 0]}"), "/plane/x_axis",
         "length is not 1", "unit vector"},
        {"slanted axes", withPlane("{'origin': [0, 0, 0], 'x_axis': [1, 0, 0], 'y_axis': [0.6, 0.8, 0]}"),
         "/plane/y_axis", "not perpendicular", "two perpendicular axes"},
        {"coordinate beyond all squares",
         withPlane("{'origin': [1e300, 0, 0], 'x_axis': [1, 0, 0], 'y_axis': [0, 1, 0]}"), "/plane/origin",
         "not finite", "finite"},
    };
    expectFaults(rows);
}

TEST(JsonText, NamesFileLinePlaceFindingAndRemedyInOneSentence) {
    const auto error =
        errorOf(drawingText("{'id': 'g0', 'type': 'point', 'position': [0, 0]},\n"
                            "{'id': 'g1', 'type': 'circle', 'centre': [0, 0], 'radius': -2}"));
    ASSERT_TRUE(error);
    EXPECT_STREQ(error->what(), "test.json:4: /entities/1/radius: found -2.0; expected a radius above 0");
    EXPECT_EQ(error->file(), "test.json");
    EXPECT_EQ(error->line(), 4);
}

}  // namespace
}  // namespace holdfast::formats
