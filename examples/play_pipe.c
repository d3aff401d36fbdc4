/* Gives the sound of a pipe while it still runs, as raw 16-bit PCM for a player:
 *     play_pipe < radio.aac | aplay -f cd
 *
 * SPDX-License-Identifier: BSD-2-Clause
 * Copyright (c) 2026, The Zetac authors
 */
#include <stdio.h>
#include <unistd.h>
#include <zetac_codec.h>

/* Takes out what is ready. */
static ZetacStatus drain(ZetacDecoder* decoder) {
    ZetacFrame frame = ZETAC_FRAME_INIT;
    ZetacStatus status;
    while ((status = zetacDecoderTake(decoder, &frame)) == ZETAC_OK) {
        fwrite(frame.planes[0], 2 * (size_t)frame.channels, (size_t)frame.samples, stdout);
    }
    fflush(stdout);
    return status;
}

int main(void) {
    unsigned char bytes[4096];
    ZetacDecoder* decoder;
    ZetacStatus status = zetacDecoderCreate(&decoder, NULL);
    ssize_t count;
    while (status >= 0 && (count = read(STDIN_FILENO, bytes, sizeof bytes)) > 0) {
        for (size_t done = 0, taken; status >= 0 && done < (size_t)count; done += taken) {
            zetacDecoderFeed(decoder, bytes + done, (size_t)count - done, &taken);
            status = drain(decoder);
        }
    }
    if (status >= 0) {
        zetacDecoderFinish(decoder);
        status = drain(decoder);
    }
    if (status < 0) fprintf(stderr, "%s\n", zetacDecoderErrorText(decoder));
    zetacDecoderFree(decoder);
    return status == ZETAC_END ? 0 : 2;
}
