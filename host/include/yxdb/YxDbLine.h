#pragma once

#include <yxdb/YxDbCurve.h>

/// A straight segment. Parameter: distance from the start, in drawing units.
class YxDbLine : public YxDbCurve {
    YX_DECLARE_CLASS();

public:
    YxGePoint3d startPoint() const;
    YxGePoint3d endPoint() const;

    Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix) override;
    Yxrt::ErrorStatus getStartPoint(YxGePoint3d& point) const override;
    Yxrt::ErrorStatus getEndPoint(YxGePoint3d& point) const override;
    Yxrt::ErrorStatus getParamAtPoint(const YxGePoint3d& point, double& param) const override;
    Yxrt::ErrorStatus getPointAtParam(double param, YxGePoint3d& point) const override;
    Yxrt::ErrorStatus reverseCurve() override;
    YxRxObject* clone() const override;

private:
    friend struct holdfast::EntityAccess;
    YxDbLine() = default;
    YxDbLine(const YxDbLine&) = default;

    YxGePoint3d m_start;
    YxGePoint3d m_end;
};
