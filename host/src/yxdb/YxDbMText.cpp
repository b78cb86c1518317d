#include <yxdb/YxDbMText.h>

#include <cmath>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"

YX_IMPLEMENT_CLASS(YxDbMText, YxDbEntity)

YxGePoint3d YxDbMText::location() const {
    holdfast::accessorCall(*this, "YxDbMText::location");
    return m_location;
}

YxGeVector3d YxDbMText::normal() const {
    holdfast::accessorCall(*this, "YxDbMText::normal");
    return m_normal;
}

double YxDbMText::rotation() const {
    holdfast::accessorCall(*this, "YxDbMText::rotation");
    return m_rotation;
}

Yxrt::ErrorStatus YxDbMText::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    const auto similar = holdfast::similarity(matrix);
    if (!similar)
        return Yxrt::eNotApplicable;
    const YxGePoint3d location = matrix * m_location;
    const double height = m_height * similar->scale;
    if (!holdfast::isFinite(location) || !std::isfinite(height))
        return Yxrt::eInvalidInput;
    const holdfast::PlaneFrame image = holdfast::imageOf(holdfast::planeFrame(m_normal), matrix);
    m_rotation = holdfast::shiftedAngle(m_rotation, holdfast::angleShift(image));
    m_normal = image.z;
    m_location = location;
    m_height = height;
    return Yxrt::eOk;
}

YxRxObject* YxDbMText::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbMText(*this); });
}
