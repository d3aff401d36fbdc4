// Contract rows of escape-block VLC and vector quantisation.
#include <array>
#include <climits>
#include <utility>
#include <vector>

#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kDecodingId = 0x434D4160, kEncodingId = 0x434D415F;
constexpr int kNoValues = 1;  // below a pair, so that the tables of a spec are not read

// A spec at any alignment: its identifier stands in every second word, where the structure may have
// it, and between them zeros, among them the word that says who owns the memory.
struct Spec {
    std::array<int, 16> words{};

    struct Identifier {
        Spec* spec;
        size_t place;
        void operator=(int id) {
            for (size_t i = place; i < spec->words.size(); i += 2) spec->words[i] = id;
        }
    };
    Identifier decodingId() { return {this, 0}; }
    Identifier encodingId() { return {this, sizeof(void*) == 8 ? 1U : 0U}; }
};

Record<Spec> decodeSpec() {
    Spec spec;
    spec.decodingId() = kDecodingId;
    return record(spec);
}
Record<Spec> encodeSpec() {
    Spec spec;
    spec.encodingId() = kEncodingId;
    return record(spec);
}

Row& checksDecodeSpec(Row& row) {
    return row.field<Spec>("id", &Spec::decodingId)
        .refuses("id", {kEncodingId, 0, 55}, zetStsSpecMismatch);
}
Row& checksEncodeSpec(Row& row) {
    return row.field<Spec>("id", &Spec::encodingId)
        .refuses("id", {kDecodingId, 0, 55}, zetStsSpecMismatch);
}

using Codes = std::array<ZetVLCCode, 2>;
const Codes kCodes = {{{{0, 0}, 1, 0}, {{1, -1}, 3, 4}}};

template <Zet32s ZetVLCCode::*member>
Row& codeField(Row& row, const char* name) {
    return row.field<Codes>(name, [](Codes& codes) -> Zet32s& { return codes[1].*member; });
}

Row& checksPrefixCode(Row& row) {
    codeField<&ZetVLCCode::length>(row, "length");
    codeField<&ZetVLCCode::code>(row, "code");
    return row.refuses("length", {INT_MIN, -1, 0, 2, 33, INT_MAX}, zetStsBadArg)
        .refuses("code", {0, 8, -1}, zetStsBadArg);
}

Row& checksDecodingList(Row& row) {
    row.refuses("numCodes", {INT_MIN, 0, (1 << 15) + 1, INT_MAX}, zetStsBadSize)
        .range("form", 0, 3, zetStsBadArg);
    return checksPrefixCode(row);
}
Row& checksEncodingList(Row& row) {
    row.refuses("numCodes", {INT_MIN, 0, 33 * 33 + 1, INT_MAX}, zetStsBadSize)
        .range("escStyle", 0, 1, zetStsBadArg);
    return checksPrefixCode(row);
}

// What has been allocated is freed, and the pointer left as it was.
ZetStatus allocateDecodeSpec(ZetsVLCDecodeSpec_1u16s** ppSpec, const ZetVLCCode* pCodes,
                             int numCodes, int form) {
    const ZetStatus status = zetsVLCDecodeInitAlloc_1u16s(ppSpec, pCodes, numCodes, form);
    if (status == zetStsOk) zetsVLCDecodeFree_1u16s(*ppSpec);
    return status;
}
ZetStatus allocateEncodeSpec(ZetsVLCEncodeSpec_16s1u** ppSpec, const ZetVLCCode* pCodes,
                             int numCodes, int escStyle) {
    const ZetStatus status = zetsVLCEncodeInitAlloc_16s1u(ppSpec, pCodes, numCodes, escStyle);
    if (status == zetStsOk) zetsVLCEncodeFree_16s1u(*ppSpec);
    return status;
}

