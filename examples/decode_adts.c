/* Decodes a mono or stereo AAC LC file (ADTS, one raw data block a frame) to raw 16-bit PCM: the
 * road of a frame through the library, which docs/guide.md walks.
 *
 *     decode_adts clip.aac clip.pcm
 *
 * SPDX-License-Identifier: BSD-2-Clause
 * Copyright (c) 2026, The Zetac authors */
#include <stdio.h>
#include <stdlib.h>
#include <zetac.h>

enum { kSingle = 0, kPair = 1, kData = 4, kProgram = 5, kFill = 6, kEnd = 7 }; /* id_syn_ele */
enum { kObjectLowComplexity = 2 };                                             /* MPEG-4 */
/* Bytes behind the data that must be readable: what one call consumes at most, and looks at. */
enum { kReadAhead = ZETAC_AAC_CHANNEL_BYTES_MAX + ZETAC_BIT_STREAM_SLACK };

typedef struct Channel {
    Zet32s spectrum[2][ZETAC_AAC_FRAME_LEN]; /* as read, and with short windows in order */
    Zet16s scaleFactor[ZETAC_AAC_GROUP_BANDS_MAX];
    Zet8u codebook[ZETAC_AAC_GROUP_BANDS_MAX];
    Zet8s tnsCoef[ZETAC_AAC_TNS_COEFS_MAX];
    ZetAACIcsInfo ics;
    ZetAACChanInfo info;
    /* What the channel remembers from frame to frame: */
    Zet32s overlap[ZETAC_AAC_FRAME_LEN];
    int previousShape;
} Channel;

typedef struct Decoder {
    Channel channel[2];
    ZetAACChanPairElt pair;
    Zet32s noise;                /* state of the generator of noise */
    ZetAACMainHeader mainHeader; /* keeps LTP data, which the low-complexity profile lacks */
    Zet8u* byte;                 /* where the next bit is read */
    int bit;
    const Zet8u* end; /* of the raw data block */
} Decoder;

/* Readers do not know where the data end: to be asked behind each call, before the next. */
static int isBeyondEnd(const Decoder* d) {
    return d->byte > d->end || (d->byte == d->end && d->bit > 0);
}

/* An element id (3 bits) or a tag (4 bits). */
static int readBits(Decoder* d, int count) {
    int value = 0;
    for (; count > 0; --count) {
        value = value << 1 | (*d->byte >> (7 - d->bit) & 1);
        d->bit = (d->bit + 1) & 7;
        if (d->bit == 0) ++d->byte;
    }
    return value;
}

/* The bits of one channel, and its quantised values turned into a spectrum. */
static int readChannel(Decoder* d, Channel* c, ZetAACIcsInfo* ics, int commonWindow, int rate) {
    ZetStatus status;
    c->info.pIcsInfo = ics;
    c->info.sampling_frequency_index = rate;
    status = zetsNoiselessDecode_MP4_AAC(&d->byte, &d->bit, &d->mainHeader, c->scaleFactor,
                                         c->spectrum[0], c->codebook, c->tnsCoef, &c->info, 0, 0,
                                         commonWindow, 0, kObjectLowComplexity);
    if (status < 0) return status;
    if (isBeyondEnd(d)) return zetStsOutOfRange;
    return zetsQuantInv_AAC_32s_I(c->spectrum[0], c->scaleFactor, ics->num_window_groups,
                                  ics->window_group_length, ics->max_sfb, c->codebook, rate,
                                  c->info.window_length);
}

static void substituteNoise(Channel* c, Zet32s* state, int rate) {
    const ZetAACIcsInfo* ics = c->info.pIcsInfo;
    zetsDecodePNS_AAC_32s(c->spectrum[0], state, c->scaleFactor, ics->num_window_groups,
                          ics->window_group_length, ics->max_sfb, c->codebook, rate,
                          c->info.window_length);
}

