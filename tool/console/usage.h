// What is wrong with a command line, in one line that names what was probably meant.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

namespace zetac::tool {

/** Takes whole numbers of a list only. */
CLI::Validator oneOf(std::vector<int> numbers);

/** Takes whole numbers of a range only. */
CLI::Validator within(int least, int most);

/** "there is no x; a, b and c are valid", or "...; did you mean a?". */
std::string explainWord(const std::string& word, const std::vector<std::string>& words);

/** The value of a word; throws CLI::ValidationError.
 *  @param option  that the word was given to */
template <class Value>
Value valueOf(const std::string& option, const std::string& word,
              const std::map<std::string, Value>& values) {
    if (const auto found = values.find(word); found != values.end()) return found->second;
    std::vector<std::string> words;
    for (const auto& value : values) words.push_back(value.first);
    throw CLI::ValidationError(option, explainWord(word, words));
}

/** The line for a command line that could not be parsed. */
std::string explain(const CLI::App& app, const CLI::ParseError& error);

}  // namespace zetac::tool
