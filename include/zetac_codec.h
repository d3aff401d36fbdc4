/** libzetac: streams of AAC and MP3 to PCM, and PCM to MP3, behind a plain C interface.
 * @file
 * SPDX-License-Identifier: BSD-2-Clause
 * Copyright (c) 2026, The Zetac authors
 *
 * This header is the whole public interface of libzetac.so.1. It compiles as C99 and as C++.
 *
 * Three objects
 * -------------
 * - A ZetacDecoder is pushed: it takes bytes of a stream in pieces of any size, or access units
 * from a container, and gives frames of PCM. The PCM does not depend on how the input was divided.
 * - A ZetacReader is pulled: it opens a file, a block of memory or callbacks, and gives frames of
 *   PCM, without the samples that an encoder added; it knows duration and tags, and seeks to a
 * sample exactly.
 * - A ZetacEncoder is pushed with PCM and gives packets.
 *
 * Conventions shared by every function
 * ------------------------------------
 * - A function returns a ZetacStatus: 0 is success, a positive value says what is needed or that
 * the end has come, a negative value is an error and has a text (zetacStatusText). A failed
 * argument check changes nothing.
 * - Damage in a stream is no error: the frame concerned is concealed, and says what was wrong, and
 *   where (ZetacDamage). An error ends the work of its object, until a reset where one is offered.
 * - An object may be used by one thread at a time. Different objects share nothing. There is no
 *   global state; no function prints, starts a thread or throws.
 * - A structure that may grow has its own size in front. ZETAC_..._INIT sets it, and zeros
 *   everywhere else; zero is always the default. A library that knows more fields than the caller
 *   takes those beyond the caller's size for zero and leaves them alone.
 * - A stream takes bounded memory, however long it is: less than ZETAC_STREAM_BYTES_MAX for a
 * decoder or an encoder, tags and the caller's buffers apart. Nothing is allocated after the first
 * frame unless the format of the stream changes. When memory cannot be had the status is
 *   ZETAC_ERROR_MEMORY.
 * - Positions and lengths in samples count samples of one channel at the rate of the output;
 *   positions in bytes count from the first byte of the input.
 */
#ifndef ZETAC_CODEC_H
#define ZETAC_CODEC_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define ZETAC_CODEC_API __attribute__((visibility("default"))) /**< marks what is exported */
#else
#define ZETAC_CODEC_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Behind ZETAC_..._INIT: a structure with its size, and zeros everywhere else. */
#ifdef __cplusplus
#define ZETAC_INIT_(Type)           \
    ([] {                           \
        Type record = Type();       \
        record.size = sizeof(Type); \
        return record;              \
    }())
#else
#define ZETAC_INIT_(Type) \
    { .size = sizeof(Type) }
#endif

/** Most channels that a stream may have. */
#define ZETAC_CHANNELS_MAX 8

/** A decoder, or an encoder, takes less memory than this: below 0.2 MiB for stereo, 0.4 MiB with
 * SBR and parametric stereo; the most is for eight single channels with long-term prediction and
 * SBR. */
#define ZETAC_STREAM_BYTES_MAX 1310720

/* ------------------------------------------------------------------------------------------------
 * Statuses and damage
 * --------------------------------------------------------------------------------------------- */

/** What functions return. */
typedef enum ZetacStatus {
    ZETAC_OK = 0,                 /**< done */
    ZETAC_NEED_INPUT = 1,         /**< nothing comes out before more goes in */
    ZETAC_END = 2,                /**< the stream is over */
    ZETAC_ERROR_ARGUMENT = -1,    /**< a null pointer, or a value outside its range */
    ZETAC_ERROR_STATE = -2,       /**< a call out of order, such as input after the end */
    ZETAC_ERROR_MEMORY = -3,      /**< memory could not be had */
    ZETAC_ERROR_NO_STREAM = -4,   /**< the input is no stream that this library knows */
    ZETAC_ERROR_UNSUPPORTED = -5, /**< the stream needs what this library does not have */
    ZETAC_ERROR_CONFIG = -6,      /**< a damaged AudioSpecificConfig */
    ZETAC_ERROR_OPEN = -7,        /**< the file cannot be opened; errno has the reason */
    ZETAC_ERROR_READ = -8,        /**< the input cannot be read; errno has the reason */
    ZETAC_ERROR_NOT_SEEKABLE = -9 /**< the input cannot be rewound */
} ZetacStatus;

