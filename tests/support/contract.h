// The contract of an exported function as a table row: its valid arguments, and its checks in their
// order. From a row, Row::run() derives every call that has to fail and verifies that
// - each broken argument alone gives the status of its check,
// - of two broken arguments the one that is checked first decides,
// - a failed call leaves all memory that it can reach as it was,
// - the valid arguments pass, and so do the limits of every range.
//
//   table.ZETAC_ROW(zetsRShiftC_32s_I, value("shift", 1), data(64), value("len", 8))
//       .checks("len >= 1 BadSize; shift >= 0 NegativeShift");
//
// The check for null pointers comes first and is derived from the arguments. A pointer that is
// looked at later is given as lateData, and pointerSet says where its check stands.
#pragma once

#include <zetac.h>

#include <array>
#include <climits>
#include <cstring>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <tuple>
#include <typeindex>
#include <utility>
#include <vector>

namespace zetac::test {

// What an argument of a row is made of.
struct Value {  // a scalar
    const char* name;
    int value;
};
struct ValueAt {  // an int behind a pointer
    const char* name;
    int value;
};
struct Data {  // bytes behind a pointer
    std::vector<Zet8u> bytes;
    bool optional = false;
    const char* late = nullptr;  // the name under which pointerSet() places the check for null
};
template <class T>
struct Record {  // a structure behind a pointer
    T value;
};
struct Stream {};  // a position in a stream of zero bits
struct Channels {  // pointers to the data of several channels, or to several rows
    const char* name;
    int count;
    size_t bytes;
    bool late = false;  // then pointerSet() places the check for a null pointer to the pointers
};

inline Value value(const char* name, int valid) {
    return {name, valid};
}
inline ValueAt valueAt(const char* name, int valid) {
    return {name, valid};
}
// The byte that fills buffers by default is one that no function would write by chance.
inline Data data(size_t bytes, Zet8u fill = 0xa5) {
    return {std::vector<Zet8u>(bytes, fill)};
}
inline Data optionalData(size_t bytes) {
    return {std::vector<Zet8u>(bytes, 0xa5), true};
}
inline Data lateData(const char* name, size_t bytes) {
    return {std::vector<Zet8u>(bytes, 0xa5), false, name};
}
template <class T>
Data elements(size_t count, T fill) {
    Data result = data(count * sizeof(T));
    for (size_t i = 0; i < count; ++i) std::memcpy(&result.bytes[i * sizeof(T)], &fill, sizeof(T));
    return result;
}
template <class T>
Record<T> record(const T& valid = {}) {
    return {valid};
}
inline Stream stream() {
    return {};
}
// Ints behind a pointer; checks call them name0, name1 and so on.
struct Ints {
    const char* name;
    std::vector<int> values;
};
// The members of a record that checks may name without further ado, with _1 in the second of two.
template <class T>
struct Field {
    const char* name;
    Zet32s T::*where;
};
template <class T>
inline constexpr std::array<Field<T>, 0> kFields{};
template <>
inline constexpr auto kFields<ZetMP3Header> =
    std::to_array<Field<ZetMP3Header>>({{"ID", &ZetMP3Header::ID},
                                        {"layer", &ZetMP3Header::layer},
                                        {"frequency", &ZetMP3Header::sampling_frequency},
                                        {"mode", &ZetMP3Header::mode},
                                        {"extension", &ZetMP3Header::mode_extension}});
template <>
inline constexpr auto kFields<ZetMP3GranuleSideInfo> = std::to_array<Field<ZetMP3GranuleSideInfo>>(
    {{"big_values", &ZetMP3GranuleSideInfo::big_values},
     {"global_gain", &ZetMP3GranuleSideInfo::global_gain},
     {"compress", &ZetMP3GranuleSideInfo::scalefac_compress},
     {"switching", &ZetMP3GranuleSideInfo::window_switching_flag},
     {"block_type", &ZetMP3GranuleSideInfo::block_type},
     {"mixed", &ZetMP3GranuleSideInfo::mixed_block_flag},
     {"region0", &ZetMP3GranuleSideInfo::region0_count},
     {"region1", &ZetMP3GranuleSideInfo::region1_count},
     {"preflag", &ZetMP3GranuleSideInfo::preflag},
     {"scale", &ZetMP3GranuleSideInfo::scalefac_scale},
     {"count1", &ZetMP3GranuleSideInfo::count1table_select}});
template <>
inline constexpr auto kFields<ZetVLCCode> = std::to_array<Field<ZetVLCCode>>(
    {{"length", &ZetVLCCode::length}, {"code", &ZetVLCCode::code}});
template <>
inline constexpr auto kFields<ZetVQCodebook> =
    std::to_array<Field<ZetVQCodebook>>({{"numCodes", &ZetVQCodebook::numCodes},
                                         {"codeLen", &ZetVQCodebook::codeLen},
                                         {"signBit", &ZetVQCodebook::signBit}});
inline Channels channels(const char* name, int count, size_t bytes) {
    return {name, count, bytes};
}
inline Channels lateChannels(const char* name, int count, size_t bytes) {
    return {name, count, bytes, true};
}

class Row {
  public:
    virtual ~Row() = default;
    Row(const Row&) = delete;
    Row& operator=(const Row&) = delete;

