/* A stranger's first program with the stream library: a second of silence becomes packets. */
#include <stdio.h>
#include <string.h>
#include <zetac_codec.h>

int main(void) {
    static const int16_t silence[44100];
    const void* plane = silence;
    ZetacEncoderOptions options = ZETAC_ENCODER_OPTIONS_INIT;
    ZetacPacket packet = ZETAC_PACKET_INIT;
    ZetacEncoder* encoder = NULL;
    size_t taken = 0, bytes = 0;
    int status;
    options.channels = 1;
    status = zetacEncoderCreate(&encoder, &options);
    while (status >= 0 && plane != silence + 44100) {
        status = zetacEncoderFeed(encoder, &plane,
                                  (size_t)(silence + 44100 - (const int16_t*)plane), &taken);
        plane = (const int16_t*)plane + taken;
        while (status >= 0 && zetacEncoderTake(encoder, &packet) == ZETAC_OK) bytes += packet.bytes;
    }
    zetacEncoderFree(encoder);
    printf("%s: %s, %u bytes\n", zetacCodecVersion(), zetacStatusText(status), (unsigned)bytes);
    return status < 0 || bytes < 7000;
}
