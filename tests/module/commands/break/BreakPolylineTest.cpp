#include <gtest/gtest.h>

#include "tests/module/commands/break/CutCommand.h"
#include "tests/module/commands/break/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

// Six vertices with identifiers that are no indices, a dependency on each of the five segments.
const std::string kShuffled =
    "polyline p 0,0#31 10,0#7 20,10#22 30,0#5 40,10#40 50,0#13; "
    "fixed p[1]; fixed p[2]; fixed p[3]; fixed p[4]; fixed p[5]";

/// A polyline with its implied corners, broken between two parameters.
class BrokenPolyline : public CheckedScene {
public:
    BrokenPolyline(double startParam, double endParam, const std::string& text = kShuffled) : CheckedScene(text) {
        builder().addCornerCoincidences(group(), id("p"));
        process().journal().clear();
        m_deleted = breakPolyline(*this, "p", m_centre, startParam, endParam);
    }
    ConstraintBreakCmdCenter& centre() { return m_centre; }
    int deleted() const { return m_deleted; }
    std::string first() const { return vertices("p"); }
    std::string second() const { return vertices("s"); }

private:
    ConstraintBreakCmdCenter m_centre;
    int m_deleted = 0;
};

TEST(BreakPolylineAtTwoVertices, MarksWhatLiesBetweenAndMovesWhatLiesBehind) {
    BrokenPolyline cut(1.0, 3.0);
    EXPECT_EQ(cut.first(), "0,0#31 10,0#7");
    EXPECT_EQ(cut.second(), "30,0#5 40,10#40 50,0#13");
    EXPECT_EQ(cut.dependencies(),
              "p[1]: p[1] 31-7; p[2]: p[?] 7-22 status 5; p[3]: p[?] 22-5 status 5; p[4]: s[1] 5-40; p[5]: s[2] 40-13");
    EXPECT_EQ(cut.deleted(), 0);
    EXPECT_EQ(LvTestAccess::breakCase(cut.centre()), 1);
}

TEST(BreakPolylineAtTwoVertices, KeepsNoRecordOfTheSegmentsBetween) {
    BrokenPolyline cut(1.0, 3.0);
    ASSERT_EQ(LvTestAccess::staying(cut.centre()).length(), 1);
    EXPECT_EQ(LvTestAccess::staying(cut.centre())[0].startIndex, 0);
    ASSERT_EQ(LvTestAccess::moved(cut.centre()).length(), 2);
    EXPECT_EQ(LvTestAccess::moved(cut.centre())[0].startIndex, 3);
    EXPECT_EQ(LvTestAccess::moved(cut.centre())[0].endIndex, 4);
    EXPECT_EQ(LvTestAccess::moved(cut.centre())[0].startVertexId, 5);
    EXPECT_EQ(LvTestAccess::moved(cut.centre())[0].endVertexId, 40);
    EXPECT_EQ(LvTestAccess::moved(cut.centre())[0].dependency, cut.dependency("p[4]"));
}

TEST(BreakPolylineAtOneVertex, MarksTheSegmentBehindItAndWritesNoIdentifiersForWantOfRoom) {
    BrokenPolyline cut(2.0, 2.0);
    EXPECT_EQ(cut.first(), "0,0#31 10,0#7 20,10#22");
    EXPECT_EQ(cut.second(), "20,10 30,0 40,10 50,0");
    EXPECT_EQ(cut.dependencies(),
              "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[?] 22-5 status 5; p[4]: s[?] 5-40; p[5]: s[?] 40-13");
}

TEST(BreakPolylineFromAVertexIntoItsSegment, MovesTheCutSegmentToo) {
    BrokenPolyline cut(1.0, 1.5);
    EXPECT_EQ(cut.first(), "0,0#31 10,0#7");
    EXPECT_EQ(cut.second(), "15,5#7 20,10#22 30,0#5 40,10#40 50,0#13");
    EXPECT_EQ(cut.dependencies(),
              "p[1]: p[1] 31-7; p[2]: s[1] 7-22; p[3]: s[2] 22-5; p[4]: s[3] 5-40; p[5]: s[4] 40-13");
    EXPECT_EQ(LvTestAccess::breakCase(cut.centre()), 2);
    EXPECT_EQ(LvTestAccess::lastVertexId(cut.centre()), 7);
}

TEST(BreakPolylineFromAVertexIntoAnotherSegment, LeavesTheNewFirstVertexItsOwnIdentifier) {
    BrokenPolyline cut(1.0, 2.5);
    EXPECT_EQ(cut.first(), "0,0#31 10,0#7");
    EXPECT_EQ(cut.second(), "25,5 30,0#5 40,10#40 50,0#13");
    EXPECT_EQ(cut.dependencies(),
              "p[1]: p[1] 31-7; p[2]: p[?] 7-22 status 5; p[3]: s[?] 22-5; p[4]: s[2] 5-40; p[5]: s[3] 40-13");
    EXPECT_EQ(LvTestAccess::breakCase(cut.centre()), 3);
}

