#pragma once

#include <yxbase/YxArray.h>

#include <bit>
#include <unordered_set>

namespace holdfast::module {

/// Appends, and doubles the room of a long array instead of letting it grow by the host's fixed step: many appends stay
/// linear. The value must not lie in the list.
template <class T>
void appendGrowing(YxArray<T>& list, const T& value) {
    constexpr int kFixedStepsBegin = 1024;  // the host doubles shorter arrays itself, of elements up to 64 bytes
    const int length = list.length();
    if (length >= kFixedStepsBegin && std::has_single_bit(static_cast<unsigned int>(length))) {
        list.setLogicalLength(2 * length);
        list.setLogicalLength(length);
    }
    list.append(value);
}

/// A host array of pointers in which each new one appears once; entries that stood there before may repeat. Short
/// arrays are searched, long ones have an index beside them that follows what others append.
template <class T>
class OnceList {
public:
    explicit OnceList(YxArray<T*>& list) : m_list(list) {}

    bool contains(T* element) const {
        constexpr int kShort = 16;
        if (m_list.length() <= kShort)
            return m_list.contains(element);
        followList();
        return m_index.contains(element);
    }
    void add(T* element) {
        if (!contains(element))
            appendGrowing(m_list, element);
    }

private:
    void followList() const {
        if (m_indexed > m_list.length()) {
            m_index.clear();
            m_indexed = 0;
        }
        for (; m_indexed < m_list.length(); ++m_indexed)
            m_index.insert(m_list[m_indexed]);
    }

    YxArray<T*>& m_list;
    mutable std::unordered_set<T*> m_index;  // the first m_indexed entries of the list
    mutable int m_indexed = 0;
};

}  // namespace holdfast::module
