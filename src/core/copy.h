// Copying memory.
#pragma once

#include <zetac.h>

#include <cstddef>

namespace zetac::core {

inline constexpr size_t kVectorCopyBytes = 8192;     // by 16-byte vectors from here on
inline constexpr size_t kPrefetchCopyBytes = 16384;  // and with software prefetch from here on

// Copies size bytes between regions that do not overlap, of any alignment.
void copy(const void* src, void* dst, size_t size);

template <class T>
void copy(const T* src, T* dst, int len) {
    copy(static_cast<const void*>(src), static_cast<void*>(dst),
         static_cast<size_t>(len) * sizeof(T));
}

}  // namespace zetac::core
