// The floating MDCT of the two block lengths of Layer III, 12 and 36.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::transform {

// table holds the sines and then the cosines of the len / 4 twiddles. work holds len singles.
// Source and destination may begin at the same address.
void forwardBlock(int len, const Zet32f* table, const Zet32f* src, Zet32f* dst, Zet32f* work);
void inverseBlock(int len, const Zet32f* table, const Zet32f* src, Zet32f* dst, Zet32f* work);

}  // namespace zetac::transform
