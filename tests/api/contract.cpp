// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "api/contract.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "api/public_header.h"
#include "exported_names.h"

namespace zetac::test {
namespace {

constexpr size_t kDefaultCount = 1024;  // elements behind a pointer of which a row says nothing

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \n");
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(" \n") - first + 1);
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream list(text);
    for (std::string part; std::getline(list, part, separator);)
        if (!trimmed(part).empty()) parts.push_back(trimmed(part));
    return parts;
}

int64_t numberOf(const std::string& word) {
    if (word == "min") return INT_MIN;
    return word == "max" ? INT_MAX : std::stoll(word, nullptr, 0);
}

ZetStatus statusOf(const std::string& word) {
    const auto* found = std::ranges::find(kStatuses, "zetSts" + word, &NamedStatus::name);
    if (found == std::end(kStatuses)) {
        ADD_FAILURE() << "no status " << word;
        return zetStsOk;
    }
    return found->status;
}

// --- The rows -----------------------------------------------------------------------------------

// a{b,c}d stands for abd and acd.
std::vector<std::string> expanded(const std::string& text) {
    const size_t open = text.find('{'), close = text.find('}');
    if (open == text.npos) return {text};
    std::vector<std::string> result;
    std::string list = text.substr(open + 1, close - open - 1) + ",";
    for (size_t at = 0, comma; (comma = list.find(',', at)) != list.npos; at = comma + 1) {
        const std::string one = list.substr(at, comma - at);
        for (const std::string& rest : expanded(text.substr(close + 1)))
            result.push_back(text.substr(0, open) + one + rest);
    }
    return result;
}

void addRowsOf(const std::string& line, std::vector<RowText>& rows) {
    const size_t colon = line.find(':'), bar = line.find('|');
    const std::string given = line.substr(colon + 1, bar == line.npos ? bar : bar - colon - 1);
    for (const std::string& name : expanded(line.substr(0, colon))) {
        const size_t dot = name.find('.');
        rows.push_back({name.substr(0, dot), dot == name.npos ? "" : name.substr(dot + 1),
                        split(given, ' '), bar == line.npos ? "" : line.substr(bar + 1)});
    }
}

std::vector<RowText> rowsOf(const std::filesystem::path& path) {
    std::map<std::string, std::string, std::greater<>> definitions;  // longer names first
    std::vector<RowText> rows;
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        if (line[0] == ' ' && !lines.empty())
            lines.back() += line;
        else
            lines.push_back(line);
    }
    for (std::string& line : lines) {
        for (const auto& [name, text] : definitions)
            for (size_t at; (at = line.find(name, 1)) != line.npos;)
                line.replace(at, name.size(), text);
        if (line[0] == '$')
            definitions[line.substr(0, line.find(' '))] = trimmed(line.substr(line.find('=') + 1));
        else
            addRowsOf(line, rows);
    }
    return rows;
}

// While one lives, the library allocates from a block that is empty before every call.
class Arena {
  public:
    Arena() {
        i_malloc = [](size_t size) -> void* {
            if (keeper_) return keeper_(size);
            const size_t at = (used_ + 31) & ~size_t{31};
            if (at + size > sizeof block_) return nullptr;
            used_ = at + size;
            return block_ + at;
        };
        i_free = [](void*) {};
    }
    ~Arena() {
        i_malloc = malloc_;
        i_free = free_;
    }
    static void empty() { used_ = 0; }
    // Takes over allocations that are to last.
    static void keep(std::function<void*(size_t)> keeper) { keeper_ = std::move(keeper); }

  private:
    alignas(32) static inline Zet8u block_[1 << 20];
    static inline size_t used_;
    static inline std::function<void*(size_t)> keeper_;
    decltype(i_malloc) malloc_ = i_malloc;
    decltype(i_free) free_ = i_free;
};

