#include "editing/text/ParseCommands.h"

#include <array>
#include <optional>

#include "document/Names.h"
#include "editing/commands/network/NamedConstraints.h"
#include "editing/text/ParseProperty.h"

namespace holdfast::editing {

namespace {

constexpr std::array<std::string_view, 2> kEnds{"start", "end"};

CurveEnd takeEnd(EditText& text, std::string_view what) {
    return text.oneOfWords(kEnds, what) == "start" ? CurveEnd::start : CurveEnd::end;
}

std::vector<Name> takeEntitiesUpTo(EditText& text, std::string_view end) {
    return text.names("an entity", {&end, 1});
}

Sourced<double> takeRadius(EditText& text) {
    text.expect("radius");
    const double radius = text.number("the radius");
    return {radius, text.column()};
}

FilletCorner parseCorner(EditText& text, const Name& polyline) {
    const int corner = text.integer("the number of a corner, counted from 0");
    const Sourced<double> radius = takeRadius(text);
    return {polyline, corner, radius, takeKeepCorner(text)};
}

FilletSegments parseSegments(EditText& text, const Name& polyline) {
    const int from = text.integer("the number of the segment that the arc leaves, counted from 0");
    const int to = text.integer("the number of the segment to which the arc leads");
    return {polyline, from, to, takeRadius(text)};
}

/// A name with a dot may be that of an entity. Where it is spelt like a place it is one, unless more names follow it.
Drag::Held takeHold(EditText& text) {
    if (!text.nextIsPlace())
        return takeEntitiesUpTo(text, "by");
    EditText onward = text;
    const Sourced<Place> place = onward.place("a place to drag");
    if (!onward.nextIs("by") && onward.hasAhead("by"))
        return takeEntitiesUpTo(text, "by");
    text = onward;
    return place;
}

/// Of two points the first may be a place, which alone would be the name of a line.
bool isPointAhead(const EditText& text) {
    EditText onward = text;
    onward.otherName("a line or a point");
    return text.nextIsPlace() && onward.nextIsPoint();
}

void refuseSecond(EditText& text) {
    if (!text.nextIsPoint())
        return;
    text.otherName("a point");
    text.fail("a line to mirror at is named alone; or give two points of one, such as 0,0 10,0");
}

/// A kind of constraint by its name in drawing files, or as reports call it.
ConstraintType takeKind(EditText& text) {
    std::vector<std::string_view> words;
    for (const ConstraintTraits& kind : constraintKinds())
        if (canBeGiven(kind.type))
            words.push_back(kind.name);
    return *constraintTypeNamed(text.oneOfWords(words, "a kind of constraint"));
}

/// What is set, to the end of the edit.
void takeChange(EditText& text, Set& edit) {
    const PropertyWord word = takeProperty(text, edit.entity);
    edit.property = word.property;
    if (word.isListed) {
        const int index = text.integer("the number of the vertex or control point, counted from 0");
        edit.index = {index, text.column()};
    }
    edit.value = takePropertyValue(text, word.valueKind);
    text.expectEnd();
}

}  // namespace

Edit parseBreak(EditText& text) {
    Break edit{.entity = text.name("an entity"), .from = {}};
    text.expect("at");
    edit.from = text.point("the first break point");
    if (text.accept("to"))
        edit.to = text.point("the second break point");
    return edit;
}

Edit parseTrim(EditText& text) {
    Trim edit{.entity = text.name("an entity"), .at = {}, .by = {}};
    text.expect("at");
    edit.at = text.point("a point on the part to remove");
    text.expect("by");
    edit.by = text.names("a cutting edge", {});
    return edit;
}

Edit parseExtend(EditText& text) {
    text.partAtDot(kEnds);
    Extend edit{.entity = text.name("an entity"), .to = {}};
    edit.end = takeEnd(text, "the end to extend");
    text.expect("to");
    edit.to = text.names("a boundary", {});
    return edit;
}

Edit parseFillet(EditText& text) {
    text.partAtDot(kCorner);
    Fillet edit{.first = text.name("an entity"), .second = {}};
    if (acceptCorner(text))
        return parseCorner(text, edit.first);
    if (text.accept("segments"))
        return parseSegments(text, edit.first);
    edit.second = text.name("an entity");
    edit.radius = takeRadius(text);
    if (text.accept("at")) {
        const Vec2 first = text.point("a point on the first curve");
        edit.picks = {first, text.point("a point on the second curve")};
    }
    edit.keepCorner = takeKeepCorner(text);
    return edit;
}

bool acceptCorner(EditText& text) {
    EditText onward = text;
    return text.accept(kCorner[0]) || (onward.accept(kCorner[1]) && onward.nextIsNumber() && text.accept(kCorner[1]));
}

bool takeKeepCorner(EditText& text) {
    if (!text.accept("keep"))
        return false;
    text.expect("corner");
    return true;
}

Edit parseJoin(EditText& text) {
    return Join{text.names("an entity", {})};
}

Edit parseLengthen(EditText& text) {
    text.partAtDot(kEnds);
    static constexpr std::array<std::string_view, 2> ways{"by", "to"};
    Lengthen edit{.entity = text.name("an entity")};
    edit.end = takeEnd(text, "the end to move");
    const bool isTotal = text.oneOfWords(ways, "how the length is given") == "to";
    edit.way = isTotal ? Lengthen::Way::to : Lengthen::Way::by;
    edit.length = text.number(isTotal ? "the new length" : "the difference in length");
    return edit;
}

Edit parseStretch(EditText& text) {
    Stretch edit;
    text.expect("window");
    edit.first = text.point("a corner of the window");
    edit.second = text.point("the opposite corner");
    text.expect("by");
    edit.by = text.vector("the displacement");
    return edit;
}

Edit parseMirror(EditText& text) {
    Mirror edit{.entities = takeEntitiesUpTo(text, "about"), .first = {}, .second = {}};
    text.expect("about");
    if (text.nextIsNoName() || isPointAhead(text)) {
        edit.first = text.point("the first point of the mirror line");
        edit.second = text.point("the second point of the mirror line");
    } else {
        edit.about = text.name("a line to mirror at");
        refuseSecond(text);
    }
    edit.keep = text.accept("keep");
    return edit;
}

/// "from P [P] to Q [Q] [scale]": one pair of points shifts, two turn as well.
Edit parseAlign(EditText& text) {
    Align edit{.entities = takeEntitiesUpTo(text, "from"), .from = {}, .to = {}};
    text.expect("from");
    edit.from = text.point("the first source point");
    if (text.accept("to")) {
        edit.to = text.point("the first destination point");
        return edit;
    }
    AlignDirection direction;
    direction.from = text.point("the second source point, or \"to\"");
    text.expect("to");
    edit.to = text.point("the first destination point");
    direction.to = text.point("the second destination point");
    direction.scale = text.accept("scale");
    edit.direction = direction;
    return edit;
}

Edit parseRotate(EditText& text) {
    Rotate edit{.entities = takeEntitiesUpTo(text, "about"), .about = {}};
    text.expect("about");
    edit.about = text.point("the point to turn about");
    text.expect("by");
    edit.degrees = text.number("the angle in degrees, counter-clockwise");
    return edit;
}

Edit parseDrag(EditText& text) {
    Drag edit{.held = takeHold(text), .by = {}};
    text.expect("by");
    edit.by = text.vector("the displacement");
    if (text.accept("steps")) {
        const int steps = text.integer("the number of steps");
        edit.steps = {steps, text.column()};
    }
    return edit;
}

/// A word of the third kind after a name of a dimension.
std::optional<Edit> parsedDimension(EditText& text) {
    EditText onward = text;
    onward.partAtEquals();
    const Name dimension = onward.otherName("a dimension");
    std::optional<Edit> edit;
    if (onward.nextIsFormula())
        edit = SetFormula{dimension, onward.formula()};
    else if (onward.nextIsNumber())
        edit = SetDimension{dimension, onward.number("the value of the dimension")};
    else if (onward.accept("driving"))
        edit = SetDriving{dimension, true};
    else if (onward.accept("measured"))
        edit = SetDriving{dimension, false};
    if (edit)
        text = onward;
    return edit;
}

Edit parseSet(EditText& text) {
    const std::vector<std::string_view> properties = propertyWords();
    text.partAtDot(properties);
    if (std::optional<Edit> edit = parsedDimension(text))
        return *edit;
    Set edit{.entity = text.name("an entity"), .value = {}};
    if (text.atEnd())
        takeProperty(text, edit.entity);
    const Sourced<std::string> word(std::string(text.peek()), text.nextColumn());
    try {
        takeChange(text, edit);
        return edit;
    } catch (const EditSyntaxError& error) {
        throw PropertyFault(error, edit.entity, word);
    }
}

namespace {

/// A formula goes on to the end of the edit: a name stands before it.
Sourced<std::string> formulaWithoutName(EditText& text) {
    Sourced<std::string> formula = text.formula();
    constexpr std::string_view as = " as ";
    const std::size_t at = formula.value.rfind(as);
    const std::string name = at == std::string::npos ? std::string() : formula.value.substr(at + as.size());
    if (!name.empty() && name.find(' ') == std::string::npos)
        text.fail("a name stands before the formula: as " + name + " = " + formula.value.substr(0, at));
    return formula;
}

}  // namespace

Edit parseConstrain(EditText& text) {
    Constrain edit;
    edit.type = takeKind(text);
    while (!text.atEnd() && !text.nextIs("anyway") && !text.nextIs("as") && !text.nextIsFormula() &&
           !(isDimension(edit.type.value) && text.nextIsNumber()))
        edit.places.push_back(text.place("a place to constrain"));
    if (edit.places.empty()) {
        text.place("a place to constrain");
        text.fail("expected a place to constrain");  // and not what stands behind the places
    }
    if (isDimension(edit.type.value) && text.nextIsNumber())
        edit.value = text.number("the value of the dimension");
    edit.anyway = text.accept("anyway");
    if (text.accept("as"))
        edit.as = text.otherName("a name for the constraint");
    if (isDimension(edit.type.value) && !edit.value && text.nextIsFormula())
        edit.formula = formulaWithoutName(text);
    return edit;
}

namespace {

std::vector<Name> constraintNames(EditText& text) {
    std::vector<Name> names;
    do {
        names.push_back(text.otherName("a constraint"));
    } while (!text.atEnd());
    return names;
}

}  // namespace

Edit parseDelete(EditText& text) {
    return Delete{constraintNames(text)};
}

Edit parseSuppress(EditText& text) {
    return SetActive{constraintNames(text), false};
}

Edit parseUnsuppress(EditText& text) {
    return SetActive{constraintNames(text), true};
}

Edit parseErase(EditText& text) {
    return Erase{text.names("an entity", {})};
}

Edit parseDefine(EditText& text) {
    Define edit;
    if (!text.atEnd() && !text.nextIs("rounded"))
        edit.entities = takeEntitiesUpTo(text, "rounded");
    if (text.accept("rounded")) {
        const int decimals = text.integer("how many decimals");
        edit.decimals = Sourced<int>(decimals, text.column());
    }
    return edit;
}

Edit parseParameter(EditText& text) {
    text.partAtEquals();
    SetParameter edit{.parameter = text.otherName("the name of a parameter"), .formula = {}};
    edit.formula = text.formula();
    return edit;
}

Edit parseUndo(EditText&) {
    return Undo{};
}

Edit parseRedo(EditText&) {
    return Redo{};
}

}  // namespace holdfast::editing
