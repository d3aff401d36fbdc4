// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/program_config.h"

namespace zetac::aac {
namespace {

void readChannelCounts(BitReader& stream, ZetAACPrgCfgElt& element) {
    element.num_front_channel_elements = ownsGetBits_AAC(stream, 4);
    element.num_side_channel_elements = ownsGetBits_AAC(stream, 4);
    element.num_back_channel_elements = ownsGetBits_AAC(stream, 4);
    element.num_lfe_channel_elements = ownsGetBits_AAC(stream, 2);
    element.num_assoc_data_elements = ownsGetBits_AAC(stream, 3);
    element.num_valid_cc_elements = ownsGetBits_AAC(stream, 4);
}

void readMixdowns(BitReader& stream, ZetAACPrgCfgElt& element) {
    element.mono_mixdown_present = ownsGetBits_AAC(stream, 1);
    element.mono_mixdown_element_number =
        element.mono_mixdown_present ? ownsGetBits_AAC(stream, 4) : 0;
    element.stereo_mixdown_present = ownsGetBits_AAC(stream, 1);
    element.stereo_mixdown_element_number =
        element.stereo_mixdown_present ? ownsGetBits_AAC(stream, 4) : 0;
    element.matrix_mixdown_idx_present = ownsGetBits_AAC(stream, 1);
    const bool present = element.matrix_mixdown_idx_present != 0;
    element.matrix_mixdown_idx = present ? ownsGetBits_AAC(stream, 2) : 0;
    element.pseudo_surround_enable = present ? ownsGetBits_AAC(stream, 1) : 0;
}

void readTags(BitReader& stream, int count, Zet32s* tags) {
    for (int i = 0; i < count; ++i) tags[i] = ownsGetBits_AAC(stream, 4);
}

void readFlagsAndTags(BitReader& stream, int count, Zet32s* flags, Zet32s* tags) {
    for (int i = 0; i < count; ++i) {
        flags[i] = ownsGetBits_AAC(stream, 1);
        tags[i] = ownsGetBits_AAC(stream, 4);
    }
}

void readComment(BitReader& stream, ZetAACPrgCfgElt& element) {
    ownsByteAlign_AAC(stream);
    element.comment_field_bytes = ownsGetBits_AAC(stream, 8);
    getBytes(stream, element.comment_field_data, element.comment_field_bytes);
}

}  // namespace

void readProgramConfigElement(BitReader& stream, ZetAACPrgCfgElt& element) {
    element.element_instance_tag = ownsGetBits_AAC(stream, 4);
    element.object_type = ownsGetBits_AAC(stream, 2);
    element.sampling_frequency_index = ownsGetBits_AAC(stream, 4);
    readChannelCounts(stream, element);
    readMixdowns(stream, element);
    readFlagsAndTags(stream, element.num_front_channel_elements, element.front_element_is_cpe,
                     element.front_element_tag_select);
    readFlagsAndTags(stream, element.num_side_channel_elements, element.side_element_is_cpe,
                     element.side_element_tag_select);
    readFlagsAndTags(stream, element.num_back_channel_elements, element.back_element_is_cpe,
                     element.back_element_tag_select);
    readTags(stream, element.num_lfe_channel_elements, element.lfe_element_tag_select);
    readTags(stream, element.num_assoc_data_elements, element.assoc_data_element_tag_select);
    readFlagsAndTags(stream, element.num_valid_cc_elements, element.cc_element_is_ind_sw,
                     element.valid_cc_element_tag_select);
    readComment(stream, element);
}

}  // namespace zetac::aac

using namespace zetac;

ZetStatus zetsDecodePrgCfgElt_AAC(Zet8u** ppBitStream, int* pOffset, ZetAACPrgCfgElt* pPrgCfgElt) {
    ZETAC_REQUIRE(aac::isSet(ppBitStream) && core::allSet(pOffset, pPrgCfgElt), zetStsNullPointer);
    ZETAC_REQUIRE(aac::isBitOffset(pOffset), zetStsAacBitOffsetErr);
    aac::BitReader stream(ppBitStream, pOffset);
    aac::readProgramConfigElement(stream, *pPrgCfgElt);
    stream.store(ppBitStream, pOffset);
    return zetStsOk;
}
