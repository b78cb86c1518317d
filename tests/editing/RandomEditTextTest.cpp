#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "editing/text/Parse.h"

namespace holdfast::editing {
namespace {

template <class T>
T oneOfThese(std::initializer_list<T> values) {
    return *rc::gen::elementOf(std::vector<T>(values));
}

bool toss() {
    return *rc::gen::arbitrary<bool>();
}

double anyNumber() {
    if (toss())
        return *rc::gen::inRange(-1000, 1000) / 8.0;
    const auto bits = *rc::gen::arbitrary<std::uint64_t>();
    const auto number = std::bit_cast<double>(bits);
    return std::isfinite(number) ? number : 0.1;
}

Vec2 anyPoint() {
    const double x = anyNumber();
    return {x, anyNumber()};
}

/// Every sign, and the words that mean something else in an edit.
Name anyName() {
    if (toss())
        return oneOfThese<std::string>({"g1",       "about",  "from",   "to",    "by",     "at",      "corner",
                                        "segments", "radius", "around", "times", "linked", "rounded", "and",
                                        "keep",     "scale",  "steps",  "x",     "y",      "1,2",     "undo",
                                        "a.end",    "a b",    "\\",     "\"",    "",       "#"});
    return *rc::gen::container<std::string>(rc::gen::inRange<char>(1, 127));
}

std::vector<Name> anyNames() {
    std::vector<Name> names;
    for (int left = *rc::gen::inRange(1, 5); left > 0; --left)
        names.push_back(anyName());
    return names;
}

CurveEnd anyEnd() {
    return toss() ? CurveEnd::start : CurveEnd::end;
}

int anyIndex() {
    return *rc::gen::inRange(0, 2000);
}

Place anyPlace() {
    const auto kind = static_cast<PlaceKind>(*rc::gen::inRange(0, static_cast<int>(PlaceKind::segmentCentre) + 1));
    return {anyName().value, kind, kind >= PlaceKind::control ? anyIndex() : 0};
}

Edit anySet() {
    const auto rows = allProperties();
    const PropertyRow& row = rows[*rc::gen::inRange<std::size_t>(0, rows.size())];
    Set edit{.entity = anyName(), .property = row.property, .value = anyNumber()};
    if (isListed(row.property))
        edit.index = anyIndex();
    if (row.valueKind == ValueKind::point && toss())
        edit.value = anyPoint();
    else if (row.valueKind == ValueKind::point)
        edit.value = Coordinate{toss() ? Coordinate::Axis::x : Coordinate::Axis::y, anyNumber()};
    return edit;
}

Edit anyAlign() {
    Align edit{anyNames(), anyPoint(), anyPoint()};
    if (toss())
        edit.direction = AlignDirection{anyPoint(), anyPoint(), toss()};
    return edit;
}

Edit anyDrag() {
    Drag edit{.held = {}, .by = anyPoint(), .steps = *rc::gen::inRange(-5, 2000)};
    if (toss())
        edit.held = anyNames();
    else
        edit.held = Sourced<Place>(anyPlace());
    return edit;
}

Edit anyFillet() {
    Fillet edit{anyName(), anyName(), anyNumber()};
    if (toss())
        edit.picks = FilletPicks{anyPoint(), anyPoint()};
    edit.keepCorner = toss();
    return edit;
}

Edit anyMirror() {
    Mirror edit{.entities = anyNames(), .first = {}, .second = {}, .keep = toss()};
    if (toss()) {
        edit.first = anyPoint();
        edit.second = anyPoint();
    } else {
        edit.about = anyName();
    }
    return edit;
}

/// Without blanks around it; whether it is one only a drawing tells.
std::string anyFormula() {
    if (toss())
        return oneOfThese<std::string>({"80", "width / 2 + 3 mm", "\"a b\"*2", "= 3", "as x", "\"", "30\u00B0"});
    return "x" + *rc::gen::container<std::string>(rc::gen::inRange<char>(33, 127));
}

Edit anyConstrain() {
    const auto kinds = constraintKinds();
    std::vector<const ConstraintTraits*> own;
    for (const ConstraintTraits& kind : kinds)
        if (kind.residual != ConstraintResidual::none && kind.residual != ConstraintResidual::ellipseHelper)
            own.push_back(&kind);
    const ConstraintTraits& kind = *own[*rc::gen::inRange<std::size_t>(0, own.size())];
    Constrain edit{.type = kind.type, .places = {}};
    for (int left = *rc::gen::inRange(1, 4); left > 0; --left)
        edit.places.emplace_back(anyPlace());
    if (kind.isDimension() && toss())
        edit.value = anyNumber();
    edit.anyway = toss();
    if (toss())
        edit.as = anyName();
    if (kind.isDimension() && !edit.value && toss())
        edit.formula = anyFormula();
    return edit;
}

std::vector<Vec2> anyPoints() {
    std::vector<Vec2> points;
    for (int left = *rc::gen::inRange(1, 6); left > 0; --left)
        points.push_back(anyPoint());
    return points;
}

Figure anyFigure() {
    const Vec2 a = anyPoint(), b = anyPoint();
    switch (*rc::gen::inRange(0, 9)) {
        case 0:
            return LineShape{a, b};
        case 1:
            return CircleShape{a, anyNumber()};
        case 2:
            return DrawnArc{a, b, anyPoint()};
        case 3: {
            DrawnPolyline polyline{anyPoints(), {}, toss()};
            for (std::size_t i = 0; i < polyline.vertices.size(); ++i)
                polyline.bulges.push_back(toss() ? 0.0 : anyNumber());
            return polyline;
        }
        case 4:
            return PointShape{a};
        case 5:
            return DrawnEllipse{a, b, anyNumber(),
                                toss() ? std::optional(EllipseSpan{anyNumber(), anyNumber()}) : std::nullopt};
        case 6:
            return DrawnSpline{anyPoints(), *rc::gen::inRange(-3, 30), toss()};
        case 7:
            return DrawnEndless{a, b, toss()};
        default:
            return DrawnText{anyName().value, a, anyNumber(), anyNumber()};
    }
}

ChamferLengths anyLengths() {
    return {anyNumber(), toss() ? std::optional(Sourced<double>(anyNumber())) : std::nullopt};
}

CopyRow anyRow() {
    return {anyPoint(), *rc::gen::inRange(-5, 2000)};
}

Edit anyCopy() {
    Copy edit{.entities = anyNames(), .to = {}};
    if (toss())
        edit.to = CopyRing{anyPoint(), anyNumber(), *rc::gen::inRange(-5, 2000)};
    else
        edit.to = CopyGrid{anyRow(), toss() ? std::optional(anyRow()) : std::nullopt};
    edit.linked = toss();
    return edit;
}

Edit anyEdit() {
    static const std::array<Edit (*)(), std::variant_size_v<Edit>> makers{
        [] {
            return Edit(Break{anyName(), anyPoint(), toss() ? std::optional(anyPoint()) : std::nullopt});
        },
        [] {
            return Edit(Trim{anyName(), anyPoint(), anyNames()});
        },
        [] {
            return Edit(Extend{anyName(), anyEnd(), anyNames()});
        },
        [] { return anyFillet(); },
        [] {
            return Edit(FilletCorner{anyName(), anyIndex() - 1000, anyNumber(), toss()});
        },
        [] {
            return Edit(FilletSegments{anyName(), anyIndex(), anyIndex(), anyNumber()});
        },
        [] { return Edit(Join{anyNames()}); },
        [] {
            return Edit(Lengthen{anyName(), anyEnd(), toss() ? Lengthen::Way::by : Lengthen::Way::to, anyNumber()});
        },
        [] {
            return Edit(Stretch{anyPoint(), anyPoint(), anyPoint()});
        },
        [] { return anyMirror(); },
        [] { return anyAlign(); },
        [] {
            return Edit(Rotate{anyNames(), anyPoint(), anyNumber()});
        },
        [] { return anyDrag(); },
        [] { return anySet(); },
        [] {
            return Edit(SetDimension{anyName(), anyNumber()});
        },
        [] {
            return Edit(SetDriving{anyName(), toss()});
        },
        [] { return anyConstrain(); },
        [] { return Edit(Delete{anyNames()}); },
        [] {
            return Edit(SetActive{anyNames(), toss()});
        },
        [] { return Edit(Erase{anyNames()}); },
        [] {
            return Edit(Draw{anyFigure(), toss(), toss() ? anyName() : Name()});
        },
        [] {
            return Edit(Move{anyNames(), anyPoint()});
        },
        [] { return anyCopy(); },
        [] {
            return Edit(Scale{anyNames(), anyPoint(), anyNumber()});
        },
        [] {
            return Edit(Define{toss() ? anyNames() : std::vector<Name>(),
                               toss() ? std::optional<Sourced<int>>(*rc::gen::inRange(0, 10)) : std::nullopt});
        },
        [] {
            return Edit(SetFormula{anyName(), anyFormula()});
        },
        [] {
            return Edit(SetParameter{anyName(), anyFormula()});
        },
        [] {
            return Edit(Chamfer{anyName(), anyName(), anyLengths(),
                                toss() ? std::optional(FilletPicks{anyPoint(), anyPoint()}) : std::nullopt, toss()});
        },
        [] {
            return Edit(ChamferCorner{anyName(), anyIndex() - 1000, anyLengths(), toss()});
        },
        [] { return Edit(Explode{anyNames()}); },
        [] {
            return Edit(Offset{anyNames(), anyNumber(), toss()});
        },
        [] { return Edit(Undo{}); },
        [] { return Edit(Redo{}); },
    };
    return makers[*rc::gen::inRange<std::size_t>(0, makers.size())]();
}

RC_GTEST_PROP(RandomEditText, ReadsBackAsTheSameEdit, ()) {
    const Edit edit = anyEdit();
    const std::string text = toText(edit);
    RC_LOG() << text << '\n';
    RC_ASSERT(parse(text) == edit);
    RC_ASSERT(toText(parse(text)) == text);
}

}  // namespace
}  // namespace holdfast::editing
