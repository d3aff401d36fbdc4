// The reader of the stream library through its C interface: seeks against straight decodes,
// lengths, tags, internet radio, sources that cannot be rewound.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac_codec.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

#include "support/streams/mp3_clips.h"
#include "support/streams/reference.h"

namespace zetac::test {
namespace {

struct ReaderDeleter {
    void operator()(ZetacReader* reader) const { zetacReaderFree(reader); }
};
using ReaderPtr = std::unique_ptr<ZetacReader, ReaderDeleter>;

ReaderPtr openBytes(const Bytes& bytes, const ZetacReaderOptions* options = nullptr) {
    ZetacReader* reader = nullptr;
    EXPECT_EQ(zetacReaderOpenMemory(&reader, bytes.data(), bytes.size(), options), ZETAC_OK);
    return ReaderPtr(reader);
}

ZetacStreamInfo infoOf(const ReaderPtr& reader) {
    ZetacStreamInfo info = ZETAC_STREAM_INFO_INIT;
    EXPECT_EQ(zetacReaderGetInfo(reader.get(), &info), ZETAC_OK);
    return info;
}

/** Reads so many samples, or all; their positions follow on one another. */
Pcm readOn(const ReaderPtr& reader, size_t samples = SIZE_MAX) {
    Pcm pcm;
    ZetacFrame frame = ZETAC_FRAME_INIT;
    uint64_t expected = UINT64_MAX;
    for (size_t read = 0; read < samples && zetacReaderRead(reader.get(), &frame) == ZETAC_OK;) {
        if (frame.samples == 0) continue;
        if (expected != UINT64_MAX) {
            EXPECT_EQ(frame.position, expected);
        }
        expected = frame.position + static_cast<uint64_t>(frame.samples);
        const auto* values = static_cast<const Zet16s*>(frame.planes[0]);
        pcm.insert(pcm.end(), values, values + frame.samples * frame.channels);
        read += static_cast<size_t>(frame.samples);
    }
    return pcm;
}

/** Streams of the bundle and, where they are there, all others that one reader call can open. */
std::vector<std::string> allStreams() {
    std::vector<std::string> paths;
    for (const char* folder : {"aac", "he_aac", "mp3"}) {
        for (const auto& entry :
             std::filesystem::directory_iterator(std::string(ZETAC_TEST_DATA "/") + folder)) {
            if (entry.path().extension() != ".gz") paths.push_back(entry.path().string());
        }
    }
    for (const char* folder : {"aac/", "mp3/", "ps/", "mp25/", "tags/"}) {
        for (const SharedStream& stream : sharedStreams(folder)) {
            if (stream.path.ends_with("aac") || stream.path.ends_with("mp3")) {
                paths.push_back(stream.path);
            }
        }
    }
    std::ranges::sort(paths);
    const auto rest = std::ranges::unique(paths);
    paths.erase(rest.begin(), rest.end());
    return paths;
}

/** A changing number of channels makes positions in the PCM ambiguous. */
bool changesChannels(const std::string& path) {
    return path.ends_with("l3-he_mode.mp3");
}

TEST(Reader, SeeksAreExact) {
    constexpr int kSeeks = 40;
    for (const std::string& path : allStreams()) {
        if (changesChannels(path)) continue;
        SCOPED_TRACE(path);
        const Bytes bytes = readFile(path);
        const ReaderPtr straight = openBytes(bytes);
        if (!straight) continue;
        const Pcm all = readOn(straight);
        const auto channels = static_cast<size_t>(infoOf(straight).channels);
        const size_t length = all.size() / channels;
        const ReaderPtr reader = openBytes(bytes);
        Random random(7);
        for (int i = 0; i < kSeeks; ++i) {
            const size_t target = random.below(static_cast<uint32_t>(length));
            ASSERT_EQ(zetacReaderSeek(reader.get(), target), ZETAC_OK);
            const Pcm piece = readOn(reader, 3000);
            ASSERT_EQ(piece.size() / channels >= std::min<size_t>(3000, length - target), true);
            const bool isEqual =
                std::memcmp(piece.data(), &all[target * channels], piece.size() * 2) == 0;
            ASSERT_TRUE(isEqual) << "sample " << target << " of " << length;
        }
        ASSERT_EQ(zetacReaderScan(reader.get()), ZETAC_OK);
        EXPECT_EQ(infoOf(reader).isLengthExact, 1);
        EXPECT_EQ(infoOf(reader).length, length);
        ASSERT_EQ(zetacReaderSeek(reader.get(), length), ZETAC_OK);
        EXPECT_EQ(readOn(reader).size(), 0u);
    }
}

/** A source that gives a few bytes at a time and cannot be rewound. */
struct Pipe {
    const Bytes& bytes;
    size_t position = 0;

