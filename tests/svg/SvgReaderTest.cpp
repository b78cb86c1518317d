#include <gtest/gtest.h>

#include "document/checks/DocumentCheck.h"
#include "tests/svg/Pictures.h"

namespace holdfast::formats {
namespace {

TEST(SvgShapes, EveryElementDrawsItsPieces) {
    EXPECT_EQ(drawnBy(R"(<line x1="1" y1="2" x2="3" y2="4"/>)"), "line 1,98 3,96");
    EXPECT_EQ(drawnBy(R"(<polyline points="0,0 10,0 10,10"/>)"), "line 0,100 10,100; line 10,100 10,90");
    EXPECT_EQ(drawnBy(R"(<polygon points="0,0 10,0 10,10"/>)"),
              "line 0,100 10,100; line 10,100 10,90; line 10,90 0,100");
    EXPECT_EQ(drawnBy(R"(<circle cx="5" cy="6" r="2"/>)"), "circle 5,94 radius 2");
    EXPECT_EQ(drawnBy(R"(<ellipse cx="5" cy="6" rx="4" ry="2"/>)"), "ellipse 5,94 axis 4,0 ratio 0.5");
    EXPECT_EQ(drawnBy(R"(<ellipse cx="5" cy="6" rx="2" ry="4"/>)"), "ellipse 5,94 axis 0,-4 ratio 0.5");
    EXPECT_EQ(drawnBy(R"(<ellipse rx="2"/>)"), "circle 0,100 radius 2");
}

TEST(SvgShapes, ARectangleIsFourLines) {
    EXPECT_EQ(drawnBy(R"(<rect x="10" y="20" width="30" height="40"/>)"),
              "line 10,80 40,80; line 40,80 40,40; line 40,40 10,40; line 10,40 10,80");
}

TEST(SvgShapes, RoundCornersOfARectangleAreArcs) {
    const std::string round = drawnBy(R"(<rect x="10" y="20" width="30" height="40" rx="5"/>)");
    EXPECT_EQ(round,
              "line 15,80 35,80; arc 35,75 radius 5 from 0 to 90; line 40,75 40,45; "
              "arc 35,45 radius 5 from 270 to 360; line 35,40 15,40; arc 15,45 radius 5 from 180 to 270; "
              "line 10,45 10,75; arc 15,75 radius 5 from 90 to 180");
    EXPECT_EQ(drawnBy(R"(<rect x="10" y="20" width="30" height="40" ry="5"/>)"), round);
}

TEST(SvgShapes, RadiiOfARectangleAreAtMostHalfOfIt) {
    EXPECT_EQ(drawnBy(R"(<rect width="20" height="20" rx="50"/>)"), "circle 10,90 radius 10");
    EXPECT_EQ(drawnBy(R"(<rect width="40" height="20" rx="50" ry="10"/>)"), "ellipse 20,90 axis 20,0 ratio 0.5");
    EXPECT_EQ(drawnBy(R"(<rect width="10" height="20" ry="0" rx="3"/>)").find("arc"), std::string::npos);
}

TEST(SvgShapes, EndsOfASlotAreHalfCircles) {
    EXPECT_EQ(drawnBy(R"(<rect width="40" height="20" rx="10"/>)"),
              "line 10,100 30,100; arc 30,90 radius 10 from 270 to 450; line 30,80 10,80; "
              "arc 10,90 radius 10 from 90 to 270");
}

TEST(SvgShapes, LengthsMayHaveUnitsAndBeShares) {
    EXPECT_EQ(drawnBy(R"(<line x1="10%" y1="50%" x2="20%" y2="0"/>)"), "line 10,50 20,100");
    EXPECT_EQ(shownDrawing(readPicture(R"(<line x2="1in" y2="0"/>)", R"(width="10in" height="10in")").document),
              "line 0,10 1,10");
}

TEST(SvgTransforms, AreDoneFromTheInnermostOn) {
    const std::string line = R"(<line x2="10" y2="0"/>)";
    EXPECT_EQ(drawnBy(R"(<g transform='translate(20 30)'>)" + line + "</g>"), "line 20,70 30,70");
    EXPECT_EQ(drawnBy(R"(<g transform='scale(2)'>)" + line + "</g>"), "line 0,100 20,100");
    EXPECT_EQ(drawnBy(R"(<g transform='rotate(90)'>)" + line + "</g>"), "line 0,100 0,90");
    EXPECT_EQ(drawnBy(R"(<g transform='rotate(90 10 0)'>)" + line + "</g>"), "line 10,110 10,100");
    EXPECT_EQ(drawnBy(R"(<g transform='matrix(1,2,3,4,5,6)'>)" + line + "</g>"), "line 5,94 15,74");
    EXPECT_EQ(drawnBy(R"(<g transform='translate(10),scale(2) rotate(90)'>)" + line + "</g>"), "line 10,100 10,80");
    EXPECT_EQ(drawnBy(R"(<g transform='translate(10)'><g transform='scale(2)'>)" + line + "</g></g>"),
              "line 10,100 30,100");
    EXPECT_EQ(drawnBy(R"(<g transform='skewX(45)'><line x1="0" y1="10" x2="10" y2="10"/></g>)"), "line 10,90 20,90");
    EXPECT_EQ(drawnBy(R"(<g transform='skewY(45)'>)" + line + "</g>"), "line 0,100 10,90");
}

TEST(SvgTransforms, ScaledCirclesAreEllipsesAndScaledEllipsesMayBeCircles) {
    EXPECT_EQ(drawnBy(R"(<circle r="5" transform='scale(2 1)'/>)"), "ellipse 0,100 axis 10,0 ratio 0.5");
    EXPECT_EQ(drawnBy(R"(<ellipse rx="10" ry="5" transform='scale(1 2)'/>)"), "circle 0,100 radius 10");
    EXPECT_EQ(drawnBy(R"(<path d="M10 0A10 5 0 0 1 0 5" transform='scale(1 2)'/>)"),
              "arc 0,100 radius 10 from 270 to 360");
    EXPECT_EQ(drawnBy(R"(<path d="M3 0A3 4 0 0 1 0 4" transform='scale(1.33333333333 1)'/>)"),
              "arc 0,100 radius 4 from 270 to 360");
}

TEST(SvgTransforms, SlantedCirclesAreEllipses) {
    const Document document = readPicture(R"(<circle r="1" transform='skewX(45)'/>)").document;
    const auto& ellipse = std::get<EllipseShape>(document.entities.at(0).shape);
    // The half axes of a unit circle sheared by 1 are the golden ratio and its inverse.
    EXPECT_NEAR(norm(ellipse.majorAxis), 1.6180339887498949, 1e-14);
    EXPECT_NEAR(ellipse.ratio, 0.38196601125010515, 1e-14);
}

TEST(SvgTransforms, WhatBecomesFlatIsLeftOutTold) {
    const SvgDrawing read = readPicture(R"(<circle r="1" transform='scale(1 0)'/>)");
    EXPECT_TRUE(read.document.entities.empty());
    EXPECT_EQ(told(read.notUnderstood), "circle that its transform makes flat");
}

TEST(SvgPage, TheDrawingHasTrueSizeInTheUnitOfThePicture) {
    const auto lineIn = [](const std::string& attributes) {
        const SvgDrawing read = readPicture(R"(<line x1="0" y1="50" x2="100" y2="50"/>)", attributes);
        return shownDrawing(read.document) + " " + read.document.lengthUnit + (read.isMeasured ? "" : ", not measured");
    };
    EXPECT_EQ(lineIn(R"(width="200mm" height="100mm" viewBox="0 0 100 50")"), "line 0,0 200,0 mm");
    EXPECT_EQ(lineIn(R"(width="20cm" height="20cm" viewBox="0 0 100 100")"), "line 0,10 20,10 cm");
    EXPECT_EQ(lineIn(R"(width="5in" height="5in" viewBox="0 0 100 100")"), "line 0,2.5 5,2.5 in");
    EXPECT_EQ(lineIn(R"(width="72pt" height="72pt" viewBox="0 0 100 100")"), "line 0,12.7 25.4,12.7 mm");
    EXPECT_EQ(lineIn(R"(width="96px" height="96px" viewBox="0 0 100 100")"), "line 0,12.7 25.4,12.7 mm");
    EXPECT_EQ(lineIn(R"(width="100mm" viewBox="0 0 100 100")"), "line 0,50 100,50 mm");
    EXPECT_EQ(lineIn(R"(height="50mm" viewBox="0 0 100 100")"), "line 0,25 50,25 mm");
}

TEST(SvgPage, WithoutAUnitPixelsAreTakenTold) {
    const auto lineIn = [](const std::string& attributes) {
        const SvgDrawing read = readPicture(R"(<line x1="0" y1="48" x2="96" y2="48"/>)", attributes);
        return shownDrawing(read.document) + " " + read.document.lengthUnit + (read.isMeasured ? "" : ", not measured");
    };
    EXPECT_EQ(lineIn(R"(width="96" height="96")"), "line 0,12.7 25.4,12.7 mm, not measured");
    EXPECT_EQ(lineIn(R"(viewBox="0 0 96 96")"), "line 0,12.7 25.4,12.7 mm, not measured");
    EXPECT_EQ(lineIn(R"(width="100%" height="100%" viewBox="0 0 96 96")"), "line 0,12.7 25.4,12.7 mm, not measured");
    EXPECT_EQ(lineIn(R"(width="1em" height="1em" viewBox="0 0 96 96")"), "line 0,12.7 25.4,12.7 mm, not measured");
    EXPECT_EQ(lineIn(R"(xml:lang="en")"), "line 0,-12.7 25.4,-12.7 mm, not measured");
}

TEST(SvgPage, TheShownWindowIsPutIntoThePageAsItsAspectSays) {
    const auto lineIn = [](const std::string& aspect) {
        return shownDrawing(readPicture(R"(<line x1="10" y1="10" x2="20" y2="10"/>)",
                                        R"(width="40mm" height="20mm" viewBox="10 10 10 10" )" + aspect)
                                .document);
    };
    EXPECT_EQ(lineIn(""), "line 10,20 30,20");
    EXPECT_EQ(lineIn(R"(preserveAspectRatio="xMinYMid meet")"), "line 0,20 20,20");
    EXPECT_EQ(lineIn(R"(preserveAspectRatio="xMaxYMid")"), "line 20,20 40,20");
    EXPECT_EQ(lineIn(R"(preserveAspectRatio="none")"), "line 0,20 40,20");
    EXPECT_EQ(lineIn(R"(preserveAspectRatio="xMidYMid slice")"), "line 0,30 40,30");
    EXPECT_EQ(lineIn(R"(preserveAspectRatio="xMidYMin slice")"), "line 0,20 40,20");
}

TEST(SvgUse, ThingsAreDrawnWhereTheyAreUsed) {
    const std::string hole = R"(<defs><circle id="hole" r="2"/></defs>)";
    EXPECT_EQ(drawnBy(hole), "");
    EXPECT_EQ(drawnBy(hole + R"(<use href="#hole" x="10" y="20"/><use xlink:href="#hole" transform='scale(2)'/>)"),
              "circle 10,80 radius 2; circle 0,100 radius 4");
    EXPECT_EQ(drawnBy(R"(<use href="#g"/><defs><g id="g"><use href="#hole" x="1"/></g></defs>)" + hole),
              "circle 1,100 radius 2");
}

TEST(SvgUse, SymbolsAndPicturesInPicturesHaveTheirOwnWindow) {
    const std::string inside = R"(viewBox="0 0 10 10"><line x2="10" y2="10"/>)";
    EXPECT_EQ(drawnBy("<svg x=\"10\" y=\"20\" width=\"20\" height=\"20\" " + inside + "</svg>"), "line 10,80 30,60");
    EXPECT_EQ(drawnBy("<symbol id=\"s\" " + inside + "</symbol>"), "");
    EXPECT_EQ(drawnBy("<symbol id=\"s\" " + inside + R"(</symbol><use href="#s" x="10" width="20" height="20"/>)"),
              "line 10,100 30,80");
    EXPECT_EQ(drawnBy("<symbol id=\"s\" " + inside + R"(</symbol><use href="#s"/>)"), "line 0,100 100,0");
}

TEST(SvgUse, WhatCannotBeUsedIsTold) {
    const SvgDrawing read = readPicture(R"(<g id="a"><use href="#a"/><use href="#b"/></g>
        <use href="other.svg#x"/><defs><g id="c"><use href="#d"/></g><g id="d"><use href="#c"/></g></defs>
        <use href="#c"/>)");
    EXPECT_EQ(
        told(read.notUnderstood),
        "use of \"#a\" in itself, use of \"#b\", which is not there, use of \"other.svg#x\", use of \"#c\" in itself");
}

TEST(SvgLooks, LabelledGroupsAreLayers) {
    const Document document = readPicture(R"(<g inkscape:groupmode="layer" inkscape:label="Cut"><line x2="1" y2="0"/>
        <g><line x2="2" y2="0"/></g><g inkscape:label="Fine"><line x2="3" y2="0"/></g></g><line x2="4" y2="0"/>)")
                                  .document;
    ASSERT_EQ(document.layers.size(), 2U);
    EXPECT_EQ(document.layers[0].name, "Cut");
    std::string layers;
    for (const Entity& entity : document.entities)
        layers += "[" + entity.look->layer + "]";
    EXPECT_EQ(layers, "[Cut][Cut][Fine][]");
}

std::string coloursOf(const std::string& elements) {
    std::string colours;
    for (const Entity& entity : readPicture(elements).document.entities) {
        const Colour& colour = entity.look->colour;
        char text[16];
        std::snprintf(text, sizeof text, "%06x ", static_cast<unsigned>(colour.value));
        colours += colour.kind == Colour::Kind::rgb ? text : "usual ";
    }
    return colours;
}

TEST(SvgLooks, StrokesHaveTheirColoursFromWhereverTheyAreSaid) {
    EXPECT_EQ(coloursOf(R"(<line x2="1" y2="0" stroke="red"/><line x2="1" y2="0" style="stroke:#00f; fill:none"/>
        <g stroke='rgb(0, 128, 255)'><line x2="1" y2="0"/><line x2="1" y2="0" stroke="#123456"/></g>
        <g color="lime"><line x2="1" y2="0" stroke="currentColor"/></g><line x2="1" y2="0" stroke="black"/>
        <line x2="1" y2="0"/>)"),
              "ff0000 0000ff 0080ff 123456 00ff00 usual usual ");
}

TEST(SvgLooks, AllNamesOfColoursAreKnown) {
    std::string lines;
    for (const char* name : {"aliceblue", "CornflowerBlue", "darkslategrey", "lightgoldenrodyellow", "yellowgreen"})
        lines += "<line x2='1' y2='0' stroke='" + std::string(name) + "'/>";
    EXPECT_EQ(coloursOf(lines), "f0f8ff 6495ed 2f4f4f fafad2 9acd32 ");
    EXPECT_EQ(told(readPicture("<line x2='1' y2='0' stroke='darkslateblu'/>").dropped), "stroke \"darkslateblu\"");
}

TEST(SvgLooks, StyleSheetsAreHeardWhereTheyChooseSimply) {
    const std::string sheet = R"(<style>/* of a program */ .a, .b { stroke: red } .b{stroke:blue;fill:none}
        line { stroke: lime } #own { stroke: #777 !important; } g > line { stroke: teal } @media print { line { } }
        </style>)";
    EXPECT_EQ(coloursOf(sheet + R"(<line class="a" x2="1" y2="0"/><line class="a b" x2="1" y2="0"/>
        <line x2="1" y2="0"/><line id="own" class="a" x2="1" y2="0"/>
        <line class="a" style="stroke:aqua" x2="1" y2="0"/><line class="a" stroke="aqua" x2="1" y2="0"/>)"),
              "ff0000 0000ff 00ff00 777777 00ffff ff0000 ");
    EXPECT_EQ(told(readPicture(sheet).notUnderstood), "style rule \"g > line\", style rule \"@media\"");
}

TEST(SvgLooks, WhatIsNotShownIsLeftOutTold) {
    const SvgDrawing read = readPicture(R"(<style>.off{display:none}</style><g display="none"><line x2="1" y2="0"/></g>
        <g inkscape:label="Notes" style="display:none"><line x2="1" y2="0"/></g>
        <path style="display:none" d="M0 0h1"/><rect class="off" width="1" height="1"/>
        <g visibility="hidden"><circle r="1"/><circle r="2" visibility="visible"/></g>
        <rect width="24" height="24" fill="none"/><rect width="0" height="24"/>)");
    EXPECT_EQ(shownDrawing(read.document), "circle 0,100 radius 2");
    EXPECT_EQ(told(read.notUnderstood),
              "g with display:none, g \"Notes\" with display:none, path with display:none, rect with display:none, "
              "circle that is hidden, "
              "rect without stroke and fill, rect without size");
}

TEST(SvgLooks, WhatADrawingDoesNotHaveIsTold) {
    const SvgDrawing read = readPicture(R"(<title>A part</title><metadata/><text x="1">Top</text><text>Bottom</text>
        <image href="x.png"/><foreignObject/><inkscape:path-effect/><clipPath id="c"><circle r="1"/></clipPath>
        <g clip-path='url(#c)' stroke-width="2" fill="none"><line x2="1" y2="0" fill="red" stroke='url(#fade)'/></g>)");
    EXPECT_EQ(told(read.notUnderstood), "text (2), image, foreignObject");
    EXPECT_EQ(told(read.dropped), "stroke-width, clip-path, fill, stroke \"url(#fade)\"");
    EXPECT_EQ(shownDrawing(read.document), "line 0,100 1,100");
}

TEST(SvgLooks, DotsAreWhatHasNoLengthAndRoundEnds) {
    const SvgDrawing read = readPicture(R"(<g stroke="#000"><path d="M5 6h0" stroke-linecap="round"/>
        <path d="M5 6h0"/></g>)");
    EXPECT_EQ(shownDrawing(read.document), "point 5,94");
    EXPECT_EQ(told(read.notUnderstood), "path without size");
}

TEST(SvgReader, TakesTheFirstChoiceThatNeedsNothing) {
    EXPECT_EQ(
        drawnBy(R"(<switch><foreignObject requiredExtensions="x"/><g><circle r="1"/></g><circle r="2"/></switch>)"),
        "circle 0,100 radius 1");
}

TEST(SvgReader, NamesMayHaveAPrefixAndATypeMayBeNamed) {
    const std::string picture =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE svg PUBLIC "
        "\"-//W3C//DTD SVG 1.1//EN\" \"http://www.w3.org/Graphics/SVG/1.1/DTD/svg11.dtd\">\n"
        "<svg:svg xmlns:svg=\"http://www.w3.org/2000/svg\" width=\"10mm\" height=\"10mm\" "
        "viewBox=\"0 0 10 10\"><svg:circle r=\"1\"/></svg:svg>";
    EXPECT_EQ(shownDrawing(readSvg(picture, "part.svg").document), "circle 0,10 radius 1");
}

TEST(SvgReader, OlderEncodingsAreRead) {
    const std::string picture =
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><svg xmlns:i=\"i\"><g i:label=\"Fr\xE4sen\">"
        "<circle r=\"1\"/></g></svg>";
    EXPECT_EQ(readSvg(picture, "part.svg").document.layers.at(0).name, "Fr\xC3\xA4sen");
}

TEST(SvgReader, TheDrawingIsSoundAndNamed) {
    const Document document = readPicture(R"(<rect width="9" height="9" rx="2"/><path d="M0 0C1 2 3 4 5 0Q1 2 0 0"/>
        <ellipse rx="3" ry="1" transform='rotate(30)'/>)")
                                  .document;
    EXPECT_EQ(document.name, "part");
    EXPECT_EQ(document.entities.back().id, "g10");
    EXPECT_NO_THROW(checkDocument(document, "part.svg"));
}

}  // namespace
}  // namespace holdfast::formats
