// What tags say about the sound, in words: ID3v1, ID3v2.2 to 2.4 and APE.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zetac::codec {

/** Names and texts, UTF-8, in the order in which they came. The first text of a name stays. */
class TagTexts {
  public:
    struct Entry {
        std::string name;
        std::string value;
    };

    void add(std::string_view name, std::string value);
    /** Replaces the text of a name. */
    void set(std::string_view name, const std::string& value);

    std::span<const Entry> entries() const { return entries_; }

  private:
    std::vector<Entry> entries_;
};

/** @param tag  from its header on; what is cut off is left out */
void readId3v2(std::span<const uint8_t> tag, TagTexts& texts);
/** @param tag  its 128 bytes */
void readId3v1(std::span<const uint8_t> tag, TagTexts& texts);
/** @param items  of an APE tag, without header and footer */
void readApeItems(std::span<const uint8_t> items, TagTexts& texts);

}  // namespace zetac::codec