void store(Zet8u* at, const Parameter& type, int64_t x) {
    const auto write = [&](auto value) { std::memcpy(at, &value, sizeof value); };
    if (type.isFloat)
        type.size == 8 ? write(static_cast<double>(x)) : write(static_cast<float>(x));
    else if (type.size == 1)
        write(static_cast<int8_t>(x));
    else if (type.size == 2)
        write(static_cast<int16_t>(x));
    else
        write(static_cast<int32_t>(x));
}

// name, name[i], name.field, name[i].field[j]; -1 for an index that is left out.
struct PlaceName {
    std::string name, field;
    int64_t index = -1, element = -1;

    explicit PlaceName(const std::string& text) {
        static const std::regex form("\\*?(\\w+)(?:\\[(\\d+)\\])?(?:\\.(\\w+))?(?:\\[(\\d+)\\])?");
        std::smatch match;
        if (!std::regex_match(text, match, form)) ADD_FAILURE() << "no place: " << text;
        name = match[1], field = match[3];
        if (match[2].matched) index = numberOf(match[2]);
        if (match[4].matched) element = numberOf(match[4]);
    }
};

}  // namespace

const std::vector<RowText>& contractRows() {
    static const auto* rows = [] {
        auto* all = new std::vector<RowText>;
        for (const auto& file :
             std::filesystem::directory_iterator(ZETAC_TEST_DATA "/../contracts"))
            if (file.path().extension() == ".txt")
                for (RowText& row : rowsOf(file)) all->push_back(std::move(row));
        return all;
    }();
    return *rows;
}

// --- Arguments ----------------------------------------------------------------------------------

Row::Row(const RowText& text) : function_(functionNamed(text.function)) {
    const Arena arena;
    arguments_ = makeArguments(function_, text);
    valid_ = arguments_;
    addChecks(text.checks);
    image_.assign(memory_.begin(), memory_.end());
}

std::vector<Slot> Row::makeArguments(const Function& function, const RowText& text) {
    std::vector<Slot> slots(function.parameters.size());
    const auto& names = publicHeader().at(function.name).parameters;
    for (size_t i = 0; i < slots.size(); ++i) {
        slots_[names[i]] = &slots[i];
        makeArgument(names[i], function.parameters[i], slots[i]);
    }
    for (const std::string& setting : text.settings) set(setting, function, slots);
    return slots;
}

Zet8u* Row::addMemory(size_t size, Zet8u fill) {
    return memory_.emplace_back(size, fill).data();
}

// Replaces what the argument led to before.
void Row::makeArgument(const std::string& name, const Parameter& type, Slot& slot) {
    slot.number = 0;
    if (!type.isPointer) return;
    std::erase_if(nulls_, [&](const Break& b) { return b.target == name; });
    nulls_.push_back({name, name + " null", [&slot] { slot.pointer = nullptr; }});
    if (name.starts_with("ppBitStream") || name.starts_with("ppStream")) {
        addRows(name, type, slot, 1, ZETAC_AAC_CHANNEL_BYTES_MAX);
        std::fill(memory_.end()[-2].begin(), memory_.end()[-2].end(), 0);
        return nulls_.push_back({name, "*" + name + " null",
                                 [&slot] { *static_cast<void**>(slot.pointer) = nullptr; }});
    }
    const size_t count = type.isRecord || type.isIndirect ? 1 : kDefaultCount;
    places_[name] = {addMemory(count * type.size, type.isRecord ? 0 : 0xa5), &type, count};
    slot.pointer = places_[name].memory;
}

// Pointers to rows of their own, or to channels.
void Row::addRows(const std::string& name, const Parameter& type, Slot& slot, size_t rows,
                  size_t columns) {
    std::vector<void*> targets;
    for (size_t i = 0; i < rows; ++i) targets.push_back(addMemory(columns * type.innerSize, 0xa5));
    slot.pointer = addMemory(rows * sizeof(void*), 0);
    std::memcpy(slot.pointer, targets.data(), rows * sizeof(void*));
    places_[name] = {static_cast<Zet8u*>(slot.pointer), &type, rows};
}

