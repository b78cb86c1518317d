#pragma once

#include <cstddef>
#include <vector>

#include <YxDbConstraints/YxDbImplicitPointType.h>
#include <YxDbConstraints/YxGraphNode.h>
#include <yxbase/YxArray.h>
#include <yxdb/YxDbObjectId.h>

class YxDbAssoc2dConstraintGroup;
class YxGeomConstraint;

/// A piece of geometry that constraints hold on.
class YxConstrainedGeometry : public YxGraphNode {
    YX_DECLARE_CLASS();

public:
    /// The constraints that name this very geometry; members of composites, not the composites. Fills the array from
    /// its start.
    void getConnectedConstraints(YxArray<YxGeomConstraint*>& constraints) const;
    /// The dependency on which the geometry stands; for an implicit point that of the curve that defines it.
    YxDbObjectId geomDependencyId() const;

private:
    friend struct holdfast::HostAccess;
    YxDbAssoc2dConstraintGroup* m_group = nullptr;
    YxDbObjectId m_dependency;
    mutable std::vector<YxGeomConstraint*> m_connected;  // deleted ones leave it when it is read
    mutable std::size_t m_deletedCount = 0;              // at most how many of them were deleted
};

/// A point that a curve defines.
class YxConstrainedImplicitPoint : public YxConstrainedGeometry {
    YX_DECLARE_CLASS();

public:
    /// The node number of the curve that defines the point.
    unsigned int constrainedCurveId() const;
    /// The control point's number for a spline, else -1.
    int pointIndex() const;
    YxDb::ImplicitPointType pointType() const;

private:
    friend struct holdfast::HostAccess;
    unsigned int m_curveId = 0;
    int m_pointIndex = -1;
    YxDb::ImplicitPointType m_pointType = YxDb::kStartImplicit;
};

/// A point or a text's position that stands by itself.
class YxConstrainedPoint : public YxConstrainedGeometry {
    YX_DECLARE_CLASS();
};

/// Any constrained curve.
class YxConstrainedCurve : public YxConstrainedGeometry {
    YX_DECLARE_CLASS();
};

/// A line without ends: a construction line.
class YxConstrainedLine : public YxConstrainedCurve {
    YX_DECLARE_CLASS();
};

/// A line segment, also a straight segment of a polyline.
class YxConstrainedBoundedLine : public YxConstrainedLine {
    YX_DECLARE_CLASS();
};

class YxConstrainedRay : public YxConstrainedLine {
    YX_DECLARE_CLASS();
};

/// The direction line of a text.
class YxConstrainedDatumLine : public YxConstrainedLine {
    YX_DECLARE_CLASS();
};

class YxConstrainedCircle : public YxConstrainedCurve {
    YX_DECLARE_CLASS();
};

/// A circular arc, also an arc segment of a polyline.
class YxConstrainedArc : public YxConstrainedCircle {
    YX_DECLARE_CLASS();
};

class YxConstrainedEllipse : public YxConstrainedCurve {
    YX_DECLARE_CLASS();
};

class YxConstrainedBoundedEllipse : public YxConstrainedEllipse {
    YX_DECLARE_CLASS();
};

class YxConstrainedSpline : public YxConstrainedCurve {
    YX_DECLARE_CLASS();
};