    static ptrdiff_t read(void* user, void* buffer, size_t count) {
        auto& pipe = *static_cast<Pipe*>(user);
        count = std::min({count, size_t{97}, pipe.bytes.size() - pipe.position});
        std::memcpy(buffer, pipe.bytes.data() + pipe.position, count);
        pipe.position += count;
        return static_cast<ptrdiff_t>(count);
    }
};

ReaderPtr openPipe(Pipe& pipe) {
    ZetacIo io{};
    io.size = sizeof io;
    io.user = &pipe;
    io.read = Pipe::read;
    ZetacReader* reader = nullptr;
    EXPECT_EQ(zetacReaderOpenIo(&reader, &io, nullptr), ZETAC_OK);
    return ReaderPtr(reader);
}

TEST(Reader, PipesAreReadAsTheyComeAndSkippedForward) {
    const Bytes bytes = id3v2(40) + mp3Clip("stereo_ms_44k") + id3v1();
    const Pcm all = readOn(openBytes(bytes));
    Pipe pipe{bytes};
    const ReaderPtr reader = openPipe(pipe);
    EXPECT_LT(pipe.position, 3000u);  // the tag and two frames of at most 1045 bytes
    EXPECT_EQ(readOn(reader, 1152), Pcm(all.begin(), all.begin() + 2 * 1152));
    EXPECT_EQ(zetacReaderSeek(reader.get(), 100), ZETAC_ERROR_NOT_SEEKABLE);
    EXPECT_EQ(zetacReaderScan(reader.get()), ZETAC_ERROR_NOT_SEEKABLE);
    ASSERT_EQ(zetacReaderSeek(reader.get(), 5000), ZETAC_OK);
    EXPECT_EQ(readOn(reader), Pcm(all.begin() + 2 * 5000, all.end()));
}

/** Every interval puts metadata elsewhere in the frames. */
TEST(Reader, InternetRadioComesWithTitlesInsteadOfDamage) {
    const Bytes sound = mp3Clip("stereo_ms_44k");
    const Pcm expected = readOn(openBytes(sound));
    const std::string title =
        "StreamTitle='Gr\xFC\xDF"
        "e';";
    for (const size_t interval : {16u, 417u, 5000u}) {
        Bytes radio = ascii("ICY 200 OK\r\nicy-name: Radio\r\nIcy-MetaInt:");
        append(radio, ascii((std::to_string(interval) + "\r\n\r\n").c_str()));
        for (size_t at = 0; at < sound.size(); at += interval) {
            const size_t end = std::min(sound.size(), at + interval);
            radio.insert(radio.end(), sound.begin() + static_cast<ptrdiff_t>(at),
                         sound.begin() + static_cast<ptrdiff_t>(end));
            if (end - at < interval) break;
            Bytes block = at == 0 ? ascii(title.c_str()) : Bytes{};
            block.resize((block.size() + 15) / 16 * 16);
            radio.push_back(static_cast<Zet8u>(block.size() / 16));
            append(radio, block);
        }
        Pipe pipe{radio};
        const ReaderPtr reader = openPipe(pipe);
        EXPECT_EQ(readOn(reader), expected) << interval;
        std::map<std::string, std::string> tags;
        ZetacTag tag;
        for (size_t i = 0; zetacReaderGetTag(reader.get(), i, &tag) == ZETAC_OK; ++i) {
            tags[tag.name] = tag.value;
        }
        EXPECT_EQ(tags["title"], "Grüße");
        EXPECT_EQ(tags["station"], "Radio");
    }
}

/** A stream that goes on behind what its information frame tells of is played to its end. */
TEST(Reader, InformationFramesTrimTheirOwnStreamOnly) {
    const Bytes clip = mp3Clip("stereo_ms_44k");
    const std::vector<Bytes> frames = mp3FramesOf(clip);
    const auto count = static_cast<uint32_t>(frames.size());
    Bytes tag = xing("Info", 1, "Zetac 1.0", 576, 1000);
    for (int i = 0; i < 4; ++i)
        tag[8 + static_cast<size_t>(i)] = static_cast<Zet8u>(count >> (24 - 8 * i));
    const Bytes told = infoFrame(clip, 36, tag) + clip;
    const ReaderPtr reader = openBytes(told);
    const size_t length = count * 1152 - 576 - 1000;
    EXPECT_EQ(infoOf(reader).length, length);
    const Pcm trimmed = readOn(reader);
    EXPECT_EQ(trimmed.size(), 2 * length);
    ZetacReaderOptions options = ZETAC_READER_OPTIONS_INIT;
    options.keepsGaps = 1;
    EXPECT_EQ(readOn(openBytes(told, &options)).size(), 2u * count * 1152);
    EXPECT_EQ(readOn(openBytes(told + clip)).size(), 2 * (2 * count * 1152 - (576 + 529)));
    const Bytes cut(told.begin(),
                    told.end() - 2000);  // four frames of 417 or 418 bytes, and most of a fifth
    EXPECT_GT(readOn(openBytes(cut)).size(), 2 * (count - 6) * 1152u);
}

TEST(Reader, TagsOfTheSharedStreams) {
    std::ifstream table(ZETAC_SHARED_STREAMS "/tags/tags.csv");
    if (!table) GTEST_SKIP() << "no streams in " ZETAC_SHARED_STREAMS;
    std::map<std::string, std::map<std::string, std::string>> read;
    int compared = 0;
    for (std::string line; std::getline(table, line);) {
        const size_t first = line.find(',');
        const size_t second = line.find(',', first + 1);
        const std::string path = line.substr(0, first);
        std::string value = line.substr(second + 1);
        if (!path.ends_with("mp3") || line.find("ID3v1 ") != std::string::npos) continue;
        const std::string name = line.substr(first + 1, second - first - 1);
        if (name == "cover") continue;
        if (value[0] == '"') value = value.substr(1, value.size() - 2);
        if (!read.contains(path)) {
            const Bytes bytes = readFile(ZETAC_SHARED_STREAMS "/" + path);
            const ReaderPtr reader = openBytes(bytes);
            ZetacTag tag;
            for (size_t i = 0; zetacReaderGetTag(reader.get(), i, &tag) == ZETAC_OK; ++i) {
                read[path][tag.name] = tag.value;
            }
        }
        EXPECT_EQ(read[path][name], value) << path << " " << name;
        ++compared;
    }
    EXPECT_GT(compared, 40);
}

TEST(Reader, SaysWhyNothingComes) {
    ZetacReader* reader = nullptr;
    EXPECT_EQ(zetacReaderOpenFile(&reader, "/nonexistent/file", nullptr), ZETAC_ERROR_OPEN);
    EXPECT_EQ(zetacReaderOpenFile(&reader, nullptr, nullptr), ZETAC_ERROR_ARGUMENT);
    const Bytes noise(5000, 0x55);
    EXPECT_EQ(zetacReaderOpenMemory(&reader, noise.data(), noise.size(), nullptr),
              ZETAC_ERROR_NO_STREAM);
    EXPECT_EQ(zetacReaderOpenMemory(&reader, noise.data(), 0, nullptr), ZETAC_ERROR_NO_STREAM);
    EXPECT_EQ(reader, nullptr);
}

}  // namespace
}  // namespace zetac::test
