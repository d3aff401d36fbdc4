#include "mp3enc/hybrid_analysis_kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "core/constexpr_math.h"
#include "core/fixed_point.h"
#include "tables/mp3_imdct.h"
#include "tables/mp3_mdct.h"

#define ZETAC_FAMILY mp3enc
#define ZETAC_KERNELS "mp3enc/hybrid_analysis_kernels.inc"
#include "core/every_level.inc"

namespace zetac::mp3enc {

constexpr core::LevelTable<HybridAnalysisKernels> kHybridAnalysisKernels = {
    baseline::kKernels, sse41::kKernels, avx2::kKernels, avx512::kKernels};

}  // namespace zetac::mp3enc
