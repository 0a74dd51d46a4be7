// CUIntArray: the platform's growable array of 32-bit unsigned integers.
//
// Indices are int. The checked members (GetAt, SetAt, InsertAt, RemoveAt ...) accept any index and
// say what they do with a bad one; ElementAt and operator[] require a valid index, as on the
// platform, and assert it.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

#include "qvox/platform/WinTypes.h"

namespace qvox {

class CUIntArray {
  public:
    int GetSize() const noexcept { return static_cast<int>(data_.size()); }
    int GetCount() const noexcept { return GetSize(); }
    // -1 when empty.
    int GetUpperBound() const noexcept { return GetSize() - 1; }
    BOOL IsEmpty() const noexcept { return data_.empty() ? TRUE : FALSE; }

    // New elements are 0; a negative size empties the array. growBy is accepted for the
    // platform's signature and has no effect.
    void SetSize(int newSize, int growBy = -1) {
        static_cast<void>(growBy);
        data_.resize(newSize > 0 ? static_cast<std::size_t>(newSize) : 0);
    }

    // Index of the new element.
    int Add(UINT value) {
        data_.push_back(value);
        return GetUpperBound();
    }
    // Index of the first appended element; appending the array to itself doubles it.
    int Append(const CUIntArray& other) {
        const int first = GetSize();
        const std::size_t n = other.data_.size();
        data_.reserve(data_.size() + n);
        for (std::size_t k = 0; k < n; ++k)
            data_.push_back(other.data_[k]);
        return first;
    }
    void Copy(const CUIntArray& other) {
        if (this != &other) data_ = other.data_;
    }

    // 0 when index is out of range.
    UINT GetAt(int index) const noexcept { return InRange(index) ? data_[Slot(index)] : 0; }
    // Out of range: nothing happens.
    void SetAt(int index, UINT value) noexcept {
        if (InRange(index)) data_[Slot(index)] = value;
    }
    // Grows the array (new elements 0) to reach index; a negative index does nothing.
    void SetAtGrow(int index, UINT value) {
        if (index < 0) return;
        if (Slot(index) >= data_.size()) data_.resize(Slot(index) + 1);
        data_[Slot(index)] = value;
    }

    // Requires 0 <= index < GetSize().
    UINT& ElementAt(int index) noexcept {
        assert(InRange(index));
        return data_[Slot(index)];
    }
    UINT& operator[](int index) noexcept { return ElementAt(index); }
    UINT operator[](int index) const noexcept {
        assert(InRange(index));
        return data_[Slot(index)];
    }

    // Inserts count copies of value before index. An index at or past the end grows the array
    // (new elements 0) and places the copies from index on. A negative index or a count below 1
    // does nothing.
    void InsertAt(int index, UINT value, int count = 1) {
        if (index < 0 || count < 1) return;
        if (Slot(index) > data_.size()) data_.resize(Slot(index));
        data_.insert(data_.begin() + index, static_cast<std::size_t>(count), value);
    }
    // Removes up to count elements from index; an index out of range or a count below 1 does
    // nothing.
    void RemoveAt(int index, int count = 1) {
        if (!InRange(index) || count < 1) return;
        const std::size_t n = std::min(static_cast<std::size_t>(count), data_.size() - Slot(index));
        data_.erase(data_.begin() + index, data_.begin() + index + static_cast<std::ptrdiff_t>(n));
    }
    void RemoveAll() noexcept { data_.clear(); }

    // May be null when the array is empty; valid until the size changes.
    UINT* GetData() noexcept { return data_.data(); }
    const UINT* GetData() const noexcept { return data_.data(); }

  private:
    bool InRange(int index) const noexcept { return index >= 0 && Slot(index) < data_.size(); }
    static std::size_t Slot(int index) noexcept { return static_cast<std::size_t>(index); }

    std::vector<UINT> data_;
};

}  // namespace qvox
