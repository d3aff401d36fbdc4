#include "mp3enc/psycho_kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "core/fixed_point.h"
#include "mp3enc/psycho_arithmetic.h"
#include "tables/mp3_psy_windows.h"

#define ZETAC_FAMILY mp3enc
#define ZETAC_KERNELS "mp3enc/psycho_kernels.inc"
#include "core/every_level.inc"

namespace zetac::mp3enc {

constexpr core::LevelTable<PsyKernels> kPsyKernels = {baseline::kKernels, sse41::kKernels,
                                                      avx2::kKernels, avx512::kKernels};

}  // namespace zetac::mp3enc
