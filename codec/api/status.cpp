// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac_codec.h>

const char* zetacStatusText(int status) {
    switch (status) {
        case ZETAC_OK:
            return "done";
        case ZETAC_NEED_INPUT:
            return "more input is needed";
        case ZETAC_END:
            return "the stream is over";
        case ZETAC_ERROR_ARGUMENT:
            return "an argument is null or outside its range";
        case ZETAC_ERROR_STATE:
            return "a call out of order";
        case ZETAC_ERROR_MEMORY:
            return "memory could not be had";
        case ZETAC_ERROR_NO_STREAM:
            return "no stream that this library knows";
        case ZETAC_ERROR_UNSUPPORTED:
            return "this library does not have what the stream needs";
        case ZETAC_ERROR_CONFIG:
            return "a damaged AudioSpecificConfig";
        case ZETAC_ERROR_OPEN:
            return "the file cannot be opened";
        case ZETAC_ERROR_READ:
            return "the input cannot be read";
        case ZETAC_ERROR_NOT_SEEKABLE:
            return "the input cannot be rewound";
        default:
            return "an unknown status";
    }
}

const char* zetacCodecVersion(void) {
    return ZETAC_CODEC_VERSION;
}