/** One line without a full stop, such as "memory could not be had"; never null. */
ZETAC_CODEC_API const char* zetacStatusText(int status);

/** The release of this library, such as "1.0.0". */
ZETAC_CODEC_API const char* zetacCodecVersion(void);

/** What was wrong with a piece of a stream. */
typedef struct ZetacDamage {
    int32_t code;        /**< 0: nothing. The same code always means the same; codes may be added */
    const char* text;    /**< one line without a full stop; null when nothing was wrong */
    uint64_t position;   /**< byte where the damaged piece begins */
    int32_t isContinued; /**< the frame before had the same, as when a reservoir fills again */
    uint64_t foreignAt;  /**< byte where those of the next field begin */
    uint64_t foreignBytes; /**< bytes passed over ahead of this piece that belong to no frame and to
                              no known tag */
} ZetacDamage;

/* ------------------------------------------------------------------------------------------------
 * Formats
 * --------------------------------------------------------------------------------------------- */

/** How a codec's data are coded. */
typedef enum ZetacCodec {
    ZETAC_CODEC_UNKNOWN = 0,
    ZETAC_CODEC_AAC = 1, /**< MPEG-2 and MPEG-4 AAC with its tools for high efficiency */
    ZETAC_CODEC_MP3 = 2  /**< MPEG audio Layer III */
} ZetacCodec;

/** How frames lie in a stream. */
typedef enum ZetacContainer {
    ZETAC_CONTAINER_UNKNOWN = 0,
    ZETAC_CONTAINER_PACKETS = 1, /**< access units from outside */
    ZETAC_CONTAINER_ADTS = 2,    /**< ISO/IEC 13818-7, 6.2 */
    ZETAC_CONTAINER_ADIF = 3,    /**< ISO/IEC 13818-7, 6.2 */
    ZETAC_CONTAINER_LOAS = 4,    /**< ISO/IEC 14496-3, 1.7: AudioSyncStream with LATM */
    ZETAC_CONTAINER_MPEG = 5     /**< MPEG audio frames (ISO/IEC 11172-3, 13818-3) */
} ZetacContainer;

/** Type of PCM samples, native byte order. */
typedef enum ZetacSampleFormat {
    ZETAC_S16 = 0, /**< 16-bit integers */
    ZETAC_S32 = 1, /**< 32-bit integers: a 16-bit sample is 65536 times as large here */
    ZETAC_F32 = 2  /**< IEEE 754 single, full scale is 1; values beyond it are not limited */
} ZetacSampleFormat;

/** Loudspeakers. The value is the number of the bit in the channel mask of a WAV file. */
typedef enum ZetacSpeaker {
    ZETAC_SPEAKER_FRONT_LEFT = 0,
    ZETAC_SPEAKER_FRONT_RIGHT = 1,
    ZETAC_SPEAKER_FRONT_CENTRE = 2,
    ZETAC_SPEAKER_LOW_FREQUENCY = 3,
    ZETAC_SPEAKER_BACK_LEFT = 4,
    ZETAC_SPEAKER_BACK_RIGHT = 5,
    ZETAC_SPEAKER_FRONT_LEFT_OF_CENTRE = 6,
    ZETAC_SPEAKER_FRONT_RIGHT_OF_CENTRE = 7,
    ZETAC_SPEAKER_BACK_CENTRE = 8,
    ZETAC_SPEAKER_SIDE_LEFT = 9,
    ZETAC_SPEAKER_SIDE_RIGHT = 10,
    ZETAC_SPEAKER_UNKNOWN = 31
} ZetacSpeaker;

