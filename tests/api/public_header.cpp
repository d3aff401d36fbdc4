// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "api/public_header.h"

#include <fstream>
#include <regex>
#include <sstream>

namespace zetac::test {
namespace {

using Statuses = std::vector<DocumentedStatus>;

// A comment as one line, without the asterisks in front of its lines.
std::string oneLine(const std::string& comment) {
    static const std::regex lineStart("\\s*\\n \\*\\s*"), spaces("\\s+");
    return std::regex_replace(std::regex_replace(comment, lineStart, " "), spaces, " ");
}

Statuses statusesIn(const std::string& text) {
    static const std::regex status("zetSts(\\w+)");
    static const std::regex late("[Ww]hile (reading|working|writing)|later,");
    Statuses result;
    for (std::sregex_iterator at(text.begin(), text.end(), status), end; at != end; ++at) {
        const std::string name = (*at)[1];
        if (name == "NoMemory" || name == "Misaligned") continue;
        result.push_back({name, std::regex_search(text.begin(), (*at)[0].first, late)});
    }
    return result;
}

class Reader {
  public:
    std::map<std::string, DocumentedFunction> functions;

    explicit Reader(const std::string& text) {
        static const std::regex part(
            "/\\* -{20}[^\\n]*\\n([^]*?)-{20}"  // the comment of a section
            "|/\\*\\*(?!<)([^]*?)\\*/\\s*(?=ZETAC_API|typedef|struct|#)"  // of what follows it
            "|ZETAC_API\\s+ZetStatus\\s+(\\w+)\\(([^;]*)\\);");
        std::string comment;
        for (std::sregex_iterator at(text.begin(), text.end(), part), end; at != end; ++at) {
            const std::smatch& match = *at;
            if (match[1].matched) addSection(oneLine(match[1]));
            if (match[2].matched) comment = oneLine(match[2]);
            if (!match[3].matched) continue;
            functions[match[3]] = {parametersIn(match[4]), statusesOf(comment)};
            comment.clear();
        }
    }

  private:
    // What a section says of all its functions stays true until a later one says otherwise.
    void addSection(const std::string& text) {
        const size_t checks = text.find("hecks");
        const Statuses found = statusesIn(checks == text.npos ? text : text.substr(checks));
        if (!found.empty()) common_ = found;
    }

    static std::vector<std::string> parametersIn(const std::string& list) {
        static const std::regex name("(\\w+)(\\[\\])?\\s*(,|$)");
        std::vector<std::string> result;
        for (std::sregex_iterator at(list.begin(), list.end(), name), end; at != end; ++at)
            result.push_back((*at)[1]);
        return result;
    }

    // Own checks; those of a function that is referred to, with what is added to them; or those
    // that the section has for all.
    Statuses statusesOf(const std::string& comment) const {
        static const std::regex reference(
            "(?:hecks:? (?:and warning )?(?:as|are those of|those of|as for) (?:for )?"
            "|checks are those of |[Ss]ee |^ )(zets\\w+)");
        static const std::regex anyFunction("(zets(?!Sts)\\w+)");
        if (comment.find("No checks") != comment.npos) return {};
        const size_t checks = comment.find("Checks");
        const std::string own = checks == comment.npos ? comment : comment.substr(checks);
        std::smatch match;
        Statuses result;
        if (own.find("he band checks") != own.npos || comment.find("common checks") != comment.npos)
            result = common_;
        else if (std::regex_search(own, match, reference) && functions.count(match[1]))
            result = functions.at(match[1]).statuses;
        const Statuses added = statusesIn(own);
        result.insert(result.end(), added.begin(), added.end());
        if (!result.empty()) return result;
        if (std::regex_search(comment, match, anyFunction) && functions.count(match[1]))
            return functions.at(match[1]).statuses;
        return common_;
    }

    Statuses common_;
};

}  // namespace

const std::map<std::string, DocumentedFunction>& publicHeader() {
    static const auto* functions = [] {
        std::ifstream file(ZETAC_TEST_DATA "/../../include/zetac.h");
        std::stringstream text;
        text << file.rdbuf();
        return new auto(Reader(text.str()).functions);
    }();
    return *functions;
}

}  // namespace zetac::test
