/** Zetac: audio-coding primitives behind a plain C interface.
 * @file
 * SPDX-License-Identifier: BSD-2-Clause
 * Copyright (c) 2026, The Zetac authors
 *
 * This header is the whole public interface of libzetacr5.so.5.2. It compiles as C99 and as C++.
 *
 * Conventions shared by every function
 * ------------------------------------
 * - A function checks its arguments in the order that its comment lists, does one piece of work and
 *   returns a ZetStatus: 0 is success, negative values are errors, positive ones are warnings (the
 *   work is done). A failed argument check changes nothing.
 * - Unless a comment says otherwise, null pointers are tested first (zetStsNullPointer), for a bit
 *   stream including the byte pointer behind the first argument; then the bit offset; then lengths
 *   and the other scalars in argument order.
 * - There is no hidden state: all tables are constant, and what a stage must remember lives in
 *   records and buffers of the caller. Any number of threads may call any functions at once as long
 *   as no two calls share a record, a state or an output buffer.
 * - No function allocates, unless its comment says so.
 *
 * Names are zets + operation + codec tag + data types + suffixes: _32s16s reads Zet32s and writes
 * Zet16s, _I works in place, _Sfs scales the result by 2^-scaleFactor with rounding and saturation,
 * _Sf takes a scale factor.
 *
 * Fixed point: "Qn" is an integer with n fractional bits, its real value is the integer / 2^n.
 * Products of 32-bit values are taken at 64 bits and shifted arithmetically (towards minus
 * infinity).
 *
 * Bit streams: a position is a byte pointer, passed by address, and a bit offset 0..7 counted from
 * the most significant bit of that byte, passed by address; both advance past what is read. Bits
 * are read most significant first. Whatever a reader returns, it has looked at no more than
 * ZETAC_BIT_STREAM_SLACK bytes beyond the last bit that it consumed. Readers do not know where a
 * buffer ends: give it ZETAC_AAC_CHANNEL_BYTES_MAX + ZETAC_BIT_STREAM_SLACK readable bytes behind
 * its data (an ADIF header needs ZETAC_AAC_ADIF_BYTES_MAX + ZETAC_BIT_STREAM_SLACK), compare the
 * position with the end of the data after each call, and any stream is safe to read.
 */
#ifndef ZETAC_H
#define ZETAC_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define ZETAC_API __attribute__((visibility("default"))) /**< marks what is exported */
#else
#define ZETAC_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------------------------------
 * Element types
 * --------------------------------------------------------------------------------------------- */

typedef uint8_t Zet8u;  /**< byte of a bit stream, flag, raw memory */
typedef int8_t Zet8s;   /**< small signed value, such as a TNS coefficient */
typedef int16_t Zet16s; /**< PCM sample, scalefactor */
typedef int32_t Zet32s; /**< fixed-point spectrum, field of a record */
typedef float Zet32f;   /**< IEEE 754 single */

/** Complex 16-bit integer. */
typedef struct Zet16sc {
    Zet16s re; /**< real part */
    Zet16s im; /**< imaginary part */
} Zet16sc;

/** Complex 32-bit integer. */
typedef struct Zet32sc {
    Zet32s re; /**< real part */
    Zet32s im; /**< imaginary part */
} Zet32sc;

/** Complex single. */
typedef struct Zet32fc {
    Zet32f re; /**< real part */
    Zet32f im; /**< imaginary part */
} Zet32fc;

/* ------------------------------------------------------------------------------------------------
 * Statuses
 * --------------------------------------------------------------------------------------------- */

/** What every function returns: 0 success, negative an error, positive a warning (work done). */
typedef enum ZetStatus {
    zetStsMisaligned = 2,            /**< done; a data buffer was not 16-byte aligned */
    zetStsOk = 0,                    /**< success */
    zetStsOutOfRange = -2,           /**< a value from the stream exceeds the table it indexes */
    zetStsBadArg = -5,               /**< an argument outside its permitted set */
    zetStsBadSize = -6,              /**< a length or count below 1, or a start index below 0 */
    zetStsNullPointer = -8,          /**< a required pointer is null */
    zetStsNoMemory = -9,             /**< the allocation hook returned null */
    zetStsFdpGroupLengthErr = -14,   /**< group length of the predictor reset below 1 */
    zetStsFftOrderErr = -15,         /**< FFT order outside 0..30 */
    zetStsFftFlagErr = -16,          /**< FFT normalisation flag not 1, 2, 4 or 8 */
    zetStsSpecMismatch = -17,        /**< a spec structure of another family, or freed */
    zetStsFirLengthErr = -26,        /**< filter or block length below 1, or bad delay index */
    zetStsNegativeShift = -32,       /**< a shift count below 0 */
    zetStsBadChannelCount = -53,     /**< number of channels below 1 */
    zetStsBadEscapeCode = -127,      /**< VLC escape sequence of more than 12 bits */
    zetStsAacPcmStepErr = -134,      /**< PCM output step outside 1..2 */
    zetStsAacWinShapeErr = -135,     /**< window shape outside 0..1 */
    zetStsAacAotErr = -136,          /**< audio object type outside 0..16 */
    zetStsAacScalableFlagErr = -137, /**< scalable-layer flag outside 0..1 */
    zetStsAacDiffCtrlFlagErr = -138, /**< diff-control flag outside 0..1 */
    zetStsAacStereoLayerErr = -139,  /**< stereo-layer flag outside 0..1 */
    zetStsAacLayerFlagErr = -140,    /**< layer flag or TNS flag outside 0..1 */
    zetStsAacChanNumErr = -141,      /**< channel count outside 1..2 */
    zetStsAacMsMaskErr = -142,       /**< ms_mask_present outside 1..2 */
    zetStsAacCommonWinErr = -143,    /**< common-window flag outside 0..1 */
    zetStsAacWinSeqErr = -144,       /**< window sequence outside 0..3 */
    zetStsAacWinGrpErr = -145,       /**< number of window groups outside its range */
    zetStsAacWinLenErr = -146,       /**< window length neither 128 nor 1024 */
    zetStsAacSmpRateIdxErr = -147,   /**< sampling_frequency_index outside the function's range */
    zetStsAacBitOffsetErr = -149,    /**< bit offset outside 0..7 */
    zetStsAacObjTypeErr = -151,      /**< object type other than 1 (low complexity) */
    zetStsAacTnsCoefCompressErr = -152, /**< coef_compress neither 0 nor 1 */
    zetStsAacTnsDirectionErr = -153,    /**< filter direction not allowed */
    zetStsAacTnsCoefResErr = -154,      /**< coefficient resolution neither 3 nor 4 bits */
    zetStsAacTnsOrderErr = -155,        /**< filter order negative or above 12 (long), 7 (short) */
    zetStsAacTnsLengthErr = -156,       /**< filter length negative or above the band count */
    zetStsAacTnsNumFiltErr = -157, /**< filters of a window negative or above 3 (long), 1 (short) */
    zetStsAacSectDataErr = -158,   /**< sections of a group do not end at max_sfb */
    zetStsAacGainControlErr = -159,   /**< gain_control_data_present is 1 (not supported) */
    zetStsAacPulseStartSfbErr = -160, /**< pulse data out of range or in short windows */
    zetStsAacPredSfbMaxErr = -161,    /**< prediction band limit outside its range */
    zetStsAacMaxSfbErr = -162,        /**< max_sfb outside 0..51 or above the band count */
    zetStsAacCoefValErr = -163,   /**< escape prefix too long, or a quantised value above 8191 */
    zetStsAacSfValErr = -164,     /**< decoded scalefactor outside 0..255 */
    zetStsAacCodeBookErr = -166,  /**< codebook 12, or one not allowed where it stands */
    zetStsAacPrgNumErr = -167,    /**< program config element limit outside 1..16 or exceeded */
    zetStsBadSideInfo = -170,     /**< MP3 side-information field outside its range */
    zetStsBadFrameHeader = -171,  /**< MP3 frame-header field outside its range */
    zetStsBadBitOffset = -193,    /**< VLC bit offset outside 0..7 */
    zetStsAacLayerNotDone = -9999 /**< main header decoded with the layer flag set */
} ZetStatus;

/* ------------------------------------------------------------------------------------------------
 * Version
 * --------------------------------------------------------------------------------------------- */

/** The version record of the library. Constant; never freed or changed by the caller. */
typedef struct ZetLibraryVersion {
    Zet32s major;          /**< 5 */
    Zet32s minor;          /**< 2 */
    Zet32s majorBuild;     /**< 108 */
    Zet32s build;          /**< 366 */
    char targetCpu[4];     /**< "r5" and two zero bytes */
    const char* Name;      /**< "libzetacr5.so.5.2" */
    const char* Version;   /**< "5.2" */
    const char* BuildDate; /**< "Jul 11 2007" */
} ZetLibraryVersion;

/** Returns the library's version record. Never fails. */
ZETAC_API const ZetLibraryVersion* zetacGetLibVersion(void);

/* ------------------------------------------------------------------------------------------------
 * Memory
 * --------------------------------------------------------------------------------------------- */

/** Allocation hooks, initially the system's malloc, calloc, realloc and free. Whatever the library
 *  allocates comes from i_malloc and goes back through i_free. Point them at another allocator, if
 *  at all, before the first call of any other function. */
extern ZETAC_API void* (*i_malloc)(size_t size);
extern ZETAC_API void* (*i_calloc)(size_t count, size_t size); /**< see i_malloc */
extern ZETAC_API void* (*i_realloc)(void* block, size_t size); /**< see i_malloc */
extern ZETAC_API void (*i_free)(void* block);                  /**< see i_malloc */

/** Allocates len bytes on a 32-byte boundary: asks i_malloc for len + 36 bytes and returns the
 *  first multiple of 32 that lies at least 4 bytes into the block. The pointer-sized word below it
 *  keeps the address that the hook returned, if that was aligned for a pointer, and zetsFree reads
 *  nothing else. Release with zetsFree only.
 *  @return the block, or null if len < 1 (the hook is then not called) or the hook fails */
ZETAC_API Zet8u* zetsMalloc_8u(int len);

/** Like zetsMalloc_8u for len elements of Zet32f; asks i_malloc for 4 * len + 36 bytes. The product
 *  is not tested for overflow. */
ZETAC_API Zet32f* zetsMalloc_32f(int len);

/** Releases a block of zetsMalloc_8u or zetsMalloc_32f through i_free; null is ignored. */
ZETAC_API void zetsFree(void* ptr);

/* ------------------------------------------------------------------------------------------------
 * Vector utilities
 *
 * Lengths count elements. Every function first tests its array pointers (zetStsNullPointer), then
 * the length (zetStsBadSize below 1), then whatever its comment adds. Source and destination may
 * not overlap unless the function works in place or its comment allows it. The path through memory
 * (ordinary, 16-byte vector, prefetched, non-temporal) is chosen by size and never changes a
 * result.
 * --------------------------------------------------------------------------------------------- */

ZETAC_API ZetStatus zetsZero_8u(Zet8u* pDst, int len);   /**< sets all bits of len elements to 0 */
ZETAC_API ZetStatus zetsZero_16s(Zet16s* pDst, int len); /**< see zetsZero_8u */
ZETAC_API ZetStatus zetsZero_32s(Zet32s* pDst, int len); /**< see zetsZero_8u */
ZETAC_API ZetStatus zetsZero_32f(Zet32f* pDst, int len); /**< see zetsZero_8u */
ZETAC_API ZetStatus zetsZero_16sc(Zet16sc* pDst, int len); /**< see zetsZero_8u */
ZETAC_API ZetStatus zetsZero_32sc(Zet32sc* pDst, int len); /**< see zetsZero_8u */
ZETAC_API ZetStatus zetsZero_32fc(Zet32fc* pDst, int len); /**< see zetsZero_8u */

/** Sets every element to value. */
ZETAC_API ZetStatus zetsSet_32s(Zet32s value, Zet32s* pDst, int len);

ZETAC_API ZetStatus zetsCopy_8u(const Zet8u* pSrc, Zet8u* pDst, int len);    /**< copies */
ZETAC_API ZetStatus zetsCopy_32s(const Zet32s* pSrc, Zet32s* pDst, int len); /**< copies */
ZETAC_API ZetStatus zetsCopy_32f(const Zet32f* pSrc, Zet32f* pDst, int len); /**< copies */

/** Copies between regions that may overlap. */
ZETAC_API ZetStatus zetsMove_8u(const Zet8u* pSrc, Zet8u* pDst, int len);

/** pSrcDst[i] = saturate32((pSrcDst[i] + pSrc[i]) * 2^-scaleFactor), the sum taken at 64 bits.
 *  A positive scale factor rounds to nearest, ties to even; above 32 the result is 0. A negative
 * one shifts left with saturation; below -30 every non-zero sum saturates. */
ZETAC_API ZetStatus zetsAdd_32s_ISfs(const Zet32s* pSrc, Zet32s* pSrcDst, int len, int scaleFactor);

/** Arithmetic right shift of every element; a shift above 31 acts as 31. After the common checks a
 *  negative shift gives zetStsNegativeShift. */
ZETAC_API ZetStatus zetsRShiftC_32s_I(int shift, Zet32s* pSrcDst, int len);

/** Multiplies by a constant. A constant that is neither below nor above 1 (1 or NaN) leaves the
 * data untouched; a constant of 0 sets them to 0, whatever they were. */
ZETAC_API ZetStatus zetsMulC_32f_I(Zet32f value, Zet32f* pSrcDst, int len);

/** Complex product element by element. pDst may be pSrc1 or pSrc2. */
ZETAC_API ZetStatus zetsMul_32fc(const Zet32fc* pSrc1, const Zet32fc* pSrc2, Zet32fc* pDst,
                                 int len);

/** pSrcDst[i] = pSrcDst[i] * pSrc[i], complex. */
ZETAC_API ZetStatus zetsMul_32fc_I(const Zet32fc* pSrc, Zet32fc* pSrcDst, int len);

/** Exact conversion to single. */
ZETAC_API ZetStatus zetsConvert_16s32f(const Zet16s* pSrc, Zet32f* pDst, int len);

/** pDst[i] = saturate16(pSrc[i] * 2^-scaleFactor). Positive scale factors (limited to 31) round to
 *  nearest, ties to even; negative ones shift left with saturation. */
ZETAC_API ZetStatus zetsConvert_32s16s_Sfs(const Zet32s* pSrc, Zet16s* pDst, int len,
                                           int scaleFactor);

/** How a conversion from single rounds. */
typedef enum ZetRoundMode {
    zetRndZero = 0,     /**< towards zero */
    zetRndNear = 1,     /**< to nearest, ties to even */
    zetRndFinancial = 2 /**< to nearest, ties away from zero */
} ZetRoundMode;

/** pDst[i] = saturate16(round(pSrc[i] * 2^-scaleFactor)); NaN becomes 0. After the common checks a
 *  mode outside ZetRoundMode gives zetStsBadArg.
 *  @param roundMode  ZetRoundMode */
ZETAC_API ZetStatus zetsConvert_32f16s_Sfs(const Zet32f* pSrc, Zet16s* pDst, int len, int roundMode,
                                           int scaleFactor);

/** pDst[i] = pMantissa[i] * 2^(-15 - pExponent[i]). The factor is the single whose exponent field
 * is 112 - pExponent[i], so exponents from -142 to 111 are meaningful. */
ZETAC_API ZetStatus zetsMakeFloat_16s32f(const Zet16s* pMantissa, const Zet16s* pExponent, int len,
                                         Zet32f* pDst);

/** Turns scale-factor values into gains: pDst[i] = 2^(d/4) with d = pSrc[i] - offset, saturated to
 *  16 bits and then limited to -504..508, so that every gain is a normal single. */
ZETAC_API ZetStatus zetsCalcSF_16s32f(const Zet16s* pSrc, int offset, Zet32f* pDst, int len);

/** Multiplies band b, the elements pBandOffset[b] .. pBandOffset[b+1]-1, by pFactor[b].
 *  @param pBandOffset nBands + 1 ascending offsets
 *  @param nBands number of bands; the common checks hold for it instead of a length */
ZETAC_API ZetStatus zetsScale_32f_I(Zet32f* pSrcDst, const Zet32f* pFactor, const int* pBandOffset,
                                    int nBands);

/** Smallest and largest element. */
ZETAC_API ZetStatus zetsMinMax_16s(const Zet16s* pSrc, int len, Zet16s* pMin, Zet16s* pMax);

/** Trade of speed against accuracy. */
typedef enum ZetHintAlgorithm {
    zetAlgHintNone = 0,    /**< the library chooses */
    zetAlgHintFast = 1,    /**< fast */
    zetAlgHintAccurate = 2 /**< accurate */
} ZetHintAlgorithm;

/** Standard deviation with divisor len - 1. After the common checks a len of 1 gives
 *  zetStsBadSize. zetAlgHintFast sums in single precision; any other hint in extended precision, as
 *  sqrt((len * sum(x^2) - sum(x)^2) / (len * (len - 1))). Where rounding makes that difference
 *  negative the result is 0.
 *  @param hint  ZetHintAlgorithm */
ZETAC_API ZetStatus zetsStdDev_32f(const Zet32f* pSrc, int len, Zet32f* pStdDev, int hint);

/** Splits complex values into real and imaginary parts. */
ZETAC_API ZetStatus zetsCplxToReal_32fc(const Zet32fc* pSrc, Zet32f* pDstRe, Zet32f* pDstIm,
                                        int len);

/** Merges real and imaginary parts. Either source may be null and then counts as zeros. */
ZETAC_API ZetStatus zetsRealToCplx_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32fc* pDst,
                                       int len);

/** Interleaves channels: pDst[i * numChannels + c] = pSrc[c][i], i < len.
 *  Checks: pSrc, pDst null: zetStsNullPointer; numChannels below 1: zetStsBadChannelCount; len
 * below 1: zetStsBadSize; a channel pointer null: zetStsNullPointer. */
ZETAC_API ZetStatus zetsInterleave_16s(const Zet16s** pSrc, int numChannels, int len, Zet16s* pDst);
/** See zetsInterleave_16s. */
ZETAC_API ZetStatus zetsInterleave_32f(const Zet32f** pSrc, int numChannels, int len, Zet32f* pDst);

/** The inverse of zetsInterleave_16s, with the same checks in the same order. */
ZETAC_API ZetStatus zetsDeinterleave_16s(const Zet16s* pSrc, int numChannels, int len,
                                         Zet16s** pDst);
/** See zetsDeinterleave_16s. */
ZETAC_API ZetStatus zetsDeinterleave_32f(const Zet32f* pSrc, int numChannels, int len,
                                         Zet32f** pDst);

/* ------------------------------------------------------------------------------------------------
 * Transforms: the life of a spec structure
 *
 * What a transform needs to know stands in a spec structure. A caller either
 *   asks ...GetSize for the bytes of the structure, of the memory that its initialisation borrows
 *   and of the work buffer, provides them at any alignment, and calls ...Init, which returns the
 *   structure in *ppSpec, somewhere inside pMemSpec; or
 *   calls ...InitAlloc, which allocates the structure (zetStsNoMemory if that fails; *ppSpec is
 *   then untouched).
 * ...Free invalidates the structure, and releases it if it came from ...InitAlloc.
 *
 * A transform call only reads the structure: threads may share it, each with a work buffer of its
 * own. pBuffer holds as many bytes as ...GetBufSize tells, at any alignment. It may be null: the
 * call then allocates the buffer, if that size is not 0, and releases it before it returns;
 * zetStsNoMemory if the allocation fails.
 *
 * Checks of every transform call: null pointers (all but pBuffer): zetStsNullPointer; a structure
 * of another family, or freed: zetStsSpecMismatch. Free and GetBufSize check the same.
 * --------------------------------------------------------------------------------------------- */

/* ------------------------------------------------------------------------------------------------
 * Transforms: FFT
 *
 * N = 2^order points. Forward: X[k] = f * sum of x[n] e^(-2 pi i n k / N); inverse: x[n] = g * sum
 * of X[k] e^(+2 pi i n k / N). The flag fixes f and g.
 *
 * Results are the same bits on every processor. Relative error (RMS, single precision) is below
 * 1e-7 * log2 N. Out of place, source and destination may not overlap.
 * --------------------------------------------------------------------------------------------- */

/** Normalisation of an FFT and its inverse. */
typedef enum ZetFFTFlag {
    zetFftDivFwdByN = 1,  /**< f = 1/N, g = 1 */
    zetFftDivInvByN = 2,  /**< f = 1, g = 1/N */
    zetFftDivBySqrtN = 4, /**< f = g = 1/sqrt(N) */
    zetFftNoDiv = 8       /**< f = g = 1 */
} ZetFFTFlag;

typedef struct ZetsFFTSpec_C_32fc ZetsFFTSpec_C_32fc; /**< FFT of Zet32fc */
typedef struct ZetsFFTSpec_C_32f ZetsFFTSpec_C_32f;   /**< FFT of parts in separate arrays */
typedef struct ZetsFFTSpec_C_16sc ZetsFFTSpec_C_16sc; /**< FFT of Zet16sc */
typedef struct ZetsFFTSpec_R_32f ZetsFFTSpec_R_32f;   /**< FFT of real values */

/** Sizes in bytes for an FFT of 2^order points of Zet32fc.
 *  @param order     0..30
 *  @param flag      ZetFFTFlag
 *  @param hint      ZetHintAlgorithm; every value is accepted and gives the same results
 *  @param pSizeInit out: memory that Init borrows; 0, since Init borrows none
 *  Checks: null pointers: zetStsNullPointer; order: zetStsFftOrderErr; flag: zetStsFftFlagErr;
 *  a size above INT_MAX (order 28 and up): zetStsNoMemory. */
ZETAC_API ZetStatus zetsFFTGetSize_C_32fc(int order, int flag, int hint, int* pSpecSize,
                                          int* pSizeInit, int* pBufSize);
/** Lays the structure out in pMemSpec. pMemInit is not used and may be null. Checks as for
 *  zetsFFTGetSize_C_32fc. */
ZETAC_API ZetStatus zetsFFTInit_C_32fc(ZetsFFTSpec_C_32fc** ppSpec, int order, int flag, int hint,
                                       Zet8u* pMemSpec, Zet8u* pMemInit);
/** Allocates and lays out the structure. Checks as for zetsFFTGetSize_C_32fc. */
ZETAC_API ZetStatus zetsFFTInitAlloc_C_32fc(ZetsFFTSpec_C_32fc** ppSpec, int order, int flag,
                                            int hint);
/** Invalidates the structure; releases it if it was allocated. */
ZETAC_API ZetStatus zetsFFTFree_C_32fc(ZetsFFTSpec_C_32fc* pSpec);
/** Size of the work buffer in bytes. */
ZETAC_API ZetStatus zetsFFTGetBufSize_C_32fc(const ZetsFFTSpec_C_32fc* pSpec, int* pSize);

/** Forward FFT, N values to N values. */
ZETAC_API ZetStatus zetsFFTFwd_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst,
                                         const ZetsFFTSpec_C_32fc* pSpec, Zet8u* pBuffer);
/** Inverse FFT, N values to N values. */
ZETAC_API ZetStatus zetsFFTInv_CToC_32fc(const Zet32fc* pSrc, Zet32fc* pDst,
                                         const ZetsFFTSpec_C_32fc* pSpec, Zet8u* pBuffer);
/** Forward FFT in place. */
ZETAC_API ZetStatus zetsFFTFwd_CToC_32fc_I(Zet32fc* pSrcDst, const ZetsFFTSpec_C_32fc* pSpec,
                                           Zet8u* pBuffer);
