// zetac: shows and decodes AAC and MP3 files with the functions of the library.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include <CLI/CLI.hpp>
#include <cstdio>

#include "commands.h"

namespace {

using zetac::tool::Outcome;

constexpr const char* kExitStatuses =
    "Exit status: 0 all is well, 1 something was damaged and concealed or passed over,\n"
    "2 a file could not be read, decoded or written.";

std::string versionText() {
    const ZetLibraryVersion* v = zetacGetLibVersion();
    return std::string("zetac on ") + v->Name + ", version " + v->Version + ", build " +
           std::to_string(v->majorBuild) + "." + std::to_string(v->build) + " (" + v->targetCpu +
           ", " + v->BuildDate + ")";
}

CLI::App* addInfo(CLI::App& app, zetac::tool::InfoOptions& options) {
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

CLI::App* addDecode(CLI::App& app, zetac::tool::DecodeOptions& options) {
    CLI::App* decode = app.add_subcommand("decode", "Decode AAC and MP3 files to 16-bit WAV");
    decode
        ->add_option("FILE", options.files, "AAC (ADTS or ADIF) or MP3 files; - is standard input")
        ->required();
    decode->add_option("-o,--output", options.output,
                       "WAV file, folder, or - for standard output; default: the input's name with "
                       ".wav");
    decode->add_option("-j,--jobs", options.jobs, "Files to decode at once; default: all cores")
        ->check(CLI::PositiveNumber);
    decode->add_flag("-f,--force", options.isForced, "Overwrite existing output files");
    decode->add_flag("-q,--quiet", options.isQuiet, "Show errors only");
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
    decode->add_flag("--float", options.sbr.isFloat,
                     "Decode the high band of HE-AAC in floating instead of fixed point");
    decode->footer(
        "A damaged frame is reported with its place and replaced by a fade-out. HE-AAC comes out\n"
        "at twice the rate of its core, HE-AAC v2 as mono; where its SBR data are damaged, the\n"
        "high band is missing up to their next header.\n"
        "Examples:\n"
        "  zetac decode song.aac             writes song.wav\n"
        "  zetac decode *.mp3 -o wavs        writes wavs/....wav, on all cores\n"
        "  zetac decode song.aac -o - | aplay\n"
        "  cat song.aac | zetac decode - -o song.wav\n" +
        std::string(kExitStatuses));
    return decode;
}

int run(int argc, char** argv) {
    CLI::App app(
        "zetac shows and decodes AAC (ADTS and ADIF; profiles LC, Main, LTP and HE) and MP3 files.",
        "zetac");
    zetac::tool::InfoOptions infoOptions;
    zetac::tool::DecodeOptions decodeOptions;
    app.set_version_flag("--version", versionText);
    app.require_subcommand(1);
    CLI::App* info = addInfo(app, infoOptions);
    addDecode(app, decodeOptions);
    app.footer(
        "Examples:\n"
        "  zetac info song.aac               what is it?\n"
        "  zetac decode song.aac             writes song.wav\n"
        "  zetac decode --help               all about decoding");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : static_cast<int>(Outcome::kFailed);
    }
    return static_cast<int>(*info ? runInfo(infoOptions) : runDecode(decodeOptions));
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "zetac: %s\n", exception.what());
    } catch (...) {
        std::fputs("zetac: unknown error\n", stderr);
    }
    return static_cast<int>(Outcome::kFailed);
}
