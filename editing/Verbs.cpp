#include "editing/Verbs.h"

#include <algorithm>

#include "document/text/Suggest.h"
#include "editing/text/ParseCommands.h"

namespace holdfast::editing {

namespace {

// name, usage, example, purpose, reader
constexpr EditVerb kVerbs[] = {
    {"break", "break ENTITY at POINT [to POINT]", "break g3 at 4,0 to 6,0",
     "cuts a curve in two, or takes a part out of it, of a closed one that from the first point on", &parseBreak},
    {"trim", "trim ENTITY at POINT by ENTITY...", "trim g3 at 8,0 by g7",
     "removes the part of a curve that lies around a point between cutting edges", &parseTrim},
    {"extend", "extend ENTITY start|end to ENTITY...", "extend g3 end to g7",
     "leads one end of a curve on to the first boundary that it meets", &parseExtend},
    {"fillet",
     "fillet ENTITY ENTITY radius R [at POINT POINT] [keep corner] | fillet POLYLINE corner I radius R [keep corner] | "
     "fillet POLYLINE segments I "
     "J radius R",
     "fillet g1 g2 radius 2", "joins two curves or segments by an arc, or with radius 0 in a sharp corner",
     &parseFillet},
    {"join", "join ENTITY ENTITY...", "join p1 g4 g5",
     "makes one polyline of lines, arcs and polylines that meet end to end", &parseJoin},
    {"lengthen", "lengthen ENTITY start|end by|to LENGTH", "lengthen g3 end by 4",
     "moves one end of a curve along it, by a length or to a total length", &parseLengthen},
    {"stretch", "stretch window POINT POINT by VECTOR", "stretch window 0,0 10,10 by 5,0",
     "moves all ends, vertices and control points that lie in a window", &parseStretch},
    {"mirror", "mirror ENTITY... about POINT POINT | LINE [keep]", "mirror g1 g2 about 0,0 0,1",
     "reflects entities in a line, or adds their reflection with its constraints", &parseMirror},
    {"align", "align ENTITY... from POINT [POINT] to POINT [POINT] [scale]", "align g1 g2 from 0,0 10,0 to 5,5 5,15",
     "moves entities so that source points come to destination points", &parseAlign},
    {"rotate", "rotate ENTITY... about POINT by DEGREES", "rotate g1 g2 about 0,0 by 30",
     "turns entities about a point, counter-clockwise for a positive angle", &parseRotate},
    {"drag", "drag ENTITY... | ENTITY.PLACE by VECTOR [steps N]", "drag g1.end by 3,2",
     "pulls entities, or one end, vertex or control point, as far as the constraints let them", &parseDrag},
    {"set",
     "set ENTITY PROPERTY VALUE | set DIMENSION VALUE | set DIMENSION = FORMULA | set DIMENSION driving|measured",
     "set g5 radius 5", "gives a property or a dimension another value: an end, a centre, a radius, an angle, a vertex",
     &parseSet},
    {"constrain", "constrain KIND PLACE... [VALUE] [anyway] [as NAME] [= FORMULA]", "constrain horizontal g1",
     "adds a constraint or a dimension; the drawing moves as little as it takes", &parseConstrain},
    {"delete", "delete CONSTRAINT|PARAMETER...", "delete c9 c10",
     "deletes constraints, and parameters that no formula uses", &parseDelete},
    {"suppress", "suppress CONSTRAINT...", "suppress c9 c10",
     "switches constraints off: they stay in the drawing and hold nothing", &parseSuppress},
    {"unsuppress", "unsuppress CONSTRAINT...", "unsuppress c9 c10",
     "switches constraints on again; the drawing moves as little as it takes", &parseUnsuppress},
    {"draw",
     "draw line POINT POINT | draw circle POINT radius R | draw arc centre POINT from POINT to POINT | draw polyline "
     "POINT [bulge B] POINT... [closed] | draw point POINT | draw ellipse POINT major VECTOR ratio R [from DEGREES to "
     "DEGREES] | draw spline POINT... [degree N] [closed] | draw ray|xline POINT through POINT | draw text TEXT at "
     "POINT [height H] [rotation DEGREES]; each with [construction] [as NAME]",
     "draw line 0,0 10,0 as rib", "adds an entity", &parseDraw},
    {"erase", "erase ENTITY...", "erase g3 g4", "erases entities with the constraints on them", &parseErase},
    {"move", "move ENTITY... by VECTOR", "move g1 g2 by 5,0", "shifts entities; what is tied to them follows",
     &parseMove},
    {"copy",
     "copy ENTITY... by VECTOR [times N [and by VECTOR [times M]]] [linked] | copy ENTITY... around POINT by DEGREES "
     "[times N] [linked]",
     "copy g1 g2 by 5,0 times 3", "adds copies with the constraints among them: one, a row, a grid or a ring",
     &parseCopy},
    {"scale", "scale ENTITY... about POINT by FACTOR", "scale g1 g2 about 0,0 by 2",
     "makes entities larger or smaller about a point, with the dimensions among them", &parseScale},
    {"define", "define [ENTITY...] [rounded DECIMALS]", "define g1 g2",
     "adds the constraints and dimensions that entities, or the whole drawing, lack for being fully determined",
     &parseDefine},
    {"parameter", "parameter NAME = FORMULA", "parameter width = 80",
     "makes a parameter or changes it; what is calculated from it follows", &parseParameter},
    {"chamfer",
     "chamfer ENTITY ENTITY by LENGTH [LENGTH] [at POINT POINT] [keep corner] | chamfer POLYLINE corner I by LENGTH "
     "[LENGTH] [keep corner]",
     "chamfer g1 g2 by 2", "cuts two curves, or a polyline, off before a corner and puts a line between",
     &parseChamfer},
    {"offset", "offset ENTITY... by DISTANCE [rounded]", "offset g1 by 2",
     "adds curves beside others: outside of what is round or closed, left of lines; chains as one", &parseOffset},
    {"explode", "explode POLYLINE|REFERENCE...", "explode p1",
     "makes lines and arcs of a polyline, with its constraints and tied where they meet, or entities of a block "
     "reference",
     &parseExplode},
    {"undo", "undo", "", "takes the last edit back", &parseUndo},
    {"redo", "redo", "", "does the edit again that was taken back last", &parseRedo},
};

/// What people type who know other programs, and what it is called here. A verb of ours needs no row.
struct ForeignVerb {
    std::string_view word, meant;
};

constexpr ForeignVerb kForeignVerbs[] = {
    {"brake", "\"break\""},
    {"split", "\"break\""},
    {"cut", "\"trim\" or \"break\""},
    {"remove", "\"erase\" for entities or \"delete\" for constraints"},
    {"del", "\"delete\" for constraints or \"erase\" for entities"},
    {"dimension", "\"constrain\" with a kind such as distance, radius or angle"},
    {"dim", "\"constrain\" with a kind such as distance, radius or angle"},
    {"distance", "\"constrain distance\""},
    {"horizontal", "\"constrain horizontal\""},
    {"vertical", "\"constrain vertical\""},
    {"parallel", "\"constrain parallel\""},
    {"tangent", "\"constrain tangent\""},
    {"coincident", "\"constrain coincident\""},
    {"constraint", "\"constrain\""},
    {"line", "\"draw line\""},
    {"circle", "\"draw circle\""},
    {"arc", "\"draw arc\""},
    {"polyline", "\"draw polyline\""},
    {"round", "\"fillet\""},
    {"reflect", "\"mirror\""},
    {"turn", "\"rotate\""},
    {"pull", "\"drag\""},
    {"shorten", "\"lengthen ... by\" with a negative length"},
    {"variable", "\"parameter\""},
    {"let", "\"parameter\""},
};

std::string_view ownWordsFor(std::string_view word) {
    for (const ForeignVerb& verb : kForeignVerbs)
        if (verb.word == word)
            return verb.meant;
    return {};
}

}  // namespace

std::span<const EditVerb> editVerbs() {
    return kVerbs;
}

const EditVerb& takeVerb(EditText& text) {
    std::vector<std::string_view> names;
    for (const EditVerb& verb : kVerbs)
        names.push_back(verb.name);
    if (const std::string_view meant = ownWordsFor(text.peek()); !meant.empty()) {
        text.otherName("an editing command");
        text.fail("expected an editing command (" + oneOf(names) + ")", "; did you mean " + std::string(meant) + "?");
    }
    const std::string found = text.oneOfWords(names, "an editing command");
    return *std::find_if(std::begin(kVerbs), std::end(kVerbs),
                         [&](const EditVerb& verb) { return verb.name == found; });
}

}  // namespace holdfast::editing
