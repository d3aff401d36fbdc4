// The contract of an exported function as a row of text: its valid arguments and its checks in
// their order. From a row, run() derives every call that has to fail and verifies that
// - each broken argument alone gives the status of its check,
// - of two broken arguments the one that is checked first decides,
// - a failed call leaves all memory that it can reach as it was,
// - the valid arguments pass, and so do the limits of every range.
// tests/contracts/README.md tells how a row is written. The statuses are those of the header.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "api/contract_function.h"

namespace zetac::test {

/** A row as it stands in a file. */
struct RowText {
    std::string function;
    std::string label;  // empty where the function has one row only
    std::vector<std::string> settings;
    std::string checks;

    std::string name() const { return label.empty() ? function : function + "_" + label; }
};

/** All rows of tests/contracts. */
const std::vector<RowText>& contractRows();

class Row {
  public:
    explicit Row(const RowText& text);
    Row(const Row&) = delete;
    Row& operator=(const Row&) = delete;

    void run();

  private:
    // A way to make an argument invalid; two breaks of one target exclude each other.
    struct Break {
        std::string target;
        std::string what;
        std::function<void()> apply;
    };
    struct Check {
        ZetStatus status;
        std::vector<Break> breaks;
        std::vector<Break> limits;  // values that must pass
    };
    // A place that checks can name.
    struct Place {
        Zet8u* memory;
        const Parameter* type;
        size_t count;
    };

    // Arguments
    std::vector<Slot> makeArguments(const Function& function, const RowText& text);
    void makeArgument(const std::string& name, const Parameter& type, Slot& slot);
    void set(const std::string& setting, const Function& function, std::vector<Slot>& slots);
    void makeSpec(const std::string& name, Slot& slot, const std::string& init);
    Zet8u* addMemory(size_t size, Zet8u fill);
    void addRows(const std::string& name, const Parameter& type, Slot& slot, size_t rows,
                 size_t columns);
    std::function<void(int64_t)> setterOf(const std::string& place);

    // Checks
    void addChecks(const std::string& text);
    void addGroup(const std::string& group, ZetStatus status);
    void addCheck(const std::string& text, ZetStatus status);
    void addIdCheck(const std::string& name, std::vector<int64_t> allowed, Check& check);
    void addNullChecks(const std::vector<std::string>& names, Check& check);
    Break setting(const std::string& place, int64_t x);

    ZetStatus call();
    void reset();
    void expectFailure(const Break& first, const Break* second, ZetStatus status);
    void expectLimitsPass(const Check& check);

    const Function& function_;
    std::vector<Slot> arguments_, valid_;
    std::deque<std::vector<Zet8u>> memory_;
    std::vector<std::vector<Zet8u>> image_;
    std::map<std::string, Place> places_;
    std::map<std::string, Slot*> slots_;
    std::vector<Break> nulls_;       // of all pointers that may not be null
    std::vector<std::string> late_;  // pointers whose null has a check of its own
    std::vector<Check> checks_;
};

}  // namespace zetac::test
