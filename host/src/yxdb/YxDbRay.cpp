#include <yxdb/YxDbRay.h>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"

YX_IMPLEMENT_CLASS(YxDbRay, YxDbCurve)

YxGePoint3d YxDbRay::basePoint() const {
    holdfast::accessorCall(*this, "YxDbRay::basePoint");
    return m_base;
}

YxGeVector3d YxDbRay::unitDir() const {
    holdfast::accessorCall(*this, "YxDbRay::unitDir");
    return m_direction;
}

Yxrt::ErrorStatus YxDbRay::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    if (!holdfast::similarity(matrix))
        return Yxrt::eNotApplicable;
    const YxGePoint3d base = matrix * m_base;
    if (!holdfast::isFinite(base))
        return Yxrt::eInvalidInput;
    m_base = base;
    m_direction = (matrix * m_direction).normal();
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbRay::getStartPoint(YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getStartPoint"))
        return refused;
    point = m_base;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus YxDbRay::getParamAtPoint(const YxGePoint3d& point, double& param) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getParamAtPoint"))
        return refused;
    if (!holdfast::isFinite(point))
        return Yxrt::eInvalidInput;
    const double along = (point - m_base).dotProduct(m_direction);
    const double nearest = along <= YxGeContext::gTol.equalPoint() ? 0.0 : along;
    return holdfast::answerOnCurve(nearest, m_base + m_direction * nearest, point, param);
}

Yxrt::ErrorStatus YxDbRay::getPointAtParam(double param, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getPointAtParam", param))
        return refused;
    constexpr double kRounding = 1e-10;
    if (!(param >= -kRounding))
        return Yxrt::eOutOfRange;
    return holdfast::answer(param <= 0.0 ? m_base : m_base + m_direction * param, point);
}

YxRxObject* YxDbRay::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbRay(*this); });
}
