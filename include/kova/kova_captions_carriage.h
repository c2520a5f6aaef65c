// SPDX-License-Identifier: MIT
/** @file
    Where closed captions travel: functions that find cc_data() triplets in video, in ancillary data and in MP4
    samples, put them into presentation order, and read what accompanies them. C99 and C++.

    A triplet is three bytes as CTA-708 defines them: marker bits, cc_valid and cc_type; then two bytes of data.
    The functions copy triplets as they find them, fillers and invalid ones included, into a list that the
    caller owns. The caption decoder takes them from there, in presentation order (KovaCaptionsReorder).

    What holds for every function of this header unless its own words say otherwise:

    - **Pointers** belong to the caller, are used during the call only, and are not kept. Data may be null if its
      size is 0; every other pointer is required, and the function returns -1 if it is null.
    - **Result:** the number of triplets appended, 0 or more, or -1 if the arguments are wrong or the data is not of
      the kind that the function reads. Nothing is appended when -1 is returned.
    - **Damaged data** adds one to KovaCaptionsTriplets::errors for each structure that is damaged, and what is
      intact in it is used. No input leads to reads or writes outside of the buffers given.
    - **Cost:** linear in the size of the data. Nothing is allocated.
    - **Threads:** any thread may call, as long as no two use the same list or queue at a time. Nothing blocks. */
#ifndef KOVA_CAPTIONS_CARRIAGE_H
#define KOVA_CAPTIONS_CARRIAGE_H

#include "kova_captions.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Most triplets that one cc_data() holds: its count has five bits. */
#define KOVA_CAPTIONS_CC_DATA_TRIPLETS 31

/** A list of triplets. The caller sets `bytes` and `capacity`, and the rest to 0, before the first call, and empties
    it by setting `count` to 0. Functions append to it. */
typedef struct KovaCaptionsTriplets {
    uint8_t *bytes;   /**< room for 3 * capacity bytes; the caller's; not null unless capacity is 0 */
    size_t capacity;  /**< triplets that there is room for */
    size_t count;     /**< triplets in it, at most capacity */
    uint32_t dropped; /**< triplets found when the list was full; they are lost */
    uint32_t errors;  /**< damaged structures met */
} KovaCaptionsTriplets;

/* ---------------------------------------------------------------------------------------------------------------
   cc_data() and its carriers in video
   --------------------------------------------------------------------------------------------------------------- */

/** Appends bare triplets, as demultiplexers hand them over that have parsed cc_data() already (FFmpeg's side data
    AV_FRAME_DATA_A53_CC).
    @param data,size  bytes, three per triplet; an incomplete last one counts as one error
    @param triplets   the list to append to
    @return the number of triplets appended; -1 if an argument is wrong */
KOVA_CAPTIONS_API int Kova_Captions_ReadTriplets(const uint8_t *data, size_t size,
                                                 KovaCaptionsTriplets *triplets);

/** Appends the triplets of one cc_data().
    Yields none if process_cc_data_flag is 0. If cc_count promises more than there is, the whole triplets present are
    used and one error is counted. The marker bits of the triplets are not checked.
    @param data,size  from the byte with the flags on; bytes after the last triplet (marker_bits FF) are ignored
    @param triplets   the list to append to
    @return the number of triplets appended; -1 if an argument is wrong
    Source: CTA-708 4.4. */
KOVA_CAPTIONS_API int Kova_Captions_ReadCcData(const uint8_t *data, size_t size,
                                               KovaCaptionsTriplets *triplets);

/** Appends the triplets of one ATSC user data structure: "GA94", type code 03, cc_data().
    Another identifier or type code ("DTG1", bar data) is no error; the result is 0.
    @param data,size  from the identifier on, without start code or country code
    @param triplets   the list to append to
    @return the number of triplets appended; -1 if an argument is wrong
    Source: ATSC A/53 Part 4, 6.2.3. */
KOVA_CAPTIONS_API int Kova_Captions_ReadUserData(const uint8_t *data, size_t size,
                                                 KovaCaptionsTriplets *triplets);