/** What is known of a stream once its first frame is. */
typedef struct ZetacStreamInfo {
    size_t size;          /**< of this structure */
    int32_t codec;        /**< ZetacCodec */
    int32_t container;    /**< ZetacContainer */
    char description[64]; /**< such as "HE-AAC v2" or "MPEG-1 Layer III" */
    int32_t sampleRate;   /**< of the output, Hz */
    int32_t channels;     /**< of the output */
    uint8_t
        speakers[ZETAC_CHANNELS_MAX]; /**< ZetacSpeaker of each output channel, in their order */
    int32_t codedSampleRate;          /**< of the core coder, Hz */
    int32_t codedChannels;            /**< of the core coder */
    int32_t objectType;               /**< of AAC: 1 Main, 2 LC, 4 LTP; 0: another codec */
    int32_t frameSamples;             /**< samples that a frame gives */
    int32_t bitRate;                  /**< bit/s: declared or, failing that, mean; 0: unknown */
    int32_t hasSbr;                   /**< spectral band replication is decoded */
    int32_t hasParametricStereo;      /**< parametric stereo is decoded */
    int32_t isVariableBitRate;        /**< as far as it is known */
    char encoder[16];                 /**< that the stream names; empty: none */

    /* Lengths, of a reader or of a stream with an information frame. */
    int32_t hasLength;     /**< length is known */
    int32_t isLengthExact; /**< counted or told by the stream, not estimated from the bit rate */
    uint64_t length;       /**< samples that come out */
    uint32_t encoderDelay; /**< samples in front that the encoder added, and a reader leaves out */
    uint32_t encoderPadding; /**< samples behind */
} ZetacStreamInfo;

#define ZETAC_STREAM_INFO_INIT ZETAC_INIT_(ZetacStreamInfo) /**< empty, with its size */

/** A frame of PCM. Its samples belong to the object that gave it, until the next call with that
 *  object. */
typedef struct ZetacFrame {
    size_t size;                            /**< of this structure */
    const void* planes[ZETAC_CHANNELS_MAX]; /**< samples: one plane a channel, or all interleaved in
                                               planes[0] */
    int32_t samples;                        /**< of each channel; 0 for a damaged piece without any
                                               sound to give, and with ZETAC_END */
    int32_t channels;                       /**< 1 to ZETAC_CHANNELS_MAX */
    int32_t sampleRate;                     /**< Hz */
    int32_t sampleFormat;                   /**< ZetacSampleFormat */
    int32_t isFormatNew;   /**< rate or channels differ from those of the frame before, or this is
                              the first one */
    uint64_t position;     /**< of its first sample in the output */
    uint64_t bytePosition; /**< where its data begin in the input */
    uint32_t byteCount;    /**< bytes of its data with their header */
    int32_t isSeekPoint;   /**< zetacDecoderReset may go on at bytePosition */
    int32_t isIncomplete; /**< builds on an SBR header that came before decoding began: the sound is
                             that of the core, until the next header */
    ZetacDamage damage;   /**< code 0: the frame is good */
} ZetacFrame;

#define ZETAC_FRAME_INIT ZETAC_INIT_(ZetacFrame) /**< empty, with its size */

/* ------------------------------------------------------------------------------------------------
 * Decoder
 * --------------------------------------------------------------------------------------------- */

/** What becomes of data for spectral band replication (ISO/IEC 14496-3, 4.6.18). */
typedef enum ZetacSbrMode {
    ZETAC_SBR_ON = 0,          /**< decoded: sound at twice the rate of the core */
    ZETAC_SBR_DOWNSAMPLED = 1, /**< decoded at the rate of the core: what lies above is left out */
    ZETAC_SBR_OFF = 2          /**< passed over: the core alone is decoded */
} ZetacSbrMode;

/** Arithmetic of SBR and parametric stereo. */
typedef enum ZetacSbrArithmetic { ZETAC_SBR_FIXED = 0, ZETAC_SBR_FLOAT = 1 } ZetacSbrArithmetic;

/** The order of channels. */
typedef enum ZetacChannelOrder {
    ZETAC_ORDER_WAV = 0,   /**< by the number of the loudspeaker, as WAV files have it */
    ZETAC_ORDER_STREAM = 1 /**< as the elements come in the stream: centre, left, right, ... */
} ZetacChannelOrder;

/** Mixing of many channels into few. This version refuses all but the first with
 * ZETAC_ERROR_ARGUMENT. */
typedef enum ZetacDownmix {
    ZETAC_DOWNMIX_NONE = 0,
    ZETAC_DOWNMIX_STEREO =
        1, /**< coefficients of the stream where it has any, else the standard's */
    ZETAC_DOWNMIX_MONO = 2
} ZetacDownmix;

