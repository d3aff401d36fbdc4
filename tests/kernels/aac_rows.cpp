// The kernels of the AAC filter bank and of inverse quantisation.
#include <cmath>

#include "aac/filter_bank_kernels.h"
#include "aac/inverse_quantization.h"
#include "kernels/kernel_rows.h"
#include "tables/aac/windows.h"

namespace zetac::aac {
namespace {

using test::KernelMemory;
using K = FilterBankKernels;

// A call on two buffers of 2048 values of 4, 8, ... 32 bits.
auto onLines(void (*call)(const K&, Zet32s* x, Zet32s* y)) {
    return [=](KernelMemory& memory, int variant) {
        Zet32s* x = memory.integers(2048, 4 * variant + 4);
        Zet32s* y = memory.integers(2048, 4 * variant + 4);
        return [=](const K& k) { call(k, x, y); };
    };
}

const Zet32s* const kRising = tables::pWinKBDLong;
const Zet32s* const kFalling = tables::pWinSINLong;

const test::KernelRows kFilterBank(
    kFilterBankKernels,
    {{"aacInverseLong", 8, onLines([](auto& k, auto* x, auto*) { k.inverseTransformLong(x); })},
     {"aacInverseShort", 8, onLines([](auto& k, auto* x, auto*) { k.inverseTransformShort(x); })},
     {"aacForwardLong", 8,
      onLines([](auto& k, auto* x, auto* y) { y[1024] = k.forwardTransformLong(x, y); })},
     {"aacForwardShort", 8,
      onLines([](auto& k, auto* x, auto* y) { y[128] = k.forwardTransformShort(x, y); })},
     {"aacOverlapAdd", 8,
      onLines([](auto& k, auto* x, auto* y) { k.overlapAddLong(x, y, kRising, kFalling); })},
     {"aacUnfold", 8, onLines([](auto& k, auto* x, auto* y) { k.unfoldLong(x, y, y + 1024); })},
     {"aacMultiply", 8, onLines([](auto& k, auto* x, auto* y) {
          k.multiplyRising(x, kRising, 1024);
          k.multiplyFalling(y, kRising, 1024);
      })},
     {"aacWindowShort", 8, onLines([](auto& k, auto* x, auto* y) {
          k.windowShort(x, tables::pWinKBDShort, tables::pWinSINShort, y);
      })},
     {"aacRoundToPcm", 8, onLines([](auto& k, auto* x, auto* y) { k.roundToPcm(x, y, y, 1024); })},
     {"aacStorePcm", 8, onLines([](auto& k, auto* x, auto* y) {
          k.storePcm(x, reinterpret_cast<Zet16s*>(y), 1);
          k.storePcm(x, reinterpret_cast<Zet16s*>(y + 1024), 2);
      })}});

// Quantised values with a two-sided exponential distribution, the shape of real spectra; in every
// eighth band some are out of range.
const test::KernelRows kQuantInv(
    kQuantInvLines, {{"aacInverseQuantization", 20000, [](KernelMemory& memory, int variant) {
                          auto& random = memory.random();
                          const auto count = static_cast<int>(1 + random() % 70);
                          const double mean = std::exp2(random() % 13 - 2.0) + 0.5;
                          std::exponential_distribution<double> magnitude(1 / mean);
                          const int limit = variant % 8 ? 8191 : 9000;
                          const int scaleFactor = static_cast<int>(random() % 420) - 80;
                          Zet32s* lines = memory.zeros<Zet32s>(static_cast<size_t>(count) + 1);
                          for (int i = 0; i < count; ++i)
                              lines[i] = std::min(static_cast<int>(magnitude(random)), limit) *
                                         (random() % 2 ? 1 : -1);
                          return [=](QuantInvLines quantInv) {
                              lines[count] = quantInv(lines, count, scaleFactor);
                          };
                      }}});

}  // namespace
}  // namespace zetac::aac