/** Appends the triplets of every user data structure (start code 00 00 01 B2) in MPEG-2 video.
    @param data,size  one coded picture, or any part of an elementary stream that does not cut a user data structure
    @param triplets   the list to append to
    @return the number of triplets appended; -1 if an argument is wrong
    Source: ATSC A/53 Part 4, 6.2.2. */
KOVA_CAPTIONS_API int Kova_Captions_ReadMpeg2(const uint8_t *data, size_t size,
                                              KovaCaptionsTriplets *triplets);

/** The video codings whose NAL units carry captions. */
typedef enum KovaCaptionsCoding {
    KOVA_CAPTIONS_H264, /**< captions are in NAL units of type 6 */
    KOVA_CAPTIONS_H265  /**< captions are in NAL units of types 39 and 40 */
} KovaCaptionsCoding;

/** Appends the triplets of one SEI message of payload type 4: country code B5, provider code 0031, user data as
    Kova_Captions_ReadUserData reads it. Other codes are no error; the result is 0.
    @param data,size  the payload, from the country code on, emulation prevention bytes removed
    @param triplets   the list to append to
    @return the number of triplets appended; -1 if an argument is wrong
    Source: ITU-T T.35; ATSC A/72 Part 1, 6.4. */
KOVA_CAPTIONS_API int Kova_Captions_ReadSeiPayload(const uint8_t *data, size_t size,
                                                   KovaCaptionsTriplets *triplets);

/** Appends the triplets of all SEI messages of one NAL unit. The result is 0 for a NAL unit of another type.
    @param coding     one of KovaCaptionsCoding; another value: -1
    @param data,size  the NAL unit from its header on, without start code or length, emulation prevention bytes
                      still in it
    @param triplets   the list to append to
    @return the number of triplets appended; -1 if an argument is wrong */
KOVA_CAPTIONS_API int Kova_Captions_ReadNalUnit(KovaCaptionsCoding coding, const uint8_t *data, size_t size,
                                                KovaCaptionsTriplets *triplets);

/** Appends the triplets of all NAL units of a byte stream with start codes (Annex B of H.264 and H.265), as transport
    streams carry it.
    @param coding     as for Kova_Captions_ReadNalUnit
    @param data,size  one access unit, or any part of a stream that does not cut a NAL unit
    @param triplets   the list to append to
    @return the number of triplets appended; -1 if an argument is wrong */
KOVA_CAPTIONS_API int Kova_Captions_ReadAnnexB(KovaCaptionsCoding coding, const uint8_t *data, size_t size,
                                               KovaCaptionsTriplets *triplets);

/** Appends the triplets of all NAL units of a sample in which each has its length before it, as MP4 and Matroska carry
    it. A length beyond the sample ends the sample there and counts as one error; what is there of that NAL unit is
    read.
    @param coding      as for Kova_Captions_ReadNalUnit
    @param length_size  bytes of a length, 1 to 4; lengthSizeMinusOne + 1 of avcC or hvcC. Another value: -1
    @param data,size   one sample
    @param triplets    the list to append to
    @return the number of triplets appended; -1 if an argument is wrong
    Source: ISO/IEC 14496-15, 5.3. */
KOVA_CAPTIONS_API int Kova_Captions_ReadLengthPrefixed(KovaCaptionsCoding coding, unsigned length_size,
                                                       const uint8_t *data, size_t size,
                                                       KovaCaptionsTriplets *triplets);

/* ---------------------------------------------------------------------------------------------------------------
   Caption services: what the directory says of them
   --------------------------------------------------------------------------------------------------------------- */

/** What is announced of one caption service. */
typedef struct KovaCaptionsServiceInfo {
    char language[4];          /**< three letters of ISO 639-2 as they were sent, and a NUL: "eng" */
    uint8_t digital;           /**< 1: a CEA-708 service; 0: CEA-608 captions */
    uint8_t number;            /**< of the CEA-708 service, 0 to 63; 0 for CEA-608 */
    uint8_t field;             /**< of line 21, 1 or 2, for CEA-608; 0 for CEA-708 */
    uint8_t easy_reader;       /**< 1: the text is simplified for beginning readers */
    uint8_t wide_aspect_ratio; /**< 1: window anchors use the grid of 16:9 */
    uint8_t
        first_reserved; /**< the bit after wide_aspect_ratio, which is 1 unless somebody uses it; Korean services
                                  are said to be coded in KS X 1001 if it is 0, in Unicode if it is 1 */
} KovaCaptionsServiceInfo;

