#pragma once

#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbEntity.h>

/// Anything with a parameter along it. Out-arguments stay as they were when the status is not eOk.
class YxDbCurve : public YxDbEntity {
    YX_DECLARE_CLASS();

public:
    virtual Yxrt::ErrorStatus getStartPoint(YxGePoint3d& point) const;
    virtual Yxrt::ErrorStatus getEndPoint(YxGePoint3d& point) const;
    virtual Yxrt::ErrorStatus getParamAtPoint(const YxGePoint3d& point, double& param) const;
    virtual Yxrt::ErrorStatus getPointAtParam(double param, YxGePoint3d& point) const;
    virtual bool isClosed() const;
    virtual Yxrt::ErrorStatus reverseCurve();

protected:
    YxDbCurve() = default;
    YxDbCurve(const YxDbCurve&) = default;
};
