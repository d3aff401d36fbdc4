// Kernels of every level on the same memory.
#pragma once

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "core/levels.h"
#include "support/guarded.h"

namespace zetac::test {

// Runs a kernel at every level that the processor has, each time on memory of its own; it returns
// what it has written, which must have the bits of level 0.
template <class Run>
void expectEqualLevels(const std::string& what, Run run) {
    const auto expected = run(0);
    for (size_t level = 1; level <= static_cast<size_t>(core::currentLevel()); ++level) {
        const auto result = run(level);
        ASSERT_EQ(expected.size(), result.size());
        ASSERT_EQ(std::memcmp(expected.data(), result.data(), sizeof result[0] * result.size()), 0)
            << what << " at level " << level;
    }
}

// What guarded buffers hold, one behind the other; the guards must be intact.
template <class T, class... Others>
std::vector<T> contents(Guarded<T>& first, Others&... others) {
    std::vector<T> values;
    for (Guarded<T>* buffer : {&first, &others...}) {
        EXPECT_TRUE(buffer->intact());
        values.insert(values.end(), buffer->data(), buffer->data() + buffer->size() / sizeof(T));
    }
    return values;
}

// Random integers of so many bits with their sign.
inline void fillRandom(Guarded<int32_t>& buffer, int bits, uint32_t seed) {
    std::mt19937 random(seed);
    for (size_t i = 0; i < buffer.size() / sizeof(int32_t); ++i)
        buffer.data()[i] = static_cast<int32_t>(random()) >> (32 - bits);
}

}  // namespace zetac::test