/** Most services that a descriptor announces: its count has five bits. */
#define KOVA_CAPTIONS_MAX_SERVICES 31

/** The announced services, in the order sent. */
typedef struct KovaCaptionsServiceList {
    unsigned count;                                               /**< entries of `services` in use */
    KovaCaptionsServiceInfo services[KOVA_CAPTIONS_MAX_SERVICES]; /**< what is announced of each */
} KovaCaptionsServiceList;

/** Reads a caption service descriptor, tag 86 (hexadecimal), of a PMT or an EIT.
    @param data,size  the descriptor's body, without tag and length
    @param services   receives the services; empty if the result is -1
    @return the number of services; -1 if the body's length does not fit its count of services, as that of other
            descriptors with this tag, or an argument is wrong
    Source: ATSC A/65, 6.9.2. */
KOVA_CAPTIONS_API int Kova_Captions_ReadServiceDescriptor(const uint8_t *data, size_t size,
                                                          KovaCaptionsServiceList *services);

/* ---------------------------------------------------------------------------------------------------------------
   Frame rates and time codes
   --------------------------------------------------------------------------------------------------------------- */

/** Frame rates, with the numbers that caption distribution packets have for them. */
typedef enum KovaCaptionsFrameRate {
    KOVA_CAPTIONS_RATE_UNKNOWN = 0,
    KOVA_CAPTIONS_RATE_23_976 = 1, /**< 24000/1001 */
    KOVA_CAPTIONS_RATE_24 = 2,
    KOVA_CAPTIONS_RATE_25 = 3,
    KOVA_CAPTIONS_RATE_29_97 = 4, /**< 30000/1001 */
    KOVA_CAPTIONS_RATE_30 = 5,
    KOVA_CAPTIONS_RATE_50 = 6,
    KOVA_CAPTIONS_RATE_59_94 = 7, /**< 60000/1001 */
    KOVA_CAPTIONS_RATE_60 = 8
} KovaCaptionsFrameRate;

/** A time code, hours:minutes:seconds:frames. */
typedef struct KovaCaptionsTimeCode {
    uint8_t hours;   /**< 0 to 99 */
    uint8_t minutes; /**< 0 to 59 */
    uint8_t seconds; /**< 0 to 59 */
    uint8_t frames;  /**< 0 to the rounded frame rate less 1 */
    uint8_t drop;    /**< 1: drop-frame counting, written with ';' before the frames */
} KovaCaptionsTimeCode;

/** Counts the frames from 00:00:00:00 to a time code.
    Drop-frame counting leaves out the labels 00 and 01 (at 59.94 and 60 frames a second 00 to 03) of every minute that
    ten does not divide; such a label is read as the next one that exists.
    @param rate       one of KovaCaptionsFrameRate but not unknown; drop-frame needs 29.97, 30, 59.94 or 60
    @param time_code  not null; its parts within their ranges
    @return frames, 0 or more; -1 if the rate or a part of the time code is outside of its range
    Source: SMPTE ST 12-1. */
KOVA_CAPTIONS_API int64_t Kova_Captions_CountFrames(KovaCaptionsFrameRate rate,
                                                    const KovaCaptionsTimeCode *time_code);

/** Converts a number of frames to a time, exactly but for one rounding to the nearest microsecond.
    @param rate    one of KovaCaptionsFrameRate but not unknown
    @param frames  0 to 2^40
    @return microseconds; -1 if an argument is outside of its range */
KOVA_CAPTIONS_API int64_t Kova_Captions_FramesToTime(KovaCaptionsFrameRate rate, int64_t frames);

/* ---------------------------------------------------------------------------------------------------------------
   Caption distribution packets and ancillary data
   --------------------------------------------------------------------------------------------------------------- */