/** Inverse FFT in place. */
ZETAC_API ZetStatus zetsFFTInv_CToC_32fc_I(Zet32fc* pSrcDst, const ZetsFFTSpec_C_32fc* pSpec,
                                           Zet8u* pBuffer);

/** See zetsFFTGetSize_C_32fc; the FFT of real and imaginary parts in separate arrays
 *  (zetStsNoMemory from order 27 on). */
ZETAC_API ZetStatus zetsFFTGetSize_C_32f(int order, int flag, int hint, int* pSpecSize,
                                         int* pSizeInit, int* pBufSize);
/** See zetsFFTInit_C_32fc. */
ZETAC_API ZetStatus zetsFFTInit_C_32f(ZetsFFTSpec_C_32f** ppSpec, int order, int flag, int hint,
                                      Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsFFTInitAlloc_C_32fc. */
ZETAC_API ZetStatus zetsFFTInitAlloc_C_32f(ZetsFFTSpec_C_32f** ppSpec, int order, int flag,
                                           int hint);
/** See zetsFFTFree_C_32fc. */
ZETAC_API ZetStatus zetsFFTFree_C_32f(ZetsFFTSpec_C_32f* pSpec);
/** See zetsFFTGetBufSize_C_32fc. */
ZETAC_API ZetStatus zetsFFTGetBufSize_C_32f(const ZetsFFTSpec_C_32f* pSpec, int* pSize);

/** Forward FFT; the four arrays hold N values each. A destination may be the source of the same
 *  part. */
ZETAC_API ZetStatus zetsFFTFwd_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe,
                                        Zet32f* pDstIm, const ZetsFFTSpec_C_32f* pSpec,
                                        Zet8u* pBuffer);
/** Inverse FFT; arrays as for zetsFFTFwd_CToC_32f. */
ZETAC_API ZetStatus zetsFFTInv_CToC_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm, Zet32f* pDstRe,
                                        Zet32f* pDstIm, const ZetsFFTSpec_C_32f* pSpec,
                                        Zet8u* pBuffer);
/** Forward FFT in place. */
ZETAC_API ZetStatus zetsFFTFwd_CToC_32f_I(Zet32f* pSrcDstRe, Zet32f* pSrcDstIm,
                                          const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer);
/** Inverse FFT in place. */
ZETAC_API ZetStatus zetsFFTInv_CToC_32f_I(Zet32f* pSrcDstRe, Zet32f* pSrcDstIm,
                                          const ZetsFFTSpec_C_32f* pSpec, Zet8u* pBuffer);

/** See zetsFFTGetSize_C_32fc; the FFT of Zet16sc (zetStsNoMemory from order 27 on). */
ZETAC_API ZetStatus zetsFFTGetSize_C_16sc(int order, int flag, int hint, int* pSpecSize,
                                          int* pSizeInit, int* pBufSize);
/** See zetsFFTInit_C_32fc. */
ZETAC_API ZetStatus zetsFFTInit_C_16sc(ZetsFFTSpec_C_16sc** ppSpec, int order, int flag, int hint,
                                       Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsFFTInitAlloc_C_32fc. */
ZETAC_API ZetStatus zetsFFTInitAlloc_C_16sc(ZetsFFTSpec_C_16sc** ppSpec, int order, int flag,
                                            int hint);
/** See zetsFFTFree_C_32fc. */
ZETAC_API ZetStatus zetsFFTFree_C_16sc(ZetsFFTSpec_C_16sc* pSpec);
/** See zetsFFTGetBufSize_C_32fc. */
ZETAC_API ZetStatus zetsFFTGetBufSize_C_16sc(const ZetsFFTSpec_C_16sc* pSpec, int* pSize);

/** Forward FFT, the normalised result times 2^-scaleFactor, rounded to nearest and saturated.
 *  Intermediate values are singles: nothing overflows, and what the arithmetic adds to the rounding
 *  is below 1e-7 * log2 N of the largest result before saturation.
 *  @param scaleFactor any value; what is below -64 or above 96 acts as that */
ZETAC_API ZetStatus zetsFFTFwd_CToC_16sc_Sfs(const Zet16sc* pSrc, Zet16sc* pDst,
                                             const ZetsFFTSpec_C_16sc* pSpec, int scaleFactor,
                                             Zet8u* pBuffer);
/** Inverse FFT; otherwise as zetsFFTFwd_CToC_16sc_Sfs. */
ZETAC_API ZetStatus zetsFFTInv_CToC_16sc_Sfs(const Zet16sc* pSrc, Zet16sc* pDst,
                                             const ZetsFFTSpec_C_16sc* pSpec, int scaleFactor,
                                             Zet8u* pBuffer);
/** Forward FFT in place; otherwise as zetsFFTFwd_CToC_16sc_Sfs. */
ZETAC_API ZetStatus zetsFFTFwd_CToC_16sc_ISfs(Zet16sc* pSrcDst, const ZetsFFTSpec_C_16sc* pSpec,
                                              int scaleFactor, Zet8u* pBuffer);
/** Inverse FFT in place; otherwise as zetsFFTFwd_CToC_16sc_Sfs. */
ZETAC_API ZetStatus zetsFFTInv_CToC_16sc_ISfs(Zet16sc* pSrcDst, const ZetsFFTSpec_C_16sc* pSpec,
                                              int scaleFactor, Zet8u* pBuffer);

/** See zetsFFTGetSize_C_32fc; the FFT of N real values (zetStsNoMemory from order 29 on). The
 *  spectrum is conjugate-symmetric and is stored by its lower half, re and im of X[k] one after the
 * other, in one of three formats: CCS   re X[0], 0, re X[1], im X[1], ..., re X[N/2], 0: N + 2
 * values (2 values for N = 1); Pack  re X[0], re X[1], im X[1], ..., re X[N/2]: N values; Perm  re
 * X[0], re X[N/2], re X[1], im X[1], ...: N values. The inverses take imaginary parts of X[0] and
 * X[N/2] for 0 whatever CCS holds there. */
ZETAC_API ZetStatus zetsFFTGetSize_R_32f(int order, int flag, int hint, int* pSpecSize,
                                         int* pSizeInit, int* pBufSize);
/** See zetsFFTInit_C_32fc. */
ZETAC_API ZetStatus zetsFFTInit_R_32f(ZetsFFTSpec_R_32f** ppSpec, int order, int flag, int hint,
                                      Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsFFTInitAlloc_C_32fc. */
ZETAC_API ZetStatus zetsFFTInitAlloc_R_32f(ZetsFFTSpec_R_32f** ppSpec, int order, int flag,
                                           int hint);
/** See zetsFFTFree_C_32fc. */
ZETAC_API ZetStatus zetsFFTFree_R_32f(ZetsFFTSpec_R_32f* pSpec);
/** See zetsFFTGetBufSize_C_32fc. */
ZETAC_API ZetStatus zetsFFTGetBufSize_R_32f(const ZetsFFTSpec_R_32f* pSpec, int* pSize);

/** Forward FFT, N real values to CCS. */
ZETAC_API ZetStatus zetsFFTFwd_RToCCS_32f(const Zet32f* pSrc, Zet32f* pDst,
                                          const ZetsFFTSpec_R_32f* pSpec, Zet8u* pBuffer);
/** Inverse FFT, CCS to N real values. */
ZETAC_API ZetStatus zetsFFTInv_CCSToR_32f(const Zet32f* pSrc, Zet32f* pDst,
                                          const ZetsFFTSpec_R_32f* pSpec, Zet8u* pBuffer);
/** Forward FFT in place, in an array of N + 2 values. */
ZETAC_API ZetStatus zetsFFTFwd_RToCCS_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                            Zet8u* pBuffer);
/** Inverse FFT in place. */
ZETAC_API ZetStatus zetsFFTInv_CCSToR_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                            Zet8u* pBuffer);

/** Forward FFT, N real values to Pack. */
ZETAC_API ZetStatus zetsFFTFwd_RToPack_32f(const Zet32f* pSrc, Zet32f* pDst,
                                           const ZetsFFTSpec_R_32f* pSpec, Zet8u* pBuffer);
/** Inverse FFT, Pack to N real values. */
ZETAC_API ZetStatus zetsFFTInv_PackToR_32f(const Zet32f* pSrc, Zet32f* pDst,
                                           const ZetsFFTSpec_R_32f* pSpec, Zet8u* pBuffer);
/** Forward FFT in place. */
ZETAC_API ZetStatus zetsFFTFwd_RToPack_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                             Zet8u* pBuffer);
/** Inverse FFT in place. */
ZETAC_API ZetStatus zetsFFTInv_PackToR_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                             Zet8u* pBuffer);

/** Forward FFT, N real values to Perm. */
ZETAC_API ZetStatus zetsFFTFwd_RToPerm_32f(const Zet32f* pSrc, Zet32f* pDst,
                                           const ZetsFFTSpec_R_32f* pSpec, Zet8u* pBuffer);
/** Inverse FFT, Perm to N real values. */
ZETAC_API ZetStatus zetsFFTInv_PermToR_32f(const Zet32f* pSrc, Zet32f* pDst,
                                           const ZetsFFTSpec_R_32f* pSpec, Zet8u* pBuffer);
/** Forward FFT in place. */
ZETAC_API ZetStatus zetsFFTFwd_RToPerm_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                             Zet8u* pBuffer);
/** Inverse FFT in place. */
ZETAC_API ZetStatus zetsFFTInv_PermToR_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                             Zet8u* pBuffer);

/* ------------------------------------------------------------------------------------------------
 * Transforms: DCT
 *
 * Orthonormal, of any length N >= 1. Forward (DCT-II): y[k] = a(k) * sum over n of x[n]
 * cos(pi (2n + 1) k / 2N), inverse (DCT-III): x[n] = sum over k of a(k) y[k] cos(pi (2n + 1) k /
 * 2N), with a(0) = sqrt(1/N) and a(k) = sqrt(2/N) for k > 0. Fast where N is a power of two.
 * --------------------------------------------------------------------------------------------- */

typedef struct ZetsDCTFwdSpec_32f ZetsDCTFwdSpec_32f; /**< forward DCT */
typedef struct ZetsDCTInvSpec_32f ZetsDCTInvSpec_32f; /**< inverse DCT */

/** Sizes in bytes for a forward DCT of len values.
 *  @param hint      ZetHintAlgorithm; every value is accepted and gives the same results
 *  @param pSizeInit out: memory that Init borrows; 0 where len is a power of two
 *  Checks: null pointers: zetStsNullPointer; len below 1: zetStsBadSize; a size above INT_MAX:
 *  zetStsNoMemory. */
ZETAC_API ZetStatus zetsDCTFwdGetSize_32f(int len, int hint, int* pSpecSize, int* pSizeInit,
                                          int* pBufSize);
/** Lays the structure out in pMemSpec. pMemInit may be null if its size is 0. Checks: as for
 *  zetsDCTFwdGetSize_32f; then pMemInit null though needed: zetStsNullPointer. */
ZETAC_API ZetStatus zetsDCTFwdInit_32f(ZetsDCTFwdSpec_32f** ppSpec, int len, int hint,
                                       Zet8u* pMemSpec, Zet8u* pMemInit);
/** Allocates and lays out the structure, with what memory Init needs allocated for the call. Checks
 *  as for zetsDCTFwdGetSize_32f. */
ZETAC_API ZetStatus zetsDCTFwdInitAlloc_32f(ZetsDCTFwdSpec_32f** ppSpec, int len, int hint);
/** Invalidates the structure; releases it if it was allocated. */
ZETAC_API ZetStatus zetsDCTFwdFree_32f(ZetsDCTFwdSpec_32f* pSpec);
/** Size of the work buffer in bytes. */
ZETAC_API ZetStatus zetsDCTFwdGetBufSize_32f(const ZetsDCTFwdSpec_32f* pSpec, int* pSize);
/** Forward DCT, N values to N values; source and destination may not overlap. */
ZETAC_API ZetStatus zetsDCTFwd_32f(const Zet32f* pSrc, Zet32f* pDst,
                                   const ZetsDCTFwdSpec_32f* pSpec, Zet8u* pBuffer);
/** Forward DCT in place. */
ZETAC_API ZetStatus zetsDCTFwd_32f_I(Zet32f* pSrcDst, const ZetsDCTFwdSpec_32f* pSpec,
                                     Zet8u* pBuffer);

/** See zetsDCTFwdGetSize_32f. */
ZETAC_API ZetStatus zetsDCTInvGetSize_32f(int len, int hint, int* pSpecSize, int* pSizeInit,
                                          int* pBufSize);
