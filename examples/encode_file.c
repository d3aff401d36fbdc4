/* Encodes raw 16-bit stereo PCM of 44.1 kHz to MP3: encode_file INPUT OUTPUT.
 *
 * SPDX-License-Identifier: BSD-2-Clause
 * Copyright (c) 2026, The Zetac authors
 */
#include <stdio.h>
#include <zetac_codec.h>

int main(int argc, char** argv) {
    FILE* input = fopen(argc > 1 ? argv[1] : "/dev/null", "rb");
    FILE* output = argc > 2 ? fopen(argv[2], "wb") : tmpfile();
    ZetacEncoderOptions options = ZETAC_ENCODER_OPTIONS_INIT;
    options.bitRate = 192000;
    ZetacEncoder* encoder;
    ZetacStatus status = zetacEncoderCreate(&encoder, &options);
    if (status != ZETAC_OK || input == NULL || output == NULL) return 2;
    int16_t pcm[2 * 1152];
    const int16_t* next = pcm;
    size_t left = 0;
    ZetacPacket packet = ZETAC_PACKET_INIT;
    while ((status = zetacEncoderTake(encoder, &packet)) >= 0 && status != ZETAC_END) {
        if (status == ZETAC_OK) {
            fwrite(packet.data, 1, packet.bytes, output);
            continue;
        }
        if (left == 0) {
            next = pcm;
            left = fread(pcm, 4, 1152, input);
        }
        const void* plane = next;
        size_t taken = 0;
        if (left == 0) {
            zetacEncoderFinish(encoder);
        } else {
            zetacEncoderFeed(encoder, &plane, left, &taken);
        }
        next += 2 * taken;
        left -= taken;
    }
    unsigned char info[2048]; /* what players must know, in place of the first frame */
    ZetacEncoderInfo known = ZETAC_ENCODER_INFO_INIT;
    zetacEncoderGetInfo(encoder, &known);
    if (status == ZETAC_END && zetacEncoderGetInfoFrame(encoder, info, sizeof info) == ZETAC_OK) {
        rewind(output);
        fwrite(info, 1, known.infoFrameBytes, output);
    }
    zetacEncoderFree(encoder);
    return fclose(output) == 0 && status == ZETAC_END ? 0 : 2;
}