/** What a caption distribution packet holds besides triplets. */
typedef struct KovaCaptionsCdp {
    KovaCaptionsFrameRate rate; /**< unknown if the packet has another number */
    uint16_t sequence;          /**< the header's sequence counter */
    uint8_t has_time_code;      /**< 1: time_code and second_field are set */
    uint8_t second_field; /**< 1: the time code belongs to the second field, or of two frames to the second */
    uint8_t has_services; /**< 1: services and the three marks below are set */
    uint8_t services_start;         /**< svc_info_start: these are the first of the list of services */
    uint8_t services_change;        /**< svc_info_change: the list differs from the one before */
    uint8_t services_complete;      /**< svc_info_complete: these are the last of the list */
    uint8_t caption_service_active; /**< caption_service_active of the header */
    uint8_t wrong_checksum;         /**< 1: the bytes do not sum to 0 modulo 256, or the footer is missing */
    uint8_t wrong_sequence;         /**< 1: header and footer have different sequence counters */
    KovaCaptionsTimeCode time_code; /**< as sent; parts may be outside of their ranges */
    KovaCaptionsServiceList services; /**< the services announced in this packet, up to 15 */
} KovaCaptionsCdp;

/** Reads a caption distribution packet.
    A wrong checksum and unequal sequence counters count as one error each, and so does a section that is cut or unknown:
    it hides the checksum. The packet is used all the same, because editing tools often break it. Sections with the
    numbers 75 to EF (hexadecimal) are skipped.
    @param data,size  from the identifier 96 69 on; bytes after the packet's own length are ignored
    @param triplets   the list to append to
    @param cdp        receives the rest of the packet; may be null
    @return the number of triplets appended; -1 if the identifier is wrong, the packet's length is beyond the data or
            an argument is wrong; then cdp is all zero
    Source: SMPTE ST 334-2, 5. */
KOVA_CAPTIONS_API int Kova_Captions_ReadCdp(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets,
                                            KovaCaptionsCdp *cdp);

/** Reads an ancillary data packet: one that holds a caption distribution packet (DID 61, SDID 01, hexadecimal) or
    one that holds a pair of CEA-608 bytes (61, 02). Others are no error; the result is 0.
    @param data,size  DID, SDID, data count, user data words, checksum; the low eight bits of each word. The checksum
                      is not looked at and may be missing
    @param triplets   the list to append to
    @param cdp        as for Kova_Captions_ReadCdp; all zero for other packets; may be null
    @return as Kova_Captions_ReadCdp; also -1 if the data ends before the user data words do
    Source: SMPTE ST 291-1; SMPTE ST 334-1, 4 and 5. */
KOVA_CAPTIONS_API int Kova_Captions_ReadAncillary(const uint8_t *data, size_t size,
                                                  KovaCaptionsTriplets *triplets, KovaCaptionsCdp *cdp);

/* ---------------------------------------------------------------------------------------------------------------
   Caption tracks of MP4 and QuickTime files
   --------------------------------------------------------------------------------------------------------------- */

/** Appends the CEA-608 pairs of a sample of a "c608" track as triplets, two for each frame: number 2k is the pair of
    field 1 and number 2k + 1 that of field 2 of the k-th frame. Frame k is shown k * 1001/30000 seconds after the
    sample's time. A field without a pair in that frame has an invalid triplet (cc_valid 0).
    Boxes "cdat" hold field 1, boxes "cdt2" field 2, and other boxes are skipped. A sample without boxes holds bare
    pairs of field 1. An odd byte at the end of a box or sample counts as one error, and so does a box that is larger
    than what is left of the sample; it is read to the sample's end.
    @param data,size  one sample
    @param triplets   the list to append to
    @return the number of triplets appended; -1 if an argument is wrong
    Source: QuickTime File Format, closed captioning sample data. */
KOVA_CAPTIONS_API int Kova_Captions_ReadC608(const uint8_t *data, size_t size,
                                             KovaCaptionsTriplets *triplets);

