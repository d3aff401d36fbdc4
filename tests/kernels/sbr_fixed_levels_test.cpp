// Every level of the fixed-point QMF kernels gives the bits of level 0, at any input level,
// position and alignment of Zet32s, and writes nothing but its slot and its output.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "sbr/qmf_fixed_kernels.h"
#include "support/guarded.h"

namespace zetac::sbr {
namespace {

using test::Guarded;
using Values = std::vector<Zet32s>;

// A kernel without the types of its samples.
using Kernel = void (*)(const QmfFixedKernels&, const Zet32s*, Zet32s*, Zet32s*, int);

struct Bank {
    const char* name;
    int slotLength;
    int outputs;
    Kernel run;
};
#define ZETAC_BANK(kernel, slotLength, outputs, Source, Result)                         \
    {                                                                                   \
#kernel, slotLength, outputs, [](auto& k, auto* src, auto* dst, auto* line, int at) { \
         k.kernel(reinterpret_cast<const Source*>(src), reinterpret_cast<Result*>(dst), line, at); \
     } \
    }
const Bank kBanks[] = {
    ZETAC_BANK(analysisHQ, 32, 64, Zet32s, Zet32sc),
    ZETAC_BANK(analysisLP, 32, 32, Zet32s, Zet32s),
    ZETAC_BANK(synthesisHQ, 128, 64, Zet32sc, Zet32s),
    ZETAC_BANK(synthesisLP, 128, 64, Zet32s, Zet32s),
    ZETAC_BANK(synthesisDownHQ, 64, 32, Zet32sc, Zet32s),
    ZETAC_BANK(synthesisDownLP, 64, 32, Zet32s, Zet32s),
};

// Outputs of 24 slots and the line that they leave.
Values runLevel(const Bank& bank, size_t level, int bits, bool extreme) {
    std::mt19937 random(static_cast<uint32_t>(bits));
    Guarded<Zet32s> line(static_cast<size_t>(kQmfSlots * bank.slotLength), 4);
    Guarded<Zet32s> source(128, 4);
    Guarded<Zet32s> output(static_cast<size_t>(bank.outputs), 4);
    std::fill_n(line.data(), kQmfSlots * bank.slotLength, 0);
    Values result;
    int position = 0;
    for (int slot = 0; slot < 24; ++slot) {
        for (int i = 0; i < 128; ++i) {
            const auto x = static_cast<Zet32s>(random());
            source.data()[i] = extreme ? (x >> 31) ^ INT32_MAX : bits == 0 ? 0 : x >> (32 - bits);
        }
        bank.run(kQmfFixedKernels[level], source.data(), output.data(), line.data(), position);
        result.insert(result.end(), output.data(), output.data() + bank.outputs);
        position = (position > 0 ? position : kQmfSlots * bank.slotLength) - bank.slotLength;
    }
    EXPECT_TRUE(line.intact() && source.intact() && output.intact()) << bank.name << level;
    result.insert(result.end(), line.data(), line.data() + kQmfSlots * bank.slotLength);
    return result;
}

TEST(SbrFixedLevels, giveTheSameBits) {
    for (const Bank& bank : kBanks) {
        for (int bits = 0; bits <= 33; ++bits) {
            const bool extreme = bits == 33;
            const Values reference = runLevel(bank, 0, std::min(bits, 32), extreme);
            for (size_t level = 1; level <= static_cast<size_t>(core::currentLevel()); ++level) {
                EXPECT_TRUE(reference == runLevel(bank, level, std::min(bits, 32), extreme))
                    << bank.name << " at level " << level << ", " << bits << " bits";
            }
        }
    }
}

}  // namespace
}  // namespace zetac::sbr
