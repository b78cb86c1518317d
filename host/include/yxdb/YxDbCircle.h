#pragma once

#include <yxdb/YxDbCurve.h>

/// A full circle; start and end point are the point at angle 0. Parameter: the angle in [0, 2 pi).
class YxDbCircle : public YxDbCurve {
    YX_DECLARE_CLASS();

public:
    YxGePoint3d center() const;
    double radius() const;
    YxGeVector3d normal() const;

    Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix) override;
    Yxrt::ErrorStatus getStartPoint(YxGePoint3d& point) const override;
    Yxrt::ErrorStatus getEndPoint(YxGePoint3d& point) const override;
    Yxrt::ErrorStatus getParamAtPoint(const YxGePoint3d& point, double& param) const override;
    Yxrt::ErrorStatus getPointAtParam(double param, YxGePoint3d& point) const override;
    bool isClosed() const override;
    Yxrt::ErrorStatus reverseCurve() override;
    YxRxObject* clone() const override;

private:
    friend struct holdfast::EntityAccess;
    YxDbCircle() = default;
    YxDbCircle(const YxDbCircle&) = default;

    YxGePoint3d pointAt(double angle) const;

    YxGePoint3d m_centre;
    YxGeVector3d m_normal{0.0, 0.0, 1.0};
    double m_radius = 1.0;
};
