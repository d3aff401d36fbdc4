// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "io/failure.h"

namespace zetac::tool {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kNewMode = 0666;  // less what the mask of the process takes away

/** The number in a name such as /dev/fd/3, or -1. */
int descriptorIn(const std::string& path) {
    for (const std::string& folder : {std::string("/dev/fd/"), std::string("/proc/self/fd/")}) {
        if (!path.starts_with(folder)) continue;
        const char* end = path.data() + path.size();
        int number = -1;
        const auto result = std::from_chars(path.data() + folder.size(), end, number);
        return result.ec == std::errc() && result.ptr == end ? number : -1;
    }
    return -1;
}

/** A file without a name, in the folder for temporary files. */
Descriptor openNameless() {
    std::error_code ignored;
    const std::string folder = fs::temp_directory_path(ignored).string();
    Descriptor file(open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (file.isOpen()) return file;
    std::string name = folder + "/zetac-XXXXXX";
    file = Descriptor(mkstemp(name.data()));
    if (file.isOpen()) unlink(name.c_str());
    return file;
}

std::string nameInProc(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

}  // namespace

// --- Places -------------------------------------------------------------------------------------

OutputPlace locateOutput(const std::string& path) {
    constexpr int kLinksMax = 40;
    OutputPlace place;
    place.path = path;
    place.descriptor = path == "-" ? STDOUT_FILENO : -1;
    std::error_code ignored;
    for (int links = 0; place.descriptor < 0; ++links) {
        place.descriptor = descriptorIn(place.path);
        if (place.descriptor >= 0 || !fs::is_symlink(place.path, ignored)) break;
        if (links == kLinksMax) throw Failure(path, "cannot be written: links in a circle");
        const fs::path target = fs::read_symlink(place.path, ignored);
        place.path = (fs::path(place.path).parent_path() / target).string();
    }
    struct stat status {};
    if (place.descriptor >= 0) {
        place.kind = OutputPlace::Kind::kStream;
    } else if (stat(place.path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) throw Failure(path, "is a folder");
        place.kind =
            S_ISREG(status.st_mode) ? OutputPlace::Kind::kFile : OutputPlace::Kind::kStream;
        place.mode = status.st_mode & 0777;
        place.owner = status.st_uid;
        place.group = status.st_gid;
    }
    return place;
}

// --- Output files -------------------------------------------------------------------------------

void OutputFile::fail() const {
    throw Failure(name_, std::string("cannot be written: ") + std::strerror(errno));
}

OutputFile::OutputFile(const std::string& path, bool mayReplace)
    : name_(path == "-" ? "standard output" : path),
      place_(locateOutput(path)),
      mayReplace_(mayReplace) {
    if (place_.kind == OutputPlace::Kind::kStream) {
        openStream();
    } else {
        openFile();
    }
}

/** Opens what was found and never makes a file; a FIFO waits here for its reader. */
void OutputFile::openStream() {
    const std::string path = place_.descriptor < 0 ? place_.path : nameInProc(place_.descriptor);
    if (place_.descriptor >= 0) {
        stream_ = Descriptor(fcntl(place_.descriptor, F_DUPFD_CLOEXEC, 3));
    } else {
        stream_ = Descriptor(open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
    }
    if (!stream_.isOpen()) fail();
    file_ = openNameless();
    if (!file_.isOpen()) {
        throw Failure(std::string("no temporary file can be made: ") + std::strerror(errno));
    }
}

void OutputFile::openFile() {
    const fs::path path(place_.path);
    const std::string folder = path.has_parent_path() ? path.parent_path().string() : ".";
    std::error_code ignored;  // what matters shows when the folder is opened
    fs::create_directories(folder, ignored);
    folder_ = Descriptor(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder_.isOpen()) fail();
    leaf_ = path.filename().string();
    struct stat status {};
    if (fstatat(folder_.get(), leaf_.c_str(), &status, 0) != 0 && errno != ENOENT) fail();

    const bool isOld = place_.kind == OutputPlace::Kind::kFile;
    const mode_t mode = isOld ? 0600 : kNewMode;
    file_ = Descriptor(openat(folder_.get(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode));
    if (!file_.isOpen() || access(nameInProc(file_.get()).c_str(), F_OK) != 0) {
        temporary_.emplace(folder_.get());
        file_ = Descriptor(openat(folder_.get(), temporary_->c_str(),
                                  O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, mode));
    }
    if (!file_.isOpen()) fail();
    if (!isOld) return;
    // Only root may give a file away; then the rights go with the file's new owner.
    if (fchown(file_.get(), place_.owner, place_.group) != 0) errno = 0;
    if (fchmod(file_.get(), place_.mode) != 0) fail();
}

void OutputFile::writeTo(int descriptor, std::span<const Zet8u> bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) fail();
        if (count > 0) bytes = bytes.subspan(static_cast<size_t>(count));
        stopIfInterrupted();
    }
}

void OutputFile::write(std::span<const Zet8u> bytes) {
    writeTo(file_.get(), bytes);
}

void OutputFile::rewriteStart(std::span<const Zet8u> bytes) {
    if (lseek(file_.get(), 0, SEEK_SET) != 0) fail();
    write(bytes);
}

void OutputFile::commit() {
    if (stream_.isOpen()) {
        sendToStream();
    } else if (mayReplace_) {
        replace();
    } else {
        giveName();
    }
    if (temporary_) temporary_->release();
}

/** Files of these formats say in front what is known at their end, and can be sent only when
 *  complete. */
void OutputFile::sendToStream() {
    std::vector<Zet8u> chunk(1 << 16);
    if (lseek(file_.get(), 0, SEEK_SET) != 0) fail();
    for (;;) {
        const ssize_t count = read(file_.get(), chunk.data(), chunk.size());
        if (count < 0) fail();
        if (count == 0) break;
        writeTo(stream_.get(), {chunk.data(), static_cast<size_t>(count)});
    }
    if (!stream_.close()) fail();
}

/** A file that someone else has made meanwhile stays. */
void OutputFile::giveName() {
    const int folder = folder_.get();
    int result = 0;
    if (!temporary_) {
        result = linkat(AT_FDCWD, nameInProc(file_.get()).c_str(), folder, leaf_.c_str(),
                        AT_SYMLINK_FOLLOW);
    } else {
        if (!file_.close()) fail();
        result = renameat2(folder, temporary_->c_str(), folder, leaf_.c_str(), RENAME_NOREPLACE);
        if (result != 0 && errno == EINVAL) {
            result = linkat(folder, temporary_->c_str(), folder, leaf_.c_str(), 0);
            if (result == 0) unlinkat(folder, temporary_->c_str(), 0);
        }
    }
    if (result != 0 && errno == EEXIST) {
        throw Failure(name_, "has come up meanwhile; --force overwrites it");
    }
    if (result != 0) fail();
}

/** The contents reach the disk before the old ones go. */
void OutputFile::replace() {
    const int folder = folder_.get();
    if (place_.kind == OutputPlace::Kind::kFile && fsync(file_.get()) != 0) fail();
    if (!temporary_) {
        temporary_.emplace(folder);
        if (linkat(AT_FDCWD, nameInProc(file_.get()).c_str(), folder, temporary_->c_str(),
                   AT_SYMLINK_FOLLOW) != 0) {
            fail();
        }
    }
    if (!file_.close()) fail();
    if (renameat(folder, temporary_->c_str(), folder, leaf_.c_str()) != 0) fail();
}

}  // namespace zetac::tool
