// Streams of internet radio: a response header in front, and blocks of metadata between the bytes
// of the sound, at a distance that the header's line icy-metaint tells.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zetac::codec {

/** The response header of a server, when bytes begin with one. */
struct IcyResponse {
    size_t bytes = 0;       // of the header with its empty line
    uint32_t interval = 0;  // bytes of sound between blocks; 0: there are none
    std::string name;       // of the station, as UTF-8
    std::string genre;
};

/** Whether bytes may begin a response header. */
bool mayBeIcyResponse(std::span<const uint8_t> start);

/** @return nothing when the header is no such header, or not complete */
std::optional<IcyResponse> readIcyResponse(std::span<const uint8_t> start);

/** Takes the metadata out of a stream that comes in pieces of any size. */
class IcyFilter {
  public:
    /** @param interval  bytes of sound before each block of metadata; 0: there are none */
    explicit IcyFilter(uint32_t interval = 0) : interval_(interval), untilBlock_(interval) {}

    /** Moves the sound to the front of a piece.
     *  @return bytes of sound */
    size_t filter(std::span<uint8_t> piece);

    /** Title of the piece that is played, as UTF-8. */
    const std::string& title() const { return title_; }

  private:
    void take(uint8_t byte);

    uint32_t interval_;
    uint32_t untilBlock_;   // bytes of sound before the next block
    size_t blockLeft_ = 0;  // bytes of the current block
    std::string block_;
    std::string title_;
};

/** Text of an unknown encoding: UTF-8 if it is that, else ISO 8859-1. */
std::string toUtf8(std::string_view text);
std::string latin1ToUtf8(std::string_view text);

}  // namespace zetac::codec
