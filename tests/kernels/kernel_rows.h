// The registry of kernels that are compiled for every instruction-set level. A row makes input and
// calls a kernel; one test runs each row at each level, compares and, if asked to, takes the time.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/levels.h"
#include "support/guarded.h"

namespace zetac::test {

// What the calls of a row read and write: buffers between canaries that begin at any address a
// vector of their type may have. Equal seeds give equal contents.
class KernelMemory {
  public:
    explicit KernelMemory(int seed) : random_(static_cast<uint32_t>(seed)) {}

    template <class T>
    T* zeros(size_t count) {
        T* values = take<T>(count, std::max<size_t>(4, alignof(T)), true);
        std::fill_n(values, count, T{});
        return values;
    }
    // Random integers of so many bits with their sign, 1..32.
    template <class T = Zet32s>
    T* integers(size_t count, int bits) {
        T* values = take<T>(count, std::max<size_t>(4, alignof(T)), true);
        for (size_t i = 0; i < count; ++i)
            values[i] = static_cast<T>(static_cast<Zet32s>(random_()) >> (32 - bits));
        return values;
    }
    // Uniform in -1..1.
    Zet32f* singles(size_t count) {
        Zet32f* values = take<Zet32f>(count, 4, true);
        for (size_t i = 0; i < count; ++i)
            values[i] = static_cast<Zet32f>(static_cast<Zet32s>(random_())) * 0x1p-31f;
        return values;
    }
    // On a 64-byte boundary; what a kernel leaves there may depend on the level.
    template <class T = Zet32f>
    T* work(size_t count) {
        return take<T>(count, 0, false);
    }
    std::mt19937& random() { return random_; }

    bool intact() const;
    bool operator==(const KernelMemory& other) const;

  private:
    struct Buffer {
        std::unique_ptr<Guarded<Zet8u>> bytes;
        bool isResult;
    };

    template <class T>
    T* take(size_t count, size_t alignment, bool isResult) {
        buffers_.push_back(
            {std::make_unique<Guarded<Zet8u>>(count * sizeof(T), alignment), isResult});
        return reinterpret_cast<T*>(buffers_.back().bytes->data());
    }

    std::mt19937 random_;
    std::vector<Buffer> buffers_;
};

struct KernelRow {
    std::string name;
    int variants;  // inputs of different sizes and magnitudes
    // Makes the input of a variant and returns what calls the kernel of a level on it.
    std::function<std::function<void(size_t level)>(KernelMemory&, int variant)> prepare;
};

std::vector<KernelRow>& kernelRows();

// Adds the rows of a table of kernels; their calls take the kernels of one level.
template <class Kernels>
class KernelRows {
  public:
    using Call = std::function<void(const Kernels&)>;
    struct Row {
        const char* name;
        int variants;
        std::function<Call(KernelMemory&, int variant)> prepare;
    };

    KernelRows(const core::LevelTable<Kernels>& table, std::initializer_list<Row> rows) {
        for (const Row& row : rows)
            kernelRows().push_back(
                {row.name, row.variants, [&table, row](KernelMemory& memory, int variant) {
                     return [&table, call = row.prepare(memory, variant)](size_t level) {
                         call(table[level]);
                     };
                 }});
    }
};

}  // namespace zetac::test
