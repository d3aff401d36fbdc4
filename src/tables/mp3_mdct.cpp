#include "tables/mp3_mdct.h"

#include "core/constexpr_math.h"
#include "tables/mp3_block_window.h"

namespace zetac::tables {
namespace {

// Samples from size / 2 on enter the DCT-IV with their sign changed.
template <int size, class Window>
constexpr MdctWindow<size> foldWindow(Window window) {
    const auto factor = [&](int i) {
        return core::toFixedPoint<std::int32_t>(i < size / 2 ? window(i) : -window(i),
                                                kMdctWindowFractionBits);
    };
    MdctWindow<size> folded{};
    for (int n = 0; n < size; ++n) {
        folded.first[n] = factor(mdctFirst(n, size));
        folded.second[n] = factor(mdctSecond(n, size));
    }
    return folded;
}

constexpr MdctWindow<18> foldLong(int blockType) {
    return foldWindow<18>([blockType](int i) { return longBlockWindow(blockType, i); });
}

template <int size>
constexpr Table<std::int32_t, size> makeSecants() {
    Table<std::int32_t, size> table{};
    for (int k = 0; k < size; ++k)
        table.values[k] = core::toFixedPoint<std::int32_t>(
            1 / (size * core::cosine(core::kPi / (4 * size) * (2 * k + 1))),
            kMdctSecantFractionBits);
    return table;
}

}  // namespace

constexpr MdctWindow<18> kMdctWindows[4] = {foldLong(0), foldLong(1), {}, foldLong(3)};
constexpr MdctWindow<6> kMdctWindowShort = foldWindow<6>(shortBlockWindow);
constexpr Table<std::int32_t, 18> kMdctSecants18 = makeSecants<18>();
constexpr Table<std::int32_t, 6> kMdctSecants6 = makeSecants<6>();

}  // namespace zetac::tables