void Row::set(const std::string& setting, const Function& function, std::vector<Slot>& slots) {
    static const std::regex form("(\\*?)(\\w+)(.*)"), room("\\[(\\d+)(?:\\*(\\d+))?\\](?:=(.+))?");
    std::smatch match, size;
    std::regex_match(setting, match, form);
    const std::string name = match[2], rest = match[3];
    const auto& names = publicHeader().at(function.name).parameters;
    const auto at = static_cast<size_t>(std::ranges::find(names, name) - names.begin());
    if (at == names.size()) return (void)(ADD_FAILURE() << "no parameter " << name);
    const Parameter& type = function.parameters[at];
    const auto mayBeNull = [&] {
        std::erase_if(nulls_, [&](const Break& b) { return b.target == name; });
    };
    if (rest == "?") return mayBeNull();
    if (rest == "=null") return mayBeNull(), (void)(slots[at].pointer = nullptr);
    if (rest[0] == '<') return makeSpec(name, slots[at], rest.substr(1));
    if (std::regex_match(rest, size, room) && type.isPointer && match[1].length() == 0) {
        const auto count = static_cast<size_t>(numberOf(size[1]));
        if (size[2].matched)
            return addRows(name, type, slots[at], count, static_cast<size_t>(numberOf(size[2])));
        places_[name] = {addMemory(count * type.size, type.isRecord ? 0 : 0xa5), &type, count};
        slots[at].pointer = places_[name].memory;
        for (size_t i = 0; size[3].matched && i < count; ++i)
            store(places_[name].memory + i * type.size, type, numberOf(size[3]));
        return;
    }
    const size_t equals = setting.find('=');
    const std::string place = setting.substr(0, equals);
    const int64_t x = numberOf(setting.substr(equals + 1));
    if (!type.isPointer) return (void)(slots[at].number = x);
    // A field without an index is set in all records, and all elements of it.
    const PlaceName parsed(place);
    if (parsed.field.empty()) return setterOf(place)(x);
    const Field& field = fieldNamed(type.type, parsed.field);
    for (size_t i = 0; i < places_[name].count; ++i)
        for (size_t j = 0; j < field.count; ++j)
            if ((parsed.index < 0 || parsed.index == static_cast<int64_t>(i)) &&
                (parsed.element < 0 || parsed.element == static_cast<int64_t>(j)))
                setterOf(name + "[" + std::to_string(i) + "]." + parsed.field + "[" +
                         std::to_string(j) + "]")(x);
}

// A structure from the valid arguments of the function that makes one.
void Row::makeSpec(const std::string& name, Slot& slot, const std::string& init) {
    const auto text = std::ranges::find(contractRows(), init, &RowText::function);
    const auto places = places_;
    const auto slots = slots_;
    const auto nulls = nulls_;
    Arena::keep([this](size_t size) { return addMemory(size, 0); });
    const Function& function = functionNamed(init);
    const std::vector<Slot> arguments = makeArguments(function, *text);
    EXPECT_EQ(function.call(arguments.data()), zetStsOk) << init;
    Arena::keep(nullptr);
    places_ = places, slots_ = slots, nulls_ = nulls;
    slot.pointer = function.parameters[0].isIndirect ? *static_cast<void**>(arguments[0].pointer)
                                                     : arguments[0].pointer;
    places_[name].memory = static_cast<Zet8u*>(slot.pointer);
}