void addSpecRows(Table& table) {
    const auto numCodes = value("numCodes", 2), form = value("form", 0);
    const auto escStyle = value("escStyle", 1);
    const auto specPointer = data(sizeof(void*));
    const auto memory = data(1 << 16);
    checksDecodingList(table.add("zetsVLCDecodeGetSize_1u16s", zetsVLCDecodeGetSize_1u16s,
                                 record(kCodes), numCodes, form, data(sizeof(int))));
    checksDecodingList(table.add("zetsVLCDecodeInit_1u16s", zetsVLCDecodeInit_1u16s, specPointer,
                                 record(kCodes), numCodes, form, memory));
    checksDecodingList(table.add("zetsVLCDecodeInitAlloc_1u16s", allocateDecodeSpec, specPointer,
                                 record(kCodes), numCodes, form));
    checksDecodeSpec(table.add("zetsVLCDecodeFree_1u16s", zetsVLCDecodeFree_1u16s, decodeSpec()));

    table.add("zetsVLCEncodeGetSize_16s1u", zetsVLCEncodeGetSize_16s1u, escStyle, data(sizeof(int)))
        .range("escStyle", 0, 1, zetStsBadArg);
    checksEncodingList(table.add("zetsVLCEncodeInit_16s1u", zetsVLCEncodeInit_16s1u, specPointer,
                                 record(kCodes), numCodes, escStyle, memory));
    checksEncodingList(table.add("zetsVLCEncodeInitAlloc_16s1u", allocateEncodeSpec, specPointer,
                                 record(kCodes), numCodes, escStyle));
    checksEncodeSpec(table.add("zetsVLCEncodeFree_16s1u", zetsVLCEncodeFree_16s1u, encodeSpec()));
}

void addBlockRows(Table& table) {
    const auto offset = valueAt("offset", 3);
    const auto escLen = value("escLen", 4), len = value("len", kNoValues);
    const auto values = data(2 * sizeof(Zet16s)), count = data(sizeof(int));
    const auto decodes = [&](Row& row) {
        checksDecodeSpec(row.range("offset", 0, 7, zetStsBadBitOffset));
    };
    decodes(table.add("zetsVLCDecodeEscBlock_MP3_1u16s", zetsVLCDecodeEscBlock_MP3_1u16s, stream(),
                      offset, escLen, values, len, decodeSpec()));
    decodes(table.add("zetsVLCDecodeEscBlock_AAC_1u16s", zetsVLCDecodeEscBlock_AAC_1u16s, stream(),
                      offset, values, len, decodeSpec()));
    decodes(table.add("zetsVLCDecodeUTupleEscBlock_MP3_1u16s",
                      zetsVLCDecodeUTupleEscBlock_MP3_1u16s, stream(), offset, escLen, values, len,
                      decodeSpec()));
    decodes(table.add("zetsVLCDecodeUTupleEscBlock_AAC_1u16s",
                      zetsVLCDecodeUTupleEscBlock_AAC_1u16s, stream(), offset, values, len,
                      decodeSpec()));

    const auto encodes = [&](Row& row) {
        checksEncodeSpec(row.range("offset", 0, 7, zetStsBadBitOffset));
    };
    encodes(table.add("zetsVLCEncodeEscBlock_MP3_16s1u", zetsVLCEncodeEscBlock_MP3_16s1u, values,
                      len, escLen, stream(), offset, encodeSpec()));
    encodes(table.add("zetsVLCEncodeEscBlock_AAC_16s1u", zetsVLCEncodeEscBlock_AAC_16s1u, values,
                      len, stream(), offset, encodeSpec()));
    checksEncodeSpec(table.add("zetsVLCCountEscBits_MP3_16s32s", zetsVLCCountEscBits_MP3_16s32s,
                               values, len, escLen, count, encodeSpec()));
    checksEncodeSpec(table.add("zetsVLCCountEscBits_AAC_16s32s", zetsVLCCountEscBits_AAC_16s32s,
                               values, len, count, encodeSpec()));
}

using Books = std::array<ZetVQCodebook, 2>;
constexpr Zet32f kVectors[4 * 4] = {};
constexpr ZetVQCodebook kBook = {kVectors, 4, 4, 1};
using Words = std::array<Zet32s, 3 * 8>;  // for 3 subvectors, up to 8 candidates

