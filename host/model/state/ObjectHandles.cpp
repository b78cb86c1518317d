#include "host/model/state/ObjectHandles.h"

#include "host/model/state/HostAccess.h"
#include "host/src/yxdb/ObjectData.h"

namespace holdfast {

std::size_t handleOf(const YxDbObject* object) {
    const YxDbStub* stub = object == nullptr ? nullptr : HostAccess::data(*object).stub;
    return stub == nullptr ? 0 : stub->handle;
}

}  // namespace holdfast
