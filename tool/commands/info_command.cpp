// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <cstdio>

#include "commands/commands.h"
#include "inspect/report.h"
#include "io/file_data.h"
#include "io/sound_source.h"

namespace zetac::tool {
namespace {

Report reportOf(const std::string& file) {
    const FileData data(file);
    Report report;
    report.member("file", file);
    if (identify(data.bytes()) == Codec::kAac) {
        reportAac(data.bytes(), report);
    } else {
        reportMp3(data.bytes(), report);
    }
    return report;
}

}  // namespace

Outcome runInfo(const InfoOptions& options) {
    Outcome outcome = Outcome::kGood;
    std::vector<std::string> objects;
    for (const std::string& file : options.files) {
        const char* name = file == "-" ? "standard input" : file.c_str();
        try {
            const Report report = reportOf(file);
            outcome = worse(outcome, report.isDamaged() ? Outcome::kDamaged : Outcome::kGood);
            objects.push_back(report.json());
            if (!options.asJson) std::printf("%s\n%s", name, report.text().c_str());
        } catch (const Failure& failure) {
            outcome = Outcome::kFailed;
            std::fprintf(stderr, "zetac: %s: %s\n", name, failure.what());
            Report report;
            report.member("file", file);
            report.member("error", failure.what());
            objects.push_back(report.json());
        }
    }
    if (options.asJson) std::printf("[%s]\n", join(objects, ",\n ").c_str());
    return outcome;
}

}  // namespace zetac::tool
