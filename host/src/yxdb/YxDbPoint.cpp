#include <yxdb/YxDbPoint.h>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"
#include "host/src/yxdb/curves/CurveMath.h"
#include "host/src/yxdb/curves/Similarity.h"

YX_IMPLEMENT_CLASS(YxDbPoint, YxDbEntity)

YxGePoint3d YxDbPoint::position() const {
    holdfast::accessorCall(*this, "YxDbPoint::position");
    return m_position;
}

Yxrt::ErrorStatus YxDbPoint::transformBy(const YxGeMatrix3d& matrix) {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbEntity::transformBy"))
        return refused;
    if (!holdfast::similarity(matrix))
        return Yxrt::eNotApplicable;
    return holdfast::answer(matrix * m_position, m_position);
}

YxRxObject* YxDbPoint::clone() const {
    return holdfast::cloneCall(*this, [this] { return new YxDbPoint(*this); });
}
