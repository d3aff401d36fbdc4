// The C interface of the reader.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "reader/reader.h"

#include <zetac_codec.h>

#include <new>

#include "api/sized_struct.h"

using zetac::codec::ByteSource;
using zetac::codec::isSized;
using zetac::codec::Reader;
using zetac::codec::readSized;
using zetac::codec::writeSized;

struct ZetacReader {
    ZetacReader(std::unique_ptr<ByteSource> source, const ZetacReaderOptions& options)
        : reader(std::move(source), options) {}

    Reader reader;
};

namespace {

/** Runs a call; what it throws becomes a status. */
template <class Call>
ZetacStatus guarded(Call call) noexcept {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return ZETAC_ERROR_MEMORY;
    } catch (...) {
        return ZETAC_ERROR_STATE;
    }
}

template <class Open>
ZetacStatus make(ZetacReader** reader, const ZetacReaderOptions* options, Open openSource) {
    return guarded([&]() -> ZetacStatus {
        const ZetacReaderOptions own = readSized(options);
        std::unique_ptr<ByteSource> source = openSource();
        if (!source) return ZETAC_ERROR_OPEN;
        auto made = std::make_unique<ZetacReader>(std::move(source), own);
        const ZetacStatus status = made->reader.open();
        if (status == ZETAC_OK) *reader = made.release();
        return status;
    });
}

}  // namespace

ZetacStatus zetacReaderOpenFile(ZetacReader** reader, const char* path,
                                const ZetacReaderOptions* options) {
    if (reader == nullptr) return ZETAC_ERROR_ARGUMENT;
    *reader = nullptr;
    if (path == nullptr) return ZETAC_ERROR_ARGUMENT;
    return make(reader, options, [&] { return zetac::codec::openFile(path); });
}

ZetacStatus zetacReaderOpenMemory(ZetacReader** reader, const void* data, size_t bytes,
                                  const ZetacReaderOptions* options) {
    if (reader == nullptr) return ZETAC_ERROR_ARGUMENT;
    *reader = nullptr;
    if (data == nullptr && bytes > 0) return ZETAC_ERROR_ARGUMENT;
    return make(reader, options, [&] {
        return zetac::codec::openMemory({static_cast<const uint8_t*>(data), bytes});
    });
}

ZetacStatus zetacReaderOpenIo(ZetacReader** reader, const ZetacIo* io,
                              const ZetacReaderOptions* options) {
    if (reader == nullptr) return ZETAC_ERROR_ARGUMENT;
    *reader = nullptr;
    if (!isSized(io) || io->read == nullptr) return ZETAC_ERROR_ARGUMENT;
    return make(reader, options, [&] { return zetac::codec::openIo(readSized(io)); });
}

void zetacReaderFree(ZetacReader* reader) {
    delete reader;
}

ZetacStatus zetacReaderGetInfo(const ZetacReader* reader, ZetacStreamInfo* info) {
    if (reader == nullptr || !isSized(info)) return ZETAC_ERROR_ARGUMENT;
    writeSized(reader->reader.info(), info);
    return ZETAC_OK;
}

ZetacStatus zetacReaderRead(ZetacReader* reader, ZetacFrame* frame) {
    if (reader == nullptr || !isSized(frame)) return ZETAC_ERROR_ARGUMENT;
    return guarded([&] {
        ZetacFrame own = ZETAC_FRAME_INIT;
        const ZetacStatus status = reader->reader.read(own);
        writeSized(own, frame);
        return status;
    });
}

ZetacStatus zetacReaderSeek(ZetacReader* reader, uint64_t sample) {
    if (reader == nullptr) return ZETAC_ERROR_ARGUMENT;
    return guarded([&] { return reader->reader.seek(sample); });
}

ZetacStatus zetacReaderScan(ZetacReader* reader) {
    if (reader == nullptr) return ZETAC_ERROR_ARGUMENT;
    return guarded([&] { return reader->reader.scan(); });
}

ZetacStatus zetacReaderGetTag(const ZetacReader* reader, size_t index, ZetacTag* tag) {
    if (reader == nullptr || tag == nullptr) return ZETAC_ERROR_ARGUMENT;
    const auto entries = reader->reader.tags().entries();
    if (index >= entries.size()) return ZETAC_END;
    tag->name = entries[index].name.c_str();
    tag->value = entries[index].value.c_str();
    return ZETAC_OK;
}

const char* zetacReaderErrorText(const ZetacReader* reader) {
    return reader == nullptr ? "" : reader->reader.errorText();
}
