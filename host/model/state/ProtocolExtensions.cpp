#include "host/model/state/ProtocolExtensions.h"

#include <map>
#include <utility>

namespace holdfast {
namespace {

using Key = std::pair<const YxRxClass*, const YxRxClass*>;

std::map<Key, YxRxObject*>& extensions() {
    static std::map<Key, YxRxObject*> registered;
    return registered;
}

}  // namespace

void setProtocolExtension(const YxRxClass* owner, const YxRxClass* kind, YxRxObject* extension) {
    if (extension == nullptr)
        extensions().erase({owner, kind});
    else
        extensions()[{owner, kind}] = extension;
}

YxRxObject* protocolExtension(const YxRxClass* owner, const YxRxClass* kind) {
    for (const YxRxClass* level = owner; level != nullptr; level = level->parent()) {
        const auto found = extensions().find({level, kind});
        if (found != extensions().end())
            return found->second;
    }
    return nullptr;
}

}  // namespace holdfast
