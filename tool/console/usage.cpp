// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "console/usage.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>

#include "console/text.h"

namespace zetac::tool {
namespace {

/** The number, limited to what an int holds; nothing when the text is none. */
std::optional<int> numberIn(const std::string& text) {
    double number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    constexpr double kMost = 1e9;
    return static_cast<int>(std::clamp(number, -kMost, kMost));
}

std::string refusal(const std::string& text, int valid) {
    return "there is no " + text + "; the nearest valid value is " + std::to_string(valid);
}

/** Names of options as users type them. */
std::vector<std::string> optionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options())
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
}

std::string commandName(const CLI::App& app) {
    return app.get_parent() ? "zetac " + app.get_name() : "zetac";
}

/** What stands on the command line and has no meaning to this command. */
std::string explainRest(const CLI::App& app, const std::string& first) {
    if (!first.starts_with("-")) {
        std::vector<std::string> names;
        for (const CLI::App* command : app.get_subcommands({}))
            names.push_back(command->get_name());
        return "there is no command " + explainWord(first, names).substr(sizeof "there is no");
    }
    const std::string name = first.substr(0, first.find('='));
    const std::string meant = nearest(name, optionNames(app));
    const std::string command = commandName(app);
    return "there is no option " + name + "; " +
           (meant.empty() ? command + " --help lists those there are"
                          : "did you mean " + meant + "?");
}

}  // namespace

CLI::Validator oneOf(std::vector<int> numbers) {
    return {[numbers](std::string& text) -> std::string {
                const auto wanted = numberIn(text);
                const int nearby = *std::ranges::min_element(
                    numbers, {}, [&](int number) { return std::abs(number - wanted.value_or(0)); });
                const bool isValid = text == std::to_string(nearby);
                return isValid ? "" : refusal(text, nearby);
            },
            ""};
}

CLI::Validator within(int least, int most) {
    return {[least, most](std::string& text) -> std::string {
                const int nearby = std::clamp(numberIn(text).value_or(least), least, most);
                return text == std::to_string(nearby) ? "" : refusal(text, nearby);
            },
            ""};
}

std::string explainWord(const std::string& word, const std::vector<std::string>& words) {
    const std::string meant = nearest(word, words);
    const std::string rest =
        meant.empty() ? enumerated(words) + " are valid" : "did you mean " + meant + "?";
    return "there is no " + word + "; " + rest;
}

std::string explain(const CLI::App& app, const CLI::ParseError& error) {
    const auto commands = app.get_subcommands();
    const CLI::App& command = commands.empty() ? app : *commands.front();
    const auto rest = command.remaining();
    if (!rest.empty()) return explainRest(command, rest.front());
    const bool isMissing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (!isMissing) return error.what();
    return (commands.empty() ? "a command is missing; " : "a file is missing; ") +
           commandName(command) + " --help shows how";
}

}  // namespace zetac::tool
