#pragma once

#include <yxbase/YxRxObject.h>

namespace holdfast {

/// From now on queryX(kind) of an object of class owner, or of one derived from it, answers this extension. The caller
/// keeps the extension; null takes it away again.
void setProtocolExtension(const YxRxClass* owner, const YxRxClass* kind, YxRxObject* extension);

/// The extension of the class itself or of the nearest class above it that has one, else null.
YxRxObject* protocolExtension(const YxRxClass* owner, const YxRxClass* kind);

}  // namespace holdfast
