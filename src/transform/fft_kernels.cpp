#include "transform/fft_kernels.h"

#include <utility>

#include "core/levels.h"
#include "transform/fft_real.h"

#define ZETAC_FAMILY transform::fft
#define ZETAC_KERNELS "transform/fft_kernels.inc"
#include "core/every_width.inc"

namespace zetac::transform {

constexpr core::LevelTable<FftKernels> kFftKernels = {fft::sse2::kKernels, fft::sse2::kKernels,
                                                      fft::avx2::kKernels, fft::avx512::kKernels};

}  // namespace zetac::transform
