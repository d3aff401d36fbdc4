// Spec structures: state that the library lays out in one block of memory, of the caller or of the
// heap. Every one begins with a SpecHeader, which tells its family and who owns the memory.
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
};

struct SpecHeader {
    SpecId id;
    Zet32s owned;  // 1: made by InitAlloc, Free releases the memory
};

// The structure may be of any family, or none: its first word is read as bytes.
inline bool hasId(const void* spec, SpecId id) {
    return std::memcmp(spec, &id, sizeof id) == 0;
}

inline constexpr size_t kSpecAlignment = 32;

template <class T>
constexpr T roundUp(T size, T multiple = kSpecAlignment) {
    return (size + multiple - 1) / multiple * multiple;
}

// The first boundary of a block of the caller.
inline Zet8u* alignUp(Zet8u* memory, uintptr_t alignment = kSpecAlignment) {
    const auto address = reinterpret_cast<uintptr_t>(memory);
    return memory + (roundUp(address, alignment) - address);
}

// Cuts a block into pieces, each on a 32-byte boundary. Without memory it measures: the same
// sequence of take() then gives the size to ask for, so that the two cannot disagree. Sizes are
// counted at 64 bits, since those of large transforms exceed 32.
class Layout {
  public:
    explicit Layout(Zet8u* memory = nullptr) : start_(memory ? alignUp(memory) : nullptr) {}

    // Room for count elements; null when measuring. An alignment beyond 32 costs slack.
    template <class T>
    T* take(uint64_t count = 1, uint32_t alignment = kSpecAlignment) {
        Zet8u* piece = start_ ? alignUp(start_ + used_, alignment) : nullptr;
        used_ += roundUp<uint64_t>(count * sizeof(T)) + alignment - kSpecAlignment;
        return reinterpret_cast<T*>(piece);
    }

    // Bytes that a block of any alignment needs for all pieces taken so far; 0 for none.
    uint64_t size() const { return used_ == 0 ? 0 : used_ + kSpecAlignment - 1; }

  private:
    Zet8u* start_;
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
    spec->header.owned = 1;
    *result = spec;
    return zetStsOk;
}

// Free of a spec that is one block.
template <class Spec>
void freeSpec(Spec* spec) {
    spec->header.id = SpecId::kFreed;
    if (spec->header.owned) zetsFree(spec);
}

}  // namespace zetac::core
