// A file that appears complete or not at all.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <optional>
#include <span>
#include <string>

#include "io/descriptor.h"
#include "io/signals.h"

namespace zetac::tool {

/** Where an output goes. */
struct OutputPlace {
    enum class Kind {
        kNew,    // there is no such file
        kFile,   // a regular file, which can be replaced
        kStream  // what is written into: a device, a FIFO, an open descriptor
    };
    Kind kind = Kind::kNew;
    std::string path;     // behind all symbolic links
    int descriptor = -1;  // of a stream that is open already, such as /dev/stdout
    unsigned mode = 0;    // access rights of a regular file
    unsigned owner = 0;
    unsigned group = 0;
};

/** What a name leads to. Throws Failure for a folder and for links in a circle.
 *  @param path  "-" for standard output */
OutputPlace locateOutput(const std::string& path);

/** Takes what is written, and gives it its name with commit(); without, nothing remains and an old
 *  file of that name is as it was. Where the file system allows it the file has no name until then,
 *  so that not even a crash leaves anything behind. Streams get all of it with commit(). A file
 *  that is replaced passes its access rights on. Methods throw Failure, which names the output. */
class OutputFile {
  public:
    /** @param path        "-" for standard output
     *  @param mayReplace  a file of that name, even one that comes up meanwhile */
    OutputFile(const std::string& path, bool mayReplace);

    const std::string& name() const { return name_; }
    /** To write to; open for reading as well. */
    int descriptor() const { return file_.get(); }
    void write(std::span<const Zet8u> bytes);
    /** Writes over the first bytes. */
    void rewriteStart(std::span<const Zet8u> bytes);
    void commit();

  private:
    void openStream();
    void openFile();
    void writeTo(int descriptor, std::span<const Zet8u> bytes) const;
    void sendToStream();
    void giveName();
    void replace();
    [[noreturn]] void fail() const;

    std::string name_;  // as the user gave it
    OutputPlace place_;
    bool mayReplace_;
    Descriptor folder_;
    std::string leaf_;  // of the path, in its folder
    std::optional<TemporaryName> temporary_;
    Descriptor file_;
    Descriptor stream_;
};

}  // namespace zetac::tool
