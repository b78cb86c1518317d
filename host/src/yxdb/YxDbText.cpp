#include <yxdb/YxDbText.h>

#include <cmath>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"

YX_IMPLEMENT_CLASS(YxDbText, YxDbEntity)

YxGePoint3d YxDbText::position() const {
    holdfast::accessorCall(*this, "YxDbText::position");
    return m_position;
}

YxGeVector3d YxDbText::normal() const {
    holdfast::accessorCall(*this, "YxDbText::normal");
    return m_normal;
}

double YxDbText::rotation() const {
    holdfast::accessorCall(*this, "YxDbText::rotation");
    return m_rotation;
}

Yxrt::ErrorStatus YxDbText::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    const auto similar = holdfast::similarity(matrix);
    if (!similar)
        return Yxrt::eNotApplicable;
    const YxGePoint3d position = matrix * m_position;
    const double height = m_height * similar->scale;
    if (!holdfast::isFinite(position) || !std::isfinite(height))
        return Yxrt::eInvalidInput;
    const holdfast::PlaneFrame image = holdfast::imageOf(holdfast::planeFrame(m_normal), matrix);
    m_rotation = holdfast::shiftedAngle(m_rotation, holdfast::angleShift(image));
    m_normal = image.z;
    m_position = position;
    m_height = height;
    return Yxrt::eOk;
}

YxRxObject* YxDbText::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbText(*this); });
}
