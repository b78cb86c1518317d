// What a designer expects of an edit besides its geometry, drawing by drawing.

#include <gtest/gtest.h>

#include <span>

#include "tests/editing/ties/TieScenes.h"

namespace holdfast::editing {
namespace {

/// A base with two posts, 10 wide.
#define FRAME                                                                              \
    "draw line 0,0 10,0 as base; draw line 0,0 0,5 as left; draw line 10,0 10,5 as right;" \
    "constrain coincident base.start left.start as c0; constrain coincident base.end right.start as c1;"

struct Row {
    const char* what;
    const char* drawing;
    const char* edit;
    const char* outcome;
};

void expectRows(std::span<const Row> rows) {
    for (const Row& row : rows) {
        const Document document = drawnBy(row.drawing);
        EXPECT_EQ(outcomeOf(document, row.edit), row.outcome) << row.what;
        EXPECT_EQ(faultOfTies(document, row.edit), "") << row.what;
    }
}

TEST(TieTable, OfTrims) {
    const Row rows[] = {
        {"a new end lies on its cutter", FRAME "draw line 7,-2 7,2 as cut", "trim base at 9,0 by cut",
         "kept c0; added point_on_curve base.end cut; deleted c1"},
        {"a new end meets an end of its cutter", FRAME "draw line 7,0 7,2 as cut", "trim base at 9,0 by cut",
         "kept c0; added coincident base.end cut.start; deleted c1"},
        {"a new end meets a point that lay on the curve: both are one",
         FRAME
         "draw line 7,0 7,2 as cut; constrain point_on_curve cut.start base as c2; constrain horizontal base as c3",
         "trim base at 9,0 by cut", "kept c0 c3; re-pointed c2 coincident cut.start base.end; deleted c1"},
        {"what is left behind the part is tied to its own cutter",
         FRAME "draw line 7,-2 7,2 as cut; draw line 3,-2 3,2 as cut2", "trim base at 5,0 by cut cut2",
         "kept c0; re-pointed c1 coincident base_2.end right.start; added point_on_curve base.end cut2, "
         "point_on_curve base_2.start cut, collinear base base_2"},
        {"a start that is cut off is tied, too", FRAME "draw line 3,-2 3,2 as cut", "trim base at 1,0 by cut",
         "kept c1; added point_on_curve base.start cut; deleted c0"},
        {"a circle is a cutter", "draw line 0,0 10,0 as g1; draw circle 10,0 radius 3 as hole",
         "trim g1 at 9,0 by hole", "added point_on_curve g1.end hole"},
        {"an arc is a cutter", "draw line 0,0 10,0 as g1; draw arc centre 10,0 from 10,3 to 10,-3 as edge",
         "trim g1 at 9,0 by edge", "added point_on_curve g1.end edge"},
        {"a segment of a polyline is a cutter", "draw line 0,0 10,0 as g1; draw polyline 0,5 7,5 7,-5 as p",
         "trim g1 at 9,0 by p", "added point_on_curve g1.end p.segment:1"},
        {"a vertex of a polyline is a cutter", "draw line 0,0 10,0 as g1; draw polyline 7,5 7,0 9,-5 as p",
         "trim g1 at 9,0 by p", "added coincident g1.end p.segment:1.start"},
        {"a polyline that is trimmed ends on its cutter",
         "draw polyline 0,0 10,0 10,10 as p; draw line 8,5 12,5 as cut", "trim p at 10,9 by cut",
         "added point_on_curve p.segment:1.end cut"},
        {"a construction line is a cutter", "draw line 0,0 10,0 as g1; draw xline 7,0 through 7,1 as x",
         "trim g1 at 9,0 by x", "added point_on_curve g1.end x"},
        {"a ray is trimmed to its cutter", "draw ray 0,0 through 1,0 as g1; draw line 7,-2 7,2 as cut",
         "trim g1 at 9,0 by cut", "added point_on_curve g1.end cut"},
        {"a spline that is trimmed is tied where that is exact",
         "draw line 0,0 0,10 as g1; draw spline -5,5 -2,5 2,5 5,5 as s", "trim g1 at 0,9 by s",
         "added point_on_curve g1.end s"},
        {"both ends of an arc that is left of a circle lie on the cutters",
         "draw circle 0,0 radius 5 as g1; draw line 3,-9 3,9 as cut", "trim g1 at 5,0 by cut",
         "added point_on_curve g1.start cut, point_on_curve g1.end cut"},
        {"no second tie on two cutters through one point",
         "draw line 0,0 10,0 as g1; draw line 7,-2 7,2 as cut; draw line 5,-2 9,2 as cut2",
         "trim g1 at 9,0 by cut cut2", "added point_on_curve g1.end cut"},
        {"no tie that follows already",
         "draw line 0,0 10,0 as g1; draw line 7,-2 7,2 as cut; constrain fixed g1.start as c0; constrain horizontal g1 "
         "as "
         "c1; constrain fixed cut as c2; draw point 7,0 as p; constrain fixed p as c3",
         "trim g1 at 9,0 by cut", "kept c0 c1 c2 c3; added point_on_curve g1.end cut"},
    };
    expectRows(rows);
}

TEST(TieTable, OfWhatStoodInOnePointWithAnEndThatIsCutOff) {
#define HUB                                                                           \
    "draw line 0,0 10,0 as g1; draw line 10,0 10,5 as g2; draw line 10,0 15,0 as g3;" \
    "draw line 7,-2 7,2 as cut; constrain coincident g1.end g2.start as c1;"          \
    "constrain coincident g1.end g3.start as c2;"
    const Row rows[] = {
        {"what was in one point through it stays in one point", HUB, "trim g1 at 9,0 by cut",
         "re-pointed c2 coincident g2.start g3.start; added point_on_curve g1.end cut; deleted c1"},
        {"a dimension to the corner is taken from who stands there",
         HUB "draw point 0,9 as p; constrain distance_x p g1.end as c3", "trim g1 at 9,0 by cut",
         "re-pointed c2 coincident g2.start g3.start, c3 distance_x p g2.start; added point_on_curve g1.end cut; "
         "deleted c1"},
        {"a length to the corner is the distance of the corners",
         FRAME "draw line 7,-2 7,2 as cut; constrain distance base as c2", "trim base at 9,0 by cut",
         "kept c0; re-pointed c2 distance base.start right.start; added point_on_curve base.end cut; deleted c1"},
        {"a corner that was fixed is fixed", FRAME "draw line 7,-2 7,2 as cut; constrain fixed base.end as c2",
         "trim base at 9,0 by cut",
         "kept c0; re-pointed c2 fixed right.start; added point_on_curve base.end cut; deleted c1"},
        {"corners that were symmetric",
         FRAME "draw line 7,-2 7,2 as cut; draw line 5,-9 5,9 as axis; constrain symmetric base.start base.end axis as "
               "c2",
         "trim base at 9,0 by cut",
         "kept c0; re-pointed c2 symmetric base.start right.start axis; added point_on_curve base.end cut; deleted c1"},
        {"who is left alone at a corner is tied to nothing", FRAME "draw line 7,-2 7,2 as cut",
         "trim base at 9,0 by cut", "kept c0; added point_on_curve base.end cut; deleted c1"},
        {"an end lies on the line that was led on through it", FRAME "draw line 15,-2 15,2 as wall",
         "extend base end to wall",
         "kept c0; re-pointed c1 point_on_curve right.start base; added point_on_curve base.end wall"},
        {"a smooth end touches the line that was led on",
         "draw line 0,0 10,0 as g1; draw arc centre 10,5 from 10,0 to 15,5 as g2; constrain tangent g1.end g2.start as "
         "c1; draw line 20,-2 20,2 as wall",
         "extend g1 end to wall", "re-pointed c1 tangent g2.start g1; added point_on_curve g1.end wall"},
        {"an end on an arc that was led on",
         "draw arc centre 0,0 from 5,0 to 0,5 as g1; draw line 0,5 0,9 as g2; constrain coincident g1.end g2.start as "
         "c1; draw line -9,0 -1,0 as wall",
         "extend g1 end to wall", "re-pointed c1 point_on_curve g2.start g1; added point_on_curve g1.end wall"},
        {"what a fillet leaves behind at its corner stays together",
         "draw line 0,0 10,0 as g1; draw line 10,0 10,10 as g2; draw line 10,0 15,0 as g3; draw line 10,0 15,-5 as g4;"
         "constrain coincident g1.end g2.start as c0; constrain coincident g1.end g3.start as c1; constrain coincident "
         "g2.start g4.start as c2",
         "fillet g1 g2 radius 2",
         "re-pointed c0 coincident g3.start g4.start; added coincident g1.end g1_2.start, tangent g1.end g1_2.start, "
         "coincident g2.start g1_2.end, tangent g2.start g1_2.end; deleted c1 c2"},
    };
    expectRows(rows);
}

TEST(TieTable, OfWhatWasAsLongAsALineThatIsCut) {
#define RUNGS                                                                       \
    "draw line 0,0 10,0 as g1; draw line 0,5 10,5 as g2; draw line 0,8 10,8 as g3;" \
    "draw line 7,-2 7,2 as cut; constrain equal g1 g2 as c1; constrain equal g1 g3 as c2;"
    const Row rows[] = {
        {"others stay as long as each other", RUNGS, "trim g1 at 9,0 by cut",
         "re-pointed c2 equal g2 g3; added point_on_curve g1.end cut; deleted c1"},
        {"the length that all of them had", RUNGS "constrain distance g1 as c3", "trim g1 at 9,0 by cut",
         "re-pointed c2 equal g2 g3, c3 distance g2; added point_on_curve g1.end cut; deleted c1"},
        {"a single one is as long as nothing",
         "draw line 0,0 10,0 as g1; draw line 0,5 10,5 as g2; draw line 7,-2 7,2 as cut; constrain equal g1 g2 as c1",
         "trim g1 at 9,0 by cut", "added point_on_curve g1.end cut; deleted c1"},
    };
    expectRows(rows);
}

TEST(TieTable, OfExtensions) {
    const Row rows[] = {
        {"a new end lies on its boundary", "draw line 0,0 5,0 as g1; draw line 9,-2 9,2 as wall",
         "extend g1 end to wall", "added point_on_curve g1.end wall"},
        {"a new end meets the end of its boundary", "draw line 0,0 5,0 as g1; draw line 9,0 9,2 as wall",
         "extend g1 end to wall", "added coincident g1.end wall.start"},
        {"a start is extended", "draw line 5,0 9,0 as g1; draw line 0,-2 0,2 as wall", "extend g1 start to wall",
         "added point_on_curve g1.start wall"},
        {"an arc ends on its boundary", "draw arc centre 0,0 from 5,0 to 0,5 as g1; draw line -9,0 -1,0 as wall",
         "extend g1 end to wall", "added point_on_curve g1.end wall"},
        {"a boundary that is round", "draw line 0,0 5,0 as g1; draw circle 10,0 radius 2 as hole",
         "extend g1 end to hole", "added point_on_curve g1.end hole"},
        {"a polyline ends on its boundary", "draw polyline 0,0 5,0 5,5 as p; draw line 0,9 9,9 as wall",
         "extend p end to wall", "added point_on_curve p.segment:1.end wall"},
        {"what stays true stays",
         "draw line 0,0 5,0 as g1; draw line 9,-2 9,2 as wall; draw point 2,0 as p; constrain point_on_curve p g1 as "
         "c1; "
         "constrain horizontal g1.start g1.end as c2",
         "extend g1 end to wall", "kept c1 c2; added point_on_curve g1.end wall"},
        {"a length that was given goes",
         "draw line 0,0 5,0 as g1; draw line 9,-2 9,2 as wall; constrain distance g1 as c1", "extend g1 end to wall",
         "added point_on_curve g1.end wall; deleted c1"},
    };
    expectRows(rows);
}

TEST(TieTable, OfBreaks) {
    const Row rows[] = {
        {"pieces that touch meet and stay in line", "draw line 0,0 10,0 as g1", "break g1 at 4,0",
         "added coincident g1.end g1_2.start, parallel g1 g1_2"},
        {"pieces with a gap stay in line", "draw line 0,0 10,0 as g1", "break g1 at 4,0 to 6,0",
         "added collinear g1 g1_2"},
        {"the far end is on the second piece", FRAME, "break base at 4,0",
         "kept c0; re-pointed c1 coincident base_2.end right.start; added coincident base.end base_2.start, parallel "
         "base "
         "base_2"},
        {"a cut up to the end leaves one piece", FRAME, "break base at 4,0 to 10,0", "kept c0; deleted c1"},
        {"a level line stays level", FRAME "constrain horizontal base as c2", "break base at 4,0 to 6,0",
         "kept c0 c2; re-pointed c1 coincident base_2.end right.start; added collinear base base_2"},
        {"a length is measured between the outer ends", "draw line 0,0 10,0 as g1; constrain distance g1 as c1",
         "break g1 at 4,0 to 6,0", "re-pointed c1 distance g1.start g1_2.end; added collinear g1 g1_2"},
        {"a distance of both ends, too", "draw line 0,0 10,0 as g1; constrain distance_x g1.start g1.end as c1",
         "break g1 at 4,0",
         "re-pointed c1 distance_x g1.start g1_2.end; added coincident g1.end g1_2.start, parallel g1 "
         "g1_2"},
        {"a point on the second piece is on it",
         "draw line 0,0 10,0 as g1; draw point 8,0 as p; constrain point_on_curve "
         "p g1 as c1",
         "break g1 at 4,0 to 6,0", "re-pointed c1 point_on_curve p g1_2; added collinear g1 g1_2"},
        {"a point on the first piece stays",
         "draw line 0,0 10,0 as g1; draw point 2,0 as p; constrain point_on_curve p g1 "
         "as c1",
         "break g1 at 4,0 to 6,0", "kept c1; added collinear g1 g1_2"},
        {"a circle that touches the second piece touches it",
         "draw line 0,0 10,0 as g1; draw circle 8,2 radius 2 as hole; constrain tangent g1 hole as c1",
         "break g1 at 4,0 to 6,0", "re-pointed c1 tangent g1_2 hole; added collinear g1 g1_2"},
        {"an arc with a gap stays on one circle", "draw arc centre 0,0 from 5,0 to -5,0 as g1",
         "break g1 at 3,4 to -3,4", "added concentric g1.centre g1_2.centre, equal g1 g1_2"},
        {"an arc without a gap", "draw arc centre 0,0 from 5,0 to -5,0 as g1", "break g1 at 3,4",
         "added coincident g1.end g1_2.start, concentric g1.centre g1_2.centre"},
        {"the far end of an arc",
         "draw arc centre 0,0 from 5,0 to -5,0 as g1; draw line -5,0 -9,0 as g2; constrain coincident g1.end g2.start "
         "as "
         "c1; constrain radius g1 as c2",
         "break g1 at 3,4 to -3,4",
         "kept c2; re-pointed c1 coincident g1_2.end g2.start; added concentric g1.centre g1_2.centre, equal g1 g1_2"},
        {"a tangency at the far end",
         "draw arc centre 0,0 from 5,0 to -5,0 as g1; draw line -5,0 -5,-9 as g2; constrain tangent g1.end g2.start as "
         "c1",
         "break g1 at 3,4",
         "re-pointed c1 tangent g1_2.end g2.start; added coincident g1.end g1_2.start, concentric "
         "g1.centre g1_2.centre"},
        {"an ellipse's arc stays on one ellipse", "draw ellipse 0,0 major 10,0 ratio 0.5 from 0 to 180 as g1",
         "break g1 at 0,5", "added coincident g1.end g1_2.start, concentric g1.centre g1_2.centre, equal g1 g1_2"},
        {"a spline's pieces run smoothly into each other", "draw spline 0,0 5,5 10,-5 15,0 as g1", "break g1 at 7.5,0",
         "added coincident g1.end g1_2.start, tangent g1.end g1_2.start"},
        {"a ray's pieces stay in line", "draw ray 0,0 through 1,0 as g1", "break g1 at 4,0 to 6,0",
         "added collinear g1 g1_2"},
        {"a construction line's pieces stay in line", "draw xline 0,0 through 1,0 as g1", "break g1 at 4,0 to 6,0",
         "added collinear g1 g1_2"},
        {"a polyline's segment that was cut stays in line", "draw polyline 0,0 10,0 10,10 as p",
         "break p at 4,0 to 6,0", "added collinear p.segment:0 p_2.segment:0"},
        {"a polyline that is cut at a vertex", "draw polyline 0,0 10,0 10,10 as p", "break p at 10,0",
         "added coincident p.segment:0.end p_2.segment:0.start"},
        {"what holds on the segments goes with them",
         "draw polyline 0,0 10,0 10,10 20,10 as p; constrain horizontal p.segment:0 as c0; constrain vertical "
         "p.segment:1 "
         "as c1; constrain horizontal p.segment:2 as c2",
         "break p at 10,4 to 10,6",
         "kept c0 c1; re-pointed c2 horizontal p_2.segment:1; added collinear p.segment:1 p_2.segment:0"},
        {"a ring that is opened keeps its ends together", "draw polyline 0,0 10,0 10,10 0,10 closed as p",
         "break p at 10,0 to 10,0", "added coincident p.segment:3.end p.segment:0.start"},
        {"symmetric ends stay symmetric",
         "draw line -5,0 5,0 as g1; draw line 0,-9 0,9 as axis; constrain symmetric g1.start g1.end axis as c1",
         "break g1 at -2,0 to 2,0", "re-pointed c1 symmetric g1.start g1_2.end axis; added collinear g1 g1_2"},
        {"a middle goes", "draw line 0,0 10,0 as g1; draw point 5,0 as p; constrain midpoint p g1 as c1",
         "break g1 at 3,0 to 4,0", "added collinear g1 g1_2; deleted c1"},
    };
    expectRows(rows);
}

TEST(TieTable, OfCirclesThatBecomeArcs) {
#define HOLE "draw circle 0,0 radius 5 as g1; draw circle 20,0 radius 5 as g2;"
    const Row rows[] = {
        {"its centre is a point", HOLE "draw point 0,0 as p; constrain coincident p g1.centre as c1",
         "break g1 at 5,0 to 0,5", "kept c1"},
        {"its radius", HOLE "constrain radius g1 as c1", "break g1 at 5,0 to 0,5", "kept c1"},
        {"its diameter", HOLE "constrain diameter g1 as c1", "break g1 at 5,0 to 0,5", "kept c1"},
        {"an equal one", HOLE "constrain equal g1 g2 as c1", "break g1 at 5,0 to 0,5", "kept c1"},
        {"a line that touches what is left", HOLE "draw line -9,-5 9,-5 as g3; constrain tangent g1 g3 as c1",
         "break g1 at 5,0 to 0,5", "kept c1"},
        {"a line that touches what is gone", HOLE "draw line -9,5 9,5 as g3; constrain tangent g1 g3 as c1",
         "break g1 at 5,0 to -5,0", "deleted c1"},
        {"a circle that touches what is left",
         "draw circle 0,0 radius 5 as g1; draw circle 0,-8 radius 3 as g2; constrain "
         "tangent g1 g2 as c1",
         "break g1 at 5,0 to 0,5", "kept c1"},
        {"a point on what is left", HOLE "draw point -3,-4 as p; constrain point_on_curve p g1 as c1",
         "break g1 at 5,0 to 0,5", "kept c1"},
        {"a point on what is gone", HOLE "draw point 3,4 as p; constrain point_on_curve p g1 as c1",
         "break g1 at 5,0 to 0,5", "deleted c1"},
        {"an ellipse's centre",
         "draw ellipse 0,0 major 10,0 ratio 0.5 as g1; draw point 0,0 as p; constrain coincident p "
         "g1.centre as c1",
         "break g1 at 10,0 to 0,5", "kept c1"},
        {"the distance of its centre", HOLE "constrain distance g1.centre g2.centre as c1", "break g1 at 5,0 to 0,5",
         "kept c1"},
    };
    expectRows(rows);
}

TEST(TieTable, OfFillets) {
#define CORNER "draw line 0,0 10,0 as g1; draw line 10,0 10,10 as g2; constrain coincident g1.end g2.start as c0;"
    const Row rows[] = {
        {"an arc begins at both ends, smoothly", CORNER, "fillet g1 g2 radius 2",
         "added coincident g1.end g1_2.start, tangent g1.end g1_2.start, coincident g2.start g1_2.end, tangent "
         "g2.start "
         "g1_2.end; deleted c0"},
        {"directions stay", CORNER "constrain horizontal g1 as c1; constrain vertical g2 as c2",
         "fillet g1 g2 radius 2",
         "kept c1 c2; added coincident g1.end g1_2.start, tangent g1.end g1_2.start, coincident g2.start g1_2.end, "
         "tangent "
         "g2.start g1_2.end; deleted c0"},
        {"a length to the corner goes", CORNER "constrain distance g1 as c1", "fillet g1 g2 radius 2",
         "added coincident g1.end g1_2.start, tangent g1.end g1_2.start, coincident g2.start g1_2.end, tangent "
         "g2.start "
         "g1_2.end; deleted c0 c1"},
        {"a corner that is kept carries its length", CORNER "constrain distance g1 as c1",
         "fillet g1 g2 radius 2 keep corner",
         "re-pointed c1 distance g1.start point1; added point_on_curve point1 g1, point_on_curve point1 g2, coincident "
         "g1.end g1_2.start, tangent g1.end g1_2.start, coincident g2.start g1_2.end, tangent g2.start g1_2.end; "
         "deleted c0"},
        {"a sharp corner stays together", "draw line 0,0 10,0 as g1; draw line 12,2 12,10 as g2",
         "fillet g1 g2 radius 0", "added coincident g1.end g2.start"},
        {"a sharp corner with a circle that stays whole", "draw circle 0,0 radius 5 as g1; draw line 20,0 8,0 as g2",
         "fillet g1 g2 radius 0", "added point_on_curve g2.end g1"},
        {"a sharp corner to which only one is led on", "draw line 0,0 10,0 as g1; draw line 10,5 10,9 as g2",
         "fillet g1 g2 radius 0", "added coincident g2.start g1.end"},
        {"a sharp corner of curves that met already stays as it is", CORNER, "fillet g1 g2 radius 0", "kept c0"},
        {"a fillet on a circle that stays whole", "draw circle 0,0 radius 5 as g1; draw line -20,-6 20,-6 as g2",
         "fillet g1 g2 radius 2 at 4,-3 10,-6",
         "added point_on_curve g1_2.start g1, tangent g1_2.start g1, coincident g2.start g1_2.end, tangent g2.start "
         "g1_2.end"},
        {"a corner of a polyline", "draw polyline 0,0 10,0 10,10 as p", "fillet p corner 1 radius 2",
         "added tangent p.segment:0.end p.segment:1.start, tangent p.segment:1.end p.segment:2.start"},
        {"a corner of a polyline that is kept",
         "draw polyline 0,0 10,0 10,10 as p; constrain distance p.segment:0 as c1; constrain horizontal p.segment:0 as "
         "c2",
         "fillet p corner 1 radius 2 keep corner",
         "kept c2; re-pointed c1 distance p.segment:0.start point1; added point_on_curve point1 p.segment:0, "
         "point_on_curve point1 p.segment:2, tangent p.segment:0.end p.segment:1.start, tangent p.segment:1.end "
         "p.segment:2.start"},
        {"a polyline and a line", "draw polyline 0,0 0,10 10,10 as p; draw line 20,0 20,20 as g1",
         "fillet p g1 radius 2",
         "added coincident g1.end g1_2.start, tangent g1.end g1_2.start, coincident p.segment:1.end g1_2.end, tangent "
         "p.segment:1.end g1_2.end"},
        {"two polylines", "draw polyline 0,0 0,10 10,10 as p; draw polyline 20,0 20,20 as q", "fillet p q radius 2",
         "added tangent p.segment:1.end p.segment:2.start, tangent p.segment:2.end p.segment:3.start"},
        {"a ray that becomes a line keeps what it had",
         "draw ray 0,0 through 1,0 as g1; draw line 10,0 10,10 as g2; draw "
         "point 0,0 as p; constrain coincident p g1.start as c1",
         "fillet g1 g2 radius 2",
         "re-pointed c1 coincident p g1_2.start; added coincident g1_2.end g1_2_2.start, tangent g1_2.end "
         "g1_2_2.start, coincident g2.start g1_2_2.end, tangent g2.start g1_2_2.end"},
    };
    expectRows(rows);
}

TEST(TieTable, OfMirrors) {
    const Row rows[] = {
        {"a line about a line", "draw line 2,0 5,5 as g1; draw line 0,-9 0,9 as axis", "mirror g1 about axis keep",
         "added symmetric g1.start g1_2.start axis, symmetric g1.end g1_2.end axis"},
        {"a circle about a line", "draw circle 4,0 radius 1 as g1; draw line 0,-9 0,9 as axis",
         "mirror g1 about axis keep", "added symmetric g1.centre g1_2.centre axis, equal g1 g1_2"},
        {"an arc about a line", "draw arc centre 4,0 from 6,0 to 4,2 as g1; draw line 0,-9 0,9 as axis",
         "mirror g1 about axis keep",
         "added symmetric g1.start g1_2.end axis, symmetric g1.end g1_2.start axis, equal g1 g1_2"},
        {"what holds among the originals follows",
         "draw line 2,0 5,0 as g1; draw line 5,0 5,4 as g2; constrain coincident g1.end g2.start as c0; constrain "
         "horizontal g1 as c1; constrain distance g2 as c2; draw line 0,-9 0,9 as axis; constrain vertical axis as c3",
         "mirror g1 g2 about axis keep",
         "kept c0 c1 c2 c3; added symmetric g1.start g1_2.start axis, symmetric g1.end g1_2.end axis, symmetric "
         "g2.start g2_2.start axis, symmetric g2.end g2_2.end axis"},
        {"through points as before", "draw line 2,0 5,0 as g1; constrain horizontal g1 as c1",
         "mirror g1 about 0,0 0,1 keep", "kept c1; added horizontal g1_2"},
        {"a polyline about a line", "draw polyline 2,0 5,0 5,4 as p; draw line 0,-9 0,9 as axis",
         "mirror p about axis keep",
         "added symmetric p.segment:0.start p_2.segment:0.start axis, symmetric p.segment:1.start p_2.segment:1.start "
         "axis, symmetric p.segment:1.end p_2.segment:1.end axis"},
    };
    expectRows(rows);
}

TEST(TieTable, OfWhatStillHolds) {
    const Row rows[] = {
        {"a dimension of ends that stay", FRAME "constrain distance left.end right.end as c2", "break base at 4,0",
         "kept c0 c2; re-pointed c1 coincident base_2.end right.start; added coincident base.end base_2.start, "
         "parallel base "
         "base_2"},
        {"lengthening tells nothing new", FRAME "constrain horizontal base as c2", "lengthen base end by 3",
         "kept c0 c1 c2"},
        {"joining says nothing twice", FRAME "constrain horizontal base as c2", "join left base right",
         "re-pointed c2 horizontal left_2.segment:1; deleted c0 c1"},
        {"a level pair of an end that slides",
         "draw line 0,0 10,0 as g1; draw point 20,0 as p; constrain horizontal g1.end "
         "p as c1; draw line 7,-2 7,2 as cut",
         "trim g1 at 9,0 by cut", "kept c1; added point_on_curve g1.end cut"},
    };
    expectRows(rows);
}

}  // namespace
}  // namespace holdfast::editing
