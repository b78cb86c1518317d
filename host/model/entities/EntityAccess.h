#pragma once

#include <cstddef>
#include <memory>
#include <numbers>
#include <span>
#include <string>
#include <vector>

#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbCircle.h>
#include <yxdb/YxDbEllipse.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbMText.h>
#include <yxdb/YxDbPoint.h>
#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbRay.h>
#include <yxdb/YxDbSpline.h>
#include <yxdb/YxDbText.h>
#include <yxdb/YxDbXline.h>

namespace holdfast {

// What the kinds of entities consist of. Angles are radians. Every field has a default, so that designated initialisers
// name only what differs.

struct LineData {
    YxGePoint3d start{};
    YxGePoint3d end{};
};

/// A ray or a construction line. The direction may have any length but 0; it is kept as a unit vector.
struct DirectedData {
    YxGePoint3d base{};
    YxGeVector3d direction{1.0, 0.0, 0.0};
};

struct CircleData {
    YxGePoint3d centre{};
    double radius = 1.0;
    YxGeVector3d normal{0.0, 0.0, 1.0};
};

/// Runs right-handed about the normal from startAngle on; angles from x, from -x when the normal points down. Equal
/// angles make a full turn. Angles are kept as they are given.
struct ArcData {
    YxGePoint3d centre{};
    double radius = 1.0;
    double startAngle = 0.0;
    double endAngle = 1.0;
    YxGeVector3d normal{0.0, 0.0, 1.0};
};

/// The major axis is half the longest diameter and lies across the normal; ratio is minor to major, in (0, 1]. Angles
/// are parameters; equal ones make a full ellipse.
struct EllipseData {
    YxGePoint3d centre{};
    YxGeVector3d majorAxis{1.0, 0.0, 0.0};
    double ratio = 1.0;
    double startAngle = 0.0;
    double endAngle = 2.0 * std::numbers::pi;
    YxGeVector3d normal{0.0, 0.0, 1.0};
};

/// A B-spline of degree 1 to 25. Not periodic: control.size() + degree + 1 knots. Periodic: the knots of one period,
/// the first and the last with the same multiplicity m, at most the degree; control.size() + m of them. weights is
/// empty for a polynomial spline.
struct SplineData {
    int degree = 3;
    bool periodic = false;
    std::vector<YxGePoint3d> control{};
    std::vector<double> knots{};
    std::vector<double> weights{};
};

/// The bulge is tan(included angle / 4) of the segment that starts at the vertex, positive counter-clockwise.
struct PolylineVertex {
    YxGePoint2d point{};
    double bulge = 0.0;
    int identifier = 0;
};

struct PolylineData {
    std::vector<PolylineVertex> vertices{};
    bool closed = false;
};

/// One line of text or a paragraph.
struct TextData {
    YxGePoint3d position{};
    double rotation = 0.0;
    double height = 2.5;
    std::string text{};
    YxGeVector3d normal{0.0, 0.0, 1.0};
};

/// Makes entities and reads and changes all their data, as builders and editing commands need it.
///
/// New entities belong to the caller and live in no database. Data that makes no entity (NaN or infinite numbers, a
/// radius of 0, a wrong number of knots, an index without a vertex) is refused with std::invalid_argument, whose text
/// says what is wrong and how to mend it; the entity then is as it was. An entity that lives in a database has to be
/// open for write before it is changed. Reading is no call of the host and appears in no journal.
struct EntityAccess {
    static std::unique_ptr<YxDbLine> makeLine(const YxGePoint3d& start, const YxGePoint3d& end);
    static void setLine(YxDbLine& line, const YxGePoint3d& start, const YxGePoint3d& end);
    static LineData line(const YxDbLine& line);

    static std::unique_ptr<YxDbRay> makeRay(const YxGePoint3d& base, const YxGeVector3d& direction);
    static void setRay(YxDbRay& ray, const YxGePoint3d& base, const YxGeVector3d& direction);
    static DirectedData ray(const YxDbRay& ray);

    static std::unique_ptr<YxDbXline> makeXline(const YxGePoint3d& base, const YxGeVector3d& direction);
    static void setXline(YxDbXline& xline, const YxGePoint3d& base, const YxGeVector3d& direction);
    static DirectedData xline(const YxDbXline& xline);

