#include <yxdb/YxDbXline.h>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"

YX_IMPLEMENT_CLASS(YxDbXline, YxDbCurve)

YxGePoint3d YxDbXline::basePoint() const {
    holdfast::accessorCall(*this, "YxDbXline::basePoint");
    return m_base;
}

YxGePoint3d YxDbXline::secondPoint() const {
    holdfast::accessorCall(*this, "YxDbXline::secondPoint");
    return m_base + m_direction;
}

YxGeVector3d YxDbXline::unitDir() const {
    holdfast::accessorCall(*this, "YxDbXline::unitDir");
    return m_direction;
}

Yxrt::ErrorStatus YxDbXline::transformBy(const YxGeMatrix3d& matrix) {
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

Yxrt::ErrorStatus YxDbXline::getParamAtPoint(const YxGePoint3d& point, double& param) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getParamAtPoint"))
        return refused;
    const double along = (point - m_base).dotProduct(m_direction);
    return holdfast::answerOnCurve(along, m_base + m_direction * along, point, param);
}

Yxrt::ErrorStatus YxDbXline::getPointAtParam(double param, YxGePoint3d& point) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getPointAtParam", param))
        return refused;
    return holdfast::answer(m_base + m_direction * param, point);
}

Yxrt::ErrorStatus YxDbXline::reverseCurve() {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbCurve::reverseCurve"))
        return refused;
    m_direction = YxGeVector3d::kIdentity - m_direction;  // no -0.0, unlike a change of sign
    return Yxrt::eOk;
}

YxRxObject* YxDbXline::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbXline(*this); });
}
