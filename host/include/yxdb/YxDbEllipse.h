#pragma once

#include <yxdb/YxDbCurve.h>

/// An ellipse or an elliptical arc: the point at parameter t is centre + cos t major + sin t minor. majorAxis() and
/// minorAxis() are as long as their radii. Closed when the parameters span a full turn.
class YxDbEllipse : public YxDbCurve {
    YX_DECLARE_CLASS();

public:
    YxGePoint3d center() const;
    YxGeVector3d majorAxis() const;
    YxGeVector3d minorAxis() const;
    double radiusRatio() const;
    double startAngle() const;
    double endAngle() const;

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
    YxDbEllipse() = default;
    YxDbEllipse(const YxDbEllipse&) = default;

    YxGeVector3d minor() const;
    YxGePoint3d pointAt(double angle) const;
    double nearestAngle(double start, double end, const YxGePoint3d& point) const;

    YxGePoint3d m_centre;
    YxGeVector3d m_major{1.0, 0.0, 0.0};
    YxGeVector3d m_normal{0.0, 0.0, 1.0};
    double m_ratio = 1.0;
    double m_startAngle = 0.0;
    double m_endAngle = 0.0;
};
