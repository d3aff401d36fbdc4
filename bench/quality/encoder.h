// What an encoder must offer to be compared.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sound.h"

namespace quality {

class Encoder {
  public:
    virtual ~Encoder() = default;
    virtual std::string name() const = 0;
    // At a constant bit rate and the sampling rate of the sound; throws std::runtime_error.
    virtual std::vector<std::uint8_t> encode(const Pcm& pcm, unsigned kilobits) const = 0;
};

std::unique_ptr<Encoder> makeZetac();
std::unique_ptr<Encoder> makeLibmp3lame();

}  // namespace quality
