#include <gmock/gmock.h>

#include <algorithm>
#include <optional>

#include "document/text/DrawingError.h"
#include "formats/slvs/SlvsReader.h"
#include "tests/slvs/SlvsFiles.h"

namespace holdfast::formats {
namespace {

using testing::HasSubstr;

std::optional<DrawingError> errorOf(const std::string& text) {
    try {
        readSlvs(text, "", "test.slvs");
    } catch (const DrawingError& error) {
        return error;
    }
    return std::nullopt;
}

struct Faulty {
    const char* description;
    std::string more;  ///< behind what every file begins with
    int line;          ///< of that
    const char* found;
    const char* expected;
};

TEST(SlvsFaults, AreToldWithTheirLineAndHowToMendThem) {
    const std::string beginning = slvsBeginning();
    const auto before = static_cast<int>(std::count(beginning.begin(), beginning.end(), '\n'));
    const Faulty table[] = {
        {"no number", "Param.h.v.=00040010\nParam.val=1,5\nAddParam\n", 2, "\"1,5\"", "a number"},
        {"infinite", "Param.h.v.=00040010\nParam.val=inf\nAddParam\n", 2, "\"inf\"", "a number"},
        {"no handle", "Request.h.v=xyz\n", 1, "\"xyz\"", "hexadecimal"},
        {"a long handle", "Request.h.v=123456789\n", 1, "\"123456789\"", "eight hexadecimal digits"},
        {"nameless", "Param.val=3\nAddParam\n", 2, "a parameter without a handle", "h.v="},
        {"twice", "Param.h.v.=00010010\nAddParam\n", 2, "a second parameter of this handle", "differ"},
        {"cut off", "Param.h.v.=00040010\nParam.val=3\n", 2, "the end of the file within a Param", "AddParam"},
        {"mixed", "Param.h.v.=00040010\nRequest.h.v=00000004\n", 2, "a value of a Request within a Param", "AddParam"},
        {"ended by another", "Param.h.v.=00040010\nAddRequest\n", 2, "\"AddRequest\" within a Param", "AddParam"},
        {"no value", "Param.h.v.00040010\n", 1, "\"Param.h.v.00040010\"", "NAME=VALUE"},
        {"another owner", "Colour.h.v=3\n", 1, "\"Colour.h.v\"", "Group, Param"},
        {"no end of a list", "Group.h.v=00000003\nGroup.remap={\n  1 2 3\n", 2, "a list that does not end", "\"}\""},
        {"no end of a record", "Add\n", 1, "\"Add\"", "AddParam"},
    };
    for (const Faulty& row : table) {
        SCOPED_TRACE(row.description);
        const auto error = errorOf(beginning + row.more);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->line(), before + row.line);
        EXPECT_THAT(error->found(), HasSubstr(row.found));
        EXPECT_THAT(error->expected(), HasSubstr(row.expected));
    }
}

TEST(SlvsFaults, OfTheWholeFileAreTold) {
    EXPECT_THAT(errorOf("0\nSECTION\n")->expected(), HasSubstr("SolveSpace file"));
    EXPECT_EQ(errorOf("")->line(), 1);
    EXPECT_THAT(errorOf("\xB1\xB2\xB3SolveSpaceREVa\n")->found(), HasSubstr("0 sketches"));
    EXPECT_THAT(errorOf(slvsBeginning() + "Request.h.v=00000004\nRequest.type=200\nRequest.workplane.v=80020000\n"
                                          "Request.group.v=00000002\nAddRequest\n")
                    ->found(),
                HasSubstr("r004 without its parameter 00040010"));
    EXPECT_THAT(errorOf("\xB1\xB2\xB3SolveSpaceREVa\nGroup.h.v=2\nGroup.type=5001\nAddGroup\n")->found(),
                HasSubstr("g002 without the plane"));
}

TEST(SlvsFaults, LinesMayEndAsOtherSystemsEndThem) {
    std::string text = slvsBeginning() + slvsRequest("00000004", 200, {1, 2, 3, 4}), other;
    for (const char each : text)
        other += each == '\n' ? std::string("\r\n") : std::string(1, each);
    EXPECT_EQ(readSlvs(text, "", "a").document, readSlvs(other, "", "a").document);
}

TEST(SlvsFaults, ThatAreTooLargeAreRefused) {
    std::string many = slvsBeginning();
    for (int i = 0; i < 600000; ++i)
        many += "AddStyle\n";
    EXPECT_THAT(errorOf(many)->found(), HasSubstr("more than 600000 records"));
    EXPECT_THAT(errorOf(slvsBeginning() + std::string(std::size_t{64} << 20U, '\n'))->found(),
                HasSubstr("more than 64 MB"));
}

}  // namespace
}  // namespace holdfast::formats
