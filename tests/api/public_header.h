// What include/zetac.h says of each function: the names of its parameters, and the statuses of its
// checks in their order.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <map>
#include <string>
#include <vector>

namespace zetac::test {

struct DocumentedStatus {
    std::string name;  // without zetSts
    bool isLate;       // found while working, when something may have changed already
};

struct DocumentedFunction {
    std::vector<std::string> parameters;
    std::vector<DocumentedStatus> statuses;
};

/** All functions of the header that return a status, by name. zetStsNoMemory is left out. */
const std::map<std::string, DocumentedFunction>& publicHeader();

}  // namespace zetac::test
