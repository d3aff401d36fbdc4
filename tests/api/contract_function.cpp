// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "api/contract_function.h"

#include <cstddef>
#include <map>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "exported_names.h"

namespace zetac::test {
namespace {

template <class T>
constexpr size_t sizeOf() {
    if constexpr (requires { sizeof(T); } && !std::is_void_v<T>)
        return sizeof(T);
    else
        return 0;
}

template <class T>
constexpr bool isComplex =
    std::is_same_v<T, Zet16sc> || std::is_same_v<T, Zet32sc> || std::is_same_v<T, Zet32fc>;

template <class T>
Parameter describe() {
    if constexpr (!std::is_pointer_v<T>) {
        return {false, std::is_floating_point_v<T>, false, false, sizeof(T), 0, typeid(T)};
    } else {
        using Target = std::remove_cv_t<std::remove_pointer_t<T>>;
        using Inner = std::remove_cv_t<std::remove_pointer_t<Target>>;
        constexpr bool isRecord =
            std::is_class_v<Target> && sizeOf<Target>() > 0 && !isComplex<Target>;
        constexpr bool isIndirect = std::is_pointer_v<Target>;
        return {true,
                std::is_floating_point_v<Inner>,
                isRecord,
                isIndirect,
                sizeOf<Target>(),
                isIndirect ? sizeOf<Inner>() : 0,
                typeid(Target*)};
    }
}

template <class T>
T argument(const Slot& slot) {
    if constexpr (std::is_pointer_v<T>)
        return static_cast<T>(slot.pointer);
    else
        return static_cast<T>(slot.number);
}

template <auto function>
struct Caller;
template <class... Arguments, ZetStatus (*function)(Arguments...)>
struct Caller<function> {
    template <size_t... i>
    static ZetStatus spread(const Slot* slots, std::index_sequence<i...>) {
        return function(argument<Arguments>(slots[i])...);
    }
    static ZetStatus call(const Slot* slots) {
        return spread(slots, std::index_sequence_for<Arguments...>());
    }
    static Function make(const char* name) { return {name, {describe<Arguments>()...}, call}; }
};

const std::map<std::string, Function>& allFunctions() {
#define MAKE(function) {#function, Caller<function>::make(#function)},
    static const std::map<std::string, Function> functions = {ZETAC_FOR_EACH_FUNCTION(MAKE)};
#undef MAKE
    return functions;
}

template <class Record, class Member>
Field field(const char* name, Member Record::*, size_t offset, size_t room) {
    using Element = std::remove_all_extents_t<Member>;
    return {typeid(Record*),     name, offset, sizeof(Member) / sizeof(Element),
            describe<Element>(), room};
}

}  // namespace

const Function& functionNamed(const std::string& name) {
    return allFunctions().at(name);
}

const std::vector<Field>& recordFields() {
#define FIELD(record, name) field(#name, &record::name, offsetof(record, name), 0)
#define POINTER(record, name, room) field(#name, &record::name, offsetof(record, name), room)
    static const std::vector<Field> fields = {
        FIELD(ZetMP3Header, ID),
        FIELD(ZetMP3Header, layer),
        FIELD(ZetMP3Header, bitrate_index),
        FIELD(ZetMP3Header, sampling_frequency),
        FIELD(ZetMP3Header, mode),
        FIELD(ZetMP3Header, mode_extension),
        FIELD(ZetMP3GranuleSideInfo, part2_3_length),
        FIELD(ZetMP3GranuleSideInfo, big_values),
        FIELD(ZetMP3GranuleSideInfo, global_gain),
        FIELD(ZetMP3GranuleSideInfo, scalefac_compress),
        FIELD(ZetMP3GranuleSideInfo, window_switching_flag),
        FIELD(ZetMP3GranuleSideInfo, block_type),
        FIELD(ZetMP3GranuleSideInfo, mixed_block_flag),
        FIELD(ZetMP3GranuleSideInfo, table_select),
        FIELD(ZetMP3GranuleSideInfo, subblock_gain),
        FIELD(ZetMP3GranuleSideInfo, region0_count),
        FIELD(ZetMP3GranuleSideInfo, region1_count),
        FIELD(ZetMP3GranuleSideInfo, preflag),
        FIELD(ZetMP3GranuleSideInfo, scalefac_scale),
        FIELD(ZetMP3GranuleSideInfo, count1table_select),
        FIELD(ZetMP3BitReservoir, held),
        FIELD(ZetMP3BitReservoir, capacity),
        FIELD(ZetAACChanInfo, sampling_frequency_index),
        FIELD(ZetAACChanInfo, predSfbMax),
        POINTER(ZetAACChanInfo, pIcsInfo, sizeof(ZetAACIcsInfo)),
        FIELD(ZetAACTnsInfo, n_filt),
        FIELD(ZetAACTnsInfo, coef_res),
        FIELD(ZetAACTnsInfo, length),
        FIELD(ZetAACTnsInfo, order),
        FIELD(ZetAACTnsInfo, direction),
        FIELD(ZetAACTnsInfo, coef_compress),
        FIELD(ZetVLCCode, value),
        FIELD(ZetVLCCode, length),
        FIELD(ZetVLCCode, code),
        POINTER(ZetVQCodebook, pVectors, 64 * sizeof(Zet32f)),
        FIELD(ZetVQCodebook, numCodes),
        FIELD(ZetVQCodebook, codeLen),
        FIELD(ZetVQCodebook, signBit),
    };
    return fields;
}

const Field& fieldNamed(std::type_index record, const std::string& name) {
    for (const Field& field : recordFields())
        if (field.record == record && field.name == name) return field;
    throw std::out_of_range("no field " + name);
}

}  // namespace zetac::test
