#include "mp3dec/polyphase_kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "core/fixed_point.h"
#include "tables/mp3_dct32.h"
#include "tables/mp3_synthesis_window.h"

#define ZETAC_FAMILY mp3
#define ZETAC_KERNELS "mp3dec/polyphase_kernels.inc"
#define ZETAC_WIDE_KERNELS
#include "core/every_level.inc"

namespace zetac::mp3 {

constexpr core::LevelTable<PolyphaseKernels> kPolyphaseKernels = {
    baseline::kKernels, sse41::kKernels, avx2::kKernels, avx512wide::kKernels};

}  // namespace zetac::mp3
