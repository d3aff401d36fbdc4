// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/frame_reader.h"

#include <algorithm>
#include <cstring>

namespace zetac::codec {
namespace {

constexpr size_t kHeaderBytes = 4;
constexpr size_t kCrcBytes = 2;
constexpr size_t kFrontBytesMax = kHeaderBytes + kCrcBytes + 32;  // and side information
constexpr int kModeJointStereo = 1;

}  // namespace

/** Works on a copy, because the readers look a little ahead and the frame may be the last. */
Fault Mp3FrameReader::begin(const Mp3Frame& frame) {
    if (!frame.isContinuous) forgetMainData();
    Zet8u front[kFrontBytesMax + ZETAC_BIT_STREAM_SLACK] = {};
    std::memcpy(front, frame.data.data(), std::min(frame.data.size(), kFrontBytesMax));
    Zet8u* cursor = front;
    zetsUnpackFrameHeader_MP3(&cursor, &header_);
    // Outside of joint stereo these bits mean nothing.
    if (header_.mode != kModeJointStereo) header_.mode_extension = 0;

    const size_t sideInfoBytes = mp3SideInfoBytes(header_.ID == 1, channels() == 1);
    const size_t frontBytes = static_cast<size_t>(cursor - front) + sideInfoBytes;
    if (failed(frame.fault) || frame.data.size() < frontBytes) {
        forgetMainData();
        return failed(frame.fault) ? frame.fault : StreamFault::kTruncated;
    }
    // The main data join the reservoir whether or not the frame can be decoded: its header was good
    // enough to find the next frame.
    keepReservoir();
    const size_t reservoir = mainDataBytes_;
    append(frame.data.subspan(frontBytes));
    isComplete_ = frame.data.size() == frame.length;
    if (header_.protection_bit == 0 && mp3Crc(front, sideInfoBytes) != header_.crc_check) {
        return StreamFault::kCrcMismatch;
    }
    return readSideInfo(cursor, reservoir);
}

Fault Mp3FrameReader::readSideInfo(Zet8u* cursor, size_t reservoir) {
    int privateBits = 0;
    const ZetStatus status =
        zetsUnpackSideInfo_MP3(&cursor, sideInfo_, &mainDataBegin_, &privateBits, scfsi_, &header_);
    if (status < 0) return faultOf(status);
    const auto back = static_cast<size_t>(mainDataBegin_);
    if (back > reservoir) return Mp3Fault::kMissingMainData;
    nextBit_ = (reservoir - back) * 8;
    return Fault::kNone;
}

void Mp3FrameReader::keepReservoir() {
    const size_t kept = std::min(mainDataBytes_, kReservoirBytes);
    std::memmove(mainData_, mainData_ + mainDataBytes_ - kept, kept);
    mainDataBytes_ = kept;
}

void Mp3FrameReader::append(std::span<const Zet8u> bytes) {
    const size_t room = sizeof mainData_ - kSlackBytes - mainDataBytes_;
    const size_t count = std::min(bytes.size(), room);
    std::memcpy(mainData_ + mainDataBytes_, bytes.data(), count);
    mainDataBytes_ += count;
}

bool Mp3FrameReader::sharesScaleFactors() const {
    if (header_.ID != 1) return false;
    return std::any_of(scfsi_, scfsi_ + 4 * channels(), [](int flag) { return flag != 0; });
}

Fault Mp3FrameReader::readGranule(int granule) {
    for (int channel = 0; channel < channels(); ++channel) {
        const Fault fault = readChannel(granule, channel);
        if (failed(fault)) return fault;
    }
    return Fault::kNone;
}

Fault Mp3FrameReader::readChannel(int granule, int channel) {
    ZetMP3GranuleSideInfo& info = sideInfo(granule, channel);
    const size_t start = nextBit_;
    const size_t end = start + static_cast<size_t>(info.part2_3_length);
    if (end > mainDataBytes_ * 8) {
        return isComplete_ ? Mp3Fault::kMainDataOverrun : StreamFault::kTruncated;
    }
    Zet8u* byte = mainData_ + start / 8;
    int bit = static_cast<int>(start % 8);
    ZetStatus status =
        zetsUnpackScaleFactors_MP3_1u8s(&byte, &bit, data_.scaleFactor[channel], &info,
                                        &scfsi_[4 * channel], &header_, granule, channel);
    if (status < 0) return faultOf(status);
    const size_t position = static_cast<size_t>(byte - mainData_) * 8 + static_cast<size_t>(bit);
    if (position > end) return Mp3Fault::kScaleFactorsOverrun;
    status =
        zetsHuffmanDecode_MP3_1u32s(&byte, &bit, data_.lines[channel], &data_.nonZeroBound[channel],
                                    &info, &header_, static_cast<int>(end - position));
    nextBit_ = end;
    return faultOf(status);
}

}  // namespace zetac::codec