/** How a decoder works. All zeros but the size: 16 bits, interleaved, everything decoded. */
typedef struct ZetacDecoderOptions {
    size_t size;           /**< of this structure */
    int32_t sampleFormat;  /**< ZetacSampleFormat */
    int32_t isPlanar;      /**< one plane a channel, instead of interleaved samples */
    int32_t channelOrder;  /**< ZetacChannelOrder */
    int32_t sbrMode;       /**< ZetacSbrMode */
    int32_t sbrArithmetic; /**< ZetacSbrArithmetic */
    int32_t downmix;       /**< ZetacDownmix */
    int32_t codec;         /**< ZetacCodec that a stream of bytes is expected to be; 0: look */
    int32_t parsesOnly;    /**< everything is read and checked, but no sound is made: frames have
                              lengths and reports, and null planes */
} ZetacDecoderOptions;

#define ZETAC_DECODER_OPTIONS_INIT ZETAC_INIT_(ZetacDecoderOptions) /**< empty, with its size */

/** A decoder of one stream. */
typedef struct ZetacDecoder ZetacDecoder;

/** Makes a decoder.
 *  @param decoder  out: free it with zetacDecoderFree; null on failure
 *  @param options  null: the defaults
 *  @return ZETAC_ERROR_ARGUMENT (decoder null; an option outside its range), ZETAC_ERROR_MEMORY */
ZETAC_CODEC_API ZetacStatus zetacDecoderCreate(ZetacDecoder** decoder,
                                               const ZetacDecoderOptions* options);

/** @param decoder  null: nothing happens */
ZETAC_CODEC_API void zetacDecoderFree(ZetacDecoder* decoder);

/** Takes bytes of a stream: ADTS, ADIF, LOAS/LATM or MPEG audio, which is found out, with tags or
 *  foreign bytes in front, between and behind.
 *  @param data   may be reused after the call
 *  @param bytes  0 is allowed
 *  @param taken  out: bytes taken; fewer than bytes when frames wait to be taken out first
 *  @return ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_STATE (after zetacDecoderFinish, or between packets),
 *          ZETAC_ERROR_MEMORY */
ZETAC_CODEC_API ZetacStatus zetacDecoderFeed(ZetacDecoder* decoder, const void* data, size_t bytes,
                                             size_t* taken);

/** Prepares for packets instead of a stream of bytes; to be called before any input, and again
 *  where a container changes the configuration.
 *  @param codec        ZETAC_CODEC_AAC or ZETAC_CODEC_MP3
 *  @param config       AudioSpecificConfig() (ISO/IEC 14496-3, 1.6.2.1); null for MP3, and for AAC
 *                      packets that are ADTS frames
 *  @param configBytes  of it
 *  @return ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_STATE (bytes were fed), ZETAC_ERROR_CONFIG,
 *          ZETAC_ERROR_UNSUPPORTED, ZETAC_ERROR_MEMORY */
ZETAC_CODEC_API ZetacStatus zetacDecoderSetPackets(ZetacDecoder* decoder, ZetacCodec codec,
                                                   const void* config, size_t configBytes);

/** Takes one packet: a raw_data_block(), an ADTS frame or an MPEG audio frame.
 *  @param position  of the packet in the input, for reports
 *  @return ZETAC_NEED_INPUT is never returned; ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_STATE (no
 *          zetacDecoderSetPackets, or a frame of the last packet waits) */
ZETAC_CODEC_API ZetacStatus zetacDecoderFeedPacket(ZetacDecoder* decoder, const void* data,
                                                   size_t bytes, uint64_t position);

/** A packet that should be here is lost: the next frame to be taken conceals it.
 *  @return as zetacDecoderFeedPacket */
ZETAC_CODEC_API ZetacStatus zetacDecoderFeedLoss(ZetacDecoder* decoder);

/** No further input will come. What is left comes out of zetacDecoderTake.
 *  @return ZETAC_ERROR_ARGUMENT */
ZETAC_CODEC_API ZetacStatus zetacDecoderFinish(ZetacDecoder* decoder);

/** Gives the next frame.
 *  @param frame  in: its size; out: the rest. With ZETAC_END it has no samples, but may tell of
 *                foreign bytes behind the last frame
 *  @return ZETAC_OK, ZETAC_NEED_INPUT, ZETAC_END; ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_NO_STREAM (at
 *          the end, or after ZETAC_SEARCH_BYTES without a frame), ZETAC_ERROR_UNSUPPORTED
 *          (zetacDecoderErrorText names what), ZETAC_ERROR_MEMORY */