    // Checks, to be listed in the order of the contract and separated by ";": "a 0..7 Status" for a
    // range, "a >= 1 Status", "a in 1 2 Status", "a not 1 2 Status" for single values that are
    // refused, "a set" for a pointer. Statuses without zetSts; "min" and "max" are those of int.
    Row& checks(const std::string& text);
    Row& range(const char* name, int low, int high, ZetStatus status);
    Row& atLeast(const char* name, int low, ZetStatus status);
    Row& oneOf(const char* name, std::vector<int> allowed, ZetStatus status);
    Row& refuses(const char* name, std::vector<int> values, ZetStatus status);
    Row& channelsSet(const char* name);
    // For the functions that look at their pointers last; to be called behind the other checks.
    Row& pointersLast();
    Row& pointerSet(const char* name);

    // A number inside a record, to be named in checks; where is a pointer to a member, or a
    // function from the record to a reference.
    template <class T>
    Row& field(const char* name, Zet32s T::*where) {
        return addField<T>(name, where);
    }
    template <class T>
    Row& field(const char* name, Zet32s& (*where)(T&)) {
        return addField<T>(name, where);
    }
    template <class T, class Where>
    Row& field(const char* name, Where where) {
        return addField<T>(name, where);
    }
    template <class Where>
    Row& range(const char* name, Where where, int low, int high, ZetStatus status) {
        return field(name, where).range(name, low, high, status);
    }
    // A record behind a pointer in another one.
    template <class T, class Target>
    Row& link(Target* T::*pointer) {
        T* owner = static_cast<T*>(records_.at(typeid(T)));
        const Target blank{};
        owner->*pointer = static_cast<Target*>(addMemory(&blank, sizeof blank));
        checks_.front().breaks.push_back(
            {"link", "null link", [owner, pointer] { owner->*pointer = nullptr; }});
        return *this;
    }
    Row& labelled(const std::string& label) {
        label_ = "_" + label;
        return *this;
    }

    const std::string& functionName() const { return function_; }
    std::string name() const { return function_ + label_; }
    void run();

  protected:
    explicit Row(const char* function) : function_(function) {
        checks_.push_back({zetStsNullPointer, {}, {}});
    }

    template <class Argument>
    void bind(Argument& slot, const Value& given) {
        slot = static_cast<Argument>(given.value);
        setters_[given.name] = [&slot](int x) { slot = static_cast<Argument>(x); };
    }
    template <class Argument>
    void bind(Argument& slot, const ValueAt& given) {
        bindPointer(slot, addMemory(&given.value, sizeof given.value));
        int* target = slot;
        setters_[given.name] = [target](int x) { *target = x; };
    }
    template <class Argument>
    void bind(Argument& slot, const Data& given) {
        void* memory = addMemory(given.bytes.data(), given.bytes.size());
        if (!given.optional && !given.late) return bindPointer(slot, memory);
        slot = static_cast<Argument>(memory);
        if (given.late) addLatePointer(slot, given.late);
    }
    template <class Argument, class T>
    void bind(Argument& slot, const Record<T>& given) {
        void* memory = addMemory(&given.value, sizeof(T));
        records_[typeid(T)] = memory;
        addFields(static_cast<T*>(memory), "");
        bindPointer(slot, memory);
    }
    template <class Argument>
    void bind(Argument& slot, const Ints& given) {
        auto* memory =
            static_cast<int*>(addMemory(given.values.data(), given.values.size() * sizeof(int)));
        for (size_t i = 0; i < given.values.size(); ++i)
            setters_[given.name + std::to_string(i)] = [memory, i](int x) { memory[i] = x; };
        bindPointer(slot, memory);
    }
    template <class Argument>
    void bind(Argument& slot, const Stream&) {
        bindPointer(slot, addPointers("stream", 1, ZETAC_AAC_CHANNEL_BYTES_MAX, 0));
        checks_.front().breaks.push_back(pointers_["stream"].front());
    }
    template <class Argument>
    void bind(Argument& slot, const Channels& given) {
        if (!given.late)
            return bindPointer(slot, addPointers(given.name, given.count, given.bytes, 0xa5));
        slot = static_cast<Argument>(addPointers("rows", given.count, given.bytes, 0xa5));
        addLatePointer(slot, given.name);
    }

    virtual ZetStatus call() = 0;
    virtual void resetArguments() = 0;

  private:
    template <class T, class Where>
    Row& addField(const char* name, Where where) {
        T* owner = static_cast<T*>(records_.at(typeid(T)));
        setters_[name] = [owner, where](int x) { std::invoke(where, *owner) = x; };
        return *this;
    }
    template <class T>
    void addFields(T* owner, const std::string& suffix) {
        for (const Field<T>& member : kFields<T>)
            setters_[member.name + suffix] = [owner, member](int x) { owner->*member.where = x; };
    }
    template <class T>
    void addFields(std::array<T, 2>* pair, const std::string&) {
        addFields(&(*pair)[0], "");
        addFields(&(*pair)[1], "_1");
    }
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
    using Image = std::vector<std::vector<Zet8u>>;

