#include <yxdb/YxDbCurve.h>

#include "host/model/state/ImplementClass.h"
#include "host/src/yxdb/EntityCall.h"

YX_IMPLEMENT_CLASS(YxDbCurve, YxDbEntity)

// What a kind of curve does not have (a construction line's ends, say) it does not override.

Yxrt::ErrorStatus YxDbCurve::getStartPoint(YxGePoint3d&) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getStartPoint"))
        return refused;
    return Yxrt::eNotApplicable;
}

Yxrt::ErrorStatus YxDbCurve::getEndPoint(YxGePoint3d&) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getEndPoint"))
        return refused;
    return Yxrt::eNotApplicable;
}

Yxrt::ErrorStatus YxDbCurve::getParamAtPoint(const YxGePoint3d&, double&) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getParamAtPoint"))
        return refused;
    return Yxrt::eNotApplicable;
}

Yxrt::ErrorStatus YxDbCurve::getPointAtParam(double, YxGePoint3d&) const {
    if (const Yxrt::ErrorStatus refused = holdfast::readCall(*this, "YxDbCurve::getPointAtParam"))
        return refused;
    return Yxrt::eNotApplicable;
}

bool YxDbCurve::isClosed() const {
    holdfast::accessorCall(*this, "YxDbCurve::isClosed");
    return false;
}

Yxrt::ErrorStatus YxDbCurve::reverseCurve() {
    if (const Yxrt::ErrorStatus refused = holdfast::writeCall(*this, "YxDbCurve::reverseCurve"))
        return refused;
    return Yxrt::eNotApplicable;
}
