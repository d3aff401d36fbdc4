// The command-line tool in a folder of its own.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#ifdef ZETAC_TOOL

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "support/streams/clips.h"

namespace zetac::test {

namespace fs = std::filesystem;

struct ShellRun {
    int status = -1;
    std::string text;  // standard output and standard error
};

/** Each test has a folder of its own, and runs the tool there. */
class Command : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "zetac-test-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
    }
    void TearDown() override { fs::remove_all(folder_); }

    /** Runs a shell line in the folder, with $zetac for the tool. */
    ShellRun shell(const std::string& line) const {
        const std::string command = "cd '" + folder_.string() + "' && zetac='" ZETAC_TOOL "'; (" +
                                    line + ") 2>&1 </dev/null";
        ShellRun run;
        std::FILE* pipe = popen(command.c_str(), "r");
        if (pipe == nullptr) return run;
        char chunk[4096];
        while (const size_t count = std::fread(chunk, 1, sizeof chunk, pipe)) {
            run.text.append(chunk, count);
        }
        const int status = pclose(pipe);
        run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return run;
    }

    void put(const std::string& name, const Bytes& bytes) const {
        writeFile((folder_ / name).string(), bytes);
    }
    Bytes get(const std::string& name) const { return readFile((folder_ / name).string()); }
    bool has(const std::string& name) const { return fs::exists(folder_ / name); }
    ptrdiff_t fileCount() const {
        return std::distance(fs::directory_iterator(folder_), fs::directory_iterator());
    }

    fs::path folder_;
};

/** The sound of a WAV file, whose "data" chunk is its last one here. */
inline Pcm pcmOf(const Bytes& wav) {
    const char id[] = {'d', 'a', 't', 'a'};
    const auto data = std::search(wav.begin(), wav.end(), id, id + 4);
    if (data == wav.end()) return {};
    const auto start = static_cast<size_t>(data - wav.begin()) + 8;
    Pcm pcm((wav.size() - start) / sizeof(Zet16s));
    std::memcpy(pcm.data(), wav.data() + start, pcm.size() * sizeof(Zet16s));
    return pcm;
}

inline uint32_t field32(const Bytes& bytes, size_t at) {
    uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

}  // namespace zetac::test

#endif  // ZETAC_TOOL
