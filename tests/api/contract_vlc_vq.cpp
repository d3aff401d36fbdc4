// Contract rows of escape-block VLC and vector quantisation.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kDecodingId = 0x434D4160, kEncodingId = 0x434D415F;

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

void addSpecRows(Table& table) {
    const auto codes = record(std::array<ZetVLCCode, 2>{{{{0, 0}, 1, 0}, {{1, -1}, 3, 4}}});
    const auto numCodes = value("numCodes", 2), form = value("form", 0), style = value("style", 1);
    const auto pointer = data(sizeof(void*)), memory = data(1 << 16), size = data(sizeof(int));
    const std::string isCode = "; length_1 not min -1 0 2 33 max BadArg; code_1 not 0 8 -1 BadArg";
    const std::string isDecoding =
        "numCodes not min 0 32769 max BadSize; form 0..3 BadArg" + isCode;
    const std::string isEncoding =
        "numCodes not min 0 1090 max BadSize; style 0..1 BadArg" + isCode;
    table.ZETAC_ROW(zetsVLCDecodeGetSize_1u16s, codes, numCodes, form, size).checks(isDecoding);
    table.ZETAC_ROW(zetsVLCDecodeInit_1u16s, pointer, codes, numCodes, form, memory)
        .checks(isDecoding);
    table
        .ZETAC_ALLOC_ROW(zetsVLCDecodeInitAlloc_1u16s, zetsVLCDecodeFree_1u16s, pointer, codes,
                         numCodes, form)
        .checks(isDecoding);
    checksDecodeSpec(table.ZETAC_ROW(zetsVLCDecodeFree_1u16s, decodeSpec()));
    table.ZETAC_ROW(zetsVLCEncodeGetSize_16s1u, style, size).checks("style 0..1 BadArg");
    table.ZETAC_ROW(zetsVLCEncodeInit_16s1u, pointer, codes, numCodes, style, memory)
        .checks(isEncoding);
    table
        .ZETAC_ALLOC_ROW(zetsVLCEncodeInitAlloc_16s1u, zetsVLCEncodeFree_16s1u, pointer, codes,
                         numCodes, style)
        .checks(isEncoding);
    checksEncodeSpec(table.ZETAC_ROW(zetsVLCEncodeFree_16s1u, encodeSpec()));
}

void addBlockRows(Table& table) {
    const auto offset = valueAt("offset", 3), count = valueAt("count", 0);
    // Below a pair, so that the tables of a spec are not read.
    const auto escLen = value("escLen", 4), len = value("len", 1);
    const auto values = data(2 * sizeof(Zet16s));
    const std::string isOffset = "offset 0..7 BadBitOffset";
    for (Row* row : {&table.ZETAC_ROW(zetsVLCDecodeEscBlock_MP3_1u16s, stream(), offset, escLen,
                                      values, len, decodeSpec()),
                     &table.ZETAC_ROW(zetsVLCDecodeUTupleEscBlock_MP3_1u16s, stream(), offset,
                                      escLen, values, len, decodeSpec()),
                     &table.ZETAC_ROW(zetsVLCDecodeEscBlock_AAC_1u16s, stream(), offset, values,
                                      len, decodeSpec()),
                     &table.ZETAC_ROW(zetsVLCDecodeUTupleEscBlock_AAC_1u16s, stream(), offset,
                                      values, len, decodeSpec())})
        checksDecodeSpec(row->checks(isOffset));
    checksEncodeSpec(table
                         .ZETAC_ROW(zetsVLCEncodeEscBlock_MP3_16s1u, values, len, escLen, stream(),
                                    offset, encodeSpec())
                         .checks(isOffset));
    checksEncodeSpec(
        table
            .ZETAC_ROW(zetsVLCEncodeEscBlock_AAC_16s1u, values, len, stream(), offset, encodeSpec())
            .checks(isOffset));
    checksEncodeSpec(
        table.ZETAC_ROW(zetsVLCCountEscBits_MP3_16s32s, values, len, escLen, count, encodeSpec()));
    checksEncodeSpec(
        table.ZETAC_ROW(zetsVLCCountEscBits_AAC_16s32s, values, len, count, encodeSpec()));
}

void addVqRows(Table& table) {
    constexpr static Zet32f kVectors[4 * 4] = {};
    constexpr ZetVQCodebook kBook = {kVectors, 4, 4, 1};
    // Subvectors of 4, 4 and 3 components, up to 8 candidates for each.
    const auto len = value("len", 11), nDiv = value("nDiv", 3), numCand = value("numCand", 2),
               numCand1 = value("numCand1", 3);
    const auto lines = elements<Zet32f>(11, 0.5F), distances = elements<Zet32f>(3, 0);
    const auto books = record(std::array{kBook, kBook});
    const auto zeros = elements<Zet32s>(24, 0);
    const Ints words = {"word", std::vector(24, 0)};
    const std::string sizes = "len not min -1 0 BadSize; nDiv not min -1 0 BadSize";
    const std::string counts = "; numCand not min -1 0 BadSize; numCand1 not min -1 0 BadSize";
    const std::string isBook =  // the second of two, or with another suffix the only one
        "; numCodes_1 not min 0 BadSize; codeLen_1 not min 0 3 BadSize;"
        "signBit_1 not min -1 2 max BadArg";
    table.ZETAC_ROW(zetsVQPreSelect_32f, lines, lines, len, nDiv, books, zeros, numCand)
        .checks(sizes +
                "; numCand not min -1 0 BadSize; nDiv not 12 BadSize;"
                "numCodes not min 0 BadSize; codeLen not min 0 3 BadSize;"
                "signBit not min -1 2 max BadArg; numCand not 9 129 max BadArg");
    table
        .ZETAC_ROW(zetsVQMainSelect_32f, lines, lines, len, nDiv, books, zeros, numCand, words,
                   numCand1, zeros, distances)
        .checks(sizes + counts + isBook +
                "; numCand1 not 9 max BadArg; word8 not min -5 4 max BadArg");
    table
        .ZETAC_ROW(zetsVQIndexSelect_32s, words, nDiv, books, zeros, numCand, zeros, numCand1,
                   zeros)
        .checks("nDiv not min -1 0 BadSize" + counts +
                "; numCodes_1 not min 0 BadSize; codeLen_1 not min 0 BadSize;"
                "signBit_1 not min -1 2 max BadArg; numCand1 not 9 max BadArg;"
                "word5 not min -1 3 max BadArg");
    table.ZETAC_ROW(zetsVQReconstruction_32s32f, words, books, value("gain", 1), lines, len, nDiv)
        .checks(sizes + isBook + "; word5 not min -1 8 max OutOfRange");
}

}  // namespace

void addVlcVqRows(Table& table) {
    addSpecRows(table);
    addBlockRows(table);
    addVqRows(table);
}

}  // namespace zetac::test