    template <class Argument>
    void bindPointer(Argument& slot, void* memory) {
        slot = static_cast<Argument>(memory);
        const std::string what = "pointer " + std::to_string(checks_.front().breaks.size());
        checks_.front().breaks.push_back({what, what + " null", [&slot] { slot = nullptr; }});
    }
    template <class Argument>
    void addLatePointer(Argument& slot, const char* late) {
        const std::string what = late + std::string(" null");
        pointers_[late].push_back({late, what, [&slot] { slot = nullptr; }});
    }
    void* addMemory(const void* content, size_t size);
    void* addPointers(const char* name, int count, size_t bytes, Zet8u fill);
    Break setting(const std::string& name, int x) const;

    void reset();
    void expectFailure(const Break& first, const Break* second, ZetStatus status);
    void expectLimitsPass(const Check& check);
    bool hasOwnStatus(const Check& check) const;

    std::string function_, label_;
    std::deque<std::vector<Zet8u>> memory_;
    Image image_;
    std::map<std::type_index, void*> records_;
    std::map<std::string, std::function<void(int)>> setters_;
    std::map<std::string, std::vector<Break>> pointers_;
    std::vector<Check> checks_;
};

template <class... Arguments>
class FunctionRow final : public Row {
  public:
    template <class... Given>
    FunctionRow(const char* name, ZetStatus (*function)(Arguments...), const Given&... given)
        : Row(name), function_(function) {
        static_assert(sizeof...(Given) == sizeof...(Arguments), "one description per argument");
        bindAll(std::index_sequence_for<Given...>{}, given...);
        valid_ = arguments_;
    }

  private:
    template <size_t... kIndex, class... Given>
    void bindAll(std::index_sequence<kIndex...>, const Given&... given) {
        (bind(std::get<kIndex>(arguments_), given), ...);
    }
    ZetStatus call() override { return std::apply(function_, arguments_); }
    void resetArguments() override { arguments_ = valid_; }

    ZetStatus (*function_)(Arguments...);
    std::tuple<Arguments...> arguments_, valid_;
};

class Table {
  public:
    template <class... Arguments, class... Given>
    Row& add(const char* name, ZetStatus (*function)(Arguments...), const Given&... given) {
        rows_.push_back(std::make_shared<FunctionRow<Arguments...>>(name, function, given...));
        return *rows_.back();
    }
    const std::vector<std::shared_ptr<Row>>& rows() const { return rows_; }

  private:
    std::vector<std::shared_ptr<Row>> rows_;
};

// The row of a function under its own name.
#define ZETAC_ROW(function, ...) add(#function, function, __VA_ARGS__)

// That of an InitAlloc. The rows make many valid calls: what they allocate has to go.
#define ZETAC_ALLOC_ROW(function, free, ...) \
    add(#function, Allocating<function, free>::call, __VA_ARGS__)
template <auto function, auto free>
struct Allocating;
template <class Spec, class... Arguments, ZetStatus (*function)(Spec**, Arguments...), auto free>
struct Allocating<function, free> {
    static ZetStatus call(Spec** ppSpec, Arguments... arguments) {
        const ZetStatus status = function(ppSpec, arguments...);
        if (status == zetStsOk) free(*ppSpec);
        return status;
    }
};

// A copy of a structure, or of its front, which then refers to the rest of the original.
struct Front {
    alignas(16) Zet32s id;
    Zet8u rest[2556];
};
template <>
inline constexpr std::array<Field<Front>, 1> kFields<Front>{{{"id", &Front::id}}};

// Of a structure that init(&spec) makes and that has at least the size of Front behind it.
template <class Spec, class Init>
Record<Front> frontOf(Init init) {
    Spec* spec = nullptr;
    init(&spec);
    Front front;
    std::memcpy(&front, spec, sizeof front);
    return record(front);
}
// Memory for it, as long as the program lives.
inline Zet8u* lastingMemory() {
    static std::deque<std::vector<Zet8u>> blocks;
    return blocks.emplace_back(1 << 16).data();
}
inline std::string isOf(const Record<Front>& front) {  // as a check
    return "id in " + std::to_string(front.value.id) + " SpecMismatch";
}

void PrintTo(const std::shared_ptr<Row>& row, std::ostream* out);

// One per family.
void addCoreRows(Table& table);
void addFftRows(Table& table);
void addAacRows(Table& table);
void addAacPredictionRows(Table& table);
void addMp3UnpackRows(Table& table);
void addMp3RequantRows(Table& table);
void addMp3PsychoRows(Table& table);
void addMp3SynthesisRows(Table& table);
void addMp3PackRows(Table& table);
void addMp3QuantizeRows(Table& table);
void addMdctRows(Table& table);
void addSbrFixedRows(Table& table);
void addSbrFloatRows(Table& table);
void addVlcVqRows(Table& table);

}  // namespace zetac::test
