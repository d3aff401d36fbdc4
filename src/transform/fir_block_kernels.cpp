#include "transform/fir_block_kernels.h"

#include <cstring>

namespace zetac::transform {
namespace {

constexpr int kVectorsAtOnce = 6;

}  // namespace
}  // namespace zetac::transform

namespace zetac::transform::baseline {
constexpr int kBytes = 16;
#include "transform/fir_block_kernels.inc"
}  // namespace zetac::transform::baseline

ZETAC_TARGET_BEGIN("avx2")
namespace zetac::transform::avx2 {
constexpr int kBytes = 32;
#include "transform/fir_block_kernels.inc"
}  // namespace zetac::transform::avx2
ZETAC_TARGET_END

ZETAC_TARGET_BEGIN("avx2,avx512f,avx512vl,avx512dq,avx512bw")
namespace zetac::transform::avx512 {
constexpr int kBytes = 64;
#include "transform/fir_block_kernels.inc"
}  // namespace zetac::transform::avx512
ZETAC_TARGET_END

// SSE4.1 adds nothing that these sums could use.
constexpr zetac::core::LevelTable<zetac::transform::FirBlockKernels>
    zetac::transform::kFirBlockKernels = {baseline::kKernels, baseline::kKernels, avx2::kKernels,
                                          avx512::kKernels};