template <size_t which, Zet32s ZetVQCodebook::*member>
Row& bookField(Row& row, const char* name) {
    return row.field<Books>(name, [](Books& books) -> Zet32s& { return books[which].*member; });
}

Row& checksSizes(Row& row, const std::vector<const char*>& names) {
    for (const char* name : names) row.refuses(name, {INT_MIN, -1, 0}, zetStsBadSize);
    return row;
}

// The second of two books, or the only one.
template <size_t which>
Row& checksBook(Row& row, std::vector<int> badLengths) {
    bookField<which, &ZetVQCodebook::numCodes>(row, "numCodes");
    bookField<which, &ZetVQCodebook::codeLen>(row, "codeLen");
    bookField<which, &ZetVQCodebook::signBit>(row, "signBit");
    return row.refuses("numCodes", {INT_MIN, 0}, zetStsBadSize)
        .refuses("codeLen", std::move(badLengths), zetStsBadSize)
        .refuses("signBit", {INT_MIN, -1, 2, INT_MAX}, zetStsBadArg);
}

void addVqRows(Table& table) {
    // Subvectors of 4, 4 and 3 components.
    const auto len = value("len", 11), nDiv = value("nDiv", 3), numCand = value("numCand", 2),
               numCand1 = value("numCand1", 3);
    const auto lines = elements<Zet32f>(11, 0.5F), distances = elements<Zet32f>(3, 0);
    const auto books = record(Books{kBook, kBook});
    const auto zeros = elements<Zet32s>(24, 0);
    const std::vector<int> tooShort = {INT_MIN, 0, 3};

    Row& pre = table.add("zetsVQPreSelect_32f", zetsVQPreSelect_32f, lines, lines, len, nDiv, books,
                         zeros, numCand);
    checksBook<0>(checksSizes(pre, {"len", "nDiv", "numCand"}).refuses("nDiv", {12}, zetStsBadSize),
                  tooShort)
        .refuses("numCand", {9, ZETAC_VQ_CANDIDATES_MAX + 1, INT_MAX}, zetStsBadArg);

    Row& choose = table.add("zetsVQMainSelect_32f", zetsVQMainSelect_32f, lines, lines, len, nDiv,
                            books, zeros, numCand, record(Words{}), numCand1, zeros, distances);
    choose.field<Words>("cand", [](Words& words) -> Zet32s& { return words[3 * 3 - 1]; });
    checksBook<1>(checksSizes(choose, {"len", "nDiv", "numCand", "numCand1"}), tooShort)
        .refuses("numCand1", {9, INT_MAX}, zetStsBadArg)
        .refuses("cand", {INT_MIN, -5, 4, INT_MAX}, zetStsBadArg);

    Row& pack = table.add("zetsVQIndexSelect_32s", zetsVQIndexSelect_32s, record(Words{}), nDiv,
                          books, zeros, numCand, zeros, numCand1, zeros);
    pack.field<Words>("place", [](Words& words) -> Zet32s& { return words[2 * 3 - 1]; });
    checksBook<1>(checksSizes(pack, {"nDiv", "numCand", "numCand1"}), {INT_MIN, 0})
        .refuses("numCand1", {9, INT_MAX}, zetStsBadArg)
        .refuses("place", {INT_MIN, -1, 3, INT_MAX}, zetStsBadArg);

    Row& back = table.add("zetsVQReconstruction_32s32f", zetsVQReconstruction_32s32f,
                          record(Words{}), books, value("gain", 1), lines, len, nDiv);
    back.field<Words>("index", [](Words& words) -> Zet32s& { return words[2 * 3 - 1]; });
    checksBook<1>(checksSizes(back, {"len", "nDiv"}), tooShort)
        .refuses("index", {INT_MIN, -1, 8, INT_MAX}, zetStsOutOfRange);
}

}  // namespace

void addVlcVqRows(Table& table) {
    addSpecRows(table);
    addBlockRows(table);
    addVqRows(table);
}

}  // namespace zetac::test
