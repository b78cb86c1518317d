#pragma once

#include <yxdb/YxDbCurve.h>

/// A circular arc, right-handed about its normal. Angles in radians from x, or from -x when the normal points down.
/// Parameter: the angle.
class YxDbArc : public YxDbCurve {
    YX_DECLARE_CLASS();

public:
    YxGePoint3d center() const;
    double radius() const;
    double startAngle() const;
    double endAngle() const;
    YxGeVector3d normal() const;

    Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix) override;
    Yxrt::ErrorStatus getStartPoint(YxGePoint3d& point) const override;
    Yxrt::ErrorStatus getEndPoint(YxGePoint3d& point) const override;
    Yxrt::ErrorStatus getParamAtPoint(const YxGePoint3d& point, double& param) const override;
    Yxrt::ErrorStatus getPointAtParam(double param, YxGePoint3d& point) const override;
    Yxrt::ErrorStatus reverseCurve() override;
    YxRxObject* clone() const override;

private:
    friend struct holdfast::EntityAccess;
    YxDbArc() = default;
    YxDbArc(const YxDbArc&) = default;

    YxGePoint3d pointAt(double angle) const;
    void turnAngles(double shift);

    YxGePoint3d m_centre;
    YxGeVector3d m_normal{0.0, 0.0, 1.0};
    double m_radius = 1.0;
    double m_startAngle = 0.0;
    double m_endAngle = 1.0;
};
