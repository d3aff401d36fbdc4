// The contract of every exported function: null pointers, ranges, the order of checks, and nothing
// changed by a call that fails.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "api/contract.h"
#include "exported_names.h"

namespace zetac::test {

void PrintTo(const RowText& row, std::ostream* out) {
    *out << row.name();
}

namespace {

class Contract : public testing::TestWithParam<RowText> {};

TEST_P(Contract, holds) {
    Row(GetParam()).run();
}

INSTANTIATE_TEST_SUITE_P(Of, Contract, testing::ValuesIn(contractRows()),
                         [](const auto& row) { return row.param.name(); });

TEST(ContractTable, hasARowForEveryFunctionOfTheHeader) {
    std::set<std::string> covered;
    for (const RowText& row : contractRows()) covered.insert(row.function);
    const std::set<std::string> exported(std::begin(kExportedNames), std::end(kExportedNames));
    EXPECT_EQ(covered, exported);
}

}  // namespace
}  // namespace zetac::test
