// Contract row of the psychoacoustic model.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/contract.h"

namespace zetac::test {

void addMp3PsychoRows(Table& table) {
    ZetMP3Header header{};
    header.ID = 1;
    header.mode = 1;
    header.bitrate_index = 7;
    table.ZETAC_ROW(zetsPsychoacousticModelTwo_MP3_16s, data(1600 * 2 * sizeof(Zet16s)),
                    data(4 * sizeof(ZetMP3PsyOutput)), data(6 * sizeof(Zet32s)),
                    data(4 * sizeof(ZetMP3GranuleSideInfo)), record(header),
                    record<ZetMP3PsyState>(), optionalData(1), data(ZETAC_MP3_PSY_BUFFER_LEN));
}

}  // namespace zetac::test
