#pragma once

#include <yxdb/YxDbCurve.h>

/// A line bounded at its base point only. Parameter: distance from the base point.
class YxDbRay : public YxDbCurve {
    YX_DECLARE_CLASS();

public:
    YxGePoint3d basePoint() const;
    YxGeVector3d unitDir() const;

    Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix) override;
    Yxrt::ErrorStatus getStartPoint(YxGePoint3d& point) const override;
    Yxrt::ErrorStatus getParamAtPoint(const YxGePoint3d& point, double& param) const override;
    Yxrt::ErrorStatus getPointAtParam(double param, YxGePoint3d& point) const override;
    YxRxObject* clone() const override;

private:
    friend struct holdfast::EntityAccess;
    YxDbRay() = default;
    YxDbRay(const YxDbRay&) = default;

    YxGePoint3d m_base;
    YxGeVector3d m_direction{1.0, 0.0, 0.0};
};