    static std::unique_ptr<YxDbPoint> makePoint(const YxGePoint3d& position);
    static void setPoint(YxDbPoint& point, const YxGePoint3d& position);
    static YxGePoint3d point(const YxDbPoint& point);

    static std::unique_ptr<YxDbCircle> makeCircle(const CircleData& data);
    static void setCircle(YxDbCircle& circle, const CircleData& data);
    static CircleData circle(const YxDbCircle& circle);

    static std::unique_ptr<YxDbArc> makeArc(const ArcData& data);
    static void setArc(YxDbArc& arc, const ArcData& data);
    static ArcData arc(const YxDbArc& arc);

    static std::unique_ptr<YxDbEllipse> makeEllipse(const EllipseData& data);
    static void setEllipse(YxDbEllipse& ellipse, const EllipseData& data);
    static EllipseData ellipse(const YxDbEllipse& ellipse);
    /// Of the ellipse's point that is nearest to another, however far away that is.
    static double nearestAngle(const YxDbEllipse& ellipse, const YxGePoint3d& point);

    static std::unique_ptr<YxDbSpline> makeSpline(SplineData data);
    static void setSpline(YxDbSpline& spline, SplineData data);
    static void setControlPoint(YxDbSpline& spline, int index, const YxGePoint3d& point);
    static SplineData spline(const YxDbSpline& spline);

    static std::unique_ptr<YxDbText> makeText(const TextData& data);
    static void setText(YxDbText& text, const TextData& data);
    static TextData text(const YxDbText& text);

    static std::unique_ptr<YxDbMText> makeMText(const TextData& data);
    static void setMText(YxDbMText& text, const TextData& data);
    static TextData mtext(const YxDbMText& text);

    static std::unique_ptr<YxDbPolyline> makePolyline(const PolylineData& data);
    /// The polyline remembers the identifiers that it had: none of them becomes a fresh one again.
    static void setPolyline(YxDbPolyline& polyline, const PolylineData& data);
    static PolylineData polyline(const YxDbPolyline& polyline);
    static std::size_t vertexCount(const YxDbPolyline& polyline) { return polyline.m_vertices.size(); }
    static bool isClosed(const YxDbPolyline& polyline) { return polyline.m_closed; }
    /// One less than the vertices, or as many when the polyline is closed.
    static std::size_t segmentCount(const YxDbPolyline& polyline);
    /// What segType answers as kArc.
    static bool isArc(const YxDbPolyline& polyline, std::size_t segment);
    /// Without copying the others.
    static PolylineVertex vertex(const YxDbPolyline& polyline, std::size_t index);
    static void setVertex(YxDbPolyline& polyline, std::size_t index, const PolylineVertex& vertex);
    /// Bulge and identifier stay.
    static void setVertexPoint(YxDbPolyline& polyline, std::size_t index, const YxGePoint2d& point);
    static void setBulge(YxDbPolyline& polyline, std::size_t index, double bulge);
    /// The vertex gets the index; an index equal to the number of vertices appends.
    static void insertVertex(YxDbPolyline& polyline, std::size_t index, const PolylineVertex& vertex);
    static void removeVertex(YxDbPolyline& polyline, std::size_t index);
    /// One pass, however many there are. At least one vertex has to stay.
    static void removeVertices(YxDbPolyline& polyline, std::size_t first, std::size_t count);
    static void setClosed(YxDbPolyline& polyline, bool closed);
    /// The highest identifier that this polyline ever had, 0 before the first.
    static int lastFreshIdentifier(const YxDbPolyline& polyline);
    /// One more than the polyline ever had, which counts as used from now on; 0 when no higher number is left. Part of
    /// the host's own bookkeeping: needs no open for write.
    static int takeFreshIdentifier(YxDbPolyline& polyline);
    /// Gives a vertex a fresh identifier, as the host does when a persistent name begins to refer to it.
    static int numberVertex(YxDbPolyline& polyline, std::size_t index);

private:
    static void remember(YxDbPolyline& polyline, int identifier);
};

}  // namespace holdfast