/* Short windows into order, temporal noise shaping, and the filter bank. */
static int synthesize(Channel* c, int rate, Zet16s* pcm, int step) {
    const ZetAACIcsInfo* ics = c->info.pIcsInfo;
    ZetStatus status = zetsDeinterleaveSpectrum_AAC_32s(
        c->spectrum[0], c->spectrum[1], ics->num_window_groups, ics->window_group_length,
        ics->max_sfb, rate, c->info.window_length);
    if (status >= 0 && c->info.tns_data_present) {
        status = zetsDecodeTNS_AAC_32s_I(c->spectrum[1], &c->info.tns, c->tnsCoef, ics->max_sfb,
                                         rate, c->info.window_length);
    }
    if (status < 0) return status;
    status = zetsMDCTInv_AAC_32s16s(c->spectrum[1], pcm, c->overlap, ics->window_sequence,
                                    ics->window_shape, c->previousShape, step);
    c->previousShape = ics->window_shape;
    return status;
}

/* Stereo tools of a pair with a common window. M/S stereo spares a band by the right channel's
 * codebook alone, and the standard spares bands with noise in either channel: so it is shown noise
 * on the right where only the left has it. It inverts intensity codebooks in what it is shown. */
static int decodeStereo(Decoder* d, int rate) {
    Channel* l = &d->channel[0];
    Channel* r = &d->channel[1];
    const ZetAACIcsInfo* ics = &l->ics;
    const int groups = ics->num_window_groups;
    const Zet32s* lengths = ics->window_group_length;
    const int winLen = l->info.window_length;
    Zet8u shown[ZETAC_AAC_GROUP_BANDS_MAX];
    ZetStatus status = zetStsOk;
    int i;
    for (i = 0; i < groups * ics->max_sfb; ++i) {
        const int isSpared = l->codebook[i] == zetAacNoiseCb && r->codebook[i] < zetAacIntensityCb2;
        shown[i] = isSpared ? zetAacNoiseCb : r->codebook[i];
    }
    if (d->pair.ms_mask_present != 0) {
        status = zetsDecodeMsStereo_AAC_32s_I(l->spectrum[0], r->spectrum[0],
                                              d->pair.ms_mask_present, d->pair.ms_used[0], shown,
                                              groups, lengths, ics->max_sfb, rate, winLen);
    }
    if (status < 0) return status;
    zetsDecodeMsPNS_AAC_32s(l->spectrum[0], r->spectrum[0], &d->noise, l->scaleFactor,
                            r->scaleFactor, d->pair.ms_mask_present, d->pair.ms_used[0], groups,
                            lengths, ics->max_sfb, l->codebook, r->codebook, rate, winLen);
    return zetsDecodeIsStereo_AAC_32s(l->spectrum[0], r->spectrum[0], r->scaleFactor, shown, groups,
                                      lengths, ics->max_sfb, rate, winLen);
}

static int decodePair(Decoder* d, int rate, Zet16s* pcm) {
    Channel* l = &d->channel[0];
    Channel* r = &d->channel[1];
    int status = zetsDecodeChanPairElt_MP4_AAC(&d->byte, &d->bit, &l->ics, &d->pair,
                                               d->mainHeader.ltp, 0, kObjectLowComplexity);
    const int isCommon = d->pair.common_window;
    if (status >= 0 && isBeyondEnd(d)) status = zetStsOutOfRange;
    if (status >= 0) status = readChannel(d, l, &l->ics, isCommon, rate);
    if (status >= 0) status = readChannel(d, r, isCommon ? &l->ics : &r->ics, isCommon, rate);
    if (status < 0) return status;
    if (isCommon) {
        status = decodeStereo(d, rate);
    } else {
        substituteNoise(l, &d->noise, rate);
        substituteNoise(r, &d->noise, rate);
    }
    if (status >= 0) status = synthesize(l, rate, pcm, 2);
    if (status >= 0) status = synthesize(r, rate, pcm + 1, 2);
    return status;
}

