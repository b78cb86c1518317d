#pragma once

class YxRxClass;

/// What the platform throws.
class YxError {
public:
    YxError() = default;
    YxError(const YxError&) = default;
    YxError& operator=(const YxError&) = default;
    virtual ~YxError();
};

/// Thrown when a smart pointer is converted to a class that its object is not of.
class YxError_NotThatKindOfClass : public YxError {
public:
    YxError_NotThatKindOfClass(const YxRxClass* actual, const YxRxClass* wanted);
    const YxRxClass* actualClass() const;
    const YxRxClass* wantedClass() const;

private:
    const YxRxClass* m_actual;
    const YxRxClass* m_wanted;
};
