// Open files.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

namespace zetac::tool {

/** An open file; closed at the end of its life. */
class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&& other) noexcept;

    int get() const { return number_; }
    bool isOpen() const { return number_ >= 0; }
    int release();
    /** @return whether all that was written has arrived; errno has the reason if not */
    bool close();

  private:
    int number_;
};

/** Gives the program the descriptors 0 to 2: those that the caller has closed fail when used. */
void reserveStandardDescriptors();

/** Flushes and closes standard output.
 *  @return whether all that was written has arrived; errno has the reason if not */
bool closeStandardOutput();

}  // namespace zetac::tool
