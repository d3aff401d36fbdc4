// ADIF streams (ISO/IEC 13818-7, 6.2): one header and raw data blocks to the end.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "base/window.h"
#include "container/raw_block.h"

namespace zetac::codec {

class AdifHeader {
  public:
    /** Whether the view begins with the header. It is read then. */
    Answer read(View view);

    size_t bytes() const { return bytes_; }
    const ZetAACADIFHeader& fields() const { return fields_; }

    /** What begins with the view; its end is not known. */
    RawBlock blockAt(View view, uint64_t position) const;

  private:
    size_t bytes_ = 0;
    ZetAACADIFHeader fields_{};
    ZetAACPrgCfgElt program_{};  // the first one counts
};

}  // namespace zetac::codec
