// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "commands/arguments.h"

#include <unistd.h>
#include <zetac.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <map>
#include <string>

#include "commands/version.h"
#include "console/text.h"
#include "console/usage.h"
#include "io/signals.h"

namespace zetac::tool {
namespace {

constexpr const char* kExitStatuses =
    "Exit status: 0 all is well, 1 something was damaged and concealed or passed over,\n"
    "2 a file could not be read, converted or written, or the command line is wrong,\n"
    "130 stopped by Ctrl-C; nothing half-written remains.";

std::string versionText() {
    const ZetLibraryVersion* library = zetacGetLibVersion();
    const std::string commit = kCommit;
    return "zetac " + std::string(kRelease) + (commit.empty() ? "" : ", commit " + commit) +
           "\non " + library->Name + ", version " + library->Version + ", for " +
           library->targetCpu;
}

CLI::App* addInfo(CLI::App& app, InfoOptions& options) {
    CLI::App* info = app.add_subcommand("info", "Show what AAC and MP3 files are");
    info->add_option("FILE", options.files, "AAC (ADTS or ADIF) or MP3 files; - is standard input")
        ->required();
    info->add_flag("--json", options.asJson, "Print a JSON array with one object per file");
    info->footer(
        "Examples:\n"
        "  zetac info song.aac               container, profile, channels, duration, coding tools\n"
        "  zetac info song.mp3               layer, mode, bit rate, duration, tags, coding tools\n"
        "  zetac info --json *.aac           the same for programs\n" +
        std::string(kExitStatuses));
    return info;
}

/** The options that decoding and encoding share. */
void addConversionOptions(CLI::App& command, ConversionOptions& options, const std::string& format,
                          const std::string& extension) {
    command.add_option("-o,--output", options.output,
                       format +
                           " file, folder, or - for standard output; default: the input's "
                           "name with " +
                           extension);
    command.add_option("-j,--jobs", options.jobs, "Files to work on at once; default: all cores")
        ->check(within(1, kTemporaryNamesMax));
    command.add_flag("-f,--force", options.isForced, "Overwrite existing output files");
    command.add_flag("-q,--quiet", options.isQuiet, "Show errors only");
}

CLI::App* addDecode(CLI::App& app, DecodeOptions& options) {
    CLI::App* decode = app.add_subcommand("decode", "Decode AAC and MP3 files to 16-bit WAV");
    decode
        ->add_option("FILE", options.files, "AAC (ADTS or ADIF) or MP3 files; - is standard input")
        ->required();
    addConversionOptions(*decode, options, "WAV", ".wav");
    decode->add_flag("--strict", options.isStrict,
                     "Give up a file at its first damage instead of concealing it");
    decode->add_flag_callback(
        "--no-trim", [&options] { options.isTrimmed = false; },
        "Keep the samples that an MP3 encoder says it added in front and behind");
    CLI::Option* noSbr = decode->add_flag_callback(
        "--no-sbr", [&options] { options.sbr.isOn = false; },
        "Of HE-AAC decode the core alone, at half the rate");
    decode
        ->add_flag("--downsampled", options.sbr.isDownsampled,
                   "Decode HE-AAC at the rate of its core, with the high band as far as it goes")
        ->excludes(noSbr);
    decode->add_flag("--sbr-float", options.sbr.isFloat,
                     "Decode the high band of HE-AAC in floating instead of fixed point");
    decode->footer(
        "A damaged frame is reported with its place and replaced by a fade-out. HE-AAC comes out\n"
        "at twice the rate of its core, HE-AAC v2 in stereo; where its SBR data are damaged, the\n"
        "high band is missing up to their next header.\n"
        "Examples:\n"
        "  zetac decode song.aac             writes song.wav\n"
        "  zetac decode *.mp3 -o wavs        writes wavs/....wav, on all cores\n"
        "  zetac decode song.aac -o - | aplay\n"
        "  cat song.aac | zetac decode - -o song.wav\n" +
        std::string(kExitStatuses));
    return decode;
}

CLI::App* addEncode(CLI::App& app, EncodeOptions& options) {
    static const std::map<std::string, ChannelMode> kModes = {{"joint", ChannelMode::kJoint},
                                                              {"stereo", ChannelMode::kStereo},
                                                              {"mono", ChannelMode::kMono}};
    CLI::App* encode = app.add_subcommand("encode", "Encode sound files to MP3");
    encode
        ->add_option("FILE", options.files,
                     "WAV, FLAC, AIFF and other files of one or two channels; - is standard input")
        ->required();
    addConversionOptions(*encode, options, "MP3", ".mp3");
    CLI::Option* bitRate =
        encode
            ->add_option("-b,--bit-rate", options.bitRate,
                         "Constant bit rate in kbit/s; default: 128, mono 64")
            ->check(oneOf({32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}));
    encode
        ->add_option("-V,--quality", options.quality,
                     "Variable bit rate by quality, 0 (best) to 9 (smallest)")
        ->check(within(0, 9))
        ->excludes(bitRate);
    encode->add_option_function<std::string>(
        "-m,--mode",
        [&options](const std::string& word) { options.mode = valueOf("--mode", word, kModes); },
        "joint (default: M/S and intensity stereo where they help), stereo, or mono, which mixes "
        "two channels into one");
    encode->add_flag("--crc", options.hasCrc, "Protect header and side information by a CRC-16");
    encode->footer(
        "The first frame tells players the length, what the encoder added at both ends, and where\n"
        "to seek. Sound of another rate than 32, 44.1 or 48 kHz is resampled to the best of "
        "these.\n"
        "Examples:\n"
        "  zetac encode song.wav             writes song.mp3 at 128 kbit/s\n"
        "  zetac encode -b 256 *.flac -o mp3s\n"
        "                                    writes mp3s/....mp3, on all cores\n"
        "  zetac encode -V 2 song.aiff       as many bits as each frame needs\n"
        "  zetac encode -m mono -b 48 talk.wav\n"
        "  arecord -f cd -d 60 | zetac encode - -o minute.mp3\n" +
        std::string(kExitStatuses));
    return encode;
}

}  // namespace

std::variant<Command, Outcome> parseCommandLine(int argc, char** argv) {
    CLI::App app(
        "zetac shows and decodes AAC (ADTS and ADIF; profiles LC, Main, LTP and HE) and MP3 files, "
        "and encodes MP3.",
        "zetac");
    InfoOptions infoOptions;
    DecodeOptions decodeOptions;
    EncodeOptions encodeOptions;
    app.set_version_flag("--version", versionText);
    app.require_subcommand(1);
    const CLI::App* info = addInfo(app, infoOptions);
    const CLI::App* decode = addDecode(app, decodeOptions);
    addEncode(app, encodeOptions);
    app.footer(
        "Examples:\n"
        "  zetac info song.aac               what is it?\n"
        "  zetac decode song.aac             writes song.wav\n"
        "  zetac encode song.wav             writes song.mp3\n"
        "  zetac decode --help               all about decoding; likewise for encode");
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        app.exit(request);
        return Outcome::kGood;
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "zetac: %s\n", shownOn(STDERR_FILENO, explain(app, error)).c_str());
        return Outcome::kFailed;
    }
    if (*info) return Command(infoOptions);
    if (*decode) return Command(decodeOptions);
    return Command(encodeOptions);
}

}  // namespace zetac::tool
