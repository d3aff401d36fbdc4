#include "mp3dec/hybrid_kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "core/constexpr_math.h"
#include "core/fixed_point.h"
#include "tables/mp3_imdct.h"

#define ZETAC_FAMILY mp3
#define ZETAC_KERNELS "mp3dec/hybrid_kernels.inc"
#include "core/every_level.inc"

namespace zetac::mp3 {

constexpr core::LevelTable<HybridKernels> kHybridKernels = {baseline::kKernels, sse41::kKernels,
                                                            avx2::kKernels, avx512::kKernels};

}  // namespace zetac::mp3
