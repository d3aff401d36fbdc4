// How far up a bit rate pays for coding lines.
#pragma once

namespace zetac::mp3enc {

// Lines to be coded, 0..576 of a long block, a multiple of 6. bits: of a granule and channel.
int codedLines(int sampling_frequency, int bits);

}  // namespace zetac::mp3enc
