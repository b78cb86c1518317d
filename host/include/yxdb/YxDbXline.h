#pragma once

#include <yxdb/YxDbCurve.h>

/// A construction line without ends. Parameter: signed distance from the base point.
class YxDbXline : public YxDbCurve {
    YX_DECLARE_CLASS();

public:
    YxGePoint3d basePoint() const;
    /// Base point + unit direction.
    YxGePoint3d secondPoint() const;
    YxGeVector3d unitDir() const;

    Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix) override;
    Yxrt::ErrorStatus getParamAtPoint(const YxGePoint3d& point, double& param) const override;
    Yxrt::ErrorStatus getPointAtParam(double param, YxGePoint3d& point) const override;
    Yxrt::ErrorStatus reverseCurve() override;
    YxRxObject* clone() const override;

private:
    friend struct holdfast::EntityAccess;
    YxDbXline() = default;
    YxDbXline(const YxDbXline&) = default;

    YxGePoint3d m_base;
    YxGeVector3d m_direction{1.0, 0.0, 0.0};
};
