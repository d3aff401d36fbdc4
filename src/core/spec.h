// Spec structures: state that the library lays out in one block of memory, of the caller or of the
// heap. Every one begins with a SpecHeader, which tells its family and who owns the memory.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <climits>
#include <cstddef>
#include <cstring>

namespace zetac::core {

// The identifier words. A word of 0 marks a structure that has been freed.
enum class SpecId : Zet32s {
    kFreed = 0,
    kFftC16sc = 1,
    kFftC32fc = 4,
    kFftC32f = 5,
    kFftR32f = 6,
    kDctFwd32f = 21,
    kDctInv32f = 22,
    kMdctFwd32f = 55,
    kMdctInv32f = 56,
    kMdctFwd16s = 57,
    kFirBlock32f = 58,
    kFdp32f = 59,
    kQmfAnalysisPairs = 0x434D4156,
    kQmfAnalysisParts,
    kQmfAnalysisReal,
    kQmfSynthesisPairs,
    kQmfSynthesisParts,
    kQmfSynthesisReal,
    kQmfDownPairs,
    kQmfDownParts,
    kQmfDownReal,
    kVlcEncode,
    kVlcDecode,
    kFixedQmfAnalysisHQ,
    kFixedQmfAnalysisLP,
    kFixedQmfSynthesisHQ,
    kFixedQmfSynthesisLP,
    kFixedQmfDownHQ,
    kFixedQmfDownLP,
    kPqmfSynthesis,
    kPqmfAnalysis,
    kQmfEncoder = 0x434D416A,
};

struct SpecHeader {
    SpecId id;
    Zet32s owned;  // 1: made by InitAlloc, Free releases the memory
};

// Where a structure keeps its identifier and its owner: in a SpecHeader, or in fields of the same
// names where other fields have to come first.
template <class Spec>
auto& headerOf(Spec& spec) {
    if constexpr (requires { spec.header; })
        return spec.header;
    else
        return spec;
}

// What is called a structure may be of any family, or none: the identifier is read as bytes.
inline bool hasId(const void* spec, SpecId id) {
    return std::memcmp(spec, &id, sizeof id) == 0;
}

// A structure of the interface: its fields, and the identifier that all of its kind have.
template <class Fields, SpecId id>
struct SpecOf : Fields {
    static constexpr SpecId kId = id;
};
template <class Spec>
bool isSpec(const Spec* spec) {
    return hasId(spec, Spec::kId);
}

inline constexpr size_t kSpecAlignment = 32;

// To the next multiple of a power of two.
template <class T>
constexpr T roundUp(T size, T multiple = kSpecAlignment) {
    return (size + multiple - 1) & ~(multiple - 1);
}

// The first boundary of a block of the caller.
inline Zet8u* alignUp(Zet8u* memory, uintptr_t alignment = kSpecAlignment) {
    const auto address = reinterpret_cast<uintptr_t>(memory);
    return memory + (roundUp(address, alignment) - address);
}

// Cuts a block into pieces, the first on a boundary of the block's alignment. Without memory it
// measures: the same sequence of take() then gives the size to ask for, so that the two cannot
// disagree. Sizes are counted at 64 bits, since those of large transforms exceed 32.
class Layout {
  public:
    explicit Layout(Zet8u* memory = nullptr, uint32_t alignment = kSpecAlignment)
        : start_(memory ? alignUp(memory, alignment) : nullptr), alignment_(alignment) {}

    // Room for count elements on a boundary of the block's alignment; null when measuring.
    template <class T>
    T* take(uint64_t count = 1) {
        return take<T>(count, alignment_);
    }
    // An alignment beyond that of the block costs slack.
    template <class T>
    T* take(uint64_t count, uint32_t alignment) {
        return reinterpret_cast<T*>(takeBytes(count * sizeof(T), alignment));
    }
    Zet8u* takeBytes(uint64_t bytes) { return takeBytes(bytes, alignment_); }

    // Bytes that a block of any alignment needs for all pieces taken so far; 0 for none.
    uint64_t size() const {
        return used_ == 0 ? 0 : roundUp<uint64_t>(used_, alignment_) + alignment_ - 1;
    }

  private:
    Zet8u* takeBytes(uint64_t bytes, uint32_t alignment) {
        const uint32_t known = alignment < alignment_ ? alignment : alignment_;
        used_ = roundUp<uint64_t>(used_, known);
        Zet8u* piece = start_ ? alignUp(start_ + used_, alignment) : nullptr;
        used_ += bytes + alignment - known;
        return piece;
    }

    Zet8u* start_;
    uint32_t alignment_;
    uint64_t used_ = 0;
};

// Sizes are ints in the interface.
constexpr bool fitsInt(uint64_t size) {
    return size <= INT_MAX;
}

// The work buffer of one call: the caller's from its first 32-byte boundary or, if that is null,
// one of the heap for as long as the object lives.
class WorkBuffer {
  public:
    WorkBuffer(Zet8u* given, int size) {
        if (size == 0) return;
        if (!given) given = allocated_ = zetsMalloc_8u(size);
        data_ = given ? alignUp(given) : nullptr;
        failed_ = !data_;
    }
    ~WorkBuffer() { zetsFree(allocated_); }
    WorkBuffer(const WorkBuffer&) = delete;
    WorkBuffer& operator=(const WorkBuffer&) = delete;

    bool failed() const { return failed_; }
    Zet8u* data() const { return data_; }
    template <class T>
    T* as() const {
        return reinterpret_cast<T*>(data_);
    }

  private:
    Zet8u* allocated_ = nullptr;
    Zet8u* data_ = nullptr;
    bool failed_ = false;
};

// InitAlloc of a spec that is one block: init(memory) lays the structure out and returns it. The
// caller's pointer is written last.
template <class Spec, class Init>
ZetStatus allocateSpec(Spec** result, int size, Init init) {
    Zet8u* memory = zetsMalloc_8u(size);
    if (!memory) return zetStsNoMemory;
    Spec* spec = init(memory);  // memory is aligned, so that spec stands at its start
    headerOf(*spec).owned = 1;
    *result = spec;
    return zetStsOk;
}

// Free of a spec that is one block. One in memory of the caller is only marked.
template <class Spec>
void freeSpec(Spec* spec) {
    headerOf(*spec).id = SpecId::kFreed;
    if (headerOf(*spec).owned) zetsFree(spec);
}
// Free of the families whose structures live on in memory of the caller.
template <class Spec>
void freeIfOwned(Spec* spec) {
    if (headerOf(*spec).owned == 1) freeSpec(spec);
}

}  // namespace zetac::core
