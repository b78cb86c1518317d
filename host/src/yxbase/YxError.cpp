#include <yxbase/YxError.h>

YxError::~YxError() = default;

YxError_NotThatKindOfClass::YxError_NotThatKindOfClass(const YxRxClass* actual, const YxRxClass* wanted)
    : m_actual(actual), m_wanted(wanted) {}

const YxRxClass* YxError_NotThatKindOfClass::actualClass() const {
    return m_actual;
}

const YxRxClass* YxError_NotThatKindOfClass::wantedClass() const {
    return m_wanted;
}