ZETAC_CODEC_API ZetacStatus zetacDecoderTake(ZetacDecoder* decoder, ZetacFrame* frame);

/** Bytes, tags not counted, in which the first frame of a stream must be found. */
#define ZETAC_SEARCH_BYTES 1048576

/** Forgets all sound and the input at hand, for a seek. What is known of the container, the format
 *  and, for packets and LOAS, the configuration stays, so that feeding may go on at any frame with
 *  isSeekPoint, in ADIF files too. With SBR this allocates.
 *  @param position      byte of the input where feeding goes on, for reports
 *  @param samplePosition  that the next frame is given
 *  @return ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_MEMORY */
ZETAC_CODEC_API ZetacStatus zetacDecoderReset(ZetacDecoder* decoder, uint64_t position,
                                              uint64_t samplePosition);

/** @param info  in: its size; out: the rest
 *  @return ZETAC_NEED_INPUT before the first frame is known; ZETAC_ERROR_ARGUMENT */
ZETAC_CODEC_API ZetacStatus zetacDecoderGetInfo(const ZetacDecoder* decoder, ZetacStreamInfo* info);

/** Why the last call failed, with names and numbers where zetacStatusText has none; never null,
 *  empty when it did not fail. Until the next call with this decoder. */
ZETAC_CODEC_API const char* zetacDecoderErrorText(const ZetacDecoder* decoder);

/* ------------------------------------------------------------------------------------------------
 * Reader
 * --------------------------------------------------------------------------------------------- */

/** A source of bytes. */
typedef struct ZetacIo {
    size_t size; /**< of this structure */
    void* user;  /**< passed to the functions */
    /** Reads up to so many bytes. @return how many, 0 at the end, negative on an error */
    ptrdiff_t (*read)(void* user, void* buffer, size_t bytes);
    /** Moves to a byte, counted from the first one. Null where that is impossible.
     *  @return 0, or negative on an error */
    int (*seek)(void* user, uint64_t position);
    /** Bytes in all, or negative when that is unknown. May be null. */
    int64_t (*length)(void* user);
    /** Called once when the reader is freed or could not be made. May be null. */
    void (*close)(void* user);
} ZetacIo;

/** How a reader works. */
typedef struct ZetacReaderOptions {
    size_t size;                 /**< of this structure */
    ZetacDecoderOptions decoder; /**< zeros, its size included: the defaults */
    int32_t keepsGaps;           /**< the samples that the encoder added come out too */
    uint32_t icyInterval;        /**< bytes of sound between blocks of ICY metadata, as a server's
                                    header icy-metaint has it; 0: look for a header in front */
} ZetacReaderOptions;

#define ZETAC_READER_OPTIONS_INIT ZETAC_INIT_(ZetacReaderOptions) /**< empty, with its size */

/** A reader of one stream. */
typedef struct ZetacReader ZetacReader;

/** Opens a file, which may be a pipe or a device.
 *  @param reader   out: free it with zetacReaderFree; null on failure
 *  @param path     as fopen takes it
 *  @param options  null: the defaults
 *  @return ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_MEMORY, ZETAC_ERROR_OPEN, ZETAC_ERROR_READ,
 *          ZETAC_ERROR_NO_STREAM, ZETAC_ERROR_UNSUPPORTED */
ZETAC_CODEC_API ZetacStatus zetacReaderOpenFile(ZetacReader** reader, const char* path,
                                                const ZetacReaderOptions* options);

/** Opens a block of memory, which must live as long as the reader. */
ZETAC_CODEC_API ZetacStatus zetacReaderOpenMemory(ZetacReader** reader, const void* data,
                                                  size_t bytes, const ZetacReaderOptions* options);

/** Opens a source that the caller reads. */
ZETAC_CODEC_API ZetacStatus zetacReaderOpenIo(ZetacReader** reader, const ZetacIo* io,
                                              const ZetacReaderOptions* options);

/** @param reader  null: nothing happens */
ZETAC_CODEC_API void zetacReaderFree(ZetacReader* reader);

/** @param info  in: its size; out: the rest. Known from the opening on
 *  @return ZETAC_ERROR_ARGUMENT */
ZETAC_CODEC_API ZetacStatus zetacReaderGetInfo(const ZetacReader* reader, ZetacStreamInfo* info);

