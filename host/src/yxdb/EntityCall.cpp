#include "host/src/yxdb/EntityCall.h"

#include <string>

#include "host/model/state/HostAccess.h"
#include "host/src/yxdb/ObjectData.h"

namespace holdfast {

void reportUseAfterRelease(const YxDbEntity& entity, const char* operation) {
    if (HostAccess::data(entity).givenBack)
        reportMisuse(std::string(operation) + " on an entity that was released");
}

Yxrt::ErrorStatus openForWriteStatus(const YxDbEntity& entity, const char* operation) {
    if (HostAccess::isWritable(entity))
        return Yxrt::eOk;
    reportMisuse(std::string(operation) + " on an entity that is not open for write");
    return Yxrt::eNotOpenForWrite;
}

}  // namespace holdfast
