// What other programs put before, behind and between audio frames: ID3v1, ID3v2, APE and Lyrics3
// tags, and the chunks of RIFF.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdint>

#include "base/window.h"

namespace zetac::codec {

enum class TagKind { kId3v2, kApe, kId3v1, kLyrics3, kRiff };
inline constexpr int kTagKinds = 5;

/** Such as "ID3v2". */
const char* nameOf(TagKind kind);

/** A tag or a piece of one, from the beginning of a view. */
struct TagPiece {
    enum class Part { kWhole, kStart, kMiddle, kEnd };

    Answer answer = Answer::kNo;
    TagKind kind = TagKind::kId3v2;
    Part part = Part::kWhole;
    uint64_t bytes = 0;
    uint64_t before = 0;  // bytes of the tag that stand before the view, when only its end tells
};

/** Finds tags where a frame may begin. APE, Lyrics3 and RIFF are passed over piece by piece, so
 * that a size that is wrong hides nothing but its piece. */
class TagScanner {
  public:
    /** What begins here. */
    TagPiece at(View view) const;

    /** What shows here among bytes that are not known: the header or footer of an APE tag, the
     *  footer of an ID3v2 tag, an ID3v1 tag at the end of everything. */
    static TagPiece amid(View view);

    /** Takes note of a tag that is passed over. */
    void pass(View view, const TagPiece& tag);
    /** Takes note of something else. */
    void passOther() {
        ape_ = {};
        isInLyrics_ = false;
    }

    /** The kinds passed over so far, a bit for each. */
    unsigned kinds() const { return kinds_; }

  private:
    /** An APE tag that has been begun. */
    struct ApeTag {
        uint32_t items = 0;  // still to come, with the footer
        uint32_t bytes = 0;
    };

    TagPiece apeItemAt(View view) const;
    TagPiece chunkAt(View view) const;

    unsigned kinds_ = 0;
    ApeTag ape_;
    bool isInLyrics_ = false;
    bool isInRiff_ = false;
};

}  // namespace zetac::codec
