#include "sbr/qmf_encoder_kernels.h"

#include <utility>

#include "tables/sbr_qmf_rotations.h"

#define ZETAC_FAMILY sbr::encoder
#define ZETAC_KERNELS "sbr/qmf_encoder_kernels.inc"
#include "core/every_width.inc"

namespace zetac::sbr {

constexpr core::LevelTable<QmfEncoderKernels> kQmfEncoderKernels = {
    encoder::sse2::kKernels, encoder::sse2::kKernels, encoder::avx2::kKernels,
    encoder::avx512::kKernels};

}  // namespace zetac::sbr