/** Gives the next frame; the first and the last one are as short as the trimming makes them.
 *  @param frame  in: its size; out: the rest
 *  @return ZETAC_OK, ZETAC_END; ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_READ, ZETAC_ERROR_MEMORY,
 *          ZETAC_ERROR_UNSUPPORTED */
ZETAC_CODEC_API ZetacStatus zetacReaderRead(ZetacReader* reader, ZetacFrame* frame);

/** Walks over all frames that have not been read yet, without making sound: the length is exact
 *  then, and seeks start at once.
 *  @return ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_NOT_SEEKABLE, ZETAC_ERROR_READ, ZETAC_ERROR_MEMORY */
ZETAC_CODEC_API ZetacStatus zetacReaderScan(ZetacReader* reader);

/** Moves to a sample: what is read next is what a reading from the start would give from there on,
 *  bit for bit.
 *  @param sample  behind the end: the next read gives ZETAC_END
 *  @return ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_NOT_SEEKABLE, ZETAC_ERROR_READ, ZETAC_ERROR_MEMORY */
ZETAC_CODEC_API ZetacStatus zetacReaderSeek(ZetacReader* reader, uint64_t sample);

/** A line of text about the sound. */
typedef struct ZetacTag {
    const char* name;  /**< lower case: "title", "artist", "album", "date", "track", "genre", ...;
                          others by the name or identifier that they have in the file */
    const char* value; /**< UTF-8 */
} ZetacTag;

/** Text about the sound, from ID3v2, APE, ID3v1 and ICY tags; the first of a name is the best one.
 *  @param index  from 0 on
 *  @param tag    out: it belongs to the reader; a title that ICY metadata change is new after a
 * read
 *  @return ZETAC_END behind the last one; ZETAC_ERROR_ARGUMENT */
ZETAC_CODEC_API ZetacStatus zetacReaderGetTag(const ZetacReader* reader, size_t index,
                                              ZetacTag* tag);

/** Why the last call failed, as zetacDecoderErrorText has it. */
ZETAC_CODEC_API const char* zetacReaderErrorText(const ZetacReader* reader);

/* ------------------------------------------------------------------------------------------------
 * Encoder
 * --------------------------------------------------------------------------------------------- */

/** How two channels are coded. */
typedef enum ZetacStereoMode {
    ZETAC_STEREO_JOINT = 0,      /**< M/S where it helps */
    ZETAC_STEREO_INDEPENDENT = 1 /**< left and right */
} ZetacStereoMode;

/** How bits are spread over frames. */
typedef enum ZetacRateMode {
    ZETAC_RATE_CONSTANT = 0,
    ZETAC_RATE_VARIABLE = 1, /**< as many as the quality needs */
    ZETAC_RATE_AVERAGE = 2   /**< as many as the sound needs around a mean bit rate; this version
                                refuses it with ZETAC_ERROR_UNSUPPORTED */
} ZetacRateMode;

/** How an encoder works. */
typedef struct ZetacEncoderOptions {
    size_t size;   /**< of this structure */
    int32_t codec; /**< ZETAC_CODEC_MP3; 0 means the same */
    int32_t
        sampleRate; /**< Hz: that of the input and of the stream: 32000, 44100 or 48000; 0: 44100 */
    int32_t channels;     /**< 1 or 2; 0: 2 */
    int32_t sampleFormat; /**< ZetacSampleFormat of the input */
    int32_t isPlanar;     /**< one plane a channel, instead of interleaved samples */
    int32_t bitRate;      /**< bit/s of a constant or mean bit rate; 0: 64000 for each channel, or
                             what suits a lower sampling rate */
    int32_t rateMode;     /**< ZetacRateMode */
    float quality;        /**< 0 (best) to 9 of a variable bit rate */
    int32_t stereoMode;   /**< ZetacStereoMode */
    int32_t hasCrc;       /**< frames are protected by an error check */
    int32_t lacksInfo;    /**< no information frame is put first */
    int32_t lowpass;      /**< Hz: what lies above is left out; 0: suits the bit rate. This version
                             refuses any other with ZETAC_ERROR_UNSUPPORTED */
} ZetacEncoderOptions;

#define ZETAC_ENCODER_OPTIONS_INIT ZETAC_INIT_(ZetacEncoderOptions) /**< empty, with its size */

