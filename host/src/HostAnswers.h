#pragma once

#include <algorithm>
#include <iterator>

#include <yxbase/YxArray.h>
#include <yxdb/YxDbObject.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"

namespace holdfast {

/// What an operation that was told to answer otherwise answers in place of an object of class T: the other object if
/// it is one, else null.
template <class T>
T* answeredObject(const HostFault& fault) {
    return fault.kind == FaultKind::answerOther ? dynamic_cast<T*>(fault.other) : nullptr;
}

/// The same for operations that answer an id.
inline YxDbObjectId answeredId(const HostFault& fault) {
    const auto* other = answeredObject<YxDbObject>(fault);
    return other == nullptr ? YxDbObjectId() : HostAccess::idOf(*other);
}

/// The status with which a listing is answered otherwise.
inline Yxrt::ErrorStatus listStatus(const HostFault& fault) {
    const bool listed = fault.kind == FaultKind::answerOther || fault.kind == FaultKind::nullEntry;
    return listed ? Yxrt::eOk : refusedStatus(fault);
}

/// How an entry of a listing is answered in place of the true ones.
template <class Entry>
struct AnsweredEntry;
template <class T>
struct AnsweredEntry<T*> {
    static T* from(const HostFault& fault) { return answeredObject<T>(fault); }
};
template <>
struct AnsweredEntry<YxDbObjectId> {
    static YxDbObjectId from(const HostFault& fault) { return answeredId(fault); }
};

/// Fills a listing from its start, as far as the fault lets it: with nothing, with the other object alone, or with a
/// null entry before the true ones.
template <class Entry, class Items>
void answerList(YxArray<Entry>& list, const Items& items, const HostFault& fault) {
    list.setLogicalLength(0);
    switch (fault.kind) {
        case FaultKind::refuse:
        case FaultKind::errorStatus:
            return;
        case FaultKind::answerOther:
            list.append(AnsweredEntry<Entry>::from(fault));
            return;
        case FaultKind::none:
        case FaultKind::nullEntry:
            break;
    }
    const int first = fault.kind == FaultKind::nullEntry ? 1 : 0;
    list.setLogicalLength(first + static_cast<int>(std::size(items)));
    if (first == 1)
        list[0] = Entry();
    std::copy(std::begin(items), std::end(items), list.begin() + first);
}

}  // namespace holdfast
