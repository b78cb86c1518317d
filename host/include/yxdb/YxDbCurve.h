#pragma once

#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbEntity.h>

/// Anything with a parameter along it. Out-arguments stay as they were when the status is not eOk.
class YxDbCurve : public YxDbEntity {
    YX_DECLARE_CLASS();

public:
    virtual Yxrt::ErrorStatus getStartPoint(YxGePoint3d& point) const;
    virtual Yxrt::ErrorStatus getEndPoint(YxGePoint3d& point) const;
    /// The parameter of a point on the curve; exactly the parameter of an end or a vertex where the two points are
    /// equal. A closed curve's start and end have the start's parameter. eInvalidInput for a point that is not on the
    /// curve.
    virtual Yxrt::ErrorStatus getParamAtPoint(const YxGePoint3d& point, double& param) const;
    /// eOutOfRange for a parameter beyond the curve's ends; closed curves by angle, periodic splines and closed
    /// polylines wrap round.
    virtual Yxrt::ErrorStatus getPointAtParam(double param, YxGePoint3d& point) const;
    virtual bool isClosed() const;
    /// Exchanges start and end; the points stay.
    virtual Yxrt::ErrorStatus reverseCurve();

protected:
    YxDbCurve() = default;
    YxDbCurve(const YxDbCurve&) = default;
};
