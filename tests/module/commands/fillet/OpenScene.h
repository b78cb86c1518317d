#pragma once

#include <string_view>
#include <vector>

#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {

/// A scene whose entities are open for read until its end, as a host keeps those that it hands over by pointer.
class OpenScene : public CheckedScene {
public:
    explicit OpenScene(std::string_view text) : CheckedScene(text) {
        const Unwatched unwatched;
        for (const YxDbObjectId& id : HostAccess::allIds(process().database()))
            if (HostAccess::peek(id)->isKindOf(YxDbEntity::desc()))
                m_held.push_back(YxDbObjectIdImpl::openObject(id, YxDb::kForRead, false));
    }

private:
    std::vector<YxSmartPtr<YxDbObject>> m_held;
};

}  // namespace holdfast::module