/** See zetsDCTFwdInit_32f. */
ZETAC_API ZetStatus zetsDCTInvInit_32f(ZetsDCTInvSpec_32f** ppSpec, int len, int hint,
                                       Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsDCTFwdInitAlloc_32f. */
ZETAC_API ZetStatus zetsDCTInvInitAlloc_32f(ZetsDCTInvSpec_32f** ppSpec, int len, int hint);
/** See zetsDCTFwdFree_32f. */
ZETAC_API ZetStatus zetsDCTInvFree_32f(ZetsDCTInvSpec_32f* pSpec);
/** See zetsDCTFwdGetBufSize_32f. */
ZETAC_API ZetStatus zetsDCTInvGetBufSize_32f(const ZetsDCTInvSpec_32f* pSpec, int* pSize);
/** Inverse DCT, N values to N values; source and destination may not overlap. */
ZETAC_API ZetStatus zetsDCTInv_32f(const Zet32f* pSrc, Zet32f* pDst,
                                   const ZetsDCTInvSpec_32f* pSpec, Zet8u* pBuffer);
/** Inverse DCT in place. */
ZETAC_API ZetStatus zetsDCTInv_32f_I(Zet32f* pSrcDst, const ZetsDCTInvSpec_32f* pSpec,
                                     Zet8u* pBuffer);

/* ------------------------------------------------------------------------------------------------
 * Transforms: MDCT
 *
 * Length N: N samples to N/2 coefficients and back, without window and overlap-add.
 *   forward  X[k] = 2   * sum over n of x[n] cos(2 pi/N (n + N/4 + 1/2)(k + 1/2))
 *   inverse  y[n] = 2/N * sum over k of X[k] cos(2 pi/N (n + N/4 + 1/2)(k + 1/2))
 * Forward and then inverse give the time-aliased signal with gain 1: windows that satisfy the
 * Princen-Bradley condition and an overlap-add by half return the input.
 *
 * N is a power of two from 32 on, for the floating transforms also 12 or 36 (the blocks of Layer
 * III). The twiddles of N/4 points and an FFT of N/4 points make up a structure. One that
 * ...InitAlloc makes owns three blocks of the heap, which Free releases.
 *
 * The checks of a transform call: structure null: zetStsNullPointer; of another family, or freed:
 * zetStsSpecMismatch; data pointers null: zetStsNullPointer; pBuffer null and no memory for the
 * buffer: zetStsNoMemory. Floating results are the same bits on every processor.
 * --------------------------------------------------------------------------------------------- */

typedef struct ZetsMDCTFwdSpec_32f ZetsMDCTFwdSpec_32f; /**< forward MDCT */
typedef struct ZetsMDCTInvSpec_32f ZetsMDCTInvSpec_32f; /**< inverse MDCT */
typedef struct ZetsMDCTFwdSpec_16s ZetsMDCTFwdSpec_16s; /**< forward MDCT, 16-bit */

/** Sizes in bytes for a forward MDCT of len samples. pBufSize is 64 more than
 *  zetsMDCTFwdGetBufSize_32f tells; either is enough.
 *  @param len       12, 36 or a power of two from 32 on
 *  @param pSizeInit out: memory that Init borrows; what the FFT needs, 0 at present
 *  Checks: null pointers: zetStsNullPointer; len: zetStsBadSize; a size above INT_MAX:
 *  zetStsNoMemory. */
ZETAC_API ZetStatus zetsMDCTFwdGetSize_32f(int len, int* pSpecSize, int* pSizeInit, int* pBufSize);
/** Lays the structure out in pMemSpec.
 *  @param pMemInit  may be null for 12 and 36 only
 *  Checks: len: zetStsBadSize; then null pointers: zetStsNullPointer; a size above INT_MAX:
 *  zetStsNoMemory. */
ZETAC_API ZetStatus zetsMDCTFwdInit_32f(ZetsMDCTFwdSpec_32f** ppSpec, int len, Zet8u* pMemSpec,
                                        Zet8u* pMemInit);
/** Allocates and lays out the structure. Checks: ppSpec: zetStsNullPointer; len: zetStsBadSize; no
 *  memory: zetStsNoMemory. */
ZETAC_API ZetStatus zetsMDCTFwdInitAlloc_32f(ZetsMDCTFwdSpec_32f** ppSpec, int len);
/** Invalidates the structure; releases it if it was allocated. */
ZETAC_API ZetStatus zetsMDCTFwdFree_32f(ZetsMDCTFwdSpec_32f* pSpec);
/** Size of the work buffer in bytes. */
ZETAC_API ZetStatus zetsMDCTFwdGetBufSize_32f(const ZetsMDCTFwdSpec_32f* pSpec, int* pSize);
/** Forward MDCT, N samples to N/2 coefficients. The destination may be the first half of the
 *  source. */
ZETAC_API ZetStatus zetsMDCTFwd_32f(const Zet32f* pSrc, Zet32f* pDst,
                                    const ZetsMDCTFwdSpec_32f* pSpec, Zet8u* pBuffer);
/** Forward MDCT in place: the coefficients replace the first N/2 samples. */
ZETAC_API ZetStatus zetsMDCTFwd_32f_I(Zet32f* pSrcDst, const ZetsMDCTFwdSpec_32f* pSpec,
                                      Zet8u* pBuffer);

/** See zetsMDCTFwdGetSize_32f; the sizes are the same. */
ZETAC_API ZetStatus zetsMDCTInvGetSize_32f(int len, int* pSpecSize, int* pSizeInit, int* pBufSize);
/** See zetsMDCTFwdInit_32f. */
ZETAC_API ZetStatus zetsMDCTInvInit_32f(ZetsMDCTInvSpec_32f** ppSpec, int len, Zet8u* pMemSpec,
                                        Zet8u* pMemInit);
/** See zetsMDCTFwdInitAlloc_32f. */
ZETAC_API ZetStatus zetsMDCTInvInitAlloc_32f(ZetsMDCTInvSpec_32f** ppSpec, int len);
/** See zetsMDCTFwdFree_32f. */
ZETAC_API ZetStatus zetsMDCTInvFree_32f(ZetsMDCTInvSpec_32f* pSpec);
/** See zetsMDCTFwdGetBufSize_32f. */
ZETAC_API ZetStatus zetsMDCTInvGetBufSize_32f(const ZetsMDCTInvSpec_32f* pSpec, int* pSize);
/** Inverse MDCT, N/2 coefficients to N samples. The source may be the first half of the
 *  destination. */
ZETAC_API ZetStatus zetsMDCTInv_32f(const Zet32f* pSrc, Zet32f* pDst,
                                    const ZetsMDCTInvSpec_32f* pSpec, Zet8u* pBuffer);
/** Inverse MDCT in place, in an array of N values: N/2 coefficients become N samples. */
ZETAC_API ZetStatus zetsMDCTInv_32f_I(Zet32f* pSrcDst, const ZetsMDCTInvSpec_32f* pSpec,
                                      Zet8u* pBuffer);

/** Sizes in bytes for a 16-bit forward MDCT of len samples, a power of two from 32 on. Checks as
 *  for zetsMDCTFwdGetSize_32f; pBufSize is what zetsMDCTFwdGetBufSize_16s tells. */
ZETAC_API ZetStatus zetsMDCTFwdGetSize_16s(int len, int* pSpecSize, int* pSizeInit, int* pBufSize);
/** Lays the structure out in pMemSpec. Checks: null pointers, pMemInit included:
 *  zetStsNullPointer; then len: zetStsBadSize; a size above INT_MAX: zetStsNoMemory. */
ZETAC_API ZetStatus zetsMDCTFwdInit_16s(ZetsMDCTFwdSpec_16s** ppSpec, int len, Zet8u* pMemSpec,
                                        Zet8u* pMemInit);
/** See zetsMDCTFwdInitAlloc_32f. */
ZETAC_API ZetStatus zetsMDCTFwdInitAlloc_16s(ZetsMDCTFwdSpec_16s** ppSpec, int len);
/** See zetsMDCTFwdFree_32f. */
ZETAC_API ZetStatus zetsMDCTFwdFree_16s(ZetsMDCTFwdSpec_16s* pSpec);
/** See zetsMDCTFwdGetBufSize_32f. */
ZETAC_API ZetStatus zetsMDCTFwdGetBufSize_16s(const ZetsMDCTFwdSpec_16s* pSpec, int* pSize);
/** Forward MDCT, N samples to N/2 coefficients times 2^-scaleFactor, rounded to nearest and
 *  saturated. The block is normalised to its peak first and runs in 16 bits between the steps, so
 *  that errors are relative to the largest coefficients, whatever the level of the input. The
 *  destination may be the source.
 *  @param scaleFactor any value; log2(N/2) + 1 keeps every input from saturating */
ZETAC_API ZetStatus zetsMDCTFwd_16s_Sfs(const Zet16s* pSrc, Zet16s* pDst,
                                        const ZetsMDCTFwdSpec_16s* pSpec, int scaleFactor,
                                        Zet8u* pBuffer);

/* ------------------------------------------------------------------------------------------------
 * Transforms: block FIR filter
 *
 * y[n] = taps[0] x[n] + taps[1] x[n-1] + ... + taps[L-1] x[n-L+1], block by block. The structure
 * keeps the L taps and is only read, so that channels and threads may share it. What a channel
 * remembers is its own: a circular delay line of the last L samples and the index of the oldest,
 * where the next sample goes. Zeros and index 0 start a signal. Blocks may be of any length, and a
 * signal gives the same bits however it is cut into blocks: every output is summed in the order of
 * the taps from 0 on, at any alignment and on every processor.
 * --------------------------------------------------------------------------------------------- */

typedef struct ZetsFIRBlockSpec_32f ZetsFIRBlockSpec_32f; /**< block FIR filter */

/** Allocates a structure for the given taps, which are copied.
 *  @param pTaps     tapsLen values; pTaps[0] weights the newest sample
 *  Checks: null pointers: zetStsNullPointer; tapsLen below 1: zetStsFirLengthErr; no memory:
 *  zetStsNoMemory. */
ZETAC_API ZetStatus zetsFIRBlockInitAlloc_32f(ZetsFIRBlockSpec_32f** ppSpec, const Zet32f* pTaps,
                                              int tapsLen);
/** Releases the structure. */
ZETAC_API ZetStatus zetsFIRBlockFree_32f(ZetsFIRBlockSpec_32f* pSpec);
/** Filters one block of len samples.
 *  @param pDst        len samples; may be pSrc, but may not overlap it otherwise
 *  @param pDelayLine  tapsLen samples, changed
 *  @param pDelayIndex 0..tapsLen-1, changed
 *  @return zetStsMisaligned if pSrc or pDst is not 16-byte aligned; the work is done all the same
 *  Checks: null pointers: zetStsNullPointer; a structure of another family, or freed:
 *  zetStsSpecMismatch; len below 1, then *pDelayIndex outside its range: zetStsFirLengthErr. */
ZETAC_API ZetStatus zetsFIRBlockOne_32f(const Zet32f* pSrc, Zet32f* pDst, int len,
                                        const ZetsFIRBlockSpec_32f* pSpec, Zet32f* pDelayLine,
                                        int* pDelayIndex);

/* ------------------------------------------------------------------------------------------------
 * AAC: sizes and codes
 * --------------------------------------------------------------------------------------------- */

#define ZETAC_BIT_STREAM_SLACK 3         /**< most bytes looked at behind the last consumed bit */
#define ZETAC_AAC_CHANNEL_BYTES_MAX 4096 /**< no AAC reader call but that of ADIF consumes more */
#define ZETAC_AAC_ADIF_BYTES_MAX 5120    /**< an ADIF header with 16 elements is no longer */
#define ZETAC_AAC_FRAME_LEN 1024         /**< spectral lines and samples per channel and frame */
#define ZETAC_AAC_GROUPS_MAX 8           /**< window groups of an eight-short frame, at most */
#define ZETAC_AAC_SFB_MAX 51             /**< scalefactor bands of a window, at most */
#define ZETAC_AAC_GROUP_BANDS_MAX 120    /**< bands of all groups of a channel, at most */
#define ZETAC_AAC_MS_ROW 60              /**< length of a row of ms_used */
#define ZETAC_AAC_TNS_FILTERS_MAX 8      /**< TNS filters of a channel, at most */
#define ZETAC_AAC_TNS_COEFS_MAX 64       /**< TNS coefficients of a channel, at most (56 in use) */
#define ZETAC_AAC_LTP_SFB_MAX 40         /**< bands with long-term prediction, at most */
#define ZETAC_AAC_LTP_HISTORY_LEN 3072   /**< values in the history of long-term prediction */
#define ZETAC_AAC_LTP_HISTORY_BITS 8     /**< fractional bits of these values */
#define ZETAC_AAC_DATA_BYTES_MAX 510     /**< payload of a data stream element, at most */
#define ZETAC_AAC_FILL_BYTES_MAX 269     /**< payload of a fill element, at most */

/** window_sequence of an individual channel stream. */
typedef enum ZetAACWindowSequence {
    zetAacOnlyLong = 0,   /**< one 2048-sample window */
    zetAacLongStart = 1,  /**< long to short */
    zetAacEightShort = 2, /**< eight 256-sample windows */
    zetAacLongStop = 3    /**< short to long */
} ZetAACWindowSequence;

/** window_shape of an individual channel stream. */
typedef enum ZetAACWindowShape {
    zetAacSine = 0, /**< sine */
    zetAacKBD = 1   /**< Kaiser-Bessel derived */
} ZetAACWindowShape;

/** Codebook numbers of a section with a meaning of their own. */
typedef enum ZetAACCodebook {
    zetAacZeroCb = 0,        /**< all lines are 0 */
    zetAacEscapeCb = 11,     /**< the book with escapes */
    zetAacReservedCb = 12,   /**< never allowed */
    zetAacNoiseCb = 13,      /**< perceptual noise substitution (MPEG-4) */
    zetAacIntensityCb2 = 14, /**< intensity stereo, out of phase */
    zetAacIntensityCb = 15   /**< intensity stereo, in phase */
} ZetAACCodebook;

/* ------------------------------------------------------------------------------------------------
 * AAC: records. Fields are named as the syntax elements of ISO/IEC 13818-7 and 14496-3.
 * --------------------------------------------------------------------------------------------- */

/** adif_header() (ISO/IEC 13818-7, 6.2). */
typedef struct ZetAACADIFHeader {
    Zet32s adif_id;                     /**< 32 bits as they stand, not compared with "ADIF" */
    Zet32s copyright_id_present;        /**< 1 bit */
    Zet32s original_copy;               /**< 1 bit */
    Zet32s home;                        /**< 1 bit */
    Zet32s bitstream_type;              /**< 0 constant rate, 1 variable rate */
    Zet32s bitrate;                     /**< bits per second; 23 bits */
    Zet32s num_program_config_elements; /**< number of elements: the coded value plus 1 */
    Zet32s adif_buffer_fullness[16];    /**< per element, constant rate only */
    Zet8u copyright_id[9];              /**< when copyright_id_present is 1 */
} ZetAACADIFHeader;

/** adts_frame() header (ISO/IEC 13818-7, 6.2): fixed header, variable header, error check. */
typedef struct ZetAACADTSHeader {
    Zet32s id;                                 /**< 0 MPEG-4, 1 MPEG-2 */
    Zet32s layer;                              /**< 0 */
    Zet32s protection_absent;                  /**< 0 when a CRC word follows */
    Zet32s profile;                            /**< 0 Main, 1 LC, 2 SSR, 3 LTP */
    Zet32s sampling_frequency_index;           /**< 0..15 */
    Zet32s private_bit;                        /**< 1 bit */
    Zet32s channel_configuration;              /**< 0..7; 0: a program config element tells */
    Zet32s original_copy;                      /**< 1 bit */
    Zet32s home;                               /**< 1 bit */
    Zet32s reserved;                           /**< never written */
    Zet32s copyright_identification_bit;       /**< 1 bit */
    Zet32s copyright_identification_start;     /**< 1 bit */
    Zet32s frame_length;                       /**< bytes of the frame, header included; 13 bits */
    Zet32s adts_buffer_fullness;               /**< 11 bits */
    Zet32s number_of_raw_data_blocks_in_frame; /**< raw data blocks minus 1 */
    Zet32s crc_check;                          /**< only when protection_absent is 0 */
} ZetAACADTSHeader;

/** program_config_element() (ISO/IEC 13818-7, 8.5). Entries beyond the counts are not written. */
typedef struct ZetAACPrgCfgElt {
    Zet32s element_instance_tag;             /**< 4 bits */
    Zet32s object_type;                      /**< 2 bits: profile as in the ADTS header */
    Zet32s sampling_frequency_index;         /**< 4 bits */
    Zet32s num_front_channel_elements;       /**< 0..15 */
    Zet32s num_side_channel_elements;        /**< 0..15 */
    Zet32s num_back_channel_elements;        /**< 0..15 */
    Zet32s num_lfe_channel_elements;         /**< 0..3 */
    Zet32s num_assoc_data_elements;          /**< 0..7 */
    Zet32s num_valid_cc_elements;            /**< 0..15 */
    Zet32s mono_mixdown_present;             /**< 1 bit */
    Zet32s mono_mixdown_element_number;      /**< 0 when not present */
    Zet32s stereo_mixdown_present;           /**< 1 bit */
    Zet32s stereo_mixdown_element_number;    /**< 0 when not present */
    Zet32s matrix_mixdown_idx_present;       /**< 1 bit */
    Zet32s matrix_mixdown_idx;               /**< 0 when not present */
    Zet32s pseudo_surround_enable;           /**< 0 when not present */
    Zet32s front_element_is_cpe[16];         /**< 1: channel pair, 0: single channel */
    Zet32s front_element_tag_select[16];     /**< instance tag of the element */
    Zet32s side_element_is_cpe[16];          /**< as for front */
    Zet32s side_element_tag_select[16];      /**< as for front */
    Zet32s back_element_is_cpe[16];          /**< as for front */
    Zet32s back_element_tag_select[16];      /**< as for front */
    Zet32s lfe_element_tag_select[4];        /**< instance tag of the element */
    Zet32s assoc_data_element_tag_select[8]; /**< instance tag of the element */
    Zet32s cc_element_is_ind_sw[16];         /**< 1: independently switched */
    Zet32s valid_cc_element_tag_select[16];  /**< instance tag of the element */
    Zet32s comment_field_bytes;              /**< 0..255 */
    Zet8u comment_field_data[256];           /**< the comment, no terminator */
} ZetAACPrgCfgElt;

/** ics_info() (ISO/IEC 13818-7, 8.3; 14496-3, 4.4.2.1). */
typedef struct ZetAACIcsInfo {
    Zet32s ics_reserved_bit;             /**< 1 bit */
    Zet32s window_sequence;              /**< ZetAACWindowSequence */
    Zet32s window_shape;                 /**< ZetAACWindowShape */
    Zet32s max_sfb;                      /**< bands transmitted per group, 0..51 */
    Zet32s scale_factor_grouping;        /**< 7 bits, eight short only */
    Zet32s predictor_data_present;       /**< long windows only, else 0 */
    Zet32s predictor_reset;              /**< Main profile only, else 0 */
    Zet32s predictor_reset_group_number; /**< when predictor_reset is 1 */
    Zet8u prediction_used[44];           /**< per band below the prediction band limit */
    Zet32s num_window_groups;            /**< 1..8, derived; 1 for long windows */
    Zet32s window_group_length[ZETAC_AAC_GROUPS_MAX]; /**< windows of each group; sum 8, long: 1 */
} ZetAACIcsInfo;

/** What channel_pair_element() carries besides its two channels. */
typedef struct ZetAACChanPairElt {
    Zet32s common_window;   /**< 1: both channels share one ics_info */
    Zet32s ms_mask_present; /**< 0 none, 1 ms_used tells, 2 all bands */
    Zet8u ms_used[ZETAC_AAC_GROUPS_MAX][ZETAC_AAC_MS_ROW]; /**< [group][band], as far as coded */
} ZetAACChanPairElt;

/** ltp_data() of one channel (ISO/IEC 14496-3, 4.4.2.1). */
typedef struct ZetAACLtpInfo {
    Zet32s ltp_data_present; /**< 1 when the fields below were read */
    Zet32s ltp_lag;          /**< samples, 0..2047 */
    Zet32s ltp_coef;         /**< gain, Q14: one of eight values 0.570829..1.369533 */
    Zet32s ltp_long_used[ZETAC_AAC_LTP_SFB_MAX];        /**< per band, long windows */
    Zet32s ltp_short_used[ZETAC_AAC_GROUPS_MAX];        /**< per short window */
    Zet32s ltp_short_lag_present[ZETAC_AAC_GROUPS_MAX]; /**< per short window in use */
    Zet32s ltp_short_lag[ZETAC_AAC_GROUPS_MAX];         /**< lag of each short window in use */
} ZetAACLtpInfo;

/** tns_data() of one channel without its coefficients (ISO/IEC 14496-3, 4.4.2.1). Filters are
 *  numbered in stream order: long windows have up to 3, each of the eight short windows up to 1.
 * The coefficients stand apart, filter after filter in the same order, sign-extended to coef_res
 * bits, in an array of ZETAC_AAC_TNS_COEFS_MAX signed bytes. */
typedef struct ZetAACTnsInfo {
    Zet32s n_filt[ZETAC_AAC_GROUPS_MAX];             /**< per window: number of filters */
    Zet32s coef_res[ZETAC_AAC_GROUPS_MAX];           /**< per window with filters: 3 or 4 bits */
    Zet32s length[ZETAC_AAC_TNS_FILTERS_MAX];        /**< per filter: bands covered */
    Zet32s order[ZETAC_AAC_TNS_FILTERS_MAX];         /**< per filter: 0..12 long, 0..7 short */
    Zet32s direction[ZETAC_AAC_TNS_FILTERS_MAX];     /**< per filter: 0 upwards, 1 downwards */
    Zet32s coef_compress[ZETAC_AAC_TNS_FILTERS_MAX]; /**< per filter: the readers write 0, because
                                                        the coefficients are sign-extended */
} ZetAACTnsInfo;

/** Header of the first layer of a scalable stream (ISO/IEC 14496-3, aac_scalable_main_header), and
 *  the keeper of LTP data and window groups for zetsNoiselessDecode_AAC. */
typedef struct ZetAACMainHeader {
    Zet32s window_sequence;                                /**< ZetAACWindowSequence */
    Zet32s window_shape;                                   /**< ZetAACWindowShape */
    Zet32s max_sfb;                                        /**< as read: 4 or 6 bits */
    Zet32s scale_factor_grouping;                          /**< eight short only */
    Zet32s num_window_groups;                              /**< 1..8 */
    Zet32s window_group_length[ZETAC_AAC_GROUPS_MAX];      /**< windows of each group */
    Zet32s ms_mask_present;                                /**< two channels only */
    Zet8u ms_used[ZETAC_AAC_GROUPS_MAX][ZETAC_AAC_MS_ROW]; /**< [group][band]; bands 60..62 of the
                                                              one long group run on into row 1 */
    Zet32s tns_data_present[2];                            /**< per channel */
    ZetAACTnsInfo tns[2];                       /**< per channel; cleared before reading */
    Zet8s tns_coef[2][ZETAC_AAC_TNS_COEFS_MAX]; /**< per channel */
    ZetAACLtpInfo ltp[2];                       /**< per channel; cleared before reading */
} ZetAACMainHeader;

/** Header of a further layer of a scalable stream (aac_scalable_extension_header). */
typedef struct ZetAACExtHeader {
    Zet32s max_sfb;                                        /**< 0..60 */
    Zet32s ms_mask_present;                                /**< stereo layers only */
    Zet8u ms_used[ZETAC_AAC_GROUPS_MAX][ZETAC_AAC_MS_ROW]; /**< [group][band] */
    Zet32s tns_data_present[2];                            /**< per channel */
    ZetAACTnsInfo tns[2];                                  /**< per channel */
    Zet8s tns_coef[2][ZETAC_AAC_TNS_COEFS_MAX];            /**< per channel */
    Zet8u diff_control[2][ZETAC_AAC_MS_ROW]; /**< per channel: flag per band (long) or window */
} ZetAACExtHeader;

/** One individual_channel_stream(): what the caller tells the noiseless decoders and what they tell
 *  back. Fields of the caller are never looked at. */
typedef struct ZetAACChanInfo {
    Zet32s element_instance_tag;      /**< caller's */
    Zet32s channel;                   /**< caller's */
    Zet32s sampling_frequency_index;  /**< in: 0..11 */
    Zet32s predSfbMax;                /**< in: 0 for the low-complexity decoder */
    Zet32s prev_window_shape;         /**< caller's */
    Zet32s window_length;             /**< out: 1024, or 128 for eight short */
    Zet32s num_windows;               /**< out: 1 or 8 */
    Zet32s num_swb;                   /**< out: scalefactor bands of the sampling rate */
    Zet32s global_gain;               /**< out: 8 bits */
    Zet32s pulse_data_present;        /**< out */
    Zet32s tns_data_present;          /**< out */
    Zet32s gain_control_data_present; /**< out */
    ZetAACIcsInfo* pIcsInfo;          /**< in: filled by the decoder, or by the channel pair */
    void* pUserData;                  /**< caller's */
    Zet8u sect_cb[ZETAC_AAC_GROUP_BANDS_MAX];  /**< out: codebook per section, group after group */
    Zet8u sect_end[ZETAC_AAC_GROUP_BANDS_MAX]; /**< out: end band per section, exclusive */
    Zet32s num_sec[ZETAC_AAC_GROUPS_MAX];      /**< out: sections of each group */
    ZetAACTnsInfo tns;                         /**< out; n_filt[0] is 0 without TNS */
} ZetAACChanInfo;

/* ------------------------------------------------------------------------------------------------
 * AAC: stream headers and syntactic elements
 * --------------------------------------------------------------------------------------------- */

/** Reads an ADIF header and its program config elements (ISO/IEC 13818-7, 6.2). Starts on a byte
 *  boundary and ends on one.
 *  @param ppBitStream   in/out: byte position
 *  @param pHeader       out: the header
 *  @param pPrgCfgElt    out: num_program_config_elements records
 *  @param prgCfgEltMax  room in pPrgCfgElt, 1..16
 *  Checks: a null pointer: zetStsNullPointer; prgCfgEltMax: zetStsAacPrgNumErr; later, more
 * elements announced than prgCfgEltMax: zetStsAacPrgNumErr, with the fields up to there stored.
 *  No header consumes more than ZETAC_AAC_ADIF_BYTES_MAX bytes. */
ZETAC_API ZetStatus zetsUnpackADIFHeader_AAC(Zet8u** ppBitStream, ZetAACADIFHeader* pHeader,
                                             ZetAACPrgCfgElt* pPrgCfgElt, int prgCfgEltMax);

/** Reads an ADTS header of 7 bytes, or 9 with its CRC word (ISO/IEC 13818-7, 6.2). The syncword is
 *  passed over without a look and no field is range-checked. Where several raw data blocks follow
 *  with protection, the words behind the header are raw_data_block_position entries and then the
 *  CRC: the function reads the first of these words as crc_check.
 *  Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsUnpackADTSFrameHeader_AAC(Zet8u** ppBitStream, ZetAACADTSHeader* pHeader);

/** Reads a program config element (ISO/IEC 13818-7, 8.5), without the element id before it. The
 *  comment is aligned to a byte of the stream as it lies in memory.
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsAacBitOffsetErr. */
ZETAC_API ZetStatus zetsDecodePrgCfgElt_AAC(Zet8u** ppBitStream, int* pOffset,
                                            ZetAACPrgCfgElt* pPrgCfgElt);

/** Reads a data stream element (ISO/IEC 13818-7, 8.6).
 *  @param pDataTag  out: element_instance_tag
 *  @param pDataCnt  out: number of bytes, 0..510
 *  @param pData     out: the bytes; room for ZETAC_AAC_DATA_BYTES_MAX
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsAacBitOffsetErr. */
ZETAC_API ZetStatus zetsDecodeDatStrElt_AAC(Zet8u** ppBitStream, int* pOffset, int* pDataTag,
                                            int* pDataCnt, Zet8u* pData);

/** Reads a fill element (ISO/IEC 13818-7, 8.7) without interpreting its bytes.
 *  @param pFillCnt   out: number of bytes, 0..269
 *  @param pFillData  out: the bytes; room for ZETAC_AAC_FILL_BYTES_MAX
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsAacBitOffsetErr. */
ZETAC_API ZetStatus zetsDecodeFillElt_AAC(Zet8u** ppBitStream, int* pOffset, int* pFillCnt,
                                          Zet8u* pFillData);

/** Reads the head of a channel pair element behind its instance tag (ISO/IEC 13818-7, 8.3):
 *  common_window and, when it is 1, ics_info with Main-profile prediction, ms_mask_present and
 *  ms_used. With common_window 0 exactly one bit is read.
 *  @param pIcsInfo       out: stream information of both channels
 *  @param pChanPairElt   out: the pair's flags
 *  @param predSfbMax     prediction band limit of the sampling rate, 0..41
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsAacBitOffsetErr; predSfbMax:
 *  zetStsAacPredSfbMaxErr; while reading, a long window's max_sfb above 51: zetStsAacMaxSfbErr. */
ZETAC_API ZetStatus zetsDecodeChanPairElt_AAC(Zet8u** ppBitStream, int* pOffset,
                                              ZetAACIcsInfo* pIcsInfo,
                                              ZetAACChanPairElt* pChanPairElt, int predSfbMax);

/** The MPEG-4 form of zetsDecodeChanPairElt_AAC (ISO/IEC 14496-3, 4.4.2.1): when
 *  predictor_data_present is 1, audio object type 1 (Main) carries prediction, any other type
 *  long-term prediction for each of the two channels.
 *  @param pLtpInfo         out: two records; both ltp_data_present are cleared before reading
 *  @param predSfbMax       prediction band limit, 0..51; flags of bands from 44 on, which no
 *                          sampling rate has, are read but not stored
 *  @param audioObjectType  1 selects Main prediction, any other value LTP
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsAacBitOffsetErr; predSfbMax:
 *  zetStsAacMaxSfbErr; while reading, a long window's max_sfb above 51: zetStsAacMaxSfbErr. */
ZETAC_API ZetStatus zetsDecodeChanPairElt_MP4_AAC(Zet8u** ppBitStream, int* pOffset,
                                                  ZetAACIcsInfo* pIcsInfo,
                                                  ZetAACChanPairElt* pChanPairElt,
                                                  ZetAACLtpInfo* pLtpInfo, int predSfbMax,
                                                  int audioObjectType);

/** Reads the header of the first scalable layer (ISO/IEC 14496-3, aac_scalable_main_header): window
 *  information, M/S flags of a pair, TNS and LTP data of each channel. ms_mask_present 2 sets
 *  ms_used for every band below max_sfb. A TNS order beyond the limit ends that channel's TNS data
 *  and is not reported.
 *  @param channelNum  channels of the layer, 1..2
 *  @param layerFlag   0..1; with 1 everything is decoded and zetStsAacLayerNotDone comes back
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsAacBitOffsetErr; channelNum:
 *  zetStsAacChanNumErr; layerFlag: zetStsAacLayerFlagErr. */
ZETAC_API ZetStatus zetsDecodeMainHeader_AAC(Zet8u** ppBitStream, int* pOffset,
                                             ZetAACMainHeader* pHeader, int channelNum,
                                             int layerFlag);

/** Reads the header of a further scalable layer (ISO/IEC 14496-3, aac_scalable_extension_header).
 *  M/S flags are read for the bands from prevMaxSfb up to the new max_sfb, for one group (long) or
 *  four groups (eight short). The diff-control data are, for each of two channels, one flag for
 *  each band from prevMaxSfb up to the smaller of prevMaxSfbSecond and max_sfb (long), or one for
 *  each window if prevMaxSfb is 0 (eight short). Bands of long windows with M/S, that is with
 *  ms_mask_present 2 or with 1 and ms_used, have no flag in the stream and get 0. Flags of other
 *  bands are left alone. A TNS order beyond the limit is treated as in the main header.
 *  @param tnsFlag           1: TNS data of two channels follow
 *  @param stereoLayerFlag   1: M/S data follow
 *  @param diffCtrlFlag      1, together with stereoLayerFlag: diff-control data follow
 *  @param prevMaxSfb        max_sfb of the previous stereo layer, 0..51
 *  @param prevMaxSfbSecond  max_sfb of the last mono layer, 0..51
 *  @param windowSequence    of the frame, 0..3
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsAacBitOffsetErr; tnsFlag:
 *  zetStsAacLayerFlagErr; stereoLayerFlag: zetStsAacStereoLayerErr; diffCtrlFlag:
 *  zetStsAacDiffCtrlFlagErr; prevMaxSfb, prevMaxSfbSecond: zetStsAacMaxSfbErr; windowSequence:
 *  zetStsAacWinSeqErr; while reading, max_sfb above 60: zetStsAacMaxSfbErr. */
ZETAC_API ZetStatus zetsDecodeExtensionHeader_AAC(Zet8u** ppBitStream, int* pOffset,
                                                  ZetAACExtHeader* pHeader, int tnsFlag,
                                                  int stereoLayerFlag, int diffCtrlFlag,
                                                  int prevMaxSfb, int prevMaxSfbSecond,
                                                  int windowSequence);

/* ------------------------------------------------------------------------------------------------
 * AAC: noiseless decoding
 * --------------------------------------------------------------------------------------------- */

/** Decodes one individual channel stream of the low-complexity profile (ISO/IEC 13818-7, 6.3 and
 *  8.3): global gain, stream information, section data, scalefactors, pulse and TNS data and the
 *  quantised spectrum.
 *  @param ppBitStream   in/out: byte position
 *  @param pOffset       in/out: bit offset
 *  @param commonWin     1: the stream information of the pair is in pChanInfo->pIcsInfo already;
 *                       0: it is read into it
 *  @param pChanInfo     in/out: the channel's record
 *  @param pScaleFactor  out: max_sfb values per group, group after group: scalefactor 0..255,
 *                       intensity position, or 0 for codebook 0; room for 120
 *  @param pSpectrum     out: 1024 quantised values. In eight-short frames the groups lie one after
 *                       another, inside a group band by band, inside a band window by window
 *  @param pSfbCb        out: codebook of every band, max_sfb per group; room for 120
 *  @param pTnsCoef      out: TNS coefficients, room for ZETAC_AAC_TNS_COEFS_MAX
 *  Checks: null pointers (pIcsInfo included): zetStsNullPointer; bit offset: zetStsAacBitOffsetErr;
 *  commonWin: zetStsAacCommonWinErr; sampling_frequency_index: zetStsAacSmpRateIdxErr; predSfbMax
 *  not 0: zetStsAacPredSfbMaxErr.
 *  While reading: zetStsAacMaxSfbErr (max_sfb above 51 or the band count), zetStsAacSectDataErr
 *  (sections do not end at max_sfb, or more than 120 of them), zetStsAacCodeBookErr (12, 13),
 *  zetStsAacSfValErr, zetStsAacPulseStartSfbErr, zetStsAacTnsOrderErr, zetStsAacGainControlErr,
 *  zetStsOutOfRange (a section beyond the band count), zetStsAacCoefValErr. What was read stays in
 *  the outputs, and the position is where reading stopped. */
ZETAC_API ZetStatus zetsNoiselessDecoder_LC_AAC(Zet8u** ppBitStream, int* pOffset, int commonWin,
                                                ZetAACChanInfo* pChanInfo, Zet16s* pScaleFactor,
                                                Zet32s* pSpectrum, Zet8u* pSfbCb, Zet8s* pTnsCoef);

/** Decodes one individual channel stream in the MPEG-4 form (ISO/IEC 14496-3, 4.4.2 and 4.6.3),
 * with noise substitution, LTP side information and scalable layers. Scalefactors and noise
 * energies share one running value: a scalefactor behind a noise band continues from the noise
 * energy, and noise energies outside 0..255 are errors. zetsNoiselessDecode_MP4_AAC keeps them
 * apart.
 *  @param pMainHeader      in/out: with scalableFlag 1 the window groups; else, with commonWin 0,
 *                          LTP data of the channel go to its ltp[0], whose ltp_data_present is
 *                          cleared before reading
 *  @param windowSequence   used when scalableFlag is 1; 0..3
 *  @param maxSfb           used when scalableFlag is 1; 0..51
 *  @param commonWin        as for the low-complexity decoder
 *  @param scalableFlag     1: no stream information, pulse, TNS or gain-control data in the stream,
 *                          and the fields of pChanInfo for these are left alone
 *  @param audioObjectType  0..16; 1 selects Main prediction in the stream information
 *  The other arguments are those of zetsNoiselessDecoder_LC_AAC.
 *  Checks: null pointers (pIcsInfo included): zetStsNullPointer; bit offset: zetStsAacBitOffsetErr;
 *  commonWin: zetStsAacCommonWinErr; windowSequence: zetStsAacWinSeqErr; scalableFlag:
 *  zetStsAacScalableFlagErr; audioObjectType: zetStsAacAotErr; maxSfb: zetStsAacMaxSfbErr;
 *  sampling_frequency_index: zetStsAacSmpRateIdxErr.
 *  While reading: as for the low-complexity decoder, except that codebook 13 is allowed and max_sfb
 *  is held against 51 only; a section beyond the band count gives zetStsOutOfRange. Window groups
 *  that do not fit the window sequence, or have more than 120 bands, give zetStsAacSectDataErr. */
ZETAC_API ZetStatus zetsNoiselessDecode_AAC(Zet8u** ppBitStream, int* pOffset,
                                            ZetAACMainHeader* pMainHeader, Zet16s* pScaleFactor,
                                            Zet32s* pSpectrum, Zet8u* pSfbCb, Zet8s* pTnsCoef,
                                            ZetAACChanInfo* pChanInfo, int windowSequence,
                                            int maxSfb, int commonWin, int scalableFlag,
                                            int audioObjectType);

/** zetsNoiselessDecode_AAC with the running values of ISO/IEC 14496-3, 4.6.2 and 4.6.13:
 * scalefactors, intensity positions and noise energies each have their own, and noise energies have
 * no range check (they are kept to 16 bits). This is the reader for MPEG-4 streams in the wild. */
ZETAC_API ZetStatus zetsNoiselessDecode_MP4_AAC(Zet8u** ppBitStream, int* pOffset,
                                                ZetAACMainHeader* pMainHeader, Zet16s* pScaleFactor,
                                                Zet32s* pSpectrum, Zet8u* pSfbCb, Zet8s* pTnsCoef,
                                                ZetAACChanInfo* pChanInfo, int windowSequence,
                                                int maxSfb, int commonWin, int scalableFlag,
                                                int audioObjectType);

/* ------------------------------------------------------------------------------------------------
 * AAC: spectral tools
 *
 * The spectrum of a channel is 1024 Zet32s in Q3. The band tools walk the layout of the noiseless
 * decoders: band b of group g is (offset[b+1] - offset[b]) * pWinGrpLen[g] consecutive lines, and a
 * group takes pWinGrpLen[g] * winLen lines. Group lengths are trusted: 1 or more, 8 in sum at most.
 *
 * Arguments that several tools share:
 *   numWinGrp          window groups: 1 for winLen 1024, 1..8 for winLen 128
 *   pWinGrpLen         windows of each group
 *   maxSfb             bands per group, 0..51 and at most the band count of the sampling rate
 *   samplingFreqIndex  sampling_frequency_index
 *   winLen             1024, or 128 for eight short windows
 * and their checks, called "the band checks" below, in this order: null pointers:
 * zetStsNullPointer; winLen: zetStsAacWinLenErr; numWinGrp: zetStsAacWinGrpErr; maxSfb outside
 * 0..51: zetStsAacMaxSfbErr; samplingFreqIndex outside 0..11: zetStsAacSmpRateIdxErr; maxSfb above
 * the band count: zetStsAacMaxSfbErr.
 * --------------------------------------------------------------------------------------------- */

/** Inverse quantisation and scaling (ISO/IEC 13818-7, 10 and 11; 14496-3, 4.6.1 and 4.6.2): every
 *  line of a band whose codebook is not 0, 13, 14 or 15 becomes
 *  sign(q) * |q|^(4/3) * 2^((scalefactor - 100) / 4) in Q3. Values are truncated towards 0. Where
 * the result leaves 32 bits it wraps, or becomes +-2147483647 for exponents out of all range;
 *  magnitudes below 16 stop growing with very large scalefactors.
 *  @param pSpectrum     in/out: quantised values in, Q3 out
 *  @param pScaleFactor  scalefactors, maxSfb per group
 *  @param pSfbCb        codebooks, maxSfb per group
 *  Checks: the band checks; while working, |q| above 8191: zetStsAacCoefValErr, with the bands
 * before it converted. */
ZETAC_API ZetStatus zetsQuantInv_AAC_32s_I(Zet32s* pSpectrum, const Zet16s* pScaleFactor,
                                           int numWinGrp, const Zet32s* pWinGrpLen, int maxSfb,
                                           const Zet8u* pSfbCb, int samplingFreqIndex, int winLen);

/** The power law of inverse quantisation on a plain array:
 *  pDst[i] = sign(x) * |x|^(4/3) * 2^((scaleFactor - 100) / 4) in Q3, with the arithmetic of
 *  zetsQuantInv_AAC_32s_I.
 *  Checks: a null pointer: zetStsNullPointer; len below 1: zetStsBadSize; while working, any |x|
 *  above 8191: zetStsAacCoefValErr, with the integers of pSrc in all of pDst. */
ZETAC_API ZetStatus zetsPow43Scale_16s32s_Sf(const Zet16s* pSrc, Zet32s* pDst, int scaleFactor,
                                             int len);

/** M/S stereo (ISO/IEC 13818-7, 12.1; 14496-3, 4.6.8.1). In bands that ms_mask_present and ms_used
 *  select, l' = l + r and r' = l - r with wrap-around at 32 bits. Bands with noise in the right
 *  channel are left alone; a selected intensity band (ms_mask_present 1) has its right codebook
 *  changed from 14 to 15 or back, so run this before zetsDecodeIsStereo_AAC_32s.
 *  @param pSrcDstL       in/out: left spectrum
 *  @param pSrcDstR       in/out: right spectrum
 *  @param msMaskPresent  1: pMsUsed selects; 2: every band
 *  @param pMsUsed        flags [group][band], rows of ZETAC_AAC_MS_ROW
 *  @param pSfbCbR        in/out: codebooks of the right channel
 *  Checks: the band checks, with msMaskPresent outside 1..2: zetStsAacMsMaskErr between
 *  samplingFreqIndex and the band count. */
ZETAC_API ZetStatus zetsDecodeMsStereo_AAC_32s_I(Zet32s* pSrcDstL, Zet32s* pSrcDstR,
                                                 int msMaskPresent, const Zet8u* pMsUsed,
                                                 Zet8u* pSfbCbR, int numWinGrp,
                                                 const Zet32s* pWinGrpLen, int maxSfb,
                                                 int samplingFreqIndex, int winLen);

/** Intensity stereo (ISO/IEC 13818-7, 12.2; 14496-3, 4.6.8.2): in bands whose right codebook is 15
 *  or 14, r = +l or -l times 2^(-position / 4).
 *  @param pSrcL          left spectrum
 *  @param pDstR          out: right spectrum, in the intensity bands only
 *  @param pScaleFactorR  intensity positions of the right channel
 *  @param pSfbCbR        codebooks of the right channel
 *  Checks: the band checks. */
ZETAC_API ZetStatus zetsDecodeIsStereo_AAC_32s(const Zet32s* pSrcL, Zet32s* pDstR,
                                               const Zet16s* pScaleFactorR, const Zet8u* pSfbCbR,
                                               int numWinGrp, const Zet32s* pWinGrpLen, int maxSfb,
                                               int samplingFreqIndex, int winLen);

/** Perceptual noise substitution for one channel (ISO/IEC 14496-3, 4.6.13): every band with
 * codebook 13 is filled, window by window, with noise whose norm is 2^(energy / 4), that is 2^(3 +
 * energy / 4) in Q3 units, limited to full scale.
 *  @param pSrcDst       in/out: spectrum
 *  @param pRandomState  in/out: state of the generator; any start value. The caller keeps it
 *  @param pScaleFactor  noise energies in steps of 1.5 dB, at the bands with codebook 13
 *  @param pSfbCb        codebooks
 *  Checks: the band checks, with numWinGrp 1..8 for either window length and samplingFreqIndex
 * 0..16; indices 13..16 have no bands, so that any maxSfb above 0 is zetStsAacMaxSfbErr. */
ZETAC_API ZetStatus zetsDecodePNS_AAC_32s(Zet32s* pSrcDst, Zet32s* pRandomState,
                                          const Zet16s* pScaleFactor, int numWinGrp,
                                          const Zet32s* pWinGrpLen, int maxSfb, const Zet8u* pSfbCb,
                                          int samplingFreqIndex, int winLen);

/** Perceptual noise substitution for a channel pair with a common window: bands that are noise in
 *  both channels and selected by ms_mask_present and ms_used get the same noise in both, each with
 *  its own energy; all other noise bands are independent (ISO/IEC 14496-3, 4.6.13). Apply it after
 *  zetsDecodeMsStereo_AAC_32s_I and before zetsDecodeIsStereo_AAC_32s.
 *  @param msMaskPresent  1: pMsUsed selects; 2: every band; any other value: none
 *  The other arguments and the checks are those of zetsDecodePNS_AAC_32s, for each channel. */
ZETAC_API ZetStatus zetsDecodeMsPNS_AAC_32s(Zet32s* pSrcDstL, Zet32s* pSrcDstR,
                                            Zet32s* pRandomState, const Zet16s* pScaleFactorL,
                                            const Zet16s* pScaleFactorR, int msMaskPresent,
                                            const Zet8u* pMsUsed, int numWinGrp,
                                            const Zet32s* pWinGrpLen, int maxSfb,
                                            const Zet8u* pSfbCbL, const Zet8u* pSfbCbR,
                                            int samplingFreqIndex, int winLen);

/** Undoes the interleaving of grouped short windows (ISO/IEC 14496-3, 4.5.2.3.5): afterwards the
 *  windows lie one after another, winLen lines each. Bands from maxSfb on are set to 0. With winLen
 *  1024 it copies.
 *  @param pSrc  spectrum, bands interleaved within each group
 *  @param pDst  out: spectrum, window after window; must not overlap pSrc
 *  Checks: the band checks. */
ZETAC_API ZetStatus zetsDeinterleaveSpectrum_AAC_32s(const Zet32s* pSrc, Zet32s* pDst,
                                                     int numWinGrp, const Zet32s* pWinGrpLen,
                                                     int maxSfb, int samplingFreqIndex, int winLen);

/** Temporal noise shaping of a decoder (ISO/IEC 14496-3, 4.6.9): the all-pole filters run along the
 *  lines of each window. Results saturate at 32 bits.
 *  @param pSrcDst   in/out: spectrum, short windows one after another
 *  @param pTnsInfo  the channel's filters
 *  @param pTnsCoef  their coefficients, as the readers store them
 *  Checks: null pointers: zetStsNullPointer; winLen: zetStsAacWinLenErr; samplingFreqIndex outside
 *  0..11: zetStsAacSmpRateIdxErr; maxSfb outside 0..51 or above the band count: zetStsAacMaxSfbErr;
 *  then, window by window, n_filt: zetStsAacTnsNumFiltErr; coef_res: zetStsAacTnsCoefResErr; and
 *  filter by filter, length: zetStsAacTnsLengthErr; order: zetStsAacTnsOrderErr; direction neither
 * 0 nor 1, or not 0 for a filter of order 0: zetStsAacTnsDirectionErr; coef_compress:
 *  zetStsAacTnsCoefCompressErr. */
ZETAC_API ZetStatus zetsDecodeTNS_AAC_32s_I(Zet32s* pSrcDst, const ZetAACTnsInfo* pTnsInfo,
                                            const Zet8s* pTnsCoef, int maxSfb,
                                            int samplingFreqIndex, int winLen);

/** Temporal noise shaping of an encoder and of the LTP loop: the all-zero filters, inverse to those
 *  of zetsDecodeTNS_AAC_32s_I.
 *  @param objectType  1, low complexity
 *  Checks: those of zetsDecodeTNS_AAC_32s_I, with objectType other than 1: zetStsAacObjTypeErr
 *  after maxSfb and before the filters. */
ZETAC_API ZetStatus zetsEncodeTNS_AAC_32s_I(Zet32s* pSrcDst, const ZetAACTnsInfo* pTnsInfo,
                                            const Zet8s* pTnsCoef, int maxSfb,
                                            int samplingFreqIndex, int winLen, int objectType);

/* ------------------------------------------------------------------------------------------------
 * AAC: filter bank (ISO/IEC 13818-7, 15; 14496-3, 4.6.11)
 *
 * The rising half of a frame's window takes the shape of the previous frame, the falling half the
 * shape of this one. All data are Q3 where they are Zet32s.
 * --------------------------------------------------------------------------------------------- */

/** Inverse filter bank: spectrum to 16-bit PCM.
 *  @param pSrc          1024 spectral values, Q3; eight short windows one after another. Destroyed
 *  @param pDst          out: 1024 samples, pcmStep apart. A result below -32767 becomes -32768,
 *                       one of 32767 or more 32767
 *  @param pOverlap      in/out: 1024 values, Q3: the channel's state, zeroed before the first frame
 *  @param winSequence   ZetAACWindowSequence
 *  @param winShape      ZetAACWindowShape of this frame
 *  @param prevWinShape  ZetAACWindowShape of the previous frame
 *  @param pcmStep       1, or 2 to write one channel of an interleaved pair
 *  Checks: null pointers: zetStsNullPointer; winSequence: zetStsAacWinSeqErr; winShape,
 * prevWinShape: zetStsAacWinShapeErr; pcmStep: zetStsAacPcmStepErr. */
ZETAC_API ZetStatus zetsMDCTInv_AAC_32s16s(Zet32s* pSrc, Zet16s* pDst, Zet32s* pOverlap,
                                           int winSequence, int winShape, int prevWinShape,
                                           int pcmStep);

/** Inverse filter bank in place: leaves 1024 time samples in pSrcDst, as integers of Q0, not
 * clipped to 16 bits.
 *  @param len  1024
 *  Checks: null pointers: zetStsNullPointer; winSequence: zetStsAacWinSeqErr; winShape,
 * prevWinShape: zetStsAacWinShapeErr; len: zetStsBadSize. */
ZETAC_API ZetStatus zetsMDCTInv_AAC_32s_I(Zet32s* pSrcDst, Zet32s* pOverlap, int winSequence,
                                          int winShape, int prevWinShape, int len);

/** Forward filter bank: windowed time samples to spectrum,
 *  X[k] = 2 * sum over n of w[n] * x[n] * cos(2 pi / N * (n + n0) * (k + 1/2)), n0 = (N/2 + 1) / 2,
 *  in the Q format of the input. With the inverse filter bank it reconstructs with unity gain.
 *  Results saturate at 32 bits.
 *  @param pSrc       2048 time samples (N = 2048), or the 256 of one short window (N = 256)
 *  @param pDst       out: 1024 coefficients, or 128; may be pSrc
 *  @param pReserved  not used, but must not be null
 *  @param pWork      2048 values of scratch
 *  Checks: null pointers: zetStsNullPointer; winSequence: zetStsAacWinSeqErr; winShape, then
 *  prevWinShape: zetStsAacWinShapeErr. */
ZETAC_API ZetStatus zetsMDCTFwd_AAC_32s(const Zet32s* pSrc, Zet32s* pDst, Zet32s* pReserved,
                                        int winSequence, int winShape, int prevWinShape,
                                        Zet32s* pWork);

/** zetsMDCTFwd_AAC_32s in place: pSrcDst holds the samples and then, from its start, the
 *  coefficients. The checks are the same. */
ZETAC_API ZetStatus zetsMDCTFwd_AAC_32s_I(Zet32s* pSrcDst, Zet32s* pReserved, int winSequence,
                                          int winShape, int prevWinShape, Zet32s* pWork);

/* ------------------------------------------------------------------------------------------------
 * AAC: prediction
 * --------------------------------------------------------------------------------------------- */

/** State of the frequency-domain predictors of one channel; opaque. It has no pointers inside, so
 *  that it may be copied, 32-byte aligned, with all its bytes. */
typedef struct ZetsFDPState_32f ZetsFDPState_32f;

/** Size of the memory for the predictors of len lines: 24 * len + 260 bytes.
 *  Checks: null: zetStsNullPointer; len below 1, or so large that the size is no int:
 *  zetStsBadSize. */
ZETAC_API ZetStatus zetsFDPGetSize_32f(int len, int* pSize);

/** Lays the state out in pMem, from its first 32-byte boundary on, resets every line and stores
 *  that address.
 *  @param pMem  as many bytes as zetsFDPGetSize_32f says
 *  Checks: a null pointer: zetStsNullPointer; len as above: zetStsBadSize. */
ZETAC_API ZetStatus zetsFDPInit_32f(ZetsFDPState_32f** ppState, int len, Zet8u* pMem);

/** Allocates with zetsMalloc_8u and initialises. *ppState is not written on failure.
 *  Checks: null: zetStsNullPointer; len as above: zetStsBadSize; allocation failed:
 *  zetStsNoMemory. */
ZETAC_API ZetStatus zetsFDPInitAlloc_32f(ZetsFDPState_32f** ppState, int len);

/** Ends the state's life; memory of zetsFDPInitAlloc_32f is released, memory of the caller only
 *  marked as no state any more.
 *  Checks: null: zetStsNullPointer; no predictor state: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsFDPFree_32f(ZetsFDPState_32f* pState);

/** Resets the predictors of all lines.
 *  Checks: null: zetStsNullPointer; no predictor state: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsFDPReset_32f(ZetsFDPState_32f* pState);

/** Resets the lines first, first + step, first + 2 * step, ... as far as there are any. Reset group
 *  n of ISO/IEC 13818-7, 13.3.4 has step 30 and first n - 1.
 *  Checks: null: zetStsNullPointer; first below 0: zetStsBadSize; step below 1:
 *  zetStsFdpGroupLengthErr; no predictor state: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsFDPResetGroup_32f(int step, int first, ZetsFDPState_32f* pState);

/** Resets the lines pBandOffset[b] .. pBandOffset[b+1]-1 of every band b whose flag is not 0.
 *  @param pBandOffset  nBands + 1 ascending offsets; lines that the state does not have are ignored
 *  @param pResetFlag   nBands flags
 *  Checks: a null pointer: zetStsNullPointer; nBands below 1: zetStsBadSize; no predictor state:
 *  zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsFDPResetSfb_32f(const int* pBandOffset, int nBands, const Zet8u* pResetFlag,
                                        ZetsFDPState_32f* pState);

/** Prediction in an encoder (ISO/IEC 13818-7, 13): spectral lines to residuals, for all lines of
 *  the state. The state learns from the lines as they are.
 *  @param pSrc  spectral lines, in real units
 *  @param pDst  out: residuals; may be pSrc
 *  Checks: a null pointer: zetStsNullPointer; no predictor state: zetStsSpecMismatch.
 *  @return zetStsMisaligned when pSrc or pDst is not 16-byte aligned, after the work is done */
ZETAC_API ZetStatus zetsFDPFwd_32f(const Zet32f* pSrc, Zet32f* pDst, ZetsFDPState_32f* pState);

/** Prediction in a decoder (ISO/IEC 13818-7, 13): adds the prediction in the bands that use it.
 *  The state of every line of every band learns from the result, bit for bit as that of
 *  zetsFDPFwd_32f does from the same values.
 *  @param pSrcDst          in/out: spectral lines, in real units; index 0 is line 0
 *  @param pBandOffset      nBands + 1 ascending offsets; lines that the state does not have are
 *                          ignored
 *  @param pPredictionUsed  nBands flags
 *  Checks: a null pointer: zetStsNullPointer; nBands below 1: zetStsBadSize; no predictor state:
 *  zetStsSpecMismatch.
 *  @return zetStsMisaligned when pSrcDst is not 16-byte aligned, after the work is done */
ZETAC_API ZetStatus zetsFDPInv_32f_I(Zet32f* pSrcDst, const int* pBandOffset, int nBands,
                                     const Zet8u* pPredictionUsed, ZetsFDPState_32f* pState);

/** Long-term prediction (ISO/IEC 14496-3, 4.6.7): the time signal that the stream predicts for a
 *  frame and its successor, x[i] = gain * s[i - ltp_lag], i = 0..2047, with s[t] = pHistory[2048 +
 * t], or 0 where the history has no such value. One of the eight values of ltp_coef stands for the
 *  gain of the standard without the rounding to Q14; gains beyond +-4 count as +-4.
 *
 *  With zetsMDCTFwd_AAC_32s, the shapes of this frame, and zetsEncodeTNS_AAC_32s_I, where the
 *  channel has TNS, the prediction becomes the spectrum for zetsLongTermReconstruct_AAC_32s. A
 *  short window w of its own lag takes x[448 + 128 w] .. x[703 + 128 w] of the call with that lag
 *  in ltp_lag.
 *  @param pHistory  ZETAC_AAC_LTP_HISTORY_LEN values, Q8: see zetsLtpUpdate_AAC_32s
 *  @param pDst      out: 2048 samples, Q5
 *  @param pLtpInfo  ltp_lag and ltp_coef are looked at
 *  Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsLongTermPredict_AAC_32s(const Zet32s* pHistory, Zet32s* pDst,
                                                const ZetAACLtpInfo* pLtpInfo);

/** Adds a predicted spectrum where the stream wants it, before TNS (ISO/IEC 14496-3, 4.6.7): in the
 *  bands with ltp_long_used, or in the first eight bands of the short windows with ltp_short_used.
 *  Sums saturate. Bands of noise are to be cleared in the record by the caller.
 *  @param pSrc               predicted spectrum, Q5; eight short windows one after another
 *  @param pSrcDst            in/out: spectrum, Q3, likewise
 *  @param pLtpInfo           the channel's flags
 *  @param winSequence        ZetAACWindowSequence
 *  @param samplingFreqIndex  sampling_frequency_index, 0..12
 *  Checks: a null pointer: zetStsNullPointer; winSequence: zetStsAacWinSeqErr; samplingFreqIndex:
 *  zetStsAacSmpRateIdxErr. */
ZETAC_API ZetStatus zetsLongTermReconstruct_AAC_32s(const Zet32s* pSrc, Zet32s* pSrcDst,
                                                    const ZetAACLtpInfo* pLtpInfo, int winSequence,
                                                    int samplingFreqIndex);

/** Runs the inverse filter bank of a channel with long-term prediction and moves its history on.
 *  The history holds, in Q8, the last two frames of output, 1024 samples each, and the overlap that
 *  is the estimate of the next one. It is the filter bank's state too and takes the place of the
 *  overlap of zetsMDCTInv_AAC_32s16s: after the call pHistory[1024] .. pHistory[2047] are the
 *  output of this frame, not rounded to integers and not clipped to 16 bits.
 *  @param pSrc          1024 spectral values, Q3; eight short windows one after another. Destroyed
 *  @param pHistory      in/out: ZETAC_AAC_LTP_HISTORY_LEN values, the channel's state, zeroed
 *                       before the first frame. Output beyond 32 bits saturates
 *  @param winSequence   ZetAACWindowSequence
 *  @param winShape      ZetAACWindowShape of this frame
 *  @param prevWinShape  ZetAACWindowShape of the previous frame
 *  Checks: a null pointer: zetStsNullPointer; winSequence: zetStsAacWinSeqErr; winShape,
 *  prevWinShape: zetStsAacWinShapeErr. */
ZETAC_API ZetStatus zetsLtpUpdate_AAC_32s(Zet32s* pSrc, Zet32s* pHistory, int winSequence,
                                          int winShape, int prevWinShape);

/* ------------------------------------------------------------------------------------------------
 * MP3 decoding: records. Fields are named as the syntax elements of ISO/IEC 11172-3. "LSF" is the
 * extension of ISO/IEC 13818-3 to lower sampling frequencies.
 * --------------------------------------------------------------------------------------------- */

#define ZETAC_MP3_GRANULE_LEN 576   /**< spectral lines and samples per granule and channel */
#define ZETAC_MP3_SCF_MAX 40        /**< entries reserved for the scale factors of a channel */
#define ZETAC_MP3_V_BUFFER_LEN 1024 /**< values in the V buffer of zetsSynthPQMF_MP3_32s16s */

/** MPEG audio frame header (ISO/IEC 11172-3, 2.4.1.3; 13818-3, 2.4.1.3). */
typedef struct ZetMP3Header {
    Zet32s ID;                 /**< 1 MPEG-1, 0 LSF */
    Zet32s layer;              /**< as coded: 1 is Layer III */
    Zet32s protection_bit;     /**< 0 when a CRC word follows the header */
    Zet32s bitrate_index;      /**< 0 free format, 15 forbidden */
    Zet32s sampling_frequency; /**< index 0..2, 3 reserved */
    Zet32s padding_bit;        /**< 1: the frame has one byte more */
    Zet32s private_bit;        /**< 1 bit */
    Zet32s mode;               /**< 0 stereo, 1 joint stereo, 2 dual channel, 3 single channel */
    Zet32s mode_extension;     /**< bit 0 intensity stereo, bit 1 M/S stereo, in mode 1 */
    Zet32s copyright;          /**< 1 bit */
    Zet32s original_copy;      /**< 1 bit */
    Zet32s emphasis;           /**< 2 bits */
    Zet32s crc_check;          /**< only when protection_bit is 0 */
} ZetMP3Header;

/** Side information of one granule of one channel (ISO/IEC 11172-3, 2.4.1.7; 13818-3, 2.4.1.7). The
 *  records of a frame lie granule-major: index = granule * channels + channel. */
typedef struct ZetMP3GranuleSideInfo {
    Zet32s part2_3_length;        /**< bits of scale factors and Huffman data */
    Zet32s big_values;            /**< pairs of lines in the big-values regions */
    Zet32s global_gain;           /**< quarter steps, 210 is unity */
    Zet32s scalefac_compress;     /**< 4 bits, LSF 9 bits */
    Zet32s window_switching_flag; /**< 1 bit */
    Zet32s block_type;            /**< 0 normal, 1 start, 2 short, 3 stop */
    Zet32s mixed_block_flag;      /**< 1: the two lowest subbands are long */
    Zet32s table_select[3];       /**< Huffman table of each region */
    Zet32s subblock_gain[3];      /**< of each short window, in steps of 8 quarter steps */
    Zet32s region0_count;         /**< bands in region 0, minus 1 */
    Zet32s region1_count;         /**< bands in region 1, minus 1 */
    Zet32s preflag;               /**< 1: pretab is added */
    Zet32s scalefac_scale;        /**< scale factors count 2 or 4 quarter steps */
    Zet32s count1table_select;    /**< 0 table A, 1 table B */
} ZetMP3GranuleSideInfo;

/* ------------------------------------------------------------------------------------------------
 * MP3 decoding: header, side information, scale factors
 * --------------------------------------------------------------------------------------------- */

/** Reads a frame header of 4 bytes, and the CRC word when protection_bit is 0. The sync bits are
 *  passed over without a look, and so is the bit that tells MPEG-2.5; no field is range-checked.
 *  Three bytes behind the header, or behind the CRC word, must be readable.
 *  Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsUnpackFrameHeader_MP3(Zet8u** ppStream, ZetMP3Header* pHeader);

/** Reads the side information of a frame: 17 or 32 bytes, LSF 9 or 17. Three bytes behind it must
 * be readable.
 *  @param ppStream        in/out: byte position, behind header and CRC word
 *  @param pGranuleInfo    out: 1, 2 or 4 records, granule-major. Fields that the stream does not
 *                         carry keep their values: table_select[2] with window switching,
 *                         subblock_gain without it, preflag in LSF. With window switching
 *                         region0_count is 8 (short, not mixed) or 7 and both counts sum to 20
 *  @param pMainDataBegin  out: bytes that the main data reach back
 *  @param pPrivateBits    out: private_bits
 *  @param pScfsi          out, MPEG-1 only: flags [channel * 4 + band group]; room for 8
 *  @param pHeader         the frame's header
 *  Checks: a null pointer: zetStsNullPointer; ID outside 0..1 or layer not 1: zetStsBadFrameHeader;
 *  mode outside 0..3: zetStsBadFrameHeader; while reading, block_type 0 with window switching:
 *  zetStsBadSideInfo, with the records before it filled. */
ZETAC_API ZetStatus zetsUnpackSideInfo_MP3(Zet8u** ppStream, ZetMP3GranuleSideInfo* pGranuleInfo,
                                           int* pMainDataBegin, int* pPrivateBits, int* pScfsi,
                                           ZetMP3Header* pHeader);

/** Reads the scale factors of one granule of one channel from the main data (ISO/IEC 11172-3,
 *  2.4.2.7; 13818-3, 2.4.3.2). Three bytes behind the one with the last of them must be readable.
 *  @param ppStream, pBitOffset  in/out: position
 *  @param pScaleFactors  in/out: the channel's scale factors, room for ZETAC_MP3_SCF_MAX. MPEG-1
 *                        long: bands 0..20 and one 0; short: [band * 3 + window], bands 0..11, and
 *                        three 0; mixed: bands 0..7, then short bands 3..11, and three 0. LSF: the
 *                        coded values and three 0; in the right channel of intensity stereo a value
 *                        that is the largest of its group stands negated (illegal position).
 *                        Band groups with their scfsi set keep their values in granule 1
 *  @param pGranuleInfo   in/out: the record of this granule and channel; LSF sets preflag and
 *                        reduces mixed_block_flag of short blocks to its lowest bit
 *  @param pScfsi         the four flags of this channel
 *  @param pHeader        the frame's header
 *  @param granule        0..1
 *  @param channel        0..1
 *  Checks: a null pointer: zetStsNullPointer; bit offset, granule or channel: zetStsBadArg;
 *  scalefac_compress outside 0..15, LSF 0..511: zetStsBadSideInfo; LSF, mode_extension outside
 * 0..3: zetStsBadFrameHeader. */
ZETAC_API ZetStatus zetsUnpackScaleFactors_MP3_1u8s(Zet8u** ppStream, int* pBitOffset,
                                                    Zet8s* pScaleFactors,
                                                    ZetMP3GranuleSideInfo* pGranuleInfo,
                                                    int* pScfsi, ZetMP3Header* pHeader, int granule,
                                                    int channel);

/* ------------------------------------------------------------------------------------------------
 * MP3 decoding: Huffman data
 * --------------------------------------------------------------------------------------------- */

/** Lookup tables of the big-values codebooks. Each begins with 16 first-level entries indexed by
 *  the next 4 bits of the stream, followed by a tree of two-way nodes; bit 0 marks a leaf.
 *  docs/design.md has the layout. Tables 0..12 have 8-bit entries; 0 and 4 code nothing and are
 *  null. */
extern ZETAC_API const Zet8u* const _pHuffmanSmallTables[13];
/** Tables 13..31 with 16-bit entries, indexed by table - 13; 14 codes nothing and is null. Tables
 *  16..23 share one book, as do 24..31. */
extern ZETAC_API const Zet16s* const _pHuffmanBigTables[19];
/** linbits of tables 13..31, indexed by table - 13. */
extern ZETAC_API const Zet32s _pHfLinbits[19];
/** Count1 table A, indexed by 6 bits; the first bit of all but the one-bit code is 0. */
extern ZETAC_API const Zet8u _pHfQTable0[64];
/** Masks 2^n - 1 by n. */
extern ZETAC_API const Zet32s _pBitsMasks[32];

/** Decodes the Huffman data of one granule of one channel into 576 signed lines, in coded order
 *  (ISO/IEC 11172-3, 2.4.2.7). Once the checks are passed the position ends exactly hufSize bits
 *  further on, whatever the bits are, and nothing is read behind the byte that holds the last of
 *  them: these readers need no slack.
 *  @param ppStream, pBitOffset  in/out: position, behind the scale factors
 *  @param pDst           out: 576 quantised lines
 *  @param pNonZeroBound  out: index of the last non-zero line plus 1; 0 when all are zero
 *  @param pGranuleInfo   the record of this granule and channel
 *  @param pHeader        the frame's header
 *  @param hufSize        bits of Huffman data, 0..part2_3_length; with 0 all lines are 0
 *  @param pSfbTableLong  long-band boundaries, rows of 23 entries, row = ID * 3 +
 *                        sampling_frequency; not looked at with window switching
 *  Checks: the first six pointers and *ppStream null: zetStsNullPointer; bit offset, hufSize:
 *  zetStsBadArg; big_values outside 0..288, block_type, window_switching_flag, count1table_select:
 *  zetStsBadSideInfo; ID, layer, sampling_frequency: zetStsBadFrameHeader; with window switching
 *  block_type 0, else region counts below 0 or with a sum of 21 or more: zetStsBadSideInfo;
 *  table_select of a region in use: zetStsBadSideInfo. While reading, more than hufSize bits spent
 *  in the big-values regions: zetStsOutOfRange; then the lines are not to be used, and
 *  *pNonZeroBound is not written. A last count1 quadruple that overruns is dropped. */
ZETAC_API ZetStatus zetsHuffmanDecodeSfb_MP3_1u32s(Zet8u** ppStream, int* pBitOffset, Zet32s* pDst,
                                                   int* pNonZeroBound,
                                                   ZetMP3GranuleSideInfo* pGranuleInfo,
                                                   ZetMP3Header* pHeader, int hufSize,
                                                   const Zet16s* pSfbTableLong);

/** zetsHuffmanDecodeSfb_MP3_1u32s with the library's own long-band table. */
ZETAC_API ZetStatus zetsHuffmanDecode_MP3_1u32s(Zet8u** ppStream, int* pBitOffset, Zet32s* pDst,
                                                int* pNonZeroBound,
                                                ZetMP3GranuleSideInfo* pGranuleInfo,
                                                ZetMP3Header* pHeader, int hufSize);

/** zetsHuffmanDecodeSfb_MP3_1u32s with region 0 of window-switched granules from the tables.
 *  @param pSfbTableShort  short-band boundaries, rows of 14 entries
 *  @param pMbpTable       rows of 2 entries: the long band at which a mixed block switches to short
 *                         bands; the number of short-window bands of region 0 behind that point
 *  Checks: all pointers: zetStsNullPointer; bit offset: zetStsBadArg; ID: zetStsBadFrameHeader;
 *  big_values, block_type, window_switching_flag, block_type 0 with window switching:
 *  zetStsBadSideInfo; layer, sampling_frequency: zetStsBadFrameHeader; count1table_select, hufSize:
 *  zetStsBadSideInfo; region counts and table_select as above. While reading, as above. */
ZETAC_API ZetStatus zetsHuffmanDecodeSfbMbp_MP3_1u32s(
    Zet8u** ppStream, int* pBitOffset, Zet32s* pDst, int* pNonZeroBound,
    ZetMP3GranuleSideInfo* pGranuleInfo, ZetMP3Header* pHeader, int hufSize,
    const Zet16s* pSfbTableLong, const Zet16s* pSfbTableShort, const Zet16s* pMbpTable);

/* ------------------------------------------------------------------------------------------------
 * MP3 decoding: requantisation and stereo
 * --------------------------------------------------------------------------------------------- */

/** Turns the Huffman values of one granule, both channels at once, into a Q26 spectrum: gains, the
 *  4/3 power, M/S and intensity stereo, reordering of short blocks (ISO/IEC 11172-3, 2.4.3.4;
 *  13818-3, 2.4.3.2). Powers are rounded to nearest; beyond 32 bits they become +-(2^31 - 1), and
 *  the sums and differences of M/S saturate too. The format has room for 32 times full scale. The
 *  factor 1/sqrt(2) of M/S is part of the gain of the bands coded so. The uppermost band has no
 *  scale factor of its own: its gain takes the filler 0, and so does its intensity position, unless
 *  the band below is in intensity stereo too, whose position then goes on.
 *  @param pSrcDst         in/out: [2][576]; out: short blocks with six lines of each window in
 *                         every subband
 *  @param pNonZeroBound   in/out: [2] bounds of the Huffman decoder, lines beyond them being 0;
 *                         out: after stereo and reordering. Of short and mixed blocks each
 * channel's own, the index of its last non-zero line plus 1; of long blocks as it was or, in joint
 * stereo with a tool on, the larger of the two
 *  @param pScaleFactors   [2][ZETAC_MP3_SCF_MAX]
 *  @param pGranuleInfo    [2] records of this granule
 *  @param pHeader         the frame's header; stereo tools work in mode 1 only, mode 3 has one
 *                         channel, and the second is not touched
 *  @param pBuffer         576 values of scratch
 *  @param pSfbTableLong   rows of 23 entries, row = ID * 3 + sampling_frequency, ascending from 0
 *                         to 576, with 36 at index 8, in LSF at index 6
 *  @param pSfbTableShort  rows of 14 entries, ascending from 0 to 192, with 12 at index 3
 *  Checks: a null pointer: zetStsNullPointer; ID, sampling_frequency, mode, mode_extension:
 *  zetStsBadFrameHeader; in joint stereo with a tool on, block_type or mixed_block_flag different
 *  in the channels: zetStsBadSideInfo; per channel block_type, mixed_block_flag: zetStsBadSideInfo,
 *  bound outside 0..576: zetStsBadArg; while working, channel by channel, global_gain outside
 *  0..255, scalefac_scale, preflag: zetStsBadSideInfo, subblock_gain of a short block outside 0..7,
 *  a magnitude above 8206: zetStsOutOfRange; then an MPEG-1 intensity position outside 0..7 in a
 *  band at or above the right channel's bound: zetStsOutOfRange. */
ZETAC_API ZetStatus zetsReQuantizeSfb_MP3_32s_I(Zet32s* pSrcDst, int* pNonZeroBound,
                                                Zet8s* pScaleFactors,
                                                ZetMP3GranuleSideInfo* pGranuleInfo,
                                                ZetMP3Header* pHeader, Zet32s* pBuffer,
                                                const Zet16s* pSfbTableLong,
                                                const Zet16s* pSfbTableShort);

/** zetsReQuantizeSfb_MP3_32s_I with the library's own band tables. */
ZETAC_API ZetStatus zetsReQuantize_MP3_32s_I(Zet32s* pSrcDst, int* pNonZeroBound,
                                             Zet8s* pScaleFactors,
                                             ZetMP3GranuleSideInfo* pGranuleInfo,
                                             ZetMP3Header* pHeader, Zet32s* pBuffer);

/** sign(x) * |x|^(4/3), rounded to nearest; magnitudes above 8206 are taken as 8206.
 *  Checks: a null pointer: zetStsNullPointer; len below 0: zetStsBadSize. */
ZETAC_API ZetStatus zetsPow43_16s32f(const Zet16s* pSrc, Zet32f* pDst, int len);

/** |x|^(3/4), within 1.75 * 2^-23 of its value.
 *  Checks: a null pointer: zetStsNullPointer; len below 1: zetStsBadSize.
 *  @return zetStsMisaligned when a pointer is not 16-byte aligned, after the work is done */
ZETAC_API ZetStatus zetsPow34_32f(const Zet32f* pSrc, Zet32f* pDst, int len);

/** |x|^(3/4) rounded to nearest and limited to 32767, which also stands for NaN. Checks and warning
 *  as zetsPow34_32f. */
ZETAC_API ZetStatus zetsPow34_32f16s(const Zet32f* pSrc, Zet16s* pDst, int len);

/** pDst[i] = |pSrc[i] * 2^-inScaleFactor|^(3/4) * 2^-scaleFactor, rounded to nearest, ties to even,
 *  and limited to 32767.
 *  Checks: len below 1: zetStsBadSize; then a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsPow34_16s_Sfs(const Zet16s* pSrc, int inScaleFactor, Zet16s* pDst,
                                      int scaleFactor, int len);

/* ------------------------------------------------------------------------------------------------
 * MP3 decoding: hybrid synthesis
 * --------------------------------------------------------------------------------------------- */

/** Alias reduction, inverse MDCT of the 32 subbands, overlap-add and frequency inversion of one
 *  granule of one channel (ISO/IEC 11172-3, 2.4.3.4). All results saturate.
 *  @param pSrc             in: 576 lines, Q26, 18 per subband; changed by alias reduction
 *  @param pDst             out: [18][32] subband samples, Q24, time slot by time slot
 *  @param pOverlap         in/out: [32][18], Q24, the channel's state, zeroed before the first
 *                          granule
 *  @param nonZeroBound     0..576: lines from here on are zero
 *  @param pPrevNumOfImdct  in/out: subbands transformed in the previous granule, 0..32; state,
 * zeroed before the first granule
 *  @param blockType        block_type, 0..3
 *  @param mixedBlock       mixed_block_flag, 0..1
 *  Checks: a null pointer: zetStsNullPointer; nonZeroBound, blockType, mixedBlock,
 * *pPrevNumOfImdct: zetStsBadArg. */
ZETAC_API ZetStatus zetsMDCTInv_MP3_32s(Zet32s* pSrc, Zet32s* pDst, Zet32s* pOverlap,
                                        int nonZeroBound, int* pPrevNumOfImdct, int blockType,
                                        int mixedBlock);

/** The inverse MDCT of one subband: 18 lines, Q26, to 36 windowed values, Q24, saturated. blockType
 * 2 takes three 12-point transforms; 0, 1 and 3 the 36-point one with that block type's window, any
 *  other value with the normal window. No checks. */
ZETAC_API ZetStatus zetsMDCTInvWindow_MP3_32s(Zet32s* pSrc, Zet32s* pDst, int blockType);

/** One time slot of the polyphase synthesis filter bank (ISO/IEC 11172-3, 2.4.3.5): 32 subband
 *  samples to 32 PCM samples. Rounding adds 64 and shifts right by 7; a sum below -32767 becomes
 *  -32768, one above 32767 becomes 32767.
 *  @param pSrc       32 subband samples of one time slot of zetsMDCTInv_MP3_32s
 *  @param pDst       out: 32 samples, nChannels apart
 *  @param pVBuffer   in/out: ZETAC_MP3_V_BUFFER_LEN values, the channel's state, zeroed at the
 * start
 *  @param pVOffset   in/out: ring offset 0..15, zeroed at the start
 *  @param nChannels  stride of pDst, 1..2
 *  Checks: a null pointer: zetStsNullPointer; nChannels, then *pVOffset: zetStsBadArg. */
ZETAC_API ZetStatus zetsSynthPQMF_MP3_32s16s(Zet32s* pSrc, Zet16s* pDst, Zet32s* pVBuffer,
                                             int* pVOffset, int nChannels);

/* ------------------------------------------------------------------------------------------------
 * MP3: floating polyphase filter banks
 * --------------------------------------------------------------------------------------------- */

/** State of the analysis bank; opaque. */
typedef struct ZetsAnalysisFilterSpec_PQMF_MP3_32f ZetsAnalysisFilterSpec_PQMF_MP3_32f;
/** State of the synthesis bank; opaque. */
typedef struct ZetsSynthesisFilterSpec_PQMF_MP3_32f ZetsSynthesisFilterSpec_PQMF_MP3_32f;

/** Size of a bank's state in bytes, 2091. Checks: null: zetStsNullPointer. */
ZETAC_API ZetStatus zetsAnalysisFilterGetSize_PQMF_MP3_32f(int* pSize);
/** See zetsAnalysisFilterGetSize_PQMF_MP3_32f. */
ZETAC_API ZetStatus zetsSynthesisFilterGetSize_PQMF_MP3_32f(int* pSize);

/** Lays the state out in pMem, from its first 16-byte boundary on, and stores that address.
 *  Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus
zetsAnalysisFilterInit_PQMF_MP3_32f(ZetsAnalysisFilterSpec_PQMF_MP3_32f** ppSpec, Zet8u* pMem);
/** See zetsAnalysisFilterInit_PQMF_MP3_32f. */
ZETAC_API ZetStatus
zetsSynthesisFilterInit_PQMF_MP3_32f(ZetsSynthesisFilterSpec_PQMF_MP3_32f** ppSpec, Zet8u* pMem);

/** Allocates with zetsMalloc_8u and initialises.
 *  Checks: null: zetStsNullPointer; allocation failed: zetStsNoMemory. */
ZETAC_API ZetStatus
zetsAnalysisFilterInitAlloc_PQMF_MP3_32f(ZetsAnalysisFilterSpec_PQMF_MP3_32f** ppSpec);
/** See zetsAnalysisFilterInitAlloc_PQMF_MP3_32f. */
ZETAC_API ZetStatus
zetsSynthesisFilterInitAlloc_PQMF_MP3_32f(ZetsSynthesisFilterSpec_PQMF_MP3_32f** ppSpec);

/** Releases a state of InitAlloc; a state of Init is left as it is.
 *  Checks: null: zetStsNullPointer; not this family's state: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsAnalysisFilterFree_PQMF_MP3_32f(ZetsAnalysisFilterSpec_PQMF_MP3_32f* pSpec);
/** See zetsAnalysisFilterFree_PQMF_MP3_32f. */
ZETAC_API ZetStatus
zetsSynthesisFilterFree_PQMF_MP3_32f(ZetsSynthesisFilterSpec_PQMF_MP3_32f* pSpec);

/** Analysis of 32 PCM samples, in 16-bit units, into 32 subband samples in units of full scale
 *  (ISO/IEC 11172-3, C.1.3).
 *  @param mode  stride of pSrc: 1, or 2 for interleaved stereo
 *  Checks: a null pointer: zetStsNullPointer; mode: zetStsBadArg; not an analysis state:
 *  zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsAnalysisFilter_PQMF_MP3_32f(const Zet32f* pSrc, Zet32f* pDst,
                                                    ZetsAnalysisFilterSpec_PQMF_MP3_32f* pSpec,
                                                    int mode);

/** Synthesis of 32 PCM samples from 32 subband samples (ISO/IEC 11172-3, 2.4.3.5). The output has
 *  the unit of the input, so samples of the analysis bank come back in units of full scale.
 *  @param mode  stride of pDst: 1, or 2 for interleaved stereo
 *  Checks: as zetsAnalysisFilter_PQMF_MP3_32f. */
ZETAC_API ZetStatus zetsSynthesisFilter_PQMF_MP3_32f(const Zet32f* pSrc, Zet32f* pDst,
                                                     ZetsSynthesisFilterSpec_PQMF_MP3_32f* pSpec,
                                                     int mode);

/* ------------------------------------------------------------------------------------------------
 * MP3 encoding: records
 * --------------------------------------------------------------------------------------------- */

/** What the psychoacoustic model delivers for one granule and channel. */
typedef struct ZetMP3PsyOutput {
    Zet32s ratio[36]; /**< threshold over energy, Q31; 0x7FFFFFFF: no energy. Long blocks: bands
                           0..20; short blocks: [12 bands][3 windows] */
    Zet32s pe;        /**< perceptual entropy */
} ZetMP3PsyOutput;

/** Bits that earlier frames left for later ones (ISO/IEC 11172-3, C.1.5.4.2.2). */
typedef struct ZetMP3BitReservoir {
    Zet32s held;     /**< bits in the reservoir */
    Zet32s capacity; /**< bits that it may hold */
} ZetMP3BitReservoir;

/* ------------------------------------------------------------------------------------------------
 * MP3 encoding: analysis filter bank and forward MDCT
 * --------------------------------------------------------------------------------------------- */

/** The polyphase analysis filter bank of one granule of one channel (ISO/IEC 11172-3, C.1.3). There
 *  is no state inside: the caller passes the 480 samples before the granule along with it.
 *  @param pSrc       480 + 576 samples, oldest first, nChannels apart
 *  @param pDst       out: [18][32] subband samples, time slot by time slot, Q26 with 32768 as 1.0,
 *                    within 4 units of exact; no
 *                    samples lead beyond 2.7
 *  @param nChannels  stride of pSrc, 1..2
 *  Checks: a null pointer: zetStsNullPointer; nChannels: zetStsBadArg. */
ZETAC_API ZetStatus zetsAnalysisPQMF_MP3_16s32s(const Zet16s* pSrc, Zet32s* pDst, int nChannels);

/** Frequency inversion, window switching, MDCT and alias butterflies of one granule of one channel
 *  (ISO/IEC 11172-3, C.1.5.3.3): the inverse of zetsMDCTInv_MP3_32s but for the delay of a granule.
 *  @param pSrc          [18][32] subband samples of zetsAnalysisPQMF_MP3_16s32s, Q26
 *  @param pDst          out: 576 lines, Q26, saturated at 32 times full scale. Short blocks: band
 * by band, the three windows of a band one after another; mixed blocks: 36 long lines, then short
 * bands from 3 on
 *  @param pOverlap      in/out: [18][32], the samples of the granule before; state, zeroed before
 *                       the first granule
 *  @param pFrameHeader  the frame's header: ID and sampling_frequency choose the short bands
 *  @param pSideInfo     the record of this granule and channel: block_type and mixed_block_flag,
 *                       which gives the two lowest subbands the normal window
 *  Checks: a null pointer: zetStsNullPointer; ID, sampling_frequency: zetStsBadFrameHeader;
 *  block_type, mixed_block_flag: zetStsBadSideInfo. */
ZETAC_API ZetStatus zetsMDCTFwd_MP3_32s(const Zet32s* pSrc, Zet32s* pDst, Zet32s* pOverlap,
                                        const ZetMP3Header* pFrameHeader,
                                        const ZetMP3GranuleSideInfo* pSideInfo);

/* ------------------------------------------------------------------------------------------------
 * MP3 encoding: psychoacoustic model two
 * --------------------------------------------------------------------------------------------- */

#define ZETAC_MP3_PSY_BUFFER_LEN 25152  /**< bytes of the model's work buffer */
#define ZETAC_MP3_PSY_PARTITIONS_MAX 63 /**< threshold partitions of a long block, at most */
#define ZETAC_MP3_PSY_LONG_LINES 6      /**< lines predicted from long spectra */
#define ZETAC_MP3_PSY_SHORT_LINES 50    /**< short lines 2..51, predicted for long lines 6..205 */

/** What the psychoacoustic model keeps of one analysis channel. Index 0 of a pair is the last
 * block, index 1 the one before it. */
typedef struct ZetMP3PsyChannelState {
    uint64_t threshold[2][ZETAC_MP3_PSY_PARTITIONS_MAX]; /**< before the pre-echo limit */
    Zet32s longMagnitude[2][ZETAC_MP3_PSY_LONG_LINES];   /**< Q6 */
    Zet32sc longPhase[2][ZETAC_MP3_PSY_LONG_LINES];      /**< unit vectors, Q30; 0 without phase */
    Zet32s shortMagnitude[2][ZETAC_MP3_PSY_SHORT_LINES]; /**< Q6 */
    Zet32sc shortPhase[2][ZETAC_MP3_PSY_SHORT_LINES];    /**< unit vectors, Q30 */
    Zet32s ratioLong[36]; /**< pending ratios, as ZetMP3PsyOutput has them; the first 21 are used */
    Zet32s ratioShort[36]; /**< [12 bands][3 windows] */
    Zet32s pe;             /**< pending perceptual entropy */
    Zet32s block_type;     /**< pending block type, 0..3 */
} ZetMP3PsyChannelState;

/** State of the psychoacoustic model. All zero is the state before the first frame: silence, long
 *  blocks. */
typedef struct ZetMP3PsyState {
    ZetMP3PsyChannelState channel[4]; /**< left, right, mid, side; the last two in joint stereo */
} ZetMP3PsyState;

/** Psychoacoustic model two for one frame (ISO/IEC 11172-3, Annex D.2 as Layer III adapts it in
 *  C.1.5.3): block types, signal-to-mask ratios, perceptual entropy, the choice of M/S stereo and,
 *  at low bit rates, of intensity stereo. Integer arithmetic throughout; nothing overflows,
 * whatever the samples are.
 *
 *  The model looks one granule ahead. What a call delivers in granule slot 0 was found when the
 *  last call analysed its last granule; slot 1 (MPEG-1) is the first granule of this call. The
 * first call delivers in slot 0 what the state held.
 *
 *  @param pSrc       interleaved PCM. Granule g starts at time step 576 g and is analysed from
 * there to 576 g + 1023, so 576 (granules - 1) + 1024 time steps are read
 *  @param pOutput    out: [granule][channel], granules as in the frame. With M/S stereo they are
 *                    mid and side instead of left and right
 *  @param pIsSfbBound  out: [granule][3] with room for 6: the first band in intensity stereo, one
 *                    value for a long granule, one per window for a short one. Written only when
 *                    intensity stereo is chosen
 *  @param pSideInfo  out: [granule][channel], window_switching_flag, block_type and
 *                    mixed_block_flag (always 0); the other fields are left alone
 *  @param pHeader    in: ID (1: two granules, else one), bitrate_index, sampling_frequency (other
 *                    than 0..2 counts as 0), mode. Out: mode_extension. Intensity stereo is chosen
 *                    for two channels and bitrate_index 6..8, in whatever mode; M/S only in mode 1
 *  @param pState     in/out: state
 *  @param pReserved  not looked at
 *  @param pBuffer    work buffer of ZETAC_MP3_PSY_BUFFER_LEN bytes, aligned to 4
 *  Checks: a null pointer: zetStsNullPointer. Fields of the header are not checked. */
ZETAC_API ZetStatus zetsPsychoacousticModelTwo_MP3_16s(const Zet16s* pSrc, ZetMP3PsyOutput* pOutput,
                                                       Zet32s* pIsSfbBound,
                                                       ZetMP3GranuleSideInfo* pSideInfo,
                                                       ZetMP3Header* pHeader,
                                                       ZetMP3PsyState* pState, void* pReserved,
                                                       Zet8u* pBuffer);

/* ------------------------------------------------------------------------------------------------
 * MP3 encoding: quantisation and rate control
 * --------------------------------------------------------------------------------------------- */

/** Bytes of the work buffer of zetsQuantize_MP3_32s_I, at any address. */
#define ZETAC_MP3_QUANTIZE_BUFFER_LEN 65536

/** Quantises one MPEG-1 frame, chooses its scale factors, Huffman tables and regions, and keeps it
 *  within the bits that it may have (ISO/IEC 11172-3, C.1.5.4.3 and C.1.5.4.4). Of all that the
 *  budget allows, the frame gets the lowest noise, which stands above or below the thresholds,
 *  energy * ratio, by a number of decibels common to all granules and channels, somewhat more in
 *  wide bands than in narrow ones. A band whose share would be more than its energy is silent, and
 *  so is what lies above the bandwidth that the bits pay for. The uppermost band, which has no
 *  scale factor and no ratio, gets what the others leave. Noise below 1.5 times that of rounding to
 *  16 bits counts as none. Results are the same bits on every processor.
 *
 *  Constant bit rate, bitrate_index 0..14: the frame spends what it needs of meanBits and of the
 *  reservoir, saves the rest, and is stuffed where the reservoir would overflow. With held before
 *  and held' after the call, held' is a multiple of 8 and at most capacity, main_data_begin of the
 *  frame is held / 8, and the sum of part2_3_length is held + meanBits - held'. Only where stuffing
 *  would need more than 4095 bits in every granule and channel is the sum lower: bits that are left
 *  between this frame's main data and the next frame's, for the caller to fill.
 *
 *  Variable bit rate, bitrate_index 15: meanBits is what the largest frame that the caller allows
 *  holds; spending stops where no band's noise exceeds its threshold, if the ranges of the scale
 *  factors allow that, and the sum of part2_3_length is a multiple of 8. The caller takes the
 * smallest bit rate whose main data, with held, hold that sum, and keeps the reservoir: held +=
 * main data bits of that bit rate - sum, cut to the capacity, with the bits cut left between the
 * frames. The call does not write it. A caller who scales the ratios moves the thresholds, and with
 * them quality and size.
 *  @param pSrcDst        in: lines [granule][channel][576], Q26, after zetsJointStereoEncode; short
 *                        blocks band by band, the windows of a band one after another; out:
 *                        quantised lines with sign, magnitudes up to 8206
 *  @param pScaleFactors  [granule][channel][ZETAC_MP3_SCF_MAX], in: the intensity positions 0..6 of
 *                        the right channel; out: all, in the layout of
 *                        zetsUnpackScaleFactors_MP3_1u8s. Below the intensity bound a right band
 *                        that is silent up to the end gets 7, which is no position
 *  @param pScfsi         out: flags [channel * 4 + band group]
 *  @param pCount1Len     out: [granule][channel] lines in the count1 region, a multiple of 4
 *  @param pHufSize       out: [granule][channel] bits of Huffman data, with stuffing
 *  @param pFrameHeader   the frame's header: ID, layer, bitrate_index, sampling_frequency, mode and
 *                        mode_extension are looked at
 *  @param pSideInfo      in/out: records granule-major; in: block_type and mixed_block_flag; out:
 *                        all other fields
 *  @param pPsyOutput     records granule-major; mixed blocks are taken to have short ratios
 *  @param pIsSfbBound    [granule][3] first intensity band, of long blocks one, of short blocks one
 *                        a window; looked at in joint stereo with intensity
 *  @param pReservoir     in/out
 *  @param meanBits       main-data bits of this frame: all but header, CRC word and side
 *                        information
 *  @param pBuffer        ZETAC_MP3_QUANTIZE_BUFFER_LEN bytes of scratch
 *  Checks: a null pointer: zetStsNullPointer; ID not 1, layer not 1, bitrate_index outside 0..15,
 *  sampling_frequency outside 0..2, mode outside 0..3, mode_extension outside 0..3:
 *  zetStsBadFrameHeader; block_type outside 0..3 or mixed_block_flag outside 0..1 of a record:
 *  zetStsBadSideInfo; meanBits below 0: zetStsBadSize; held not a multiple of 8 in 0..4088, or
 *  capacity below 0: zetStsBadArg. */
ZETAC_API ZetStatus zetsQuantize_MP3_32s_I(
    Zet32s* pSrcDst, Zet8s* pScaleFactors, int* pScfsi, int* pCount1Len, int* pHufSize,
    const ZetMP3Header* pFrameHeader, ZetMP3GranuleSideInfo* pSideInfo,
    const ZetMP3PsyOutput* pPsyOutput, const Zet32s* pIsSfbBound, ZetMP3BitReservoir* pReservoir,
    int meanBits, Zet8u* pBuffer);

/* ------------------------------------------------------------------------------------------------
 * MP3 encoding: packing
 * --------------------------------------------------------------------------------------------- */

/** Writes a frame header of 4 bytes, and the CRC word when protection_bit is 0. The inverse of
 *  zetsUnpackFrameHeader_MP3; fields are masked to their widths and not checked.
 *  @param ppBitStream  in/out: byte position; the bytes written need not be cleared before, and
 *                      there is no check of the room: this holds for all packers
 *  Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsPackFrameHeader_MP3(const ZetMP3Header* pSrcFrameHeader,
                                            Zet8u** ppBitStream);

/** Writes the side information of a frame, 17 or 32 bytes, LSF 9 or 17. The inverse of
 *  zetsUnpackSideInfo_MP3; values are masked to the widths of their fields.
 *  @param pSrcSideInfo   1, 2 or 4 records, granule-major
 *  @param ppBitStream    in/out: byte position, behind header and CRC word
 *  @param mainDataBegin  bytes that the main data reach back
 *  @param privateBits    private_bits
 *  @param pSrcScfsi      flags [channel * 4 + band group]; LSF does not look at them
 *  @param pFrameHeader   the frame's header
 *  Checks: a null pointer: zetStsNullPointer; ID outside 0..1 or layer not 1: zetStsBadFrameHeader;
 *  mode outside 0..3: zetStsBadFrameHeader; while writing, block_type 0 with window switching:
 *  zetStsBadSideInfo, with the bits before it written. */
ZETAC_API ZetStatus zetsPackSideInfo_MP3(const ZetMP3GranuleSideInfo* pSrcSideInfo,
                                         Zet8u** ppBitStream, int mainDataBegin, int privateBits,
                                         const int* pSrcScfsi, const ZetMP3Header* pFrameHeader);

/** Writes the scale factors of one granule of one channel (ISO/IEC 11172-3, 2.4.2.7; 13818-3,
 *  2.4.3.2). The inverse of zetsUnpackScaleFactors_MP3_1u8s; values are masked to their widths.
 *  @param pSrcScaleFactor  as the unpacker lays them out; of negative values in the right channel
 *                          of LSF intensity stereo the magnitude is written
 *  @param ppBitStream, pOffset  in/out: position. Bits are or-ed into a byte begun before, and all
 *                          bits behind the position are 0 in the bytes after it
 *  @param pFrameHeader     the frame's header
 *  @param pSideInfo        the record of this granule and channel; LSF sets preflag
 *  @param pScfsi           the four flags of this channel
 *  @param granule          band groups with their scfsi set are left out of granule 1
 *  @param channel          1 is the right one, with the positions of LSF intensity stereo
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsBadArg; scalefac_compress outside
 *  0..15, LSF 0..511: zetStsBadSideInfo; LSF, mode_extension outside 0..3: zetStsBadFrameHeader. */
ZETAC_API ZetStatus zetsPackScaleFactors_MP3_8s1u(const Zet8s* pSrcScaleFactor, Zet8u** ppBitStream,
                                                  int* pOffset, const ZetMP3Header* pFrameHeader,
                                                  ZetMP3GranuleSideInfo* pSideInfo,
                                                  const int* pScfsi, int granule, int channel);

/** Writes the Huffman data of one granule of one channel and one bits up to its size (ISO/IEC
 *  11172-3, 2.4.2.7); MPEG-1 only. Magnitudes beyond a table are taken as its largest; beyond
 *  linbits, the lowest bits of the excess are written.
 *  @param pSrcIx        576 quantised lines with their signs, in coded order
 *  @param ppBitStream, pOffset  in/out: position, behind the scale factors; written as
 *                       zetsPackScaleFactors_MP3_8s1u does
 *  @param pFrameHeader  the frame's header
 *  @param pSideInfo     the record of this granule and channel
 *  @param count1Len     lines of the count1 region, which begins at line 2 * big_values; no
 *                       quadruple begins at line 573 or later
 *  @param hufSize       bits to be written, stuffing included; what the lines need more is written
 *                       all the same
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsBadArg; big_values outside 0..288,
 *  region counts below 0 or with a sum of 21 or more, count1table_select: zetStsBadSideInfo; ID not
 *  1, layer not 1, sampling_frequency: zetStsBadFrameHeader; while writing, table_select of a
 * region outside 0..31: zetStsBadSideInfo, with the regions before it written. */
ZETAC_API ZetStatus zetsHuffmanEncode_MP3_32s1u(const Zet32s* pSrcIx, Zet8u** ppBitStream,
                                                int* pOffset, const ZetMP3Header* pFrameHeader,
                                                const ZetMP3GranuleSideInfo* pSideInfo,
                                                int count1Len, int hufSize);

/** Makes M/S stereo and intensity stereo of both channels of a granule, as mode and mode_extension
 *  ask for (ISO/IEC 11172-3, 2.4.3.4.9). M and S are sum and difference over sqrt(2), rounded down;
 *  a line of intensity stereo is the sum of magnitudes with the sign of the larger one, the right
 *  channel's where they are equal. Both saturate; energies are sums of 64 bits.
 *  @param pSrcDstXrL, pSrcDstXrR  in/out: 576 lines each, laid out as zetsMDCTFwd_MP3_32s does
 *  @param pDstScaleFactorR  out: intensity positions 0..6 of the bands in intensity stereo, [band]
 *                           or, in short blocks, [band * 3 + window]; room for ZETAC_MP3_SCF_MAX
 *  @param pFrameHeader      the frame's header
 *  @param pSideInfo         [2] records of this granule
 *  @param pIsSfbBound       the bands where intensity stereo begins, [0] or [window]; M/S stereo
 *                           works below them. Without intensity stereo out: 22, or three times 13
 *  Checks: a null pointer: zetStsNullPointer; ID, sampling_frequency: zetStsBadFrameHeader; with a
 *  tool on, block_type different in the channels: zetStsBadSideInfo; with intensity stereo, bounds
 *  outside 0..22 or 0..13: zetStsBadArg. */
ZETAC_API ZetStatus zetsJointStereoEncode_MP3_32s_I(Zet32s* pSrcDstXrL, Zet32s* pSrcDstXrR,
                                                    Zet8s* pDstScaleFactorR,
                                                    const ZetMP3Header* pFrameHeader,
                                                    const ZetMP3GranuleSideInfo* pSideInfo,
                                                    Zet32s* pIsSfbBound);

/** Sets an empty bit reservoir and what it may hold at this bit rate: what is left of a decoder's
 *  7680 bits beside one frame, and at most what main_data_begin reaches.
 *  Checks: a null pointer: zetStsNullPointer; ID not 1, sampling_frequency, bitrate_index outside
 *  0..14: zetStsBadFrameHeader. */
ZETAC_API ZetStatus zetsBitReservoirInit_MP3(ZetMP3BitReservoir* pBitReservoir,
                                             const ZetMP3Header* pFrameHeader);

/* ------------------------------------------------------------------------------------------------
 * SBR: floating QMF banks (ISO/IEC 14496-3, 4.6.18.4): 32-band analysis, 64-band synthesis (twice
 * the rate) and 32-band "down" synthesis (the rate of the input), each for real and for complex
 * subband samples. Complex samples come as two matrices of singles (_32f) or as one of Zet32fc.
 *
 * A matrix of subband samples is an array of row pointers, one row per time slot, low bands first
 * (D2L). Rows may lie anywhere, but no destination may overlap a source; they are neither
 * checked nor copied.
 *
 * Modulation. With w the window of 320 values (c[2i] of the standard's prototype c) and x[0] the
 * newest sample, u[n] = sum over j = 0..4 of w[n + 64 j] x[n + 64 j], the analysis of a slot is
 *     complex  X[k] = 2 sum over n = 0..63 of u[n] exp(i pi/64 (k + 1/2)(2n - 1/2)),   k = 0..31,
 *     real     X[k] = 2 sum over n = 0..63 of u[n] cos(pi/64 (k + 1/2)(2n - 96)).
 * With B bands, 64 or 32, synthesis makes 2B new values of a slot,
 *     complex  v[n] = 1/64 Re sum over k of X[k] exp(i pi/(2B) (k + 1/2)(2n - p)),
 *              p = 255 for B = 64, p = 127.5 for B = 32,
 *     real     v[n] = 1/32 sum over k of X[k] cos(pi/(2B) (k + 1/2)(2n - B)),
 * and, v[0] being the newest value and c the window of 10 B values, B samples
 *     out[n] = sum over i = 0..4 of v[4B i + n] c[2B i + n] + v[4B i + 3B + n] c[2B i + B + n].
 *
 * Gain. Analysis followed by synthesis of the same kind has unit gain, reconstructs to 59.5 dB (the
 * prototype's own limit) and delays by 578 samples of the 64-band output, 289 of the 32-band one:
 * input sample m is centred at output sample 2 m + 578, or m + 289. A sinusoid of amplitude A in
 * the middle of a band has samples of magnitude 45.2 A, of either kind.
 *
 * The kinds differ in phase and do not mix: with X complex, the real bank's sample is
 * Re(X[k] exp(-i pi/64 (k + 1/2) 95.5)), not Re X[k], and its synthesis kernel is twice the real
 * part of the complex one times exp(i pi/128 (k + 1/2) 191).
 *
 * Results are the same bits on every processor, at any alignment, and however a stream is cut into
 * calls. A state holds one stream: it advances with every call, although its pointer is const.
 * --------------------------------------------------------------------------------------------- */

/** The prototype c of the QMF banks (ISO/IEC 14496-3, table 4.A.87); window of the 64-band
 *  synthesis. The banks of 32 bands take every second value of it. */
extern ZETAC_API const Zet32f SBR_TAB_QMF_WINDOW_640_FP[640];
/** The prototype, Q31. */
extern ZETAC_API const Zet32s SBR_TABLE_QMF_WINDOW_640_INT_Q31[640];
/** The prototype, Q30, rounded from its exact values too. */
extern ZETAC_API const Zet32s SBR_TABLE_QMF_WINDOW_640_INT_Q30[640];
/** Every second value of the prototype, c[2i], Q31. */
extern ZETAC_API const Zet32s SBR_TABLE_QMF_WINDOW_320_INT_Q31[320];
/** Every second value of the prototype, c[2i], Q30. */
extern ZETAC_API const Zet32s SBR_TABLE_QMF_WINDOW_320_INT_Q30[320];

/** State of a bank; opaque. */
typedef struct ZetsAnalysisFilterSpec_SBR_RToR_32f ZetsAnalysisFilterSpec_SBR_RToR_32f;
/** See ZetsAnalysisFilterSpec_SBR_RToR_32f. */
typedef struct ZetsAnalysisFilterSpec_SBR_RToC_32f ZetsAnalysisFilterSpec_SBR_RToC_32f;
/** See ZetsAnalysisFilterSpec_SBR_RToR_32f. */
typedef struct ZetsAnalysisFilterSpec_SBR_RToC_32f32fc ZetsAnalysisFilterSpec_SBR_RToC_32f32fc;
/** See ZetsAnalysisFilterSpec_SBR_RToR_32f. */
typedef struct ZetsSynthesisFilterSpec_SBR_RToR_32f ZetsSynthesisFilterSpec_SBR_RToR_32f;
/** See ZetsAnalysisFilterSpec_SBR_RToR_32f. */
typedef struct ZetsSynthesisFilterSpec_SBR_CToR_32f ZetsSynthesisFilterSpec_SBR_CToR_32f;
/** See ZetsAnalysisFilterSpec_SBR_RToR_32f. */
typedef struct ZetsSynthesisFilterSpec_SBR_CToR_32fc32f ZetsSynthesisFilterSpec_SBR_CToR_32fc32f;
/** See ZetsAnalysisFilterSpec_SBR_RToR_32f. */
typedef struct ZetsSynthesisDownFilterSpec_SBR_RToR_32f ZetsSynthesisDownFilterSpec_SBR_RToR_32f;
/** See ZetsAnalysisFilterSpec_SBR_RToR_32f. */
typedef struct ZetsSynthesisDownFilterSpec_SBR_CToR_32f ZetsSynthesisDownFilterSpec_SBR_CToR_32f;
/** See ZetsAnalysisFilterSpec_SBR_RToR_32f. */
typedef struct ZetsSynthesisDownFilterSpec_SBR_CToR_32fc32f
    ZetsSynthesisDownFilterSpec_SBR_CToR_32fc32f;

/** Sizes in bytes of a bank's memory, of any alignment.
 *  @param pSizeSpec  out: the state
 *  @param pSizeInit  out: memory that Init borrows
 *  @param pSizeWork  out: work buffer of every call
 *  Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsAnalysisFilterGetSize_SBR_RToR_32f(int* pSizeSpec, int* pSizeInit,
                                                           int* pSizeWork);
/** See zetsAnalysisFilterGetSize_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsAnalysisFilterGetSize_SBR_RToC_32f(int* pSizeSpec, int* pSizeInit,
                                                           int* pSizeWork);
/** See zetsAnalysisFilterGetSize_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsAnalysisFilterGetSize_SBR_RToC_32f32fc(int* pSizeSpec, int* pSizeInit,
                                                               int* pSizeWork);
/** See zetsAnalysisFilterGetSize_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisFilterGetSize_SBR_RToR_32f(int* pSizeSpec, int* pSizeInit,
                                                            int* pSizeWork);
/** See zetsAnalysisFilterGetSize_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisFilterGetSize_SBR_CToR_32f(int* pSizeSpec, int* pSizeInit,
                                                            int* pSizeWork);
/** See zetsAnalysisFilterGetSize_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisFilterGetSize_SBR_CToR_32fc32f(int* pSizeSpec, int* pSizeInit,
                                                                int* pSizeWork);
/** See zetsAnalysisFilterGetSize_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisDownFilterGetSize_SBR_RToR_32f(int* pSizeSpec, int* pSizeInit,
                                                                int* pSizeWork);
/** See zetsAnalysisFilterGetSize_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisDownFilterGetSize_SBR_CToR_32f(int* pSizeSpec, int* pSizeInit,
                                                                int* pSizeWork);
/** See zetsAnalysisFilterGetSize_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisDownFilterGetSize_SBR_CToR_32fc32f(int* pSizeSpec, int* pSizeInit,
                                                                    int* pSizeWork);

/** Lays a bank's state out in memory of the caller, with silence behind it; also starts a stream
 *  anew. The state lives in pMemSpec until the caller takes that memory back.
 *  @param ppSpec    out: the state
 *  @param pMemSpec  memory of GetSize's first size
 *  @param pMemInit  memory of the second size, not needed afterwards
 *  Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsAnalysisFilterInit_SBR_RToR_32f(
    ZetsAnalysisFilterSpec_SBR_RToR_32f** ppSpec, Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsAnalysisFilterInit_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsAnalysisFilterInit_SBR_RToC_32f(
    ZetsAnalysisFilterSpec_SBR_RToC_32f** ppSpec, Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsAnalysisFilterInit_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsAnalysisFilterInit_SBR_RToC_32f32fc(
    ZetsAnalysisFilterSpec_SBR_RToC_32f32fc** ppSpec, Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsAnalysisFilterInit_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisFilterInit_SBR_RToR_32f(
    ZetsSynthesisFilterSpec_SBR_RToR_32f** ppSpec, Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsAnalysisFilterInit_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisFilterInit_SBR_CToR_32f(
    ZetsSynthesisFilterSpec_SBR_CToR_32f** ppSpec, Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsAnalysisFilterInit_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisFilterInit_SBR_CToR_32fc32f(
    ZetsSynthesisFilterSpec_SBR_CToR_32fc32f** ppSpec, Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsAnalysisFilterInit_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisDownFilterInit_SBR_RToR_32f(
    ZetsSynthesisDownFilterSpec_SBR_RToR_32f** ppSpec, Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsAnalysisFilterInit_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisDownFilterInit_SBR_CToR_32f(
    ZetsSynthesisDownFilterSpec_SBR_CToR_32f** ppSpec, Zet8u* pMemSpec, Zet8u* pMemInit);
/** See zetsAnalysisFilterInit_SBR_RToR_32f. */
ZETAC_API ZetStatus zetsSynthesisDownFilterInit_SBR_CToR_32fc32f(
    ZetsSynthesisDownFilterSpec_SBR_CToR_32fc32f** ppSpec, Zet8u* pMemSpec, Zet8u* pMemInit);

/** Analysis of numSlots slots of 32 samples into real subband samples (ISO/IEC 14496-3,
 *  4.6.18.8.2.1).
 *  @param pSrc      32 * numSlots samples
 *  @param pDst      out: rows offset .. offset + numSlots - 1, of 32 samples each, are written
 *  @param pWindow   320 values: every second one of SBR_TAB_QMF_WINDOW_640_FP
 *  @param numSlots  below 1: nothing happens
 *  @param offset    row of the first slot
 *  @param kx        0..32: bands from here on are set to 0
 *  @param pSpec     the bank's state
 *  @param pWorkBuf  memory of GetSize's third size
 *  Checks: pSpec or pWindow null: zetStsNullPointer; not this bank's state: zetStsSpecMismatch;
 *  pSrc, pDst or pWorkBuf null: zetStsNullPointer; kx: zetStsBadSize. */
ZETAC_API ZetStatus zetsAnalysisFilter_SBR_RToR_32f_D2L(
    const Zet32f* pSrc, Zet32f* pDst[], const Zet32f* pWindow, int numSlots, int offset, int kx,
    const ZetsAnalysisFilterSpec_SBR_RToR_32f* pSpec, Zet8u* pWorkBuf);

/** Analysis into complex subband samples, real and imaginary parts in rows of their own (ISO/IEC
 *  14496-3, 4.6.18.4.1). Arguments as for zetsAnalysisFilter_SBR_RToR_32f_D2L.
 *  Checks: pSpec, pWindow or pWorkBuf null: zetStsNullPointer; not this bank's state:
 *  zetStsSpecMismatch; kx: zetStsBadSize; pSrc or a destination null: zetStsNullPointer. */
ZETAC_API ZetStatus zetsAnalysisFilter_SBR_RToC_32f_D2L(
    const Zet32f* pSrc, Zet32f* pDstRe[], Zet32f* pDstIm[], const Zet32f* pWindow, int numSlots,
    int offset, int kx, const ZetsAnalysisFilterSpec_SBR_RToC_32f* pSpec, Zet8u* pWorkBuf);

/** Analysis into rows of Zet32fc. Arguments and checks as for
 *  zetsAnalysisFilter_SBR_RToC_32f_D2L. */
ZETAC_API ZetStatus zetsAnalysisFilter_SBR_RToC_32f32fc_D2L(
    const Zet32f* pSrc, Zet32fc* pDst[], const Zet32f* pWindow, int numSlots, int offset, int kx,
    const ZetsAnalysisFilterSpec_SBR_RToC_32f32fc* pSpec, Zet8u* pWorkBuf);

/** Synthesis of numSlots slots of 64 samples from real subband samples (ISO/IEC 14496-3,
 *  4.6.18.8.2.2).
 *  @param pSrc      numSlots rows of 64 samples
 *  @param pDst      out: 64 * numSlots samples
 *  @param pWindow   640 values: SBR_TAB_QMF_WINDOW_640_FP
 *  @param numSlots  below 1: nothing happens
 *  @param pSpec     the bank's state
 *  @param pWorkBuf  memory of GetSize's third size
 *  Checks: pSpec or pWindow null: zetStsNullPointer; not this bank's state: zetStsSpecMismatch;
 *  pSrc, pDst or pWorkBuf null: zetStsNullPointer. */
ZETAC_API ZetStatus zetsSynthesisFilter_SBR_RToR_32f_D2L(
    const Zet32f* pSrc[], Zet32f* pDst, const Zet32f* pWindow, int numSlots,
    const ZetsSynthesisFilterSpec_SBR_RToR_32f* pSpec, Zet8u* pWorkBuf);

/** Synthesis from complex subband samples, real and imaginary parts in rows of their own (ISO/IEC
 *  14496-3, 4.6.18.4.2). Arguments as for zetsSynthesisFilter_SBR_RToR_32f_D2L.
 *  Checks: pSpec, pWindow or pWorkBuf null: zetStsNullPointer; not this bank's state:
 *  zetStsSpecMismatch; a source or pDst null: zetStsNullPointer. */
ZETAC_API ZetStatus zetsSynthesisFilter_SBR_CToR_32f_D2L(
    const Zet32f* pSrcRe[], const Zet32f* pSrcIm[], Zet32f* pDst, const Zet32f* pWindow,
    int numSlots, const ZetsSynthesisFilterSpec_SBR_CToR_32f* pSpec, Zet8u* pWorkBuf);

/** Synthesis from rows of Zet32fc. Arguments and checks as for
 *  zetsSynthesisFilter_SBR_CToR_32f_D2L. */
ZETAC_API ZetStatus zetsSynthesisFilter_SBR_CToR_32fc32f_D2L(
    const Zet32fc* pSrc[], Zet32f* pDst, const Zet32f* pWindow, int numSlots,
    const ZetsSynthesisFilterSpec_SBR_CToR_32fc32f* pSpec, Zet8u* pWorkBuf);

/** Synthesis at the rate of the input: zetsSynthesisFilter_SBR_RToR_32f_D2L with rows of 32
 *  samples, 32 samples out per slot and 320 values of window, those of the analysis. */
ZETAC_API ZetStatus zetsSynthesisDownFilter_SBR_RToR_32f_D2L(
    const Zet32f* pSrc[], Zet32f* pDst, const Zet32f* pWindow, int numSlots,
    const ZetsSynthesisDownFilterSpec_SBR_RToR_32f* pSpec, Zet8u* pWorkBuf);

/** zetsSynthesisFilter_SBR_CToR_32f_D2L at the rate of the input (ISO/IEC 14496-3, 4.6.18.4.3);
 *  sizes as for zetsSynthesisDownFilter_SBR_RToR_32f_D2L. */
ZETAC_API ZetStatus zetsSynthesisDownFilter_SBR_CToR_32f_D2L(
    const Zet32f* pSrcRe[], const Zet32f* pSrcIm[], Zet32f* pDst, const Zet32f* pWindow,
    int numSlots, const ZetsSynthesisDownFilterSpec_SBR_CToR_32f* pSpec, Zet8u* pWorkBuf);

/** zetsSynthesisFilter_SBR_CToR_32fc32f_D2L at the rate of the input; sizes as for
 *  zetsSynthesisDownFilter_SBR_RToR_32f_D2L. */
ZETAC_API ZetStatus zetsSynthesisDownFilter_SBR_CToR_32fc32f_D2L(
    const Zet32fc* pSrc[], Zet32f* pDst, const Zet32f* pWindow, int numSlots,
    const ZetsSynthesisDownFilterSpec_SBR_CToR_32fc32f* pSpec, Zet8u* pWorkBuf);

/* ------------------------------------------------------------------------------------------------
 * SBR: fixed-point QMF banks, one time slot per call, in high quality (SBRHQ: complex subband
 * samples) and in low power (SBRLP: real ones). Modulations, gains, delays and phases are those of
 * the floating banks above; the windows are built in, SBR_TABLE_QMF_WINDOW_320_INT_Q31 and
 * SBR_TABLE_QMF_WINDOW_640_INT_Q31.
 *
 * Q formats. Every bank has the scale of its floating counterpart, in both modes: integers in, the
 * same sums out, rounded to integers. So subband samples have the Q format of the samples that went
 * into the analysis, and a synthesis gives that format back. The caller chooses it: PCM of 16 bits
 * may carry up to 9 fractional bits (a shift to the left by 9) into the analysis. A decoder that
 * amplifies subband samples does well to keep a bit or two of that as room: Q8 is a good choice.
 *
 * Range. Nothing ever wraps.
 * - Analysis: samples of magnitude up to ZETAC_SBR_ANALYSIS_MAX = 2^24, 16 bits in Q9, are exact;
 *   larger ones count as that limit. Subband samples then stay below 72.1 * 2^24 < 2^31.
 * - Synthesis: values v of a slot saturate at 2^30. In high quality no input whose magnitudes are
 *   below 2^30 gets there, whatever the signs, in low power none below 2^29; a sinusoid does not at
 *   any amplitude that the subband samples can hold. The output is below 1.75 * 2^30.
 *
 * Accuracy. Inside, a slot has a common exponent, chosen from its largest value. Against exact
 * sums, results are off by 0.5 for their own rounding plus, at most, 0.44 in the synthesis for
 * the v of ten slots, rounded to half units, and for inputs of 16 bits a few hundredths for the
 * transform.
 *
 * A state starts at the first multiple of 16 at or behind the caller's pointer, rounded up at every
 * call. It holds one stream.
 * --------------------------------------------------------------------------------------------- */

#define ZETAC_SBR_ANALYSIS_MAX 0x1000000 /**< magnitude that samples of an analysis may have */

/** Size in bytes of a state, for memory of any alignment.
 *  Checks: null: zetStsNullPointer. */
ZETAC_API ZetStatus zetsAnalysisFilterGetSize_SBRHQ_32s32sc(int* pSize);
/** See zetsAnalysisFilterGetSize_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsAnalysisFilterGetSize_SBRLP_32s(int* pSize);
/** See zetsAnalysisFilterGetSize_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisFilterGetSize_SBRHQ_32sc32s(int* pSize);
/** See zetsAnalysisFilterGetSize_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisFilterGetSize_SBRLP_32s(int* pSize);
/** See zetsAnalysisFilterGetSize_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisDownFilterGetSize_SBRHQ_32sc32s(int* pSize);
/** See zetsAnalysisFilterGetSize_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisDownFilterGetSize_SBRLP_32s(int* pSize);

/** Lays a state out in memory of the caller, with silence behind it; also starts a stream anew.
 *  Checks: null: zetStsNullPointer. */
ZETAC_API ZetStatus zetsAnalysisFilterInit_SBRHQ_32s32sc(Zet8u* pState);
/** See zetsAnalysisFilterInit_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsAnalysisFilterInit_SBRLP_32s(Zet8u* pState);
/** See zetsAnalysisFilterInit_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisFilterInit_SBRHQ_32sc32s(Zet8u* pState);
/** See zetsAnalysisFilterInit_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisFilterInit_SBRLP_32s(Zet8u* pState);
/** See zetsAnalysisFilterInit_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisDownFilterInit_SBRHQ_32sc32s(Zet8u* pState);
/** See zetsAnalysisFilterInit_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisDownFilterInit_SBRLP_32s(Zet8u* pState);

/** Allocates a state with zetsMalloc_8u and initialises it.
 *  Checks: null: zetStsNullPointer; allocation failed: zetStsNoMemory, *ppState untouched. */
ZETAC_API ZetStatus zetsAnalysisFilterInitAlloc_SBRHQ_32s32sc(Zet8u** ppState);
/** See zetsAnalysisFilterInitAlloc_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsAnalysisFilterInitAlloc_SBRLP_32s(Zet8u** ppState);
/** See zetsAnalysisFilterInitAlloc_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisFilterInitAlloc_SBRHQ_32sc32s(Zet8u** ppState);
/** See zetsAnalysisFilterInitAlloc_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisFilterInitAlloc_SBRLP_32s(Zet8u** ppState);
/** See zetsAnalysisFilterInitAlloc_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisDownFilterInitAlloc_SBRHQ_32sc32s(Zet8u** ppState);
/** See zetsAnalysisFilterInitAlloc_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisDownFilterInitAlloc_SBRLP_32s(Zet8u** ppState);

/** Releases a state of InitAlloc; a state of Init is left as it is.
 *  Checks: null: zetStsNullPointer; not this bank's state: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsAnalysisFilterFree_SBRHQ_32s32sc(Zet8u* pState);
/** See zetsAnalysisFilterFree_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsAnalysisFilterFree_SBRLP_32s(Zet8u* pState);
/** See zetsAnalysisFilterFree_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisFilterFree_SBRHQ_32sc32s(Zet8u* pState);
/** See zetsAnalysisFilterFree_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisFilterFree_SBRLP_32s(Zet8u* pState);
/** See zetsAnalysisFilterFree_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisDownFilterFree_SBRHQ_32sc32s(Zet8u* pState);
/** See zetsAnalysisFilterFree_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsSynthesisDownFilterFree_SBRLP_32s(Zet8u* pState);

/** Analysis of 32 samples into 32 complex subband samples (ISO/IEC 14496-3, 4.6.18.4.1).
 *  @param pSrc    32 samples, the oldest first, of magnitude up to ZETAC_SBR_ANALYSIS_MAX (limited)
 *  @param pDst    out: 32 subband samples in the Q format of pSrc
 *  @param kx      0..32: bands from here on are set to 0
 *  @param pState  the bank's state
 *  Checks: a null pointer: zetStsNullPointer; not this bank's state: zetStsSpecMismatch; kx:
 *  zetStsBadSize. */
ZETAC_API ZetStatus zetsAnalysisFilter_SBRHQ_32s32sc(const Zet32s* pSrc, Zet32sc* pDst, int kx,
                                                     Zet8u* pState);
/** Analysis into 32 real subband samples (ISO/IEC 14496-3, 4.6.18.8.2.1). Arguments and checks as
 *  for zetsAnalysisFilter_SBRHQ_32s32sc. */
ZETAC_API ZetStatus zetsAnalysisFilter_SBRLP_32s(const Zet32s* pSrc, Zet32s* pDst, int kx,
                                                 Zet8u* pState);

/** Synthesis of 64 samples from 64 complex subband samples (ISO/IEC 14496-3, 4.6.18.4.2).
 *  @param pSrc    64 subband samples; any values, see above for when results saturate
 *  @param pDst    out: 64 samples in the Q format of pSrc
 *  @param pState  the bank's state
 *  Checks: a null pointer: zetStsNullPointer; not this bank's state: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsSynthesisFilter_SBRHQ_32sc32s(const Zet32sc* pSrc, Zet32s* pDst,
                                                      Zet8u* pState);
/** Synthesis from 64 real subband samples (ISO/IEC 14496-3, 4.6.18.8.2.2). Arguments and checks as
 *  for zetsSynthesisFilter_SBRHQ_32sc32s. */
ZETAC_API ZetStatus zetsSynthesisFilter_SBRLP_32s(const Zet32s* pSrc, Zet32s* pDst, Zet8u* pState);

/** Synthesis of 32 samples, at the rate of the analysed signal, from 32 complex subband samples
 *  (ISO/IEC 14496-3, 4.6.18.4.3). A state of zetsSynthesisFilterInit_SBRHQ_32sc32s is accepted too;
 *  the bank then uses the first half of its delay line. A stream keeps to one of the two banks:
 *  after a change the next ten slots mix what the other one left in the line, safely.
 *  @param pSrc    32 subband samples; any values, see above for when results saturate
 *  @param pDst    out: 32 samples in the Q format of pSrc
 *  @param pState  state of this bank or of the 64-band synthesis in the same mode
 *  Checks: a null pointer: zetStsNullPointer; neither of the two states: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsSynthesisDownFilter_SBRHQ_32sc32s(const Zet32sc* pSrc, Zet32s* pDst,
                                                          Zet8u* pState);
/** zetsSynthesisDownFilter_SBRHQ_32sc32s from 32 real subband samples; accepts a state of
 *  zetsSynthesisFilterInit_SBRLP_32s too. */
ZETAC_API ZetStatus zetsSynthesisDownFilter_SBRLP_32s(const Zet32s* pSrc, Zet32s* pDst,
                                                      Zet8u* pState);

/** Prediction coefficients of one band of complex fixed-point samples, for HF generation (ISO/IEC
 *  14496-3, 4.6.18.6.2): the covariance method over numSlots slots, as in the floating predictors.
 *  Covariances are 64-bit integers, exact while samples are below 2^27 (for up to 64 slots), and
 *  the equations are solved in double precision; the samples' Q format plays no part. Where either
 *  coefficient reaches magnitude 4, both are 0.
 *  @param pSrc      numSlots + 2 rows, one per slot: two slots of history, then the block
 *  @param pAlpha0   out: coefficient of the sample one slot back, Q29
 *  @param pAlpha1   out: coefficient of the sample two slots back, Q29
 *  @param band      index in the rows
 *  @param numSlots  slots of the block; below 1: nothing is written
 *  Checks: a null pointer: zetStsNullPointer; band below 0: zetStsBadSize. */
ZETAC_API ZetStatus zetsPredictOneCoef_SBRHQ_32sc_D2L(const Zet32sc* const pSrc[], Zet32sc* pAlpha0,
                                                      Zet32sc* pAlpha1, int band, int numSlots);
/** The same for real samples (ISO/IEC 14496-3, 4.6.18.8.5). Arguments and checks as for
 *  zetsPredictOneCoef_SBRHQ_32sc_D2L. */
ZETAC_API ZetStatus zetsPredictOneCoef_SBRLP_32s_D2L(const Zet32s* const pSrc[], Zet32s* pAlpha0,
                                                     Zet32s* pAlpha1, int band, int numSlots);

/** Undoes the wrap of a circular delay line, such as the history of a subband or of a bank, and
 *  changes its Q format on the way: pDst[i] = pSrc[(position + i) mod len] * 2^-scaleFactor.
 *  @param pSrc         the line, len values
 *  @param pDst         out: len values, the one at position first; not pSrc
 *  @param len          at least 1
 *  @param position     where the line begins, 0..len - 1
 *  @param scaleFactor  -31..31; positive: rounded to nearest, halves upwards; negative: to the
 *                      left, modulo 2^32
 *  Checks: a null pointer: zetStsNullPointer; len or position: zetStsBadSize; scaleFactor:
 *  zetStsBadArg. */
ZETAC_API ZetStatus zetsInvWrap_32s_Sf(const Zet32s* pSrc, Zet32s* pDst, int len, int position,
                                       int scaleFactor);

/* ------------------------------------------------------------------------------------------------
 * SBR: prediction, detection and the encoder's bank
 * --------------------------------------------------------------------------------------------- */

/** Second-order prediction coefficients of real subband samples over a block of time slots, by the
 *  covariance method, for the high-frequency generator (ISO/IEC 14496-3, 4.6.18.6.2). Of every band
 *  with samples X, with phi(i,j) = sum of X[n-i] X[n-j]* over the block,
 *      d      = phi(2,2) phi(1,1) - |phi(1,2)|^2 / (1 + 10^-6),
 *      alpha1 = (phi(0,1) phi(1,2) - phi(0,2) phi(1,1)) / d, or 0 where d^2 is 0,
 *      alpha0 = -(phi(0,1) + alpha1 phi(1,2)*) / phi(1,1), or 0 where phi(1,1) is 0;
 *  where either has a magnitude of 4 or more, both are 0. In single precision, sums in slot order;
 *  the same bits on every processor and for any number of bands.
 *  @param pSrc      numSlots + 2 rows of len samples: two slots of history, then the block
 *  @param pAlpha0   out: len coefficients of the slot before
 *  @param pAlpha1   out: len coefficients of the slot before that
 *  @param len       bands; below 1: nothing is written
 *  @param numSlots  slots of the block; below 1: nothing is written
 *  Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsPredictCoef_SBR_R_32f_D2L(const Zet32f* const pSrc[], Zet32f* pAlpha0,
                                                  Zet32f* pAlpha1, int len, int numSlots);

/** zetsPredictCoef_SBR_R_32f_D2L for complex samples, real and imaginary parts in rows of their own
 *  and results likewise (ISO/IEC 14496-3, 4.6.18.6.2). */
ZETAC_API ZetStatus zetsPredictCoef_SBR_C_32f_D2L(const Zet32f* const pSrcRe[],
                                                  const Zet32f* const pSrcIm[], Zet32f* pAlpha0Re,
                                                  Zet32f* pAlpha0Im, Zet32f* pAlpha1Re,
                                                  Zet32f* pAlpha1Im, int len, int numSlots);

/** zetsPredictCoef_SBR_C_32f_D2L on rows of Zet32fc; the results are the same bits. */
ZETAC_API ZetStatus zetsPredictCoef_SBR_C_32fc_D2L(const Zet32fc* const pSrc[], Zet32fc* pAlpha0,
                                                   Zet32fc* pAlpha1, int len, int numSlots);

/** Transient detector of an encoder: the time slot in which the energies of many bands rise at
 * once, where the grid of a frame (ISO/IEC 14496-3, 4.6.18.3.3) should have a border. Against the
 * mean P of a band's past, a slot of energy E rises by max(0, E - P) / (E + P + floor); the
 * strength of a slot is the mean over all bands, 0 to 1 (bands that jump by 10 dB: 0.8; stationary
 * noise: about 0.12). Then P moves by a quarter of E - P. The same bits on every processor.
 *  @param pSrc       energies |X|^2, [numSlots][len], slot after slot
 *  @param pHistory   in/out: the mean past energies P of len bands, zeroed at the start
 *  @param pStrength  out: numSlots strengths
 *  @param pSlot      out: the first slot of the greatest strength, or -1 if that is below threshold
 *  @param len        bands
 *  @param numSlots   time slots
 *  @param threshold  least strength of a transient; 0.5 suits
 *  @param floor      energy that counts as silence, 0 or more, in the unit of pSrc
 *  Checks: a null pointer: zetStsNullPointer; len, then numSlots below 1: zetStsBadSize. */
ZETAC_API ZetStatus zetsDetectTransient_SBR_32f(const Zet32f* pSrc, Zet32f* pHistory,
                                                Zet32f* pStrength, int* pSlot, int len,
                                                int numSlots, Zet32f threshold, Zet32f floor);

/** Tonality of bands for an encoder's choice of noise floors, inverse filtering and sinusoids
 *  (ISO/IEC 14496-3, 4.6.18.3.5): what second-order prediction explains of a band's energy over the
 *  block, divided by what it leaves. The coefficients are those of zetsPredictCoef_SBR_C_32f_D2L
 *  without the limit of 4. A stationary sinusoid reaches the greatest ratio, 2^20 - 1 (60 dB);
 * noise of n slots has a mean of about 2/n; silence gives 0. The same bits on every processor.
 *  @param pSrcRe, pSrcIm  [numSlots + 2][len] real and imaginary parts, slot after slot: two slots
 *                         of history, then the block
 *  @param pTNR            out: len ratios of energies, 0 or more
 *  @param len             bands
 *  @param numSlots        slots of the block
 *  Checks: a null pointer: zetStsNullPointer; len, then numSlots below 1: zetStsBadSize. */
ZETAC_API ZetStatus zetsEstimateTNR_SBR_32f(const Zet32f* pSrcRe, const Zet32f* pSrcIm,
                                            Zet32f* pTNR, int len, int numSlots);

/** Sizes in bytes of the encoder's bank: its state, of any alignment, and memory that Init borrows.
 *  Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsAnalysisFilterEncGetSize_SBR_32f(int* pSize, int* pSizeInit);
/** Lays the state out in pMem, from its first 16-byte boundary on. Either address may be given to
 *  the functions below. Checks: a null pointer: zetStsNullPointer. */
ZETAC_API ZetStatus zetsAnalysisFilterEncInit_SBR_32f(Zet8u* pMem, Zet8u* pMemInit);
/** Allocates the state and, for the call, what Init borrows.
 *  @param ppState  out: the state; null when there is no memory for it. When there is none for Init
 *                  the state's block stays here all the same, not initialised, and is the caller's:
 *                  release it with zetsFree
 *  Checks: null: zetStsNullPointer; an allocation failed: zetStsNoMemory. */
ZETAC_API ZetStatus zetsAnalysisFilterEncInitAlloc_SBR_32f(Zet8u** ppState);
/** Releases a state of InitAlloc; a state of Init is left as it is.
 *  Checks: null: zetStsNullPointer; not this bank's state: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsAnalysisFilterEncFree_SBR_32f(Zet8u* pState);

/** The 64-band complex analysis of an SBR encoder: one slot from the latest 640 samples, without a
 *  memory of its own. With x[0] the newest sample, c the prototype SBR_TAB_QMF_WINDOW_640_FP and
 *  u[n] = sum over j = 0..4 of x[n + 128 j] c[n + 128 j], it is X[k] = sum over n = 0..127 of u[n]
 *  exp(i pi/128 (k + 1/2)(2n + 1)), k = 0..63. The phase is not that of the synthesis banks, which
 *  reconstruct from 2n - 1; it is for measuring, not for reconstruction.
 *  @param pSrc    640 samples, the oldest first; the next slot begins 64 samples later
 *  @param pDst    out: 64 bands
 *  @param pState  the bank's state; only read
 *  Checks: a null pointer: zetStsNullPointer; not this bank's state: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsAnalysisFilterEnc_SBR_32f32fc(const Zet32f* pSrc, Zet32fc* pDst,
                                                      Zet8u* pState);

/* ------------------------------------------------------------------------------------------------
 * Escape-block VLC: blocks of values in a variable-length code of the caller, with the escapes of
 * Layer III (a magnitude of 15 is followed by escLen bits, the linbits) or of AAC (a magnitude of
 * 16 is followed by an escape sequence).
 *
 * The working functions take a spec that the functions below build from a list of codewords. They
 * round its address up to the next multiple of 32 at every call, so that an unaligned address of
 * the memory given to Init serves as well. docs/design.md has the layout of both specs.
 * --------------------------------------------------------------------------------------------- */

#define ZETAC_VLC_CODE_BITS_MAX 32 /**< bits of the longest codeword */

/** A codeword and what it stands for. */
typedef struct ZetVLCCode {
    Zet16s value[2]; /**< the pair, first value first; single values use value[0] only */
    Zet32s length;   /**< bits of the codeword, 1..ZETAC_VLC_CODE_BITS_MAX */
    Zet32s code;     /**< its bits, right-aligned: the first one sent is bit length - 1 */
} ZetVLCCode;

/** What the codewords of a decoding spec stand for. Values that are too large for the form, or for
 *  the 16 bits of a table entry, do not fit. */
typedef enum ZetVLCForm {
    zetVLCPairs = 0,   /**< signed pairs, their sign bits part of the codeword: -64..63 by
                            -128..127. The narrower the first value, the faster the table */
    zetVLCUTuples = 1, /**< pairs of magnitudes 0..127, whose signs follow the codeword */
    zetVLCSingles = 2, /**< one signed value -16384..16383, its sign bit part of the codeword */
    zetVLCUSingles = 3 /**< one magnitude 0..32767, whose sign follows the codeword */
} ZetVLCForm;

/** How large values are coded. */
typedef enum ZetVLCEscStyle {
    zetVLCEscMP3 = 0, /**< pairs -15..15 by -15..15 */
    zetVLCEscAAC = 1  /**< pairs -16..16 by -16..16 */
} ZetVLCEscStyle;

/** Decoding tables; opaque. */
typedef struct ZetsVLCDecodeSpec_1u16s ZetsVLCDecodeSpec_1u16s;
/** Encoding tables; opaque. */
typedef struct ZetsVLCEncodeSpec_16s1u ZetsVLCEncodeSpec_16s1u;

/** Size in bytes of the decoding spec of a list, for memory of any alignment. The time grows with
 *  the square of numCodes. Codewords need not cover all bit patterns: where bits begin no codeword,
 *  a decoder skips some of them and yields zeros. Several codewords may stand for the same values.
 *  @param pCodes    the codewords, in any order
 *  @param numCodes  how many, 1..32768
 *  @param form      ZetVLCForm
 *  Checks: a null pointer: zetStsNullPointer; numCodes: zetStsBadSize; form: zetStsBadArg; a length
 *  outside 1..32, a code with bits beyond its length, or a codeword that another one begins with or
 *  equals: zetStsBadArg; values that do not fit: zetStsOutOfRange; a table of more than 32768
 *  entries: zetStsBadSize. */
ZETAC_API ZetStatus zetsVLCDecodeGetSize_1u16s(const ZetVLCCode* pCodes, int numCodes, int form,
                                               int* pSize);
/** Lays the decoding spec out in pMem, from its first 32-byte boundary on, and stores that address.
 *  Checks: as zetsVLCDecodeGetSize_1u16s. */
ZETAC_API ZetStatus zetsVLCDecodeInit_1u16s(ZetsVLCDecodeSpec_1u16s** ppSpec,
                                            const ZetVLCCode* pCodes, int numCodes, int form,
                                            Zet8u* pMem);
/** Allocates with zetsMalloc_8u and initialises.
 *  Checks: as zetsVLCDecodeGetSize_1u16s; allocation failed: zetStsNoMemory, *ppSpec untouched. */
ZETAC_API ZetStatus zetsVLCDecodeInitAlloc_1u16s(ZetsVLCDecodeSpec_1u16s** ppSpec,
                                                 const ZetVLCCode* pCodes, int numCodes, int form);
/** Ends the spec's life; memory of InitAlloc is released.
 *  Checks: null: zetStsNullPointer; not a decoding spec: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsVLCDecodeFree_1u16s(ZetsVLCDecodeSpec_1u16s* pSpec);

/** Size in bytes of the encoding spec of a style, for memory of any alignment.
 *  @param escStyle  ZetVLCEscStyle
 *  Checks: null: zetStsNullPointer; escStyle: zetStsBadArg. */
ZETAC_API ZetStatus zetsVLCEncodeGetSize_16s1u(int escStyle, int* pSize);
/** Lays the encoding spec out in pMem, from its first 32-byte boundary on, and stores that address.
 *  @param pCodes    codewords of signed pairs, sign bits included, in any order. Nothing is written
 *                   or counted for pairs that the list has not
 *  @param numCodes  how many, 1..1089
 *  Checks: a null pointer: zetStsNullPointer; numCodes: zetStsBadSize; escStyle: zetStsBadArg;
 *  no prefix code, as in zetsVLCDecodeGetSize_1u16s: zetStsBadArg; a pair outside the style's
 *  range: zetStsOutOfRange; a pair given twice: zetStsBadArg; in the MP3 style, a pair with a
 *  magnitude of 15 whose codeword has no bits besides its sign bits: zetStsBadArg. */
ZETAC_API ZetStatus zetsVLCEncodeInit_16s1u(ZetsVLCEncodeSpec_16s1u** ppSpec,
                                            const ZetVLCCode* pCodes, int numCodes, int escStyle,
                                            Zet8u* pMem);
/** Allocates with zetsMalloc_8u and initialises.
 *  Checks: as zetsVLCEncodeInit_16s1u; allocation failed: zetStsNoMemory, *ppSpec untouched. */
ZETAC_API ZetStatus zetsVLCEncodeInitAlloc_16s1u(ZetsVLCEncodeSpec_16s1u** ppSpec,
                                                 const ZetVLCCode* pCodes, int numCodes,
                                                 int escStyle);
/** Ends the spec's life; memory of InitAlloc is released.
 *  Checks: null: zetStsNullPointer; not an encoding spec: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsVLCEncodeFree_16s1u(ZetsVLCEncodeSpec_16s1u* pSpec);

/** Decodes signed values whose sign bits are part of the codeword. A magnitude of 15 puts escLen
 *  bits between the codeword and its sign: codeword, extension and sign of the first value,
 *  extension and sign of the second.
 *  @param ppStream, pBitOffset  in/out: position
 *  @param escLen    bits of an extension, 0..15; other numbers count as the nearest of these
 *  @param pData     out: len values, magnitudes limited to 32767
 *  @param len       values; an odd last one is left out, and below 2 there is nothing to do
 *  @param pVLCSpec  decoding spec of form zetVLCPairs or zetVLCSingles. Single values have their
 *                   escape behind their own codeword, in both styles
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsBadBitOffset; not a decoding spec:
 *  zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsVLCDecodeEscBlock_MP3_1u16s(Zet8u** ppStream, int* pBitOffset, int escLen,
                                                    Zet16s* pData, int len, const void* pVLCSpec);

/** The same with the escapes of AAC (ISO/IEC 14496-3, 4.6.3.3): behind the codeword follows, for
 *  each value of magnitude 16 in turn, an escape sequence of N ones, a zero and N + 4 bits b; its
 *  magnitude is 2^(N+4) + b.
 *  Checks: as zetsVLCDecodeEscBlock_MP3_1u16s; while reading, N above 8: zetStsBadEscapeCode, with
 *  the codewords before stored and the position behind the ninth one. */
ZETAC_API ZetStatus zetsVLCDecodeEscBlock_AAC_1u16s(Zet8u** ppStream, int* pBitOffset,
                                                    Zet16s* pData, int len, const void* pVLCSpec);

/** Decodes magnitudes whose sign bits follow the codeword (ISO/IEC 11172-3, 2.4.1.7): for each
 *  value in turn, behind a magnitude of 15 escLen bits to be added, and for any value but 0 a sign
 *  bit, 1 negative.
 *  @param pVLCSpec  decoding spec of form zetVLCUTuples or zetVLCUSingles
 *  The other arguments and the checks are those of zetsVLCDecodeEscBlock_MP3_1u16s. */
ZETAC_API ZetStatus zetsVLCDecodeUTupleEscBlock_MP3_1u16s(Zet8u** ppStream, int* pBitOffset,
                                                          int escLen, Zet16s* pData, int len,
                                                          const void* pVLCSpec);

/** Decodes magnitudes in the order of AAC (ISO/IEC 14496-3, 4.4.2.7): the codeword, the sign bits
 *  of all its values that are not 0, the escape sequences of its magnitudes of 16.
 *  @param pVLCSpec  decoding spec of form zetVLCUTuples or zetVLCUSingles
 *  The other arguments and the checks are those of zetsVLCDecodeEscBlock_AAC_1u16s. */
ZETAC_API ZetStatus zetsVLCDecodeUTupleEscBlock_AAC_1u16s(Zet8u** ppStream, int* pBitOffset,
                                                          Zet16s* pData, int len,
                                                          const void* pVLCSpec);

/** Encodes signed pairs as zetsVLCDecodeEscBlock_MP3_1u16s reads them. The bits before the position
 *  are kept, those behind the last one written are 0 up to the end of its byte, and no further byte
 *  is touched.
 *  @param pInputData  len values; extensions are limited to what escLen bits hold
 *  @param len         values; an odd last one is left out, and below 2 there is nothing to do
 *  @param escLen      bits of an extension, 0..15; other numbers count as the nearest of these
 *  @param ppStream, pBitOffset  in/out: position
 *  @param pVLCSpec    encoding spec of this style
 *  Checks: a null pointer: zetStsNullPointer; bit offset: zetStsBadBitOffset; not an encoding spec:
 *  zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsVLCEncodeEscBlock_MP3_16s1u(const Zet16s* pInputData, int len, int escLen,
                                                    Zet8u** ppStream, int* pBitOffset,
                                                    const void* pVLCSpec);
/** Encodes signed pairs as zetsVLCDecodeEscBlock_AAC_1u16s reads them. Magnitudes above 8191 have
 *  an escape sequence too, which that decoder refuses.
 *  The arguments and the checks are those of zetsVLCEncodeEscBlock_MP3_16s1u. */
ZETAC_API ZetStatus zetsVLCEncodeEscBlock_AAC_16s1u(const Zet16s* pInputData, int len,
                                                    Zet8u** ppStream, int* pBitOffset,
                                                    const void* pVLCSpec);

/** Counts the bits that zetsVLCEncodeEscBlock_MP3_16s1u writes.
 *  @param pCountBits  out: bits; 0 when len is below 2
 *  Checks: a null pointer: zetStsNullPointer; not an encoding spec: zetStsSpecMismatch. */
ZETAC_API ZetStatus zetsVLCCountEscBits_MP3_16s32s(const Zet16s* pInputData, int len, int escLen,
                                                   int* pCountBits, const void* pVLCSpec);
/** Counts the bits that zetsVLCEncodeEscBlock_AAC_16s1u writes. Checks: as
 *  zetsVLCCountEscBits_MP3_16s32s. */
ZETAC_API ZetStatus zetsVLCCountEscBits_AAC_16s32s(const Zet16s* pInputData, int len,
                                                   int* pCountBits, const void* pVLCSpec);

/* ------------------------------------------------------------------------------------------------
 * Vector quantisation of an interleaved spectrum with two conjugate codebooks (the weighted
 * interleaved vector quantisation of ISO/IEC 14496-3, subpart 4)
 *
 * A spectrum of len lines is divided into nDiv interleaved subvectors: component i of subvector d
 * is line d + i * nDiv, and it has L(d) = ceil((len - d) / nDiv) components. Every subvector is
 * coded as the mean of one vector of each book, of which either may be negated:
 *   y = (s0 * c0 + s1 * c1) / 2, where s0, s1 are 1 or -1,
 * and its distance to the target x under the weights w is the sum over i of w[i] * (x[i] - y[i])^2.
 * An encoder calls zetsVQPreSelect_32f for each book, zetsVQMainSelect_32f for the best pair of
 * their candidates, and zetsVQIndexSelect_32s for what goes into the stream; a decoder calls
 * zetsVQReconstruction_32s32f. If all vectors are candidates with all their signs, the search is
 * exhaustive.
 *
 * Sums have eight partial sums in a fixed order, so that every machine chooses alike. Data are
 * finite, weights not negative; other data are safe, but what is chosen for them is not defined.
 * --------------------------------------------------------------------------------------------- */

#define ZETAC_VQ_VECTOR_MAX 128     /**< components of the longest subvector */
#define ZETAC_VQ_CANDIDATES_MAX 128 /**< candidates of a book for each subvector */

/** One of the two codebooks. */
typedef struct ZetVQCodebook {
    const Zet32f* pVectors; /**< [numCodes][codeLen]; a subvector uses the first L(d) of codeLen */
    Zet32s numCodes;        /**< vectors, at least 1 */
    Zet32s codeLen;         /**< components of each, at least L(0) */
    Zet32s signBit;         /**< 1: a vector may be negated; 0: its sign is always 1 */
} ZetVQCodebook;

/** Chooses, for each subvector, the vectors of one book, with their signs, that have the highest
 *  scores: weighted correlation with the target less a quarter of the weighted energy,
 *    s * sum over i of w[i] * x[i] * c[i] - 1/4 * sum over i of w[i] * c[i]^2,
 *  where s is 1 and, if the book has signs, also -1. That is, but for a constant, the negated
 *  distance of x and s * c / 2: what a vector promises while nothing is known of its partner.
 *  @param pSrc      target: len values in the order of the lines
 *  @param pWeights  weights: len values
 *  @param len       lines
 *  @param nDiv      subvectors, 1..len
 *  @param pBook     the book
 *  @param pCand     out: [nDiv][numCand] candidates, the best first, of equal ones the lower number
 *                   and the positive sign: n for vector n, -n - 1 for vector n negated
 *  @param numCand   candidates to keep, at most numCodes, with signs 2 * numCodes
 *  Checks: a null pointer, also pBook->pVectors: zetStsNullPointer; len, nDiv or numCand below its
 *  range, then numCodes, codeLen or L(0) above ZETAC_VQ_VECTOR_MAX: zetStsBadSize; signBit, then
 *  numCand above its range or ZETAC_VQ_CANDIDATES_MAX: zetStsBadArg. */
ZETAC_API ZetStatus zetsVQPreSelect_32f(const Zet32f* pSrc, const Zet32f* pWeights, int len,
                                        int nDiv, const ZetVQCodebook* pBook, Zet32s* pCand,
                                        int numCand);

/** Chooses, for each subvector, the pair of candidates with the least distance, of equal ones the
 *  first in the order of pCand0, then pCand1.
 *  @param pBooks     [2] books
 *  @param pCand0, pCand1  [nDiv][numCand0] and [nDiv][numCand1] candidates of zetsVQPreSelect_32f
 *  @param pSel       out: [nDiv][2] places of the chosen ones among the subvector's candidates
 *  @param pDistance  out: nDiv distances
 *  The other arguments and the checks are those of zetsVQPreSelect_32f, for both books; then a
 *  candidate that is not of its book: zetStsBadArg. */
ZETAC_API ZetStatus zetsVQMainSelect_32f(const Zet32f* pSrc, const Zet32f* pWeights, int len,
                                         int nDiv, const ZetVQCodebook* pBooks,
                                         const Zet32s* pCand0, int numCand0, const Zet32s* pCand1,
                                         int numCand1, Zet32s* pSel, Zet32f* pDistance);

/** Packs the chosen candidates into indexes: the vector's number and, if the book has signs, above
 *  the least bits that hold numCodes - 1, a sign bit, 1 negated.
 *  @param pSel    [nDiv][2] places of zetsVQMainSelect_32f
 *  @param nDiv    subvectors, at least 1
 *  @param pIndex  out: [nDiv][2] indexes
 *  The other arguments are those of zetsVQMainSelect_32f.
 *  Checks: a null pointer: zetStsNullPointer; nDiv, numCand0 or numCand1, then numCodes or codeLen:
 *  zetStsBadSize; signBit, then too many candidates, then one that is not of its book, then a place
 *  that is not below their number: zetStsBadArg. */
ZETAC_API ZetStatus zetsVQIndexSelect_32s(const Zet32s* pSel, int nDiv, const ZetVQCodebook* pBooks,
                                          const Zet32s* pCand0, int numCand0, const Zet32s* pCand1,
                                          int numCand1, Zet32s* pIndex);

/** Reconstructs the lines, pDst[d + i * nDiv] = gain * (s0 * c0[i] / 2 + s1 * c1[i] / 2).
 *  @param pIndex  [nDiv][2] indexes as zetsVQIndexSelect_32s packs them
 *  @param pBooks  [2] books
 *  @param gain    factor of all lines
 *  @param pDst    out: len lines
 *  @param len     lines
 *  @param nDiv    subvectors, 1..len
 *  Checks: a null pointer: zetStsNullPointer; len or nDiv, then numCodes, codeLen or L(0) above
 *  ZETAC_VQ_VECTOR_MAX: zetStsBadSize; signBit: zetStsBadArg; an index that stands for no vector:
 *  zetStsOutOfRange. */
ZETAC_API ZetStatus zetsVQReconstruction_32s32f(const Zet32s* pIndex, const ZetVQCodebook* pBooks,
                                                Zet32f gain, Zet32f* pDst, int len, int nDiv);

#ifdef __cplusplus
}
#endif

#endif /* ZETAC_H */