TEST(BreakPolylineFromInsideToAVertex, KeepsTheFirstPartOfTheCutSegment) {
    BrokenPolyline cut(1.5, 3.0);
    EXPECT_EQ(cut.first(), "0,0#31 10,0#7 15,5#22");
    EXPECT_EQ(cut.second(), "30,0#5 40,10#40 50,0#13");
    EXPECT_EQ(cut.dependencies(),
              "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[?] 22-5 status 5; p[4]: s[1] 5-40; p[5]: s[2] 40-13");
    EXPECT_EQ(LvTestAccess::breakCase(cut.centre()), 4);
    EXPECT_EQ(LvTestAccess::lastVertexId(cut.centre()), 22);
}

TEST(BreakPolylineInsideOneSegment, KeepsItsFirstPartAndMovesWhatLiesBehind) {
    BrokenPolyline cut(1.25, 1.75);
    EXPECT_EQ(cut.first(), "0,0#31 10,0#7 12.5,2.5#22");
    EXPECT_EQ(cut.second(), "17.5,7.5 20,10#22 30,0#5 40,10#40 50,0#13");
    EXPECT_EQ(cut.dependencies(),
              "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: s[2] 22-5; p[4]: s[3] 5-40; p[5]: s[4] 40-13");
    EXPECT_EQ(LvTestAccess::breakCase(cut.centre()), 5);
}

TEST(BreakPolylineInsideTwoSegments, KeepsThePartsOnBothSides) {
    BrokenPolyline cut(0.5, 2.5);
    EXPECT_EQ(cut.first(), "0,0#31 5,0#7");
    EXPECT_EQ(cut.second(), "25,5#22 30,0#5 40,10#40 50,0#13");
    EXPECT_EQ(cut.dependencies(),
              "p[1]: p[1] 31-7; p[2]: p[?] 7-22 status 5; p[3]: s[1] 22-5; p[4]: s[2] 5-40; p[5]: s[3] 40-13");
    EXPECT_EQ(LvTestAccess::breakCase(cut.centre()), 6);
}

TEST(BreakPolylineInsideTwoSegments, LosesTheCornersAtBothCuts) {
    BrokenPolyline cut(0.5, 2.5);
    EXPECT_EQ(cut.deleted(), 2);
    EXPECT_EQ(cut.constraints(),
              "fixed p[1]; fixed p[?]; fixed s[1]; fixed s[2]; fixed s[3]; implied coincident s[1].end s[2].start; "
              "implied coincident s[2].end s[3].start");
}

TEST(BreakPolylineInsideTwoSegments, GivesEachPieceItsSegmentsOfAStaircase) {
    BrokenPolyline cut(0.5, 2.5,
                       "polyline p 0,0#11 10,0#12 10,10#13 20,10#14 20,20#15; "
                       "fixed p[1]; fixed p[2]; fixed p[3]; fixed p[4]");
    EXPECT_EQ(cut.first(), "0,0#11 5,0#12");
    EXPECT_EQ(cut.second(), "15,10#13 20,10#14 20,20#15");
    EXPECT_EQ(cut.dependencies(), "p[1]: p[1] 11-12; p[2]: p[?] 12-13 status 5; p[3]: s[1] 13-14; p[4]: s[2] 14-15");
}

TEST(BreakPolylineUpToItsEnd, HasNoSecondPiece) {
    BrokenPolyline cut(1.5, 5.0);
    EXPECT_EQ(cut.first(), "0,0#31 10,0#7 15,5#22");
    EXPECT_EQ(cut.entity("s"), nullptr);
    EXPECT_EQ(cut.dependencies(),
              "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[?] 22-5 status 5; p[4]: p[?] 5-40 status 5; "
              "p[5]: p[?] 40-13 status 5");
}

TEST(BreakPolylineFromItsStart, HandsThePolylineItselfOverAsTheSecondPiece) {
    const std::string text =
        "polyline p 0,0#31 10,0#7 20,10#22 30,0#5 40,10#40; fixed p[2]; fixed p[3].start; fixed p[3]; fixed p[4]";
    BrokenPolyline toVertex(0.0, 1.0, text);
    EXPECT_EQ(toVertex.first(), "10,0#7 20,10#22 30,0#5 40,10#40");
    EXPECT_EQ(toVertex.dependencies(), "p[2]: p[1] 7-22; p[3]: p[2] 22-5; p[4]: p[3] 5-40");
    BrokenPolyline intoFirst(0.0, 0.5, text);
    EXPECT_EQ(intoFirst.first(), "5,0#31 10,0#7 20,10#22 30,0#5 40,10#40");
    EXPECT_EQ(intoFirst.dependencies(), "p[2]: p[2] 7-22; p[3]: p[3] 22-5; p[4]: p[4] 5-40");
}

