#include <gtest/gtest.h>

#include <numbers>

#include <YxDbConstraints/YxDbAssocPersSubentId.h>
#include <yxdb/YxDbLine.h>

#include "host/model/state/ProtocolExtensions.h"
#include "tests/module/commands/properties/PropertiesScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kLinesDrawing =
    "xline x 0,5 dir 1,0; ray r 1,1 dir 1,0; line a 0,0 4,0; dependency r; dependency a; dependency x";
constexpr const char* kFixed = "xline x 0,5 dir 1,0; ray r 1,1 dir 1,0; line a 0,0 4,0; fixed r; fixed a; fixed x";

/// The turn about a point that brings x to a direction at this angle.
YxGeMatrix3d turn(double angle, const YxGePoint3d& base) {
    YxGeMatrix3d matrix;
    return matrix.setToRotation(angle, YxGeVector3d::kZAxis, base);
}

TEST(PropertiesLine, MovesItsStartOrItsEnd) {
    Palette palette(kLinesDrawing);
    EXPECT_TRUE(palette.point("a", 1, 1, 2));
    EXPECT_EQ(palette.recorded("a"), "kind 0 delta 1,2,0 values 0 0 identity type 1");
    EXPECT_TRUE(palette.point("a", 2, 1, 2));
    EXPECT_EQ(palette.recorded("a"), "kind 1 delta -3,2,0 values 0 0 identity type 1");
}

TEST(PropertiesLine, HasNoThirdProperty) {
    Palette palette(kLinesDrawing);
    EXPECT_FALSE(palette.point("a", 3, 1, 2));
    EXPECT_FALSE(palette.point("a", 0, 1, 2));
    EXPECT_FALSE(palette.value("a", 3, 1.0));
    EXPECT_EQ(palette.recorded("a"), "nothing");
}

TEST(PropertiesFixedLine, SlidesAlongItself) {
    Palette palette(kFixed);
    EXPECT_TRUE(palette.point("a", 2, 9, 0));
    EXPECT_EQ(palette.recorded("a"), "kind 1 delta 5,0,0 values 0 0 identity type 1");
    EXPECT_TRUE(palette.point("a", 1, -7, 9e-11));
    EXPECT_EQ(palette.record("a").delta.x, -7.0);
}

TEST(PropertiesFixedLine, IsRecordedWithoutAChangeWhenItsEndIsMovedOffIt) {
    Palette palette(kFixed);
    EXPECT_TRUE(palette.point("a", 2, 9, 1));
    EXPECT_EQ(palette.recorded("a"), "kind 1 delta 0,0,0 values 0 0 identity type 1");
    EXPECT_NE(palette.record("a").preEditCopy, nullptr);
}

TEST(PropertiesXline, MovesItsBasePoint) {
    Palette palette(kLinesDrawing);
    EXPECT_TRUE(palette.point("x", 1, 3, 3));
    EXPECT_EQ(palette.recorded("x"), "kind 0 delta 3,-2,0 values 0 0 identity type 4");
}

TEST(PropertiesXline, TurnsAboutItsBaseTowardsTheSecondPoint) {
    Palette palette(kLinesDrawing);
    EXPECT_TRUE(palette.point("x", 2, 0, 9));
    EXPECT_EQ(palette.recorded("x"),
              "kind 1 delta 0,0,0 values 0 0 " + textOf(turn(std::numbers::pi / 2.0, {0, 5, 0})) + " type 4");
}

TEST(PropertiesXline, HasNoThirdProperty) {
    Palette palette(kLinesDrawing);
    EXPECT_FALSE(palette.point("x", 3, 3, 3));
    EXPECT_FALSE(palette.point("r", 3, 3, 3));
}

TEST(PropertiesRay, MovesItsBasePoint) {
    Palette palette(kLinesDrawing);
    EXPECT_TRUE(palette.value("r", 1, 4.0, 1));
    EXPECT_EQ(palette.recorded("r"), "kind 0 delta 0,3,0 values 0 0 identity type 3");
}

TEST(PropertiesRay, HasItsSecondPointOneUnitFromItsBase) {
    Palette palette(kLinesDrawing);
    EXPECT_TRUE(palette.value("r", 2, 2.0, 1));
    EXPECT_EQ(palette.recorded("r"),
              "kind 1 delta 0,0,0 values 0 0 " + textOf(turn(std::numbers::pi / 4.0, {1, 1, 0})) + " type 3");
}

TEST(PropertiesRay, TurnsCounterclockwiseForAPointOnItsRight) {
    Palette palette(kLinesDrawing);
    EXPECT_TRUE(palette.point("r", 2, 1, -3));
    const YxGePoint3d turned = palette.record("r").transform * YxGePoint3d(2, 1, 0);
    EXPECT_NEAR(turned.x, 1.0, 1e-15);
    EXPECT_NEAR(turned.y, 2.0, 1e-15);
}