static int decodeSingle(Decoder* d, int rate, Zet16s* pcm) {
    Channel* c = &d->channel[0];
    const int status = readChannel(d, c, &c->ics, 0, rate);
    if (status < 0) return status;
    substituteNoise(c, &d->noise, rate);
    return synthesize(c, rate, pcm, 1);
}

/* One raw data block. Returns the number of channels, or a negative status. */
static int decodeBlock(Decoder* d, int rate, Zet16s* pcm) {
    static Zet8u bytes[ZETAC_AAC_DATA_BYTES_MAX];
    static ZetAACPrgCfgElt program;
    int channels = 0;
    int status = 0;
    d->bit = 0;
    while (status >= 0) {
        int tag, count;
        const int id = readBits(d, 3);
        if (id == kSingle || id == kPair) readBits(d, 4); /* element_instance_tag */
        if (isBeyondEnd(d)) return zetStsOutOfRange;
        if (id == kEnd) return channels;
        if (id == kSingle || id == kPair) {
            channels = id == kPair ? 2 : 1;
            status = id == kPair ? decodePair(d, rate, pcm) : decodeSingle(d, rate, pcm);
        } else if (id == kData) {
            status = zetsDecodeDatStrElt_AAC(&d->byte, &d->bit, &tag, &count, bytes);
        } else if (id == kProgram) {
            status = zetsDecodePrgCfgElt_AAC(&d->byte, &d->bit, &program);
        } else if (id == kFill) {
            status = zetsDecodeFillElt_AAC(&d->byte, &d->bit, &count, bytes);
        } else {
            return zetStsBadArg; /* coupling and low-frequency channels: not on this page */
        }
        if (status >= 0 && isBeyondEnd(d)) return zetStsOutOfRange;
    }
    return status;
}

/* Reads a file into memory, with zeros behind it for the readers to look at. */
static Zet8u* readFile(const char* path, size_t* size) {
    FILE* file = fopen(path, "rb");
    Zet8u* data = NULL;
    long length = -1;
    if (file != NULL && fseek(file, 0, SEEK_END) == 0) length = ftell(file);
    if (length >= 0) data = calloc((size_t)length + kReadAhead, 1);
    *size = length >= 0 ? (size_t)length : 0;
    if (data != NULL) {
        rewind(file);
        *size = fread(data, 1, *size, file);
    }
    if (file != NULL) fclose(file);
    return data;
}

int main(int argc, char** argv) {
    static Decoder decoder;
    static Zet16s pcm[2 * ZETAC_AAC_FRAME_LEN];
    const char* input = argc > 1 ? argv[1] : "tests/data/aac/stereo_noise.aac";
    FILE* output = argc > 2 ? fopen(argv[2], "wb") : NULL;
    size_t size, at = 0;
    int frames = 0;
    Zet8u* data = readFile(input, &size);
    if (data == NULL || (argc > 2 && output == NULL)) {
        fprintf(stderr, "decode_adts: cannot open the files\n");
        return 1;
    }
    while (at + 7 <= size) {
        ZetAACADTSHeader header;
        Zet8u* frame = data + at;
        int channels;
        if (frame[0] != 0xFF || (frame[1] & 0xF6) != 0xF0) {
            ++at; /* no sync here */
            continue;
        }
        decoder.byte = frame;
        zetsUnpackADTSFrameHeader_AAC(&decoder.byte, &header);
        if (header.frame_length < 8 || at + (size_t)header.frame_length > size) break;
        decoder.end = frame + header.frame_length;
        channels = decodeBlock(&decoder, header.sampling_frequency_index, pcm);
        if (channels <= 0) {
            fprintf(stderr, "decode_adts: status %d in frame %d\n", channels, frames);
            return 1;
        }
        if (output != NULL) fwrite(pcm, sizeof pcm[0] * ZETAC_AAC_FRAME_LEN, channels, output);
        at += (size_t)header.frame_length;
        ++frames;
    }
    if (output != NULL) fclose(output);
    free(data);
    printf("%s: %d frames of 1024 samples\n", input, frames);
    return frames > 0 ? 0 : 1;
}
