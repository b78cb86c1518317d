#pragma once

#include <string>

#include <yxdb/YxDbPolyline.h>

#include "editing/Uses.h"
#include "hosting/Drawing.h"
#include "hosting/HostOpening.h"

namespace holdfast::editing {

/// A polyline that is open for write while the host changes it.
class OpenPolyline {
public:
    OpenPolyline(const Drawing& drawing, const std::string& name)
        : m_open(opened<YxDbPolyline>(drawing.id(name), YxDb::kForWrite)) {}
    YxDbPolyline* get() const { return m_open.get(); }

private:
    YxSmartPtr<YxDbPolyline> m_open;
};

inline PolylineShape polylineShape(const Drawing& drawing, const std::string& name) {
    return std::get<PolylineShape>(drawing.shape(name));
}

}  // namespace holdfast::editing
