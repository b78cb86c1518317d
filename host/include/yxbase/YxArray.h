#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>

/// The host's growable array: a physical length (storage), a logical length (elements in use) and a grow length.
/// Clearing by setLogicalLength(0) keeps the storage.
template <class T>
class YxArray {
public:
    explicit YxArray(int physicalLength = 0, int growLength = 8) : m_growLength(growLength < 1 ? 1 : growLength) {
        setPhysicalLength(physicalLength);
    }
    YxArray(const YxArray& other) : m_growLength(other.m_growLength) { copyFrom(other); }
    YxArray(YxArray&& other) noexcept : m_growLength(other.m_growLength) { swapStorage(other); }
    ~YxArray() { delete[] m_data; }

    /// Copies the elements and the grow length.
    YxArray& operator=(const YxArray& other) {
        if (this != &other) {
            m_growLength = other.m_growLength;
            copyFrom(other);
        }
        return *this;
    }
    YxArray& operator=(YxArray&& other) noexcept {
        if (this != &other) {
            m_growLength = other.m_growLength;
            swapStorage(other);
        }
        return *this;
    }

    int length() const { return m_length; }
    int logicalLength() const { return m_length; }
    int physicalLength() const { return m_physicalLength; }
    int growLength() const { return m_growLength; }
    bool isEmpty() const { return m_length == 0; }

    T& operator[](int index) { return m_data[index]; }
    const T& operator[](int index) const { return m_data[index]; }
    T& at(int index) { return m_data[index]; }
    const T& at(int index) const { return m_data[index]; }
    T& first() { return m_data[0]; }
    const T& first() const { return m_data[0]; }
    T& last() { return m_data[m_length - 1]; }
    const T& last() const { return m_data[m_length - 1]; }
    T* asArrayPtr() { return m_data; }
    const T* asArrayPtr() const { return m_data; }
    T* begin() { return m_data; }
    T* end() { return m_data + m_length; }
    const T* begin() const { return m_data; }
    const T* end() const { return m_data + m_length; }

    /// Appends one element; returns its index. The element may lie in this very array.
    int append(const T& value) {
        T copy(value);
        growFor(1);
        m_data[m_length] = std::move(copy);
        return m_length++;
    }
    /// Appends all elements of another array (or of this one), with one growth at most.
    void append(const YxArray& other) {
        const int count = other.m_length;
        if (m_length + count > m_physicalLength)
            setPhysicalLength(std::max(m_length + count, m_physicalLength + growStep()));
        for (int i = 0; i < count; ++i)
            m_data[m_length + i] = other.m_data[i];
        m_length += count;
    }
    /// Inserts before an index (0 to length), moving the tail up by one.
    void insertAt(int index, const T& value) {
        T copy(value);
        growFor(1);
        std::move_backward(m_data + index, m_data + m_length, m_data + m_length + 1);
        m_data[index] = std::move(copy);
        ++m_length;
    }
    /// The index of the first equal element, or -1: a linear search.
    int find(const T& value) const {
        const T* found = std::find(begin(), end(), value);
        return found == end() ? -1 : static_cast<int>(found - begin());
    }
    bool contains(const T& value) const { return find(value) >= 0; }

    /// Elements beyond the former length are value-initialised or what a longer array left there.
    void setLogicalLength(int length) {
        if (length > m_physicalLength)
            setPhysicalLength(length);
        m_length = length;
    }
    /// Makes room for that many elements, or cuts the storage and the elements down to them.
    void setPhysicalLength(int length) {
        if (length == m_physicalLength)
            return;
        T* grown = length > 0 ? new T[static_cast<std::size_t>(length)]() : nullptr;
        m_length = std::min(m_length, length);
        for (int i = 0; i < m_length; ++i)
            grown[i] = std::move(m_data[i]);
        delete[] m_data;
        m_data = grown;
        m_physicalLength = length;
    }

    friend bool operator==(const YxArray& a, const YxArray& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }

private:
    /// The host's rule: the larger of the grow length and the current length, the latter up to 64 KiB of elements.
    int growStep() const {
        constexpr std::size_t kLargeStepBytes = 65536;
        const std::size_t bytes = static_cast<std::size_t>(m_length) * sizeof(T);  // NOLINT(bugprone-sizeof-expression)
        const int step = bytes < kLargeStepBytes ? m_length : static_cast<int>(kLargeStepBytes / sizeof(T));  // NOLINT
        return std::max(m_growLength, step);
    }
    void growFor(int count) {
        if (m_length + count > m_physicalLength)
            setPhysicalLength(m_physicalLength + growStep());
    }
    void copyFrom(const YxArray& other) {
        if (m_physicalLength < other.m_length) {
            m_length = 0;
            setPhysicalLength(other.m_length);
        }
        for (int i = 0; i < other.m_length; ++i)
            m_data[i] = other.m_data[i];
        m_length = other.m_length;
    }
    void swapStorage(YxArray& other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_physicalLength, other.m_physicalLength);
        std::swap(m_length, other.m_length);
    }

    T* m_data = nullptr;
    int m_physicalLength = 0;
    int m_length = 0;
    int m_growLength;
};