TEST(PropertiesRay, DoesNotTurnTowardsItsOwnBase) {
    Palette palette(kLinesDrawing);
    EXPECT_TRUE(palette.point("r", 2, 1, 1));
    EXPECT_EQ(palette.recorded("r"), "kind 1 delta 0,0,0 values 0 0 identity type 3");
}

TEST(PropertiesFixedRay, TurnsAndMovesOnlyWithinItsLine) {
    for (const char* name : {"r", "x"}) {
        Palette palette(kFixed);
        const double y = name[0] == 'r' ? 1.0 : 5.0;
        EXPECT_TRUE(palette.point(name, 1, -8, y));
        EXPECT_EQ(palette.record(name).delta.y, 0.0);
        EXPECT_LT(palette.record(name).delta.x, -7.0);
        EXPECT_TRUE(palette.point(name, 1, 3, y + 1));
        EXPECT_EQ(textOf(palette.record(name).delta), "0,0,0");
        EXPECT_TRUE(palette.point(name, 2, 3, y + 1));
        EXPECT_EQ(palette.record(name).transform, YxGeMatrix3d::kIdentity);
        EXPECT_EQ(palette.record(name).changeKind, 1);
    }
}

TEST(PropertiesFix, IsFoundOnLinesRaysAndConstructionLines) {
    Palette palette(kFixed + std::string("; circle c centre 0,0 radius 1; fixed c; line b 9,9 8,8; horizontal b"));
    for (const char* name : {"a", "r", "x"})
        EXPECT_TRUE(palette.centre.hasFixOfLine(palette.scene.id(name))) << name;
    for (const char* name : {"c", "b", "stranger", "outsider"})
        EXPECT_FALSE(palette.centre.hasFixOfLine(palette.scene.id(name))) << name;
}

TEST(PropertiesFix, OfAnEndIsNotOneOfTheLine) {
    Palette palette("line b 9,9 8,8; fixed b.start");
    EXPECT_FALSE(palette.centre.hasFixOfLine(palette.scene.id("b")));
}

TEST(PropertiesFix, IsFoundBehindOtherConstraints) {
    Palette palette("line b 0,0 8,0; line c 0,1 8,1; horizontal b; parallel b c; fixed b; equal b c");
    EXPECT_TRUE(palette.centre.hasFixOfLine(palette.scene.id("b")));
    EXPECT_FALSE(palette.centre.hasFixOfLine(palette.scene.id("c")));
}

/// A platform on which a line has two edges.
class TwoEdges : public YxDbAssocPersSubentIdPE {
public:
    TwoEdges() { setProtocolExtension(YxDbLine::desc(), YxDbAssocPersSubentIdPE::desc(), this); }
    ~TwoEdges() override { setProtocolExtension(YxDbLine::desc(), YxDbAssocPersSubentIdPE::desc(), nullptr); }
    Yxrt::ErrorStatus getAllSubentities(const YxDbEntity*, YxDb::SubentType type,
                                        YxArray<YxDbSubentId>& parts) const override {
        parts.append(YxDbSubentId(type, 1));
        parts.append(YxDbSubentId(type, 2));
        return Yxrt::eOk;
    }
};

TEST(PropertiesFix, IsLookedForOnEveryEdgeBehindTheFirstThatHasIt) {
    Palette palette(kFixed);
    const TwoEdges platform;
    EXPECT_TRUE(palette.centre.hasFixOfLine(palette.scene.id("a")));
    EXPECT_EQ(palette.scene.process().journal().count("getConstrainedGeometry(path)"), 2);
}

TEST(PropertiesFix, IsNotSeenWhenTheHostCannotTell) {
    for (const char* missing : {"getAssocCons2DGroup", "getAllSubentities", "openObject"}) {
        Palette palette(kFixed);
        palette.scene.host().refuse(missing);
        EXPECT_FALSE(palette.centre.hasFixOfLine(palette.scene.id("a"))) << missing;
    }
    Palette palette(kFixed);
    palette.scene.host().answerOther("openObject", palette.scene.pointer("stranger"), &palette.scene.group("near"));
    EXPECT_FALSE(palette.centre.hasFixOfLine(palette.scene.id("a")));
    EXPECT_FALSE(palette.centre.hasFixOfLine(YxDbObjectId()));
}

TEST(PropertiesFix, ThrowsNothingForAnObjectThatIsNoEntity) {
    Palette palette(kFixed);
    palette.scene.addNonEntity("plain");
    EXPECT_FALSE(palette.centre.hasFixOfLine(palette.scene.id("plain")));
}

}  // namespace
}  // namespace holdfast::module
