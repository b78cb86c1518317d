#pragma once

#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "host/model/entities/EntityAccess.h"
#include "tests/module/core/RandomNetwork.h"

namespace holdfast::module {

enum class CurveKind { line, ray, xline, arc, ellipticalArc, ellipse, spline };

/// An edit of a curve's ends: some of them stay, some move; a closed ellipse may open, a spline may get another number
/// of control points.
struct CurveEdit {
    CurveKind kind = CurveKind::line;
    bool startMoves = false;
    bool endMoves = false;
    SplineData spline{};

    /// The curve after the edit, which the caller owns.
    std::unique_ptr<YxDbEntity> curve() const;
};

/// A curve of a random kind with its constraints yet to come.
struct RandomCurve {
    std::string name;
    CurveKind kind = CurveKind::line;

    std::string text() const;
    /// Points that only this kind has: the centre, control points.
    std::vector<std::string> ownPoints() const;
    CurveEdit edit() const;
};

inline RandomCurve randomCurve(std::string name) {
    return {
        .name = std::move(name),
        .kind = *rc::gen::element(CurveKind::line, CurveKind::ray, CurveKind::xline, CurveKind::arc,
                                  CurveKind::ellipticalArc, CurveKind::ellipse, CurveKind::spline, CurveKind::spline)};
}

inline std::string RandomCurve::text() const {
    switch (kind) {
        case CurveKind::line:
            return "line " + name + " 0,0 10,0";
        case CurveKind::ray:
            return "ray " + name + " 0,0 dir 1,0";
        case CurveKind::xline:
            return "xline " + name + " 0,0 dir 1,0";
        case CurveKind::arc:
            return "arc " + name + " centre 0,0 radius 5 from 0rad to 1rad";
        case CurveKind::ellipticalArc:
            return "ellipse " + name + " centre 0,0 major 4,0 ratio 0.5 from 0rad to 1rad";
        case CurveKind::ellipse:
            return "ellipse " + name + " centre 0,0 major 4,0 ratio 0.5";
        case CurveKind::spline:
            return "spline " + name + " degree 3 at 0,0 1,1 2,0 3,1 4,0";
    }
    return "";
}

inline std::vector<std::string> RandomCurve::ownPoints() const {
    if (kind == CurveKind::spline)
        return {name + ".control0", name + ".control1", name + ".control3", name + ".control4", name + ".control4"};
    if (kind == CurveKind::arc || kind == CurveKind::ellipticalArc || kind == CurveKind::ellipse)
        return {name + ".centre"};
    return {name + ".start"};
}

inline SplineData randomSpline() {
    SplineData data{.degree = 3, .control = {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}, {4, 0, 0}}};
    data.knots = {0, 0, 0, 0, 1, 2, 2, 2, 2};
    for (YxGePoint3d& point : data.control) {
        if (*rc::gen::weightedElement<bool>({{3, false}, {1, true}}))
            point = point + YxGeVector3d(0, 2, 0);
    }
    if (*rc::gen::weightedElement<bool>({{5, false}, {1, true}})) {
        data.control.push_back({5, 1, 0});
        data.knots = {0, 0, 0, 0, 1, 2, 3, 3, 3, 3};
    }
    return data;
}

inline CurveEdit RandomCurve::edit() const {
    CurveEdit edit{
        .kind = kind, .startMoves = *rc::gen::arbitrary<bool>(), .endMoves = *rc::gen::arbitrary<bool>(), .spline = {}};
    if (kind == CurveKind::spline)
        edit.spline = randomSpline();
    return edit;
}

inline std::unique_ptr<YxDbEntity> CurveEdit::curve() const {
    const YxGePoint3d start(startMoves ? 1.0 : 0.0, 0, 0);
    const double from = startMoves ? 0.5 : 0.0;
    const double to = endMoves ? 1.5 : 1.0;
    const bool opens = kind == CurveKind::ellipticalArc || startMoves;
    switch (kind) {
        case CurveKind::line:
            return EntityAccess::makeLine(start, {endMoves ? 12.0 : 10.0, 0, 0});
        case CurveKind::ray:
            return EntityAccess::makeRay(start, {1, 0, 0});
        case CurveKind::xline:
            return EntityAccess::makeXline(start, {1, 0, 0});
        case CurveKind::arc:
            return EntityAccess::makeArc({.centre = {}, .radius = 5, .startAngle = from, .endAngle = to});
        case CurveKind::ellipticalArc:
        case CurveKind::ellipse:
            return EntityAccess::makeEllipse({.centre = {},
                                              .majorAxis = {4, 0, 0},
                                              .ratio = 0.5,
                                              .startAngle = opens ? from : 0.0,
                                              .endAngle = opens ? to : 2.0 * std::numbers::pi});
        case CurveKind::spline:
            return EntityAccess::makeSpline(spline);
    }
    return nullptr;
}

/// Curves a and b, a line c, random constraints among them, and two constrained lines elsewhere.
inline std::string randomScene(const std::vector<RandomCurve>& curves) {
    std::string text = "line c 0,0 0,5; line away 0,500 9,500; line far 0,600 9,600; parallel away far; fixed away.end";
    std::vector<std::string> names = {"c"};
    std::vector<std::string> points = {"c.start"};
    for (const RandomCurve& curve : curves) {
        text += "; " + curve.text();
        names.push_back(curve.name);
        for (const std::string& point : curve.ownPoints())
            points.push_back(point);
    }
    const auto joint =
        rc::gen::map(rc::gen::pair(rc::gen::elementOf(points), rc::gen::elementOf(points)), [](const auto& ends) {
            return "smooth { coincident " + ends.first + " c.start; coincident c.end " + ends.second + " }";
        });
    const auto constraints = *rc::gen::container<std::vector<std::string>>(
        rc::gen::weightedOneOf<std::string>({{8, randomConstraint(names, points)}, {1, joint}}));
    for (const std::string& constraint : constraints)
        text += "; " + constraint;
    return text;
}

}  // namespace holdfast::module
