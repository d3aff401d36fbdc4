/* Decodes a file to raw 16-bit PCM: decode_file INPUT OUTPUT.
 *
 * SPDX-License-Identifier: BSD-2-Clause
 * Copyright (c) 2026, The Zetac authors
 */
#include <stdio.h>
#include <zetac_codec.h>

int main(int argc, char** argv) {
    const char* input = argc > 1 ? argv[1] : "tests/data/mp3/stereo_ms_44k.mp3";
    FILE* output = argc > 2 ? fopen(argv[2], "wb") : tmpfile();
    ZetacReader* reader;
    ZetacStatus status = zetacReaderOpenFile(&reader, input, NULL);
    if (status != ZETAC_OK || output == NULL) {
        fprintf(stderr, "%s: %s\n", input, zetacStatusText(status));
        return 2;
    }
    ZetacStreamInfo info = ZETAC_STREAM_INFO_INIT;
    zetacReaderGetInfo(reader, &info);
    printf("%s: %s, %d Hz, %d channels\n", input, info.description, info.sampleRate, info.channels);
    ZetacFrame frame = ZETAC_FRAME_INIT;
    while ((status = zetacReaderRead(reader, &frame)) == ZETAC_OK) {
        if (frame.damage.code != 0) fprintf(stderr, "%s: %s\n", input, frame.damage.text);
        fwrite(frame.planes[0], 2 * (size_t)frame.channels, (size_t)frame.samples, output);
    }
    zetacReaderFree(reader);
    return fclose(output) == 0 && status == ZETAC_END ? 0 : 2;
}
