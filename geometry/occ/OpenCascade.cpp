#include "geometry/occ/OpenCascade.h"

#include <GccEnt.hxx>
#include <Geom2dAPI_ProjectPointOnCurve.hxx>
#include <Geom2dAdaptor_Curve.hxx>
#include <Geom2dConvert_BSplineCurveToBezierCurve.hxx>
#include <Geom2dGcc_Circ2d2TanRad.hxx>
#include <Geom2dGcc_QualifiedCurve.hxx>
#include <Geom2dInt_GInter.hxx>
#include <Geom2d_BSplineCurve.hxx>
#include <Geom2d_BezierCurve.hxx>
#include <Geom2d_Circle.hxx>
#include <Geom2d_Ellipse.hxx>
#include <Geom2d_Line.hxx>
#include <GeomAPI.hxx>
#include <GeomLib.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Standard_Failure.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array1OfPnt2d.hxx>
#include <gp_Pln.hxx>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "geometry/GeometryError.h"
#include "geometry/curves/Soundness.h"

namespace holdfast::geometry {
namespace {

using BSpline = opencascade::handle<Geom2d_BSplineCurve>;
using Bezier = opencascade::handle<Geom2d_BezierCurve>;
using Curve = opencascade::handle<Geom2d_Curve>;

/// Runs a piece of work of the library; its failures are no std::exception and are translated here.
template <class Work>
auto inLibrary(const char* purpose, const Work& work) {
    try {
        return work();
    } catch (const Standard_Failure& failure) {
        throw GeometryError(std::string(purpose) + " failed in the geometry library: " + failure.DynamicType()->Name() +
                            " " + failure.GetMessageString());
    }
}

gp_Pnt2d toPoint(Vec2 p) {
    return {p.x, p.y};
}
Vec2 fromPoint(const gp_Pnt2d& p) {
    return {p.X(), p.Y()};
}
Vec2 fromVector(const gp_Vec2d& v) {
    return {v.X(), v.Y()};
}

int sizeOf(const auto& list) {
    return static_cast<int>(list.size());
}

TColgp_Array1OfPnt2d toPoles(const std::vector<Vec2>& points) {
    TColgp_Array1OfPnt2d poles(1, sizeOf(points));
    for (int i = 1; i <= poles.Length(); ++i) {
        poles(i) = toPoint(points[static_cast<std::size_t>(i - 1)]);
    }
    return poles;
}

TColStd_Array1OfReal toReals(const std::vector<double>& values) {
    TColStd_Array1OfReal reals(1, sizeOf(values));
    for (int i = 1; i <= reals.Length(); ++i) {
        reals(i) = values[static_cast<std::size_t>(i - 1)];
    }
    return reals;
}

Bezier toBezier(const BezierForm& form) {
    return form.weights.empty() ? new Geom2d_BezierCurve(toPoles(form.poles))
                                : new Geom2d_BezierCurve(toPoles(form.poles), toReals(form.weights));
}

BezierForm fromBezier(const Bezier& curve, bool withWeights) {
    BezierForm form;
    for (int i = 1; i <= curve->NbPoles(); ++i) {
        form.poles.push_back(fromPoint(curve->Pole(i)));
        if (withWeights) {
            form.weights.push_back(curve->Weight(i));
        }
    }
    return form;
}

BSpline toSpline(const SplineShape& shape) {
    requireSound(shape);
    std::vector<double> knots;
    std::vector<int> counts;
    for (const double knot : shape.knots) {
        if (knots.empty() || knots.back() != knot) {
            knots.push_back(knot);
            counts.push_back(0);
        }
        ++counts.back();
    }
    TColStd_Array1OfInteger multiplicities(1, sizeOf(counts));
    for (int i = 1; i <= multiplicities.Length(); ++i) {
        multiplicities(i) = counts[static_cast<std::size_t>(i - 1)];
    }
    if (shape.weights.empty()) {
        return new Geom2d_BSplineCurve(toPoles(shape.control), toReals(knots), multiplicities, shape.degree,
                                       shape.periodic);
    }
    return new Geom2d_BSplineCurve(toPoles(shape.control), toReals(shape.weights), toReals(knots), multiplicities,
                                   shape.degree, shape.periodic);
}

/// The library drops equal weights; a shape that had weights keeps them.
SplineShape fromSpline(const BSpline& curve, bool withWeights) {
    SplineShape shape;
    shape.degree = curve->Degree();
    shape.periodic = curve->IsPeriodic();
    for (int i = 1; i <= curve->NbPoles(); ++i) {
        shape.control.push_back(fromPoint(curve->Pole(i)));
        if (withWeights) {
            shape.weights.push_back(curve->Weight(i));
        }
    }
    for (int i = 1; i <= curve->NbKnots(); ++i) {
        shape.knots.insert(shape.knots.end(), static_cast<std::size_t>(curve->Multiplicity(i)), curve->Knot(i));
    }
    return shape;
}

gp_Ax22d axesOf(const ConicForm& conic) {
    return {toPoint(conic.centre), gp_Dir2d(conic.major.x, conic.major.y), !conic.isClockwise()};
}

Curve toCurve(const LineForm& line) {
    return new Geom2d_Line(toPoint(line.origin), gp_Dir2d(line.direction.x, line.direction.y));
}

/// The library is exact for circles and iterates for ellipses.
Curve toCurve(const ConicForm& conic) {
    if (isCircle(conic)) {
        return new Geom2d_Circle(axesOf(conic), norm(conic.major));
    }
    return new Geom2d_Ellipse(axesOf(conic), norm(conic.major), norm(conic.minor));
}

Curve toCurve(const BezierForm& bezier) {
    return toBezier(bezier);
}

Curve toCurve(const Form& form) {
    return std::visit([](const auto& simple) -> Curve { return toCurve(simple); }, form);
}

Geom2dAdaptor_Curve adaptorOf(const Piece& piece) {
    const Curve curve = toCurve(piece.form);
    if (!std::isfinite(piece.first) || !std::isfinite(piece.last)) {
        return Geom2dAdaptor_Curve(curve);
    }
    return {curve, piece.first, piece.last};
}

bool isLineOrCircle(const Piece& piece) {
    return std::holds_alternative<LineForm>(piece.form) || isCircle(piece.form);
}

/// With a curve that is neither line nor circle, the library fails on a circle smaller than the radius asked for. As an
/// ellipse of equal axes the same circle takes its way for general curves.
Geom2dAdaptor_Curve tangentArgument(const Piece& piece, const Piece& other, double radius) {
    if (isLineOrCircle(other) || !isCircle(piece.form)) {
        return isLineOrCircle(piece) ? Geom2dAdaptor_Curve(toCurve(piece.form)) : adaptorOf(piece);
    }
    const auto& circle = std::get<ConicForm>(piece.form);
    if (norm(circle.major) > radius) {
        return Geom2dAdaptor_Curve(toCurve(circle));
    }
    return Geom2dAdaptor_Curve(new Geom2d_Ellipse(axesOf(circle), norm(circle.major), norm(circle.major)));
}

Contact contactAt(const IntRes2d_IntersectionPoint& from, const IntRes2d_IntersectionPoint& to) {
    return {from.ParamOnFirst(), from.ParamOnSecond(), to.ParamOnFirst(), to.ParamOnSecond()};
}

/// The outermost span as poles and weights, once its inner knot is as frequent as the degree.
BezierForm outermostSpan(const BSpline& curve, int firstPole) {
    BezierForm span;
    for (int i = firstPole; i <= firstPole + curve->Degree(); ++i) {
        span.poles.push_back(fromPoint(curve->Pole(i)));
        if (curve->IsRational()) {
            span.weights.push_back(curve->Weight(i));
        }
    }
    return span;
}

bool hasPositiveWeights(const BezierForm& form) {
    return std::all_of(form.weights.begin(), form.weights.end(), [](double weight) { return weight > 0.0; });
}

void replaceSpan(const BSpline& curve, int firstPole, const BezierForm& span) {
    for (std::size_t i = 0; i < span.poles.size(); ++i) {
        const int pole = firstPole + static_cast<int>(i);
        curve->SetPole(pole, toPoint(span.poles[i]));
        if (!span.weights.empty()) {
            curve->SetWeight(pole, span.weights[i]);
        }
    }
}

/// Makes the outermost span a Bezier curve of its own by more of the knots at its inner end, prolongs it, and takes the
/// added knots out again. False where a weight would vanish.
bool prolong(const BSpline& curve, CurveEnd end, double knot) {
    const int degree = curve->Degree();
    const bool atEnd = end == CurveEnd::end;
    const int joint = atEnd ? curve->NbKnots() - 1 : 2;
    const int outermost = atEnd ? curve->NbKnots() : 1;
    const double reach = (knot - curve->Knot(joint)) / (curve->Knot(outermost) - curve->Knot(joint));
    const bool hasJoint = curve->NbKnots() > 2;
    const int multiplicity = curve->Multiplicity(joint);
    if (hasJoint) {
        curve->IncreaseMultiplicity(joint, degree);
    }
    const int firstPole = atEnd ? curve->NbPoles() - degree : 1;
    const BezierForm span = outermostSpan(curve, firstPole);
    const BezierForm longer = atEnd ? bezierPart(span, 0.0, reach) : bezierPart(span, 1.0 - reach, 1.0);
    if (!hasPositiveWeights(longer)) {
        return false;
    }
    replaceSpan(curve, firstPole, longer);
    curve->SetKnot(outermost, knot);
    if (hasJoint) {
        curve->RemoveKnot(joint, multiplicity, kFrameTolerance);
    }
    return true;
}

}  // namespace

Derivatives bezierDerivatives(const BezierForm& bezier, double t) {
    return inLibrary("evaluating a spline", [&] {
        gp_Pnt2d point;
        gp_Vec2d first;
        gp_Vec2d second;
        toBezier(bezier)->D2(t, point, first, second);
        return Derivatives{fromPoint(point), fromVector(first), fromVector(second)};
    });
}

BezierForm bezierPart(const BezierForm& bezier, double first, double last) {
    return inLibrary("taking a part of a spline", [&] {
        const Bezier curve = toBezier(bezier);
        curve->Segment(first, last);
        return fromBezier(curve, !bezier.weights.empty());
    });
}

std::vector<Derivatives> splineDerivatives(const SplineShape& spline, std::span<const double> params) {
    return inLibrary("evaluating a spline", [&] {
        const BSpline curve = toSpline(spline);
        std::vector<Derivatives> all;
        all.reserve(params.size());
        for (const double t : params) {
            gp_Pnt2d point;
            gp_Vec2d first;
            gp_Vec2d second;
            curve->D2(t, point, first, second);
            all.push_back({fromPoint(point), fromVector(first), fromVector(second)});
        }
        return all;
    });
}

std::vector<BezierSpan> bezierSpans(const SplineShape& spline) {
    return inLibrary("cutting a spline into spans", [&] {
        const BSpline curve = toSpline(spline);
        Geom2dConvert_BSplineCurveToBezierCurve converter(curve);
        TColStd_Array1OfReal knots(1, converter.NbArcs() + 1);
        converter.Knots(knots);
        std::vector<BezierSpan> spans;
        for (int i = 1; i <= converter.NbArcs(); ++i) {
            spans.push_back({fromBezier(converter.Arc(i), converter.Arc(i)->IsRational()), knots(i), knots(i + 1)});
        }
        return spans;
    });
}

SplineShape splinePart(const SplineShape& spline, double first, double last) {
    return inLibrary("taking a part of a spline", [&] {
        const BSpline curve = toSpline(spline);
        curve->Segment(first, last, 1e-12 * (spline.knots.back() - spline.knots.front()));
        return fromSpline(curve, !spline.weights.empty());
    });
}

std::optional<SplineShape> splineProlonged(const SplineShape& spline, CurveEnd end, double knot) {
    return inLibrary("prolonging a spline", [&]() -> std::optional<SplineShape> {
        const BSpline curve = toSpline(spline);
        curve->Segment(curve->FirstParameter(), curve->LastParameter());  // clamps the ends
        return prolong(curve, end, knot) ? std::optional(fromSpline(curve, !spline.weights.empty())) : std::nullopt;
    });
}

SplineShape splineLedTo(const SplineShape& spline, CurveEnd end, Vec2 point) {
    constexpr int kEqualCurvature = 2;
    return inLibrary("extending a spline", [&] {
        opencascade::handle<Geom_BoundedCurve> curve =
            opencascade::handle<Geom_BoundedCurve>::DownCast(GeomAPI::To3d(toSpline(spline), gp_Pln()));
        GeomLib::ExtendCurveToPoint(curve, gp_Pnt(point.x, point.y, 0.0), kEqualCurvature, end == CurveEnd::end);
        return fromSpline(BSpline::DownCast(GeomAPI::To2d(curve, gp_Pln())), !spline.weights.empty());
    });
}

SplineShape splineReversed(const SplineShape& spline) {
    return inLibrary("reversing a spline", [&] {
        const BSpline curve = toSpline(spline);
        curve->Reverse();
        return fromSpline(curve, !spline.weights.empty());
    });
}

std::vector<Contact> contactsOf(const Piece& a, const Piece& b, double tolerance) {
    return inLibrary("intersecting two curves", [&] {
        const Geom2dAdaptor_Curve first = adaptorOf(a);
        const Geom2dAdaptor_Curve second = adaptorOf(b);
        Geom2dInt_GInter meeting;
        meeting.Perform(first, second, tolerance, tolerance);
        if (!meeting.IsDone()) {
            throw GeometryError("intersecting two curves: the geometry library gave up");
        }
        std::vector<Contact> contacts;
        for (int i = 1; i <= meeting.NbPoints(); ++i) {
            contacts.push_back(contactAt(meeting.Point(i), meeting.Point(i)));
        }
        for (int i = 1; i <= meeting.NbSegments(); ++i) {
            const IntRes2d_IntersectionSegment& stretch = meeting.Segment(i);
            if (stretch.HasFirstPoint() && stretch.HasLastPoint()) {
                contacts.push_back(contactAt(stretch.FirstPoint(), stretch.LastPoint()));
            }
        }
        return contacts;
    });
}

std::vector<double> perpendicularFeet(const Piece& piece, Vec2 point) {
    return inLibrary("projecting a point", [&] {
        const Geom2dAPI_ProjectPointOnCurve feet(toPoint(point), toCurve(piece.form), piece.first, piece.last);
        std::vector<double> params;
        for (int i = 1; i <= feet.NbPoints(); ++i) {
            params.push_back(feet.Parameter(i));
        }
        return params;
    });
}

std::vector<TangentCentre> tangentCentres(const Piece& a, const Piece& b, double radius, double tolerance) {
    return inLibrary("finding tangent arcs", [&] {
        const Geom2dGcc_QualifiedCurve first(tangentArgument(a, b, radius), GccEnt_unqualified);
        const Geom2dGcc_QualifiedCurve second(tangentArgument(b, a, radius), GccEnt_unqualified);
        const Geom2dGcc_Circ2d2TanRad maker(first, second, radius, tolerance);
        std::vector<TangentCentre> centres;
        for (int i = 1; maker.IsDone() && i <= maker.NbSolutions(); ++i) {
            double onCircle = 0.0;
            TangentCentre found;
            found.centre = fromPoint(maker.ThisSolution(i).Location());
            gp_Pnt2d point;
            maker.Tangency1(i, onCircle, found.paramA, point);
            maker.Tangency2(i, onCircle, found.paramB, point);
            centres.push_back(found);
        }
        return centres;
    });
}

}  // namespace holdfast::geometry
