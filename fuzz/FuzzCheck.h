// What a fuzz target asserts: a broken promise stops the run where the fuzzer can see it.
#pragma once

namespace qvox::fuzz {

inline void Require(bool condition) {
    if (!condition) __builtin_trap();
}

}  // namespace qvox::fuzz
