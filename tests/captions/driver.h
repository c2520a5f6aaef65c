// SPDX-License-Identifier: MIT
// A decoder that tests feed with what the encoder makes, and read as text.
#ifndef KOVA_TESTS_CAPTIONS_DRIVER_H
#define KOVA_TESTS_CAPTIONS_DRIVER_H

#include "encoder.h"
#include "requirement.h"

#include "kova/kova_captions.h"

#include <memory>
#include <string>
#include <vector>

// A frame at 29.97 Hz, a second, and a tenth of one, in microseconds.
constexpr int64_t FRAME = 33367;
constexpr int64_t SECOND = 1000000;
constexpr int64_t TENTH = 100000;

std::string ToUtf8(unsigned character);

class Driver
{
public:
    Driver();
    explicit Driver(const KovaCaptionsOptions &options);

    KovaCaptions *operator*() const
    {
        return m_decoder.get();
    }

    /* ---- feeding; each pair takes a frame, each packet too ---- */

    void Send(unsigned field, const Pairs &pairs);
    void Send(const Pairs &pairs)
    {
        Send(1, pairs);
    }
    // Triplets as they are, all at one time, which stays.
    void SendTriplets(const ByteString &triplets);
    // One packet with the next sequence number.
    void SendBlocks(const ByteString &blocks);
    // Bytes of a service, in one packet: at most about 120.
    void SendService(unsigned service, const ByteString &bytes);
    void Wait(int64_t microseconds);
    void Discontinuity();
    int64_t Now() const
    {
        return m_now;
    }
    void SetSequence(unsigned sequence)
    {
        m_sequence = sequence;
    }

    /* ---- reading 608: rows and columns as the standard counts them, from 1 ---- */

    std::unique_ptr<KovaCaptionsChannel> Channel(unsigned source) const;
    // What is displayed, row by row: "14 HELLO|15 ...WORLD". A cell: its character; '.' is empty, '~' a transparent
    // space, '#' an attribute. Empty cells at the end, and empty rows, are left out.
    std::string Displayed(unsigned source = KOVA_CAPTIONS_CC1) const;
    std::string NonDisplayed(unsigned source = KOVA_CAPTIONS_CC1) const;
    // "green italics underline flash on black translucent"; of an empty cell "-", of a transparent space "~".
    std::string Look(unsigned row, unsigned column, unsigned source = KOVA_CAPTIONS_CC1) const;
    // "15,1"
    std::string Cursor(unsigned source = KOVA_CAPTIONS_CC1) const;
    unsigned Mode(unsigned source = KOVA_CAPTIONS_CC1) const;

    /* ---- reading 708: rows and columns from 0 ---- */

    KovaCaptionsService Service(unsigned service = 1) const;
    std::unique_ptr<KovaCaptionsWindow> Window(unsigned window, unsigned service = 1) const;
    // As Displayed, of a window: "0 HELLO|1 ...WORLD"; "-" if it does not exist.
    std::string WindowText(unsigned window = 0, unsigned service = 1) const;
    // "0,5": where the pen is; "-" if the window does not exist
    std::string Pen(unsigned window = 0, unsigned service = 1) const;

    /* ---- the rest ---- */

    KovaCaptionsCounters Counters() const;
    // The events so far, one per line: "s1 SetPenLocation row=0 column=3".
    std::string Events() const;
    // Everything that can be read, but revisions: two decoders with equal snapshots are in the same state.
    std::string Snapshot() const;

private:
    struct Destroy {
        void operator()(KovaCaptions *decoder) const
        {
            Kova_Captions_Destroy(decoder);
        }
    };

    std::unique_ptr<KovaCaptions, Destroy> m_decoder;
    int64_t m_now = 10 * SECOND;
    unsigned m_sequence = 0;
};

// Options with room for events.
KovaCaptionsOptions WithEvents();

#endif
