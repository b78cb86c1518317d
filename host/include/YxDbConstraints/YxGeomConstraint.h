#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <YxDbConstraints/YxGraphNode.h>
#include <yxbase/YxArray.h>

class YxCompositeConstraint;
class YxConstrainedGeometry;
class YxDbAssoc2dConstraintGroup;

/// A relation between constrained geometries.
class YxGeomConstraint : public YxGraphNode {
    YX_DECLARE_CLASS();

public:
    /// Made by the host for its own purposes; no command touches it.
    bool isInternal() const;
    /// Made by the host as a consequence of the geometry, as at the corner of a polyline.
    bool isImplied() const;
    void setIsImplied(bool implied);
    /// The composite that owns this constraint, or null.
    YxCompositeConstraint* getOwningCompositeConstraint() const;
    /// The geometries that the constraint holds on, in its own order. Fills the array from its start.
    virtual void getConstrainedGeometries(YxArray<YxConstrainedGeometry*>& geometries) const;

private:
    friend struct holdfast::HostAccess;
    YxDbAssoc2dConstraintGroup* m_group = nullptr;
    YxCompositeConstraint* m_owner = nullptr;
    std::vector<YxConstrainedGeometry*> m_geometries;
    bool m_internal = false;
    bool m_implied = false;
    bool m_deleted = false;
};

/// A constraint made of others, which it owns. Its geometries are the union of its members'.
class YxCompositeConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();

public:
    /// Fills the array from its start.
    void getOwnedConstraints(YxArray<YxGeomConstraint*>& constraints) const;
    void getConstrainedGeometries(YxArray<YxConstrainedGeometry*>& geometries) const override;

private:
    friend struct holdfast::HostAccess;
    mutable std::vector<YxGeomConstraint*> m_members;  // deleted ones leave it when it is read
    mutable std::size_t m_deletedCount = 0;            // at most how many of them were deleted
};

/// Two curves joined with equal position, direction and curvature; owns the coincidence of the joint.
class YxG2SmoothConstraint : public YxCompositeConstraint {
    YX_DECLARE_CLASS();
};

/// Two points are the same.
class YxPointCoincidenceConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// A point lies on a curve, taken as unbounded or closed.
class YxPointCurveConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// A geometry may not move.
class YxFixedConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// A line, or a pair of points, is parallel to the user coordinate system's x direction.
class YxHorizontalConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// A line, or a pair of points, is parallel to the user coordinate system's y direction.
class YxVerticalConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// Two lines have the same or opposite direction.
class YxParallelConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// Two lines are at right angles.
class YxPerpendicularConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// Two lines lie on one unbounded line.
class YxCollinearConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// Two curves touch.
class YxTangentConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// Two centres are the same.
class YxConcentricConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// Two lines are equally long.
class YxEqualLengthConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// Two circles, arcs or ellipses have equal radii.
class YxEqualRadiusConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// Two geometries mirror each other about a line or a point, named last.
class YxSymmetricConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// A point is the middle of a line.
class YxMidPointConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();
};

/// A helper line or point belongs to an ellipse.
class YxInternalConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();

private:
    friend struct holdfast::HostAccess;
    std::string m_role;
};

/// A measure between geometries: driving (the geometry obeys) or measured (the value follows).
class YxDimensionConstraint : public YxGeomConstraint {
    YX_DECLARE_CLASS();

public:
    enum Kind : int { kDistance, kDistanceX, kDistanceY, kRadius, kDiameter, kAngle };

    Kind kind() const;
    /// Drawing units, or radians for an angle.
    double value() const;
    bool isDriving() const;

private:
    friend struct holdfast::HostAccess;
    Kind m_kind = kDistance;
    double m_value = 0.0;
    bool m_driving = true;
};
