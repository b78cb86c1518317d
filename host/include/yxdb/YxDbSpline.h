#pragma once

#include <vector>

#include <yxdb/YxDbCurve.h>

/// A B-spline by control points. Parameter: the knot parameter.
class YxDbSpline : public YxDbCurve {
    YX_DECLARE_CLASS();

public:
    int numControlPoints() const;
    Yxrt::ErrorStatus getControlPointAt(int index, YxGePoint3d& point) const;

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
    YxDbSpline() = default;
    YxDbSpline(const YxDbSpline&) = default;

    YxGePoint3d firstPoint() const;
    YxGePoint3d lastPoint() const;
    void reverseControlPoints();

    int m_degree = 3;
    bool m_periodic = false;
    std::vector<YxGePoint3d> m_controlPoints;
    std::vector<double> m_knots;
    std::vector<double> m_weights;
};
