#include "sbr/qmf_float_kernels.h"

#include <utility>

#include "tables/sbr_qmf_rotations.h"

#define ZETAC_FAMILY sbr::qmf
#define ZETAC_KERNELS "sbr/qmf_float_kernels.inc"
#include "core/every_width.inc"

namespace zetac::sbr {

constexpr core::LevelTable<QmfFloatKernels> kQmfFloatKernels = {
    qmf::sse2::kKernels, qmf::sse2::kKernels, qmf::avx2::kKernels, qmf::avx512::kKernels};

}  // namespace zetac::sbr