/** A piece of a coded stream. It belongs to the encoder until the next call. */
typedef struct ZetacPacket {
    size_t size;         /**< of this structure */
    const uint8_t* data; /**< the encoder's; valid until its next call */
    size_t bytes;        /**< of data */
    int32_t samples;     /**< that it decodes to; 0 for the information frame */
    uint64_t position;   /**< of its first sample among all that a decoder gives */
    int32_t isInfo;      /**< the information frame: to be replaced by zetacEncoderGetInfoFrame's at
                            the end, where the output can be rewound */
} ZetacPacket;

#define ZETAC_PACKET_INIT ZETAC_INIT_(ZetacPacket) /**< empty, with its size */

/** What containers and players must know of a stream. */
typedef struct ZetacEncoderInfo {
    size_t size;           /**< of this structure */
    int32_t sampleRate;    /**< Hz */
    int32_t channels;      /**< 1 or 2 */
    int32_t frameSamples;  /**< of a packet */
    int32_t bitRate;       /**< bit/s: constant or, so far, mean */
    int32_t lowpass;       /**< Hz */
    uint32_t delay;        /**< samples in front of the sound when all packets are decoded, with
                              those of a decoder's filter banks */
    uint32_t padding;      /**< samples behind it; right at the end */
    uint64_t samples;      /**< taken in */
    uint64_t packets;      /**< given out, the information frame not counted */
    uint64_t bytes;        /**< of these packets */
    size_t infoFrameBytes; /**< of the information frame */
} ZetacEncoderInfo;

#define ZETAC_ENCODER_INFO_INIT ZETAC_INIT_(ZetacEncoderInfo) /**< empty, with its size */

/** An encoder of one stream. */
typedef struct ZetacEncoder ZetacEncoder;

/** Makes an encoder.
 *  @param encoder  out: free it with zetacEncoderFree; null on failure
 *  @param options  null: the defaults
 *  @return ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_UNSUPPORTED (no frames have such rates),
 *          ZETAC_ERROR_MEMORY */
ZETAC_CODEC_API ZetacStatus zetacEncoderCreate(ZetacEncoder** encoder,
                                               const ZetacEncoderOptions* options);

/** @param encoder  null: nothing happens */
ZETAC_CODEC_API void zetacEncoderFree(ZetacEncoder* encoder);

/** Takes samples. They are coded with 16 bits: what is wider is rounded to the nearest value, the
 * even one of two, and limited to full scale; a float that is no number is silence.
 *  @param planes   one plane a channel, or all samples interleaved in planes[0]
 *  @param samples  of each channel
 *  @param taken    out: of these; fewer when packets wait to be taken out first
 *  @return ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_STATE (after zetacEncoderFinish) */
ZETAC_CODEC_API ZetacStatus zetacEncoderFeed(ZetacEncoder* encoder, const void* const* planes,
                                             size_t samples, size_t* taken);

/** No further sound will come. What is left comes out of zetacEncoderTake.
 *  @return ZETAC_ERROR_ARGUMENT */
ZETAC_CODEC_API ZetacStatus zetacEncoderFinish(ZetacEncoder* encoder);

/** Gives the next packet.
 *  @param packet  in: its size; out: the rest
 *  @return ZETAC_OK, ZETAC_NEED_INPUT, ZETAC_END; ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_MEMORY */
ZETAC_CODEC_API ZetacStatus zetacEncoderTake(ZetacEncoder* encoder, ZetacPacket* packet);

/** @param info  in: its size; out: the rest */
ZETAC_CODEC_API ZetacStatus zetacEncoderGetInfo(const ZetacEncoder* encoder,
                                                ZetacEncoderInfo* info);

/** The information frame as it is when the stream ends here: length, gaps, seek points.
 *  @param frame     out: the bytes
 *  @param capacity  of frame; at least infoFrameBytes of ZetacEncoderInfo
 *  @return ZETAC_ERROR_ARGUMENT, ZETAC_ERROR_STATE (the stream has no such frame) */
ZETAC_CODEC_API ZetacStatus zetacEncoderGetInfoFrame(const ZetacEncoder* encoder, void* frame,
                                                     size_t capacity);

#ifdef __cplusplus
}
#endif

#endif /* ZETAC_CODEC_H */
