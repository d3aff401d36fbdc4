// Writes a bit stream, most significant bit first.
#pragma once

#include <zetac.h>

namespace zetac::vlc {

// A position in a bit stream while a function writes; store() hands it back. Bytes are written as
// they fill up; the bits before the position are kept, and those behind it in its byte become 0.
class BitWriter {
  public:
    BitWriter(Zet8u* const* ppStream, const int* pOffset)
        : byte_(*ppStream), pending_(*pOffset), bits_(pending_ ? *byte_ >> (8 - pending_) : 0) {}

    // Writes the lowest count bits of value, which has no others, 0..32.
    void put(uint32_t value, int count) {
        bits_ = bits_ << count | value;
        for (pending_ += count; pending_ >= 8; pending_ -= 8)
            *byte_++ = static_cast<Zet8u>(bits_ >> (pending_ - 8));
    }

    void store(Zet8u** ppStream, int* pOffset) const {
        if (pending_) *byte_ = static_cast<Zet8u>(bits_ << (8 - pending_));
        *ppStream = byte_;
        *pOffset = pending_;
    }

  private:
    Zet8u* byte_;
    int pending_;  // bits that wait for their byte to fill up, the lowest of bits_
    uint64_t bits_;
};

}  // namespace zetac::vlc
