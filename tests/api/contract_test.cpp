// The contract of every exported function: null pointers, ranges, the order of checks, and nothing
// changed by a call that fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "exported_names.h"
#include "support/contract.h"

namespace zetac::test {
namespace {

const Table& table() {
    static const Table* all = [] {
        auto* rows = new Table;
        addCoreRows(*rows);
        addFftRows(*rows);
        addAacRows(*rows);
        addAacPredictionRows(*rows);
        addMp3UnpackRows(*rows);
        addMp3RequantRows(*rows);
        addMp3PsychoRows(*rows);
        addMp3SynthesisRows(*rows);
        addMp3PackRows(*rows);
        addMp3QuantizeRows(*rows);
        addMdctRows(*rows);
        addSbrFixedRows(*rows);
        addSbrFloatRows(*rows);
        addVlcVqRows(*rows);
        return rows;
    }();
    return *all;
}

class Contract : public testing::TestWithParam<std::shared_ptr<Row>> {};

TEST_P(Contract, holds) {
    GetParam()->run();
}

INSTANTIATE_TEST_SUITE_P(Of, Contract, testing::ValuesIn(table().rows()),
                         [](const auto& row) { return row.param->name(); });

TEST(ContractTable, hasARowForEveryFunctionOfTheHeader) {
    std::set<std::string> covered;
    for (const auto& row : table().rows()) covered.insert(row->functionName());
    const std::set<std::string> exported(std::begin(kExportedNames), std::end(kExportedNames));
    std::vector<std::string> missing;
    std::ranges::set_difference(exported, covered, std::back_inserter(missing));
    EXPECT_EQ(missing, std::vector<std::string>{});
}

}  // namespace
}  // namespace zetac::test
