#include "mp3enc/analysis_kernels.h"

#include "core/fixed_point.h"
#include "tables/mp3_analysis_window.h"

#define ZETAC_FAMILY mp3enc
#define ZETAC_KERNELS "mp3enc/analysis_kernels.inc"
#include "core/every_level.inc"

namespace zetac::mp3enc {

constexpr core::LevelTable<AnalysisKernels> kAnalysisKernels = {baseline::kKernels, sse41::kKernels,
                                                                avx2::kKernels, avx512::kKernels};

}  // namespace zetac::mp3enc
