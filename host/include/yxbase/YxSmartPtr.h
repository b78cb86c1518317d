#pragma once

#include <yxbase/YxError.h>
#include <yxbase/YxRxObject.h>

enum YxAttachReference { kYxAttachReference };

/// Holds one reference on an open object and gives it back when it is destroyed or reassigned.
template <class T>
class YxSmartPtr {
public:
    YxSmartPtr() = default;
    /// Takes a reference of its own.
    explicit YxSmartPtr(T* object) : m_object(object) { yxrxAddRef(m_object); }
    /// Takes over a reference that the caller holds.
    YxSmartPtr(T* object, YxAttachReference) : m_object(object) {}
    YxSmartPtr(const YxSmartPtr& other) : m_object(other.m_object) { yxrxAddRef(m_object); }
    YxSmartPtr(YxSmartPtr&& other) noexcept : m_object(other.m_object) { other.m_object = nullptr; }
    /// Queries the object for class T; throws YxError_NotThatKindOfClass when it is neither null nor of that class.
    template <class U>
    YxSmartPtr(const YxSmartPtr<U>& other) : m_object(convert(other.get())) {
        yxrxAddRef(m_object);
    }
    ~YxSmartPtr() { yxrxRelease(m_object); }

    YxSmartPtr& operator=(const YxSmartPtr& other) {
        YxSmartPtr(other).swap(*this);
        return *this;
    }
    YxSmartPtr& operator=(YxSmartPtr&& other) noexcept {
        YxSmartPtr(static_cast<YxSmartPtr&&>(other)).swap(*this);
        return *this;
    }
    template <class U>
    YxSmartPtr& operator=(const YxSmartPtr<U>& other) {
        YxSmartPtr(other).swap(*this);
        return *this;
    }

    T* get() const { return m_object; }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    bool isNull() const { return m_object == nullptr; }
    explicit operator bool() const { return m_object != nullptr; }
    /// Gives the reference back now.
    void release() { YxSmartPtr().swap(*this); }

private:
    static T* convert(const YxRxObject* object) {
        if (object == nullptr)
            return nullptr;
        YxRxObject* queried = object->queryX(T::desc());
        if (queried == nullptr)
            throw YxError_NotThatKindOfClass(object->isA(), T::desc());
        return static_cast<T*>(queried);
    }
    void swap(YxSmartPtr& other) noexcept {
        T* kept = m_object;
        m_object = other.m_object;
        other.m_object = kept;
    }

    T* m_object = nullptr;
};
