// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "io/file_data.h"

namespace zetac::tool {
namespace {

/** A file whose name is gone from the start, in the folder for temporary files. */
int openNameless() {
    std::error_code ignored;
    std::string name = std::filesystem::temp_directory_path(ignored) / "zetac-XXXXXX";
    const int descriptor = mkstemp(name.data());
    if (descriptor >= 0) unlink(name.c_str());
    return descriptor;
}

mode_t fileMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

void failBecause(const std::string& what) {
    throw Failure(what + ": " + std::strerror(errno));
}

OutputFile::OutputFile(std::string path) : path_(std::move(path)) {
    if (path_ == "-") {
        descriptor_ = openNameless();
    } else {
        const auto folder = std::filesystem::path(path_).parent_path();
        std::error_code ignored;  // what matters shows when the file is made
        if (!folder.empty()) std::filesystem::create_directories(folder, ignored);
        temporary_ = path_ + ".XXXXXX";
        descriptor_ = mkstemp(temporary_.data());
        if (descriptor_ < 0) temporary_.clear();
    }
    if (descriptor_ < 0) failBecause("cannot be written");
}

OutputFile::~OutputFile() {
    if (descriptor_ >= 0) close(descriptor_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void OutputFile::write(std::span<const Zet8u> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) failBecause("cannot be written");
        bytes = bytes.subspan(static_cast<size_t>(count));
    }
}

void OutputFile::rewriteStart(std::span<const Zet8u> bytes) {
    if (lseek(descriptor_, 0, SEEK_SET) != 0) failBecause("cannot be written");
    write(bytes);
}

void OutputFile::commit() {
    if (path_ == "-") {
        sendToStandardOutput();
        return;
    }
    if (fchmod(descriptor_, fileMode()) != 0 ||
        std::rename(temporary_.c_str(), path_.c_str()) != 0) {
        failBecause("cannot be written");
    }
    temporary_.clear();
}

/** These files say in front what is known at their end, and can be sent only when complete. */
void OutputFile::sendToStandardOutput() {
    std::vector<char> chunk(1 << 16);
    if (lseek(descriptor_, 0, SEEK_SET) != 0) failBecause("cannot be read back");
    for (;;) {
        const ssize_t count = read(descriptor_, chunk.data(), chunk.size());
        if (count < 0) failBecause("cannot be read back");
        if (count == 0) break;
        const auto size = static_cast<size_t>(count);
        if (std::fwrite(chunk.data(), 1, size, stdout) != size) {
            failBecause("standard output cannot be written");
        }
    }
    if (std::fflush(stdout) != 0) failBecause("standard output cannot be written");
}

}  // namespace zetac::tool
