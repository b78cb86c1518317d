#pragma once

/// The run-time description of one platform class. There is exactly one for each class, so that pointers compare.
class YxRxClass {
public:
    YxRxClass(const char* name, const YxRxClass* parent);
    YxRxClass(const YxRxClass&) = delete;
    YxRxClass& operator=(const YxRxClass&) = delete;

    const char* name() const;
    const YxRxClass* parent() const;
    /// True for the class itself and for every class below it.
    bool isDerivedFrom(const YxRxClass* other) const;

private:
    const char* m_name;
    const YxRxClass* m_parent;
};

/// Declares the run-time description of a class below YxRxObject.
#define YX_DECLARE_CLASS()    \
public:                       \
    static YxRxClass* desc(); \
    YxRxClass* isA() const override
