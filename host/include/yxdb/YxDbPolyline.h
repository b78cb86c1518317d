#pragma once

#include <vector>

#include <yxbase/YxGeCircArc3d.h>
#include <yxbase/YxGePoint2d.h>
#include <yxdb/YxDbCurve.h>

namespace holdfast {
class BulgeSegment;
}

/// Straight and arc segments between vertices in the xy plane. Segment i runs from vertex i to the next one. Every
/// vertex carries an identifier that survives edits; 0 means that it was never referenced. Parameter: vertex index +
/// fraction of the segment.
class YxDbPolyline : public YxDbCurve {
    YX_DECLARE_CLASS();

public:
    enum SegType : int { kArc = 0, kLine = 1, kDegenerate = 2, kNone = 3 };

    unsigned int numVerts() const;
    Yxrt::ErrorStatus getPointAt(unsigned int index, YxGePoint3d& point) const;
    Yxrt::ErrorStatus getPointAt(unsigned int index, YxGePoint2d& point) const;
    /// kNone for the last vertex of an open polyline and for an index past the end.
    SegType segType(unsigned int index) const;
    /// Right-handed about its normal from vertex to vertex. The argument is unchanged unless the segment is an arc.
    Yxrt::ErrorStatus getArcSegAt(unsigned int index, YxGeCircArc3d& arc) const;
    Yxrt::ErrorStatus getVertexIdentifierAt(unsigned int index, int& identifier) const;
    virtual Yxrt::ErrorStatus setVertexIdentifierAt(unsigned int index, int identifier);

    Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix) override;
    Yxrt::ErrorStatus getStartPoint(YxGePoint3d& point) const override;
    Yxrt::ErrorStatus getEndPoint(YxGePoint3d& point) const override;
    Yxrt::ErrorStatus getParamAtPoint(const YxGePoint3d& point, double& param) const override;
    Yxrt::ErrorStatus getPointAtParam(double param, YxGePoint3d& point) const override;
    bool isClosed() const override;
    /// Identifiers stay with the index.
    Yxrt::ErrorStatus reverseCurve() override;
    YxRxObject* clone() const override;

private:
    friend struct holdfast::EntityAccess;
    YxDbPolyline() = default;
    YxDbPolyline(const YxDbPolyline&) = default;

    struct Vertex {
        YxGePoint2d point;
        double bulge = 0.0;
        int identifier = 0;
    };
    static YxGePoint3d placed(const YxGePoint2d& point);
    unsigned int segmentCount() const;
    holdfast::BulgeSegment segmentAt(unsigned int index) const;
    double nearestParam(const YxGePoint2d& point) const;
    YxGePoint3d pointOf(double param) const;
    Yxrt::ErrorStatus pointOfLoneVertex(double param, YxGePoint3d& point) const;

    std::vector<Vertex> m_vertices;
    bool m_closed = false;
    int m_lastFreshIdentifier = 0;
};
