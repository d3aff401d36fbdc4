#include "transform/dct_kernels.h"

#include <utility>

#include "core/levels.h"

#define ZETAC_ENGINE dct
#define ZETAC_KERNELS "transform/dct_kernels.inc"
#include "transform/every_width.inc"

namespace zetac::transform {

constexpr core::LevelTable<DctKernels> kDctKernels = {dct::sse2::kKernels, dct::sse2::kKernels,
                                                      dct::avx2::kKernels, dct::avx512::kKernels};

}  // namespace zetac::transform
