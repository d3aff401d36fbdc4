#include "support/contract.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "exported_names.h"

namespace zetac::test {
namespace {

int numberOf(const std::string& word) {
    if (word == "min") return INT_MIN;
    return word == "max" ? INT_MAX : static_cast<int>(std::stol(word, nullptr, 0));
}

ZetStatus statusOf(const std::string& word) {
    const auto* found = std::ranges::find(kStatuses, "zetSts" + word, &NamedStatus::name);
    EXPECT_NE(found, std::end(kStatuses)) << word;
    return found->status;
}

}  // namespace

Row& Row::checks(const std::string& text) {
    std::istringstream list(text);
    for (std::string item; std::getline(list, item, ';');) {
        std::istringstream words(item);
        std::string name, kind, word;
        words >> name >> kind;
        std::vector<int> numbers;
        while (words >> word && !words.eof()) numbers.push_back(numberOf(word));
        if (kind == "set") {
            channelsSet(name.c_str());
        } else if (const size_t dots = kind.find(".."); dots != kind.npos) {
            range(name.c_str(), numberOf(kind.substr(0, dots)), numberOf(kind.substr(dots + 2)),
                  statusOf(word));
        } else if (kind == ">=") {
            atLeast(name.c_str(), numbers.at(0), statusOf(word));
        } else if (kind == "in") {
            oneOf(name.c_str(), numbers, statusOf(word));
        } else {
            EXPECT_EQ(kind, "not");
            refuses(name.c_str(), numbers, statusOf(word));
        }
    }
    return *this;
}

Row& Row::range(const char* name, int low, int high, ZetStatus status) {
    std::vector<int> outside;
    if (low > INT_MIN) outside.insert(outside.end(), {low - 1, INT_MIN});
    if (high < INT_MAX) outside.insert(outside.end(), {high + 1, INT_MAX});
    refuses(name, outside, status);
    checks_.back().limits.push_back(setting(name, low));
    if (high < INT_MAX) checks_.back().limits.push_back(setting(name, high));
    return *this;
}

Row& Row::atLeast(const char* name, int low, ZetStatus status) {
    return range(name, low, INT_MAX, status);
}

Row& Row::oneOf(const char* name, std::vector<int> allowed, ZetStatus status) {
    std::vector<int> others = {INT_MIN, -1, 0, 1, INT_MAX};
    for (const int x : allowed) others.insert(others.end(), {x - 1, x + 1});
    std::erase_if(others, [&](int x) { return std::ranges::count(allowed, x) != 0; });
    return refuses(name, others, status);
}

Row& Row::refuses(const char* name, std::vector<int> values, ZetStatus status) {
    checks_.push_back({status, {}, {}});
    for (const int x : values) checks_.back().breaks.push_back(setting(name, x));
    return *this;
}

Row& Row::channelsSet(const char* name) {
    checks_.push_back({zetStsNullPointer, pointers_.at(name), {}});
    return *this;
}
Row& Row::pointersLast() {
    std::rotate(checks_.begin(), checks_.begin() + 1, checks_.end());
    return *this;
}

Row& Row::pointerSet(const char* name) {
    return channelsSet(name);
}

Row::Break Row::setting(const std::string& name, int x) const {
    return {name, name + " = " + std::to_string(x), [set = setters_.at(name), x] { set(x); }};
}

void* Row::addMemory(const void* content, size_t size) {
    const auto* bytes = static_cast<const Zet8u*>(content);
    return memory_.emplace_back(bytes, bytes + size).data();
}

void* Row::addPointers(const char* name, int count, size_t bytes, Zet8u fill) {
    std::vector<void*> targets;
    for (int i = 0; i < count; ++i) targets.push_back(memory_.emplace_back(bytes, fill).data());
    void** pointers =
        static_cast<void**>(addMemory(targets.data(), targets.size() * sizeof targets[0]));
    for (int i = 0; i < count; ++i) {
        const std::string what = name + std::string("[") + std::to_string(i) + "]";
        pointers_[name].push_back({what, what + " null", [pointers, i] { pointers[i] = nullptr; }});
    }
    return pointers;
}

void Row::run() {
    image_.assign(memory_.begin(), memory_.end());
    EXPECT_EQ(call(), zetStsOk) << "with valid arguments";
    for (auto check = checks_.begin(); check != checks_.end(); ++check) {
        expectLimitsPass(*check);
        for (const Break& first : check->breaks) {
            expectFailure(first, nullptr, check->status);
            for (auto later = check + 1; later != checks_.end(); ++later)
                for (const Break& second : later->breaks)
                    if (second.target != first.target) expectFailure(first, &second, check->status);
        }
    }
}

void Row::reset() {
    resetArguments();
    for (size_t i = 0; i < image_.size(); ++i) std::ranges::copy(image_[i], memory_[i].begin());
}

void Row::expectFailure(const Break& first, const Break* second, ZetStatus status) {
    reset();
    first.apply();
    if (second) second->apply();
    const Image before(memory_.begin(), memory_.end());
    const std::string what = first.what + (second ? " and " + second->what : "");
    EXPECT_EQ(call(), status) << "with " << what;
    EXPECT_TRUE(std::ranges::equal(memory_, before)) << "memory changed with " << what;
}

// A limit may run into a later check or a fault of the stream, but not into its own check. That can
// be told only where no other check has the same status.
void Row::expectLimitsPass(const Check& check) {
    if (!hasOwnStatus(check)) return;
    for (const Break& limit : check.limits) {
        reset();
        limit.apply();
        EXPECT_NE(call(), check.status) << "with " << limit.what;
    }
}

void PrintTo(const std::shared_ptr<Row>& row, std::ostream* out) {
    *out << row->name();
}

bool Row::hasOwnStatus(const Check& check) const {
    return std::ranges::count(checks_, check.status, &Check::status) == 1;
}

}  // namespace zetac::test
