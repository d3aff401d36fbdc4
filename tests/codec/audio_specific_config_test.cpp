// AudioSpecificConfig in the forms that containers use, written field by field.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/audio_specific_config.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "support/bit_writer.h"

namespace zetac::test {
namespace {

using codec::AudioSpecificConfig;
using codec::ConfigFault;
using codec::Fault;

/** Fields as "value:bits value:bits ...", filled up to whole bytes. */
std::vector<Zet8u> bytesOf(const std::string& fields) {
    std::istringstream in(fields);
    BitWriter writer;
    char colon = 0;
    int bits = 0;
    for (uint32_t value = 0; in >> value >> colon >> bits;) writer.append(value, bits);
    return writer.bytes(0);
}

std::string describe(const AudioSpecificConfig& c) {
    std::ostringstream out;
    out << c.objectType << " " << c.samplingFrequencyIndex << " " << c.samplingFrequency << " "
        << c.channelConfiguration << " sbr" << static_cast<int>(c.sbr) << " ps"
        << static_cast<int>(c.parametricStereo) << " " << c.extensionFrequency
        << (c.hasShortFrames ? " short" : "") << (c.programConfig ? " pce" : "");
    return out.str();
}

TEST(AudioSpecificConfig, Forms) {
    struct Case {
        const char* fields;
        const char* expected;
    };
    const Case cases[] = {
        {"2:5 4:4 2:4 0:3", "2 4 44100 2 sbr0 ps0 0"},
        {"4:5 8:4 1:4 0:3", "4 8 16000 1 sbr0 ps0 0"},
        {"2:5 3:4 6:4 1:1 0:2", "2 3 48000 6 sbr0 ps0 0 short"},
        {"2:5 4:4 2:4 0:1 1:1 5:14 0:1", "2 4 44100 2 sbr0 ps0 0"},
        // explicit rates take the tables of their range
        {"2:5 15:4 44056:24 2:4 0:3", "2 4 44056 2 sbr0 ps0 0"},
        {"2:5 15:4 100000:24 2:4 0:3", "2 0 100000 2 sbr0 ps0 0"},
        {"2:5 15:4 7000:24 2:4 0:3", "2 11 7000 2 sbr0 ps0 0"},
        // hierarchical signalling
        {"5:5 7:4 2:4 4:4 2:5 0:3", "2 7 22050 2 sbr2 ps0 44100"},
        {"29:5 7:4 1:4 4:4 2:5 0:3", "2 7 22050 1 sbr2 ps2 44100"},
        {"5:5 6:4 2:4 6:4 2:5 0:3", "2 6 24000 2 sbr2 ps0 24000"},
        // backward compatible signalling
        {"2:5 7:4 1:4 0:3 695:11 5:5 1:1 4:4 1352:11 1:1", "2 7 22050 1 sbr2 ps2 44100"},
        {"2:5 7:4 1:4 0:3 695:11 5:5 1:1 4:4 1352:11 0:1", "2 7 22050 1 sbr2 ps1 44100"},
        {"2:5 7:4 2:4 0:3 695:11 5:5 0:1", "2 7 22050 2 sbr1 ps0 0"},
        {"2:5 7:4 2:4 0:3 694:11 5:5 1:1 4:4", "2 7 22050 2 sbr0 ps0 0"},
        // one front channel by a program config element without mixdown and comment
        {"2:5 4:4 0:4 0:3 0:4 1:2 4:4 1:4 0:4 0:4 0:2 0:3 0:4 0:3 0:1 0:4 0:2 0:8",
         "2 4 44100 0 sbr0 ps0 0 pce"},
    };
    for (const Case& c : cases) {
        AudioSpecificConfig config;
        EXPECT_EQ(readAudioSpecificConfig(bytesOf(c.fields), true, config), Fault::kNone)
            << c.fields;
        EXPECT_EQ(describe(config), c.expected) << c.fields;
    }
}

TEST(AudioSpecificConfig, RefusalsAndDamageByName) {
    struct Case {
        const char* fields;
        Fault expected;
    };
    const Case cases[] = {
        {"3:5 4:4 2:4 0:3", ConfigFault::kSsr},
        {"6:5 4:4 2:4 0:3", ConfigFault::kScalable},
        {"23:5 4:4 2:4 0:3", ConfigFault::kErrorResilient},
        {"31:5 7:6 4:4 2:4 0:3", ConfigFault::kErrorResilient},
        {"31:5 10:6 4:4 2:4 0:3", ConfigFault::kUsac},
        {"8:5 4:4 2:4 0:3", ConfigFault::kObjectType},
        {"2:5 13:4 2:4 0:3", ConfigFault::kSamplingFrequency},
        {"2:5 4:4", ConfigFault::kTruncated},
        {"5:5 7:4 2:4 4:4 3:5 0:3", ConfigFault::kSsr},
    };
    for (const Case& c : cases) {
        AudioSpecificConfig config;
        EXPECT_EQ(readAudioSpecificConfig(bytesOf(c.fields), true, config), c.expected) << c.fields;
    }
}

/** Where the length is not known, what follows is no extension. */
TEST(AudioSpecificConfig, ExtensionsNeedALength) {
    const auto bytes = bytesOf("2:5 7:4 1:4 0:3 695:11 5:5 1:1 4:4");
    AudioSpecificConfig config;
    EXPECT_EQ(readAudioSpecificConfig(bytes, false, config), Fault::kNone);
    EXPECT_EQ(config.bits, 16u);
    EXPECT_EQ(describe(config), "2 7 22050 1 sbr0 ps0 0");
}

}  // namespace
}  // namespace zetac::test