std::function<void(int64_t)> Row::setterOf(const std::string& text) {
    const PlaceName place(text);
    const auto found = places_.find(place.name);
    if (found == places_.end()) {
        const auto slot = slots_.find(place.name);
        if (slot == slots_.end()) return ADD_FAILURE() << "no place " << text, [](int64_t) {};
        return [slot = slot->second](int64_t x) { slot->number = x; };
    }
    const auto& [memory, type, count] = found->second;
    Zet8u* at = memory + static_cast<size_t>(std::max<int64_t>(place.index, 0)) * type->size;
    if (place.field.empty()) return [at, &type = *type](int64_t x) { store(at, type, x); };
    const Field& field = fieldNamed(type->type, place.field);
    at += field.offset + static_cast<size_t>(std::max<int64_t>(place.element, 0)) * field.type.size;
    return [at, &field](int64_t x) { store(at, field.type, x); };
}

// --- Checks -------------------------------------------------------------------------------------

void Row::addChecks(const std::string& text) {
    for (const auto& [name, place] : places_) {  // pointers in records
        if (!place.type || !place.type->isRecord) continue;
        for (size_t i = 0; i < place.count; ++i)
            for (const Field& field : recordFields()) {
                if (field.room == 0 || field.record != place.type->type) continue;
                Zet8u* at = place.memory + i * place.type->size + field.offset;
                Zet8u* target = addMemory(field.room, 0);
                std::memcpy(at, &target, sizeof target);
                nulls_.push_back({name + "." + field.name, name + "." + field.name + " null",
                                  [at] { std::memset(at, 0, sizeof(void*)); }});
            }
    }
    std::vector<std::string> groups = split(text, ';');
    for (const std::string& group : groups)
        if (group.ends_with(" null"))
            for (const std::string& name : split(group.substr(0, group.size() - 5), ' '))
                late_.push_back(name);
    const auto& statuses = publicHeader().at(function_.name).statuses;
    const bool isNullFirst = !statuses.empty() && statuses[0].name == "NullPointer";
    if (isNullFirst && (groups.empty() || !groups[0].ends_with("null")))
        groups.insert(groups.begin(), "null");
    size_t next = 0;
    for (const std::string& group : groups) {
        const size_t arrow = group.find("->");
        if (arrow != group.npos) {
            addGroup(group.substr(0, arrow), statusOf(trimmed(group.substr(arrow + 2))));
        } else if (next == statuses.size()) {
            ADD_FAILURE() << "the header has no status for " << group;
        } else {
            addGroup(group, statusOf(statuses[next++].name));
        }
    }
    for (; next < statuses.size(); ++next)
        EXPECT_TRUE(statuses[next].isLate) << "no check for " << statuses[next].name;
    for (const Break& null : nulls_)
        EXPECT_TRUE(std::ranges::any_of(checks_,
                                        [&](const Check& check) {
                                            return std::ranges::count(check.breaks, null.what,
                                                                      &Break::what) != 0;
                                        }))
            << "no check for " << null.what;
}

void Row::addGroup(const std::string& group, ZetStatus status) {
    if (trimmed(group) == "-") return;
    for (const std::string& check : split(group, ',')) addCheck(check, status);
}

Row::Break Row::setting(const std::string& place, int64_t x) {
    return {place, place + " = " + std::to_string(x), [set = setterOf(place), x] { set(x); }};
}

void Row::addNullChecks(const std::vector<std::string>& names, Check& check) {
    for (const Break& b : nulls_) {
        const std::string name = b.target.substr(0, b.target.find('.'));
        const auto& list = names.empty() ? late_ : names;
        if ((std::ranges::count(list, name) != 0) != names.empty()) check.breaks.push_back(b);
    }
}

// The identifier is the first word of a structure's head that has one of the allowed values.
void Row::addIdCheck(const std::string& name, std::vector<int64_t> allowed, Check& check) {
    Zet8u* at = places_.at(name).memory;
    int32_t word = 0;
    for (size_t i = 0; i < 16; ++i, at += 4) {
        std::memcpy(&word, at, sizeof word);
        if (std::ranges::count(allowed, word) != 0) break;
    }
    EXPECT_NE(std::ranges::count(allowed, word), 0) << "no identifier in " << name;
    for (const int64_t id : {int64_t{0}, allowed[0] - 1, allowed[0] + 1, int64_t{55}}) {
        if (std::ranges::count(allowed, id) != 0) continue;
        check.breaks.push_back({name, name + " of family " + std::to_string(id), [at, id] {
                                    const auto other = static_cast<int32_t>(id);
                                    std::memcpy(at, &other, sizeof other);
                                }});
    }
}

