// How far the noise of a codec stands above what the ear masks: the segmental noise-to-mask ratio,
// by a model of hearing in double precision that has nothing in common with the encoder's own but
// the literature.
//
// - Frames of 2048 samples, half overlapping, Hann window; the spectra of the original and of its
//   difference to the decoded signal. A sine at full scale stands for 92 dB SPL.
// - Bands of a third of a Bark (Zwicker's scale), up to 18 kHz or half the sampling rate.
// - Energies spread over the bands with 27 dB/Bark downwards and 24 + 230 Hz/f - 0.2 L dB/Bark
//   upwards (Terhardt; ITU-R BS.1387-1), and are normalised so that a flat spectrum keeps its
//   level.
// - The threshold lies below that by 5.5 dB where a band is noise and by 14.5 dB + z where it is
//   tonal (Johnston 1988). Tonality is the flatness of the lines within a Bark, 0 dB to -20 dB,
//   less the 2.5 dB that a single periodogram of noise has.
// - It is not below the threshold in quiet (Terhardt).
// - The NMR of a frame and channel is the mean over bands of noise over threshold, in decibels; the
//   segmental NMR is the mean over frames. Frames without a band above the threshold in quiet do
//   not count, and a frame counts as -60 dB at least.
#pragma once

#include <cstddef>
#include <vector>

namespace quality {

using Signal = std::vector<double>;  // full scale is 1

struct Nmr {
    double segmental = 0;  // dB
    double worst = 0;      // dB, exceeded in 5 % of the frames
    std::size_t frames = 0;
};

// Both signals begin at the same time; what one has more than the other is left out.
Nmr measureNmr(const std::vector<Signal>& original, const std::vector<Signal>& decoded,
               unsigned sampleRate);

// The frequency up to which the decoded signal has, on the average over the file and in steps of a
// quarter of a kilohertz, at least a tenth of the energy of the original.
double bandwidthOf(const std::vector<Signal>& original, const std::vector<Signal>& decoded,
                   unsigned sampleRate);

}  // namespace quality
