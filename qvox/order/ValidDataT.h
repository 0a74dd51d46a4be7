// ValidDataT<T>: a number or flag with a mark that says whether anybody has set it. Assigning
// one to another is a merge: a source without the mark changes nothing. Doubles compare exactly;
// a NaN differs from everything. An unset number holds 0.
#pragma once

namespace qvox {

template <class T>
class ValidDataT {
  public:
    // Without the mark.
    ValidDataT() = default;
    // The value, with the mark.
    ValidDataT(const T& v) : valid(true), value(v) {}  // NOLINT
    // An exact copy, also of an unmarked value.
    ValidDataT(const ValidDataT&) = default;

    ValidDataT& operator=(const T& v) {
        value = v;
        valid = true;
        return *this;
    }
    // The merge.
    ValidDataT& operator=(const ValidDataT& other) {
        if (other.valid) {
            value = other.value;
            valid = true;
        }
        return *this;
    }

    // Never equal to a value while the mark is off.
    bool operator==(const T& v) const { return valid && value == v; }
    bool operator!=(const T& v) const { return !(*this == v); }
    // Unmarked against unmarked: equal, whatever the values; marked against unmarked: unequal;
    // marked against marked: the values differ.
    bool operator!=(const ValidDataT& other) const {
        if (!other.valid) return valid;
        if (!valid) return true;
        return !(value == other.value);
    }
    bool operator==(const ValidDataT& other) const { return !(*this != other); }

    // The value as a flag: an unset flag counts as false.
    bool IsSetAndTrue() const { return valid && static_cast<bool>(value); }

    bool valid = false;
    T value{};
};

}  // namespace qvox