void Row::addCheck(const std::string& text, ZetStatus status) {
    Check check = {status, {}, {}};
    std::vector<std::string> words = split(text, ' ');
    const std::string place = words[0];
    const std::string kind = words.size() > 1 ? words[1] : words[0];
    std::vector<int64_t> numbers;
    const auto numbersFrom = [&](size_t first) {
        for (size_t i = first; i < words.size(); ++i) numbers.push_back(numberOf(words[i]));
    };
    const auto refuse = [&](int64_t x) { check.breaks.push_back(setting(place, x)); };
    if (words.back() == "null") {
        words.pop_back();
        addNullChecks(words, check);
    } else if (words.back() == "rows") {
        const Place& rows = places_.at(place);
        for (size_t i = 0; i < rows.count; ++i) {
            void** at = reinterpret_cast<void**>(rows.memory) + i;
            const std::string what = place + "[" + std::to_string(i) + "]";
            check.breaks.push_back({what, what + " null", [at] { *at = nullptr; }});
        }
    } else if (kind == "id") {
        numbersFrom(2);
        addIdCheck(place, numbers, check);
    } else if (const size_t dots = kind.find(".."); dots != kind.npos || kind == ">=") {
        const int64_t low = numberOf(kind == ">=" ? words.at(2) : kind.substr(0, dots));
        const int64_t high = kind == ">=" ? INT_MAX : numberOf(kind.substr(dots + 2));
        if (low > INT_MIN) refuse(low - 1), refuse(INT_MIN);
        if (high < INT_MAX) refuse(high + 1), refuse(INT_MAX);
        check.limits.push_back(setting(place, low));
        if (high < INT_MAX) check.limits.push_back(setting(place, high));
    } else {
        numbersFrom(2);
        if (kind == "in") {
            std::vector<int64_t> others = {INT_MIN, -1, 0, 1, INT_MAX};
            for (const int64_t x : numbers) others.insert(others.end(), {x - 1, x + 1});
            std::erase_if(others, [&](int64_t x) { return std::ranges::count(numbers, x) != 0; });
            numbers = others;
        } else {
            EXPECT_EQ(kind, "not") << text;
        }
        for (const int64_t x : numbers) refuse(x);
    }
    checks_.push_back(std::move(check));
}

// --- The calls ----------------------------------------------------------------------------------

ZetStatus Row::call() {
    Arena::empty();
    return function_.call(arguments_.data());
}

void Row::run() {
    const Arena arena;
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
    std::ranges::copy(valid_, arguments_.begin());
    for (size_t i = 0; i < image_.size(); ++i) std::ranges::copy(image_[i], memory_[i].begin());
}

void Row::expectFailure(const Break& first, const Break* second, ZetStatus status) {
    reset();
    first.apply();
    if (second) second->apply();
    const std::vector<std::vector<Zet8u>> before(memory_.begin(), memory_.end());
    const std::string what = first.what + (second ? " and " + second->what : "");
    EXPECT_EQ(call(), status) << "with " << what;
    EXPECT_TRUE(std::ranges::equal(memory_, before)) << "memory changed with " << what;
}

// A limit may run into a later check or a fault of the stream, but not into its own check. That can
// be told only where no other check has the same status.
void Row::expectLimitsPass(const Check& check) {
    if (std::ranges::count(checks_, check.status, &Check::status) != 1) return;
    for (const Break& limit : check.limits) {
        reset();
        limit.apply();
        EXPECT_NE(call(), check.status) << "with " << limit.what;
    }
}

}  // namespace zetac::test
