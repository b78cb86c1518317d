#include "report/page/BeforeAfter.h"

#include <gtest/gtest.h>

#include "tests/report/Samples.h"
#include "tests/report/XmlTree.h"

namespace holdfast::report {
namespace {

using test::parseXml;
using test::XmlNode;

TEST(BeforeAfter, ShowsBothDrawingsInOneFrame) {
    const XmlNode picture = parseXml(writeBeforeAfter(test::brokenPlate()));
    std::vector<const XmlNode*> panes;
    for (const XmlNode& child : picture.children)
        if (child.name == "svg")
            panes.push_back(&child);
    ASSERT_EQ(panes.size(), 2u);
    EXPECT_EQ((*panes[0])["viewBox"], (*panes[1])["viewBox"]);
    EXPECT_LT(std::stod((*panes[0])["x"]), std::stod((*panes[1])["x"]));
    EXPECT_EQ(picture.withClass("caption").at(0)->text, "Before");
    EXPECT_EQ(picture.withClass("caption").at(1)->text, "After");
}

TEST(BeforeAfter, StrikesOutInTheFirstPaneWhatTheSecondHasNot) {
    const FateReport report = completed(test::brokenPlate());
    const XmlNode picture = parseXml(writeBeforeAfter(report));
    std::size_t deleted = 0;
    for (const ConstraintOutcome& outcome : report.constraints)
        deleted += outcome.fate == ConstraintFate::deleted ? 1 : 0;
    ASSERT_GT(deleted, 0u);
    EXPECT_GE(picture.withClass("deleted").size(), deleted);
    EXPECT_FALSE(picture.withClass("ghost").empty()) << "the second pane shows where things were";
}

}  // namespace
}  // namespace holdfast::report
