#include "transform/dct_kernels.h"

#include <utility>

#include "core/levels.h"

#define ZETAC_FAMILY transform::dct
#define ZETAC_KERNELS "transform/dct_kernels.inc"
#include "core/every_width.inc"

namespace zetac::transform {

constexpr core::LevelTable<DctKernels> kDctKernels = {dct::sse2::kKernels, dct::sse2::kKernels,
                                                      dct::avx2::kKernels, dct::avx512::kKernels};

}  // namespace zetac::transform
