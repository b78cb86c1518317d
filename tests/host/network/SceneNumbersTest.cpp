#include "host/model/scene/SceneNumbers.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <numbers>

namespace holdfast {
namespace {

TEST(SceneAngles, ArePrintedAsTheyWereWritten) {
    for (const char* written : {"0", "30", "90", "-45", "360", "22.5", "0.1", "123.456", "1e-09", "720"})
        EXPECT_EQ(angleText(*angleIn(written)), written);
}

TEST(SceneAngles, ThatNoDegreesGiveArePrintedAsRadians) {
    EXPECT_EQ(angleIn("0.5rad"), 0.5);
    EXPECT_EQ(angleText(std::numbers::pi), "180");
    EXPECT_FALSE(angleIn("rad"));
    EXPECT_FALSE(angleIn("1 rad"));
}

RC_GTEST_PROP(SceneAngles, ReadBackToTheSameBits, (double radians)) {
    RC_PRE(std::isfinite(radians));
    RC_ASSERT(angleIn(angleText(radians)) == radians);
}

RC_GTEST_PROP(SceneAngles, OfDegreesStayTheSameText, (std::int32_t thousandths)) {
    const std::string written = numberText(thousandths / 1000.0);
    RC_ASSERT(angleText(*angleIn(written)) == written);
}

RC_GTEST_PROP(ScenePoints, ReadBackToTheSameBits, (double x, double y, double z)) {
    RC_PRE(std::isfinite(x) && std::isfinite(y) && std::isfinite(z));
    const auto read = pointIn(pointText(YxGePoint3d(x, y, z)));
    RC_ASSERT(read.has_value());
    RC_ASSERT(read->x == x && read->y == y && read->z == z);
}

TEST(ScenePoints, LieInThePlaneUnlessAThirdNumberIsThere) {
    EXPECT_EQ(pointText(YxGePoint3d(1, -2.5, 0)), "1,-2.5");
    EXPECT_EQ(pointText(YxGePoint3d(1, -2.5, 3)), "1,-2.5,3");
    EXPECT_EQ(pointIn("1,2")->z, 0.0);
    for (const char* wrong : {"1", "1,", ",1", "1,2,", "1,2,3,4", "1, 2", "a,b", "inf,0"})
        EXPECT_FALSE(pointIn(wrong)) << wrong;
}

RC_GTEST_PROP(SceneTexts, SurviveEscaping, (const std::string& text)) {
    RC_ASSERT(unescaped(escaped(text)) == text);
    RC_ASSERT(escaped(text).find('\n') == std::string::npos);
}

}  // namespace
}  // namespace holdfast