/** Appends the triplets of a sample of a "c708" track: boxes "ccdp" with one caption distribution packet each, or one
    such packet without a box. Other boxes are skipped. A packet that cannot be read counts as one error.
    @param data,size  one sample
    @param triplets   the list to append to
    @param cdp        receives what the last packet holds besides triplets, all zero if there is none; may be null
    @return the number of triplets appended; -1 if an argument is wrong
    Source: QuickTime File Format, closed captioning sample data. */
KOVA_CAPTIONS_API int Kova_Captions_ReadC708(const uint8_t *data, size_t size, KovaCaptionsTriplets *triplets,
                                             KovaCaptionsCdp *cdp);

/* ---------------------------------------------------------------------------------------------------------------
   Presentation order
   --------------------------------------------------------------------------------------------------------------- */

/** Most triplets that a picture in a reorder queue holds: two full cc_data(). */
#define KOVA_CAPTIONS_PICTURE_TRIPLETS (2 * KOVA_CAPTIONS_CC_DATA_TRIPLETS)

/** A picture's triplets with its time. */
typedef struct KovaCaptionsPicture {
    int64_t time;                                      /**< presentation time in microseconds */
    uint32_t count;                                    /**< triplets */
    uint32_t series;                                   /**< the queue's own: counts the steps back in time */
    uint64_t arrival;                                  /**< the queue's own: counts the pictures */
    uint8_t bytes[3 * KOVA_CAPTIONS_PICTURE_TRIPLETS]; /**< the triplets */
} KovaCaptionsPicture;

/** Puts the triplets of pictures, which arrive in coding order, into presentation order, in which the decoder wants
    them. It is the caller's, and so is the memory behind it; the members are the library's. */
typedef struct KovaCaptionsReorder {
    KovaCaptionsPicture *pictures; /**< the memory given */
    size_t capacity;               /**< pictures that there is room for */
    size_t count;                  /**< pictures held */
    size_t depth;                  /**< pictures held back; those beyond it may go */
    int64_t latest;                /**< the latest time pushed since the last step back */
    uint32_t series;               /**< steps back in time so far */
    uint64_t arrivals;             /**< pictures pushed so far */
} KovaCaptionsReorder;

/** Prepares an empty reorder queue.
    @param queue     to be prepared; what it holds is not read
    @param pictures  room for `capacity` pictures; kept until the queue is no longer used
    @param capacity  pictures that there is room for, 1 or more; its number less 1 is the depth: the most pictures that
                     precede a picture in the stream and follow it on the screen. 1 gives back every picture as it
                     comes. 3 suffices for MPEG-2, 17 for every H.264 and H.265 stream
    @return 0; -1 if an argument is wrong */
KOVA_CAPTIONS_API int Kova_Captions_ReorderStart(KovaCaptionsReorder *queue, KovaCaptionsPicture *pictures,
                                                 size_t capacity);

/** Puts a picture into the queue. Push pictures without captions too: what is held back is counted in pictures.
    A time more than one second before the latest one is a step back, as a seek or the start of another stream makes
    it: the pictures before it all go first.
    @param queue   prepared by Kova_Captions_ReorderStart
    @param time    presentation time in microseconds
    @param bytes   the triplets, 3 * count bytes; null only if count is 0
    @param count   triplets, 0 to KOVA_CAPTIONS_PICTURE_TRIPLETS
    @return 0; -1 if the queue is full (call Kova_Captions_ReorderPop first) or an argument is wrong */
KOVA_CAPTIONS_API int Kova_Captions_ReorderPush(KovaCaptionsReorder *queue, int64_t time,
                                                const uint8_t *bytes, size_t count);

/** Takes out the picture that comes next in presentation order. Pictures of equal times keep the order in which they
    came. The cost is linear in the number of pictures held.
    @param queue    prepared by Kova_Captions_ReorderStart
    @param flush    1: the stream has ended, or a discontinuity follows: pictures are no longer held back. 0: the next
                    picture is taken only if more than the depth are held, or a step back in time follows it
    @param picture  receives the picture
    @return 1; 0 if no picture is due; -1 if an argument is wrong */
KOVA_CAPTIONS_API int Kova_Captions_ReorderPop(KovaCaptionsReorder *queue, int flush,
                                               KovaCaptionsPicture *picture);

#ifdef __cplusplus
}
#endif
#endif