TEST(BreakPolyline, MovesTheSegmentsOfArcsAsWell) {
    BrokenPolyline cut(0.5, 2.5, "polyline p 0,0#11^1 10,0#12 20,0#13^-1 30,0#14; fixed p[1]; fixed p[2]; fixed p[3]");
    EXPECT_EQ(cut.dependencies(), "p[1]: p[1] 11-12; p[2]: p[?] 12-13 status 5; p[3]: s[1] 13-14");
    EXPECT_EQ(cut.deleted(), 2);
}

TEST(BreakPolyline, LosesConstraintsAtThePointsThatWereCutAway) {
    BrokenPolyline cut(0.5, 2.5,
                       "polyline p 0,0#11 10,0#12 20,0#13 30,0#14; line b 0,0 0,1; parallel p[1] b; "
                       "coincident p[1].start b.start; equal p[1] b; equal p[3] b; fixed p[3].end; parallel p[3] b");
    EXPECT_EQ(cut.constraints(), "parallel p[1] b; coincident p[1].start b.start; fixed s[1].end; parallel s[1] b");
}

TEST(BreakPolyline, RecordsNoSegmentOnWhichNothingStays) {
    BrokenPolyline cut(
        0.5, 1.5, "polyline p 0,0#11 10,0#12 20,0#13 30,0#14 40,0#15; fixed p[1].end; equal p[1] p[2]; fixed p[4]");
    EXPECT_EQ(cut.dependencies(), "p[1]: p[?] 11-12; p[2]: p[?] 12-13; p[4]: s[3] 14-15");
    EXPECT_EQ(cut.constraints(), "fixed s[3]");
    EXPECT_EQ(LvTestAccess::staying(cut.centre()).length(), 0);
    EXPECT_EQ(LvTestAccess::moved(cut.centre()).length(), 1);
}

TEST(BreakPolylineSegments, ComparesTheLastSegmentWhicheverTheSecondPointCut) {
    // The third segment is slanted, the last one level: as if the cut had gone through that, its direction saves the
    // constraint between the ends.
    BrokenPolyline cut(0.5, 2.5, "polyline p 0,0#11 10,0#12 20,0#13 30,10#14 40,10#15; horizontal p[3].start p[3].end");
    EXPECT_EQ(cut.constraints(), "horizontal s[1].start s[1].end");
}

TEST(BreakPolylineIdentifiers, CountsDownFromTheLastForAPieceOfTwoVertices) {
    BrokenPolyline cut(4.0, 4.5);
    EXPECT_EQ(cut.first(), "0,0#31 10,0#7 20,10#22 30,0#5 40,10#40");
    EXPECT_EQ(cut.second(), "45,5#12 50,0#13");
    EXPECT_EQ(LvTestAccess::lastVertexId(cut.centre()), 40);
}

TEST(BreakPolylineIdentifiers, CountDownPastTheLeastNumber) {
    BrokenPolyline cut(1.0, 1.5, "polyline p 0,0#31 10,0#7 20,10#-2147483648; fixed p[2]");
    EXPECT_EQ(cut.second(), "15,5#2147483647 20,10#-2147483648");
}

TEST(BreakPolylineIdentifiers, AreNotWrittenForAPieceThatNothingMovesTo) {
    BrokenPolyline cut(4.25, 4.75);
    EXPECT_EQ(cut.second(), "47.5,2.5 50,0");
    EXPECT_EQ(LvTestAccess::moved(cut.centre()).length(), 0);
}

TEST(BreakPolylineJoint, LosesTheFirstCoincidenceThatWasNotCollectedWhenThePiecesShareAnIdentifier) {
    // The corner at the cut is collected already, so the one behind the moved segment goes in its place.
    BrokenPolyline cut(1.5, 2.0);
    EXPECT_EQ(cut.second(), "20,10#22 30,0#5 40,10#40 50,0#13");
    EXPECT_EQ(cut.deleted(), 1);
    EXPECT_EQ(cut.constraints(),
              "fixed p[1]; fixed p[2]; fixed s[1]; fixed s[2]; fixed s[3]; implied coincident p[1].end p[2].start; "
              "implied coincident s[2].end s[3].start");
    EXPECT_EQ(cut.process().journal().count("deleteConstraint"), 2);
}

}  // namespace
}  // namespace holdfast::module
