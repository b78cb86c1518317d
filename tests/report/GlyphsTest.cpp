#include "report/marks/Glyphs.h"

#include <gtest/gtest.h>

#include "report/marks/Marks.h"

namespace holdfast::report {

namespace {

TEST(Glyphs, HaveADrawingForEveryKind) {
    const std::string sheet = glyphSheet();
    for (const ConstraintTraits& kind : constraintKinds()) {
        EXPECT_NE(inlineGlyph(kind.type).find("<use"), inlineGlyph(kind.type).find("<path")) << kind.name;
        EXPECT_EQ(glyphUse(kind.type).empty(), kind.isDimension()) << kind.name;
        if (!kind.isDimension()) {
            EXPECT_NE(sheet.find("id=\"hf-" + std::string(kind.sign) + "\""), std::string::npos) << kind.name;
        }
        if (marksAPoint(kind.type)) {
            EXPECT_NE(sheet.find("id=\"hf-spot-" + std::string(kind.sign) + "\""), std::string::npos) << kind.name;
        }
    }
}

}  // namespace

}  // namespace holdfast::report
