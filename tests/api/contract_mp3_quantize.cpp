// Contract row of MP3 quantisation.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <array>

#include "support/contract.h"

namespace zetac::test {
namespace {

using Infos = std::array<ZetMP3GranuleSideInfo, 4>;

template <Zet32s ZetMP3GranuleSideInfo::*member, int record>
Zet32s& infoField(Infos& infos) {
    return infos[record].*member;
}

}  // namespace

void addMp3QuantizeRows(Table& table) {
    using Header = ZetMP3Header;
    using Info = ZetMP3GranuleSideInfo;
    using Reservoir = ZetMP3BitReservoir;
    Header header{};
    header.ID = 1;
    header.layer = 1;
    table
        .ZETAC_ROW(zetsQuantize_MP3_32s_I, data(4 * ZETAC_MP3_GRANULE_LEN * sizeof(Zet32s)),
                   data(4 * ZETAC_MP3_SCF_MAX), data(8 * sizeof(int)), data(4 * sizeof(int)),
                   data(4 * sizeof(int)), record(header), record(Infos{}),
                   data(4 * sizeof(ZetMP3PsyOutput), 0), data(6 * sizeof(Zet32s), 0),
                   record(Reservoir{0, 4088}), value("meanBits", 3048),
                   data(ZETAC_MP3_QUANTIZE_BUFFER_LEN))
        .range("ID", &Header::ID, 1, 1, zetStsBadFrameHeader)
        .range("layer", &Header::layer, 1, 1, zetStsBadFrameHeader)
        .range("bitrate_index", &Header::bitrate_index, 0, 15, zetStsBadFrameHeader)
        .range("sampling_frequency", &Header::sampling_frequency, 0, 2, zetStsBadFrameHeader)
        .range("mode", &Header::mode, 0, 3, zetStsBadFrameHeader)
        .range("mode_extension", &Header::mode_extension, 0, 3, zetStsBadFrameHeader)
        .range("block_type", infoField<&Info::block_type, 0>, 0, 3, zetStsBadSideInfo)
        .range("mixed_block_flag", infoField<&Info::mixed_block_flag, 0>, 0, 1, zetStsBadSideInfo)
        .range("last_block_type", infoField<&Info::block_type, 3>, 0, 3, zetStsBadSideInfo)
        .atLeast("meanBits", 0, zetStsBadSize)
        .range("held", &Reservoir::held, 0, 4088, zetStsBadArg)
        .refuses("held", {4, 1023}, zetStsBadArg)
        .field("capacity", &Reservoir::capacity)
        .atLeast("capacity", 0, zetStsBadArg);
}

}  // namespace zetac::test
