// SPDX-License-Identifier: MIT
// The layout and the values of everything a caller of the caption decoder sees, the same on every machine. Compiling
// this file is the test.
#include "kova/kova_captions_settings.h"

#include <stddef.h>
#include <type_traits>

#define FIELD(record, field, type, offset)                                                                   \
    static_assert(std::is_same<decltype(record::field), type>::value && offsetof(record, field) == (offset))
#define ARRAY(record, field, type, count, offset)                                                            \
    static_assert(std::is_same<decltype(record::field), type[count]>::value &&                               \
                  offsetof(record, field) == (offset))
#define RECORD(record, size)                                                                                 \
    static_assert(sizeof(record) == (size) && std::is_standard_layout<record>::value &&                      \
                  std::is_trivial<record>::value)

static_assert(KOVA_CAPTIONS_S1 == 1 && KOVA_CAPTIONS_S63 == 63);
static_assert(KOVA_CAPTIONS_CC1 == 64 && KOVA_CAPTIONS_CC4 == 67);
static_assert(KOVA_CAPTIONS_T1 == 68 && KOVA_CAPTIONS_T4 == 71 && KOVA_CAPTIONS_XDS == 72);
static_assert(KOVA_CAPTIONS_NO_TIME == INT64_MIN && KOVA_CAPTIONS_NEVER == INT64_MAX);
static_assert(KOVA_CAPTIONS_EVENT_TEXT == 1 && KOVA_CAPTIONS_EVENT_DISCONTINUITY == 56);

RECORD(KovaCaptionsMotion, 24);
FIELD(KovaCaptionsMotion, start, int64_t, 0);
FIELD(KovaCaptionsMotion, duration, int64_t, 8);
FIELD(KovaCaptionsMotion, kind, uint8_t, 16);
FIELD(KovaCaptionsMotion, direction, uint8_t, 17);
FIELD(KovaCaptionsMotion, showing, uint8_t, 18);

RECORD(KovaCaptionsStatus, 24);
FIELD(KovaCaptionsStatus, revision, uint32_t, 0);
FIELD(KovaCaptionsStatus, visible_revision, uint32_t, 4);
FIELD(KovaCaptionsStatus, visible_since, int64_t, 8);
FIELD(KovaCaptionsStatus, flash_since, int64_t, 16);

RECORD(KovaCaptionsChannelCell, 10);
FIELD(KovaCaptionsChannelCell, character, uint16_t, 0);
FIELD(KovaCaptionsChannelCell, kind, uint8_t, 2);
FIELD(KovaCaptionsChannelCell, foreground, uint8_t, 3);
FIELD(KovaCaptionsChannelCell, background, uint8_t, 4);
FIELD(KovaCaptionsChannelCell, background_opacity, uint8_t, 5);
FIELD(KovaCaptionsChannelCell, italics, uint8_t, 6);
FIELD(KovaCaptionsChannelCell, underline, uint8_t, 7);
FIELD(KovaCaptionsChannelCell, flash, uint8_t, 8);

using ChannelRows = KovaCaptionsChannelCell[KOVA_CAPTIONS_CHANNEL_ROWS][KOVA_CAPTIONS_CHANNEL_COLUMNS];
RECORD(KovaCaptionsChannel, 9720);
FIELD(KovaCaptionsChannel, status, KovaCaptionsStatus, 0);
FIELD(KovaCaptionsChannel, roll, KovaCaptionsMotion, 24);
ARRAY(KovaCaptionsChannel, row_revision, uint32_t, 15, 48);
FIELD(KovaCaptionsChannel, mode, uint8_t, 108);
FIELD(KovaCaptionsChannel, depth, uint8_t, 109);
FIELD(KovaCaptionsChannel, base_row, uint8_t, 110);
FIELD(KovaCaptionsChannel, cursor_row, uint8_t, 111);
FIELD(KovaCaptionsChannel, cursor_column, uint8_t, 112);
FIELD(KovaCaptionsChannel, displayed, ChannelRows, 120);
FIELD(KovaCaptionsChannel, non_displayed, ChannelRows, 4920);

RECORD(KovaCaptionsPen, 12);
FIELD(KovaCaptionsPen, foreground, uint8_t, 0);
FIELD(KovaCaptionsPen, foreground_opacity, uint8_t, 1);
FIELD(KovaCaptionsPen, background, uint8_t, 2);
FIELD(KovaCaptionsPen, background_opacity, uint8_t, 3);
FIELD(KovaCaptionsPen, edge_color, uint8_t, 4);
FIELD(KovaCaptionsPen, edge_type, uint8_t, 5);
FIELD(KovaCaptionsPen, size, uint8_t, 6);
FIELD(KovaCaptionsPen, offset, uint8_t, 7);
FIELD(KovaCaptionsPen, font, uint8_t, 8);
FIELD(KovaCaptionsPen, italics, uint8_t, 9);
FIELD(KovaCaptionsPen, underline, uint8_t, 10);
FIELD(KovaCaptionsPen, text_tag, uint8_t, 11);

RECORD(KovaCaptionsWindowCell, 16);
FIELD(KovaCaptionsWindowCell, character, uint16_t, 0);
FIELD(KovaCaptionsWindowCell, kind, uint8_t, 2);
FIELD(KovaCaptionsWindowCell, pen, KovaCaptionsPen, 4);

RECORD(KovaCaptionsDefinition, 16);
FIELD(KovaCaptionsDefinition, priority, uint8_t, 0);
FIELD(KovaCaptionsDefinition, relative, uint8_t, 1);
FIELD(KovaCaptionsDefinition, anchor_vertical, uint8_t, 2);
FIELD(KovaCaptionsDefinition, anchor_horizontal, uint8_t, 3);
FIELD(KovaCaptionsDefinition, anchor_point, uint8_t, 4);
FIELD(KovaCaptionsDefinition, rows, uint8_t, 5);
FIELD(KovaCaptionsDefinition, columns, uint8_t, 6);
FIELD(KovaCaptionsDefinition, row_lock, uint8_t, 7);
FIELD(KovaCaptionsDefinition, column_lock, uint8_t, 8);
FIELD(KovaCaptionsDefinition, window_style, uint8_t, 9);
FIELD(KovaCaptionsDefinition, pen_style, uint8_t, 10);

RECORD(KovaCaptionsWindowAttributes, 16);
FIELD(KovaCaptionsWindowAttributes, fill_color, uint8_t, 0);
FIELD(KovaCaptionsWindowAttributes, fill_opacity, uint8_t, 1);
FIELD(KovaCaptionsWindowAttributes, border_color, uint8_t, 2);
FIELD(KovaCaptionsWindowAttributes, border_type, uint8_t, 3);
FIELD(KovaCaptionsWindowAttributes, word_wrap, uint8_t, 4);
FIELD(KovaCaptionsWindowAttributes, print_direction, uint8_t, 5);
FIELD(KovaCaptionsWindowAttributes, scroll_direction, uint8_t, 6);
FIELD(KovaCaptionsWindowAttributes, justify, uint8_t, 7);
FIELD(KovaCaptionsWindowAttributes, display_effect, uint8_t, 8);
FIELD(KovaCaptionsWindowAttributes, effect_direction, uint8_t, 9);
FIELD(KovaCaptionsWindowAttributes, effect_speed, uint8_t, 10);

using WindowRows = KovaCaptionsWindowCell[KOVA_CAPTIONS_WINDOW_ROWS][KOVA_CAPTIONS_WINDOW_COLUMNS];
RECORD(KovaCaptionsWindow, 10248);
FIELD(KovaCaptionsWindow, effect, KovaCaptionsMotion, 0);
FIELD(KovaCaptionsWindow, scroll, KovaCaptionsMotion, 24);
FIELD(KovaCaptionsWindow, revision, uint32_t, 48);
ARRAY(KovaCaptionsWindow, row_revision, uint32_t, 15, 52);
FIELD(KovaCaptionsWindow, exists, uint8_t, 112);
FIELD(KovaCaptionsWindow, visible, uint8_t, 113);
FIELD(KovaCaptionsWindow, pen_row, uint8_t, 114);
FIELD(KovaCaptionsWindow, pen_column, uint8_t, 115);
FIELD(KovaCaptionsWindow, definition, KovaCaptionsDefinition, 120);
FIELD(KovaCaptionsWindow, attributes, KovaCaptionsWindowAttributes, 136);
FIELD(KovaCaptionsWindow, pen, KovaCaptionsPen, 152);
FIELD(KovaCaptionsWindow, cells, WindowRows, 168);

RECORD(KovaCaptionsService, 40);
FIELD(KovaCaptionsService, status, KovaCaptionsStatus, 0);
FIELD(KovaCaptionsService, delay_until, int64_t, 24);
FIELD(KovaCaptionsService, current_window, uint8_t, 32);
FIELD(KovaCaptionsService, existing_windows, uint8_t, 33);
FIELD(KovaCaptionsService, visible_windows, uint8_t, 34);
FIELD(KovaCaptionsService, blanked, uint8_t, 35);
FIELD(KovaCaptionsService, buffered, uint8_t, 36);

RECORD(KovaCaptionsProgram, 316);
FIELD(KovaCaptionsProgram, revision, uint32_t, 0);
FIELD(KovaCaptionsProgram, start_month, uint8_t, 4);
FIELD(KovaCaptionsProgram, start_day, uint8_t, 5);
FIELD(KovaCaptionsProgram, start_hour, uint8_t, 6);
FIELD(KovaCaptionsProgram, start_minute, uint8_t, 7);
FIELD(KovaCaptionsProgram, rating_system, uint8_t, 8);
FIELD(KovaCaptionsProgram, rating, uint8_t, 9);
FIELD(KovaCaptionsProgram, violence, uint8_t, 10);
FIELD(KovaCaptionsProgram, sexual_situations, uint8_t, 11);
FIELD(KovaCaptionsProgram, language, uint8_t, 12);
FIELD(KovaCaptionsProgram, dialog, uint8_t, 13);
ARRAY(KovaCaptionsProgram, name, char, 100, 16);
ARRAY(KovaCaptionsProgram, network, char, 100, 116);
ARRAY(KovaCaptionsProgram, call_letters, char, 100, 216);

RECORD(KovaCaptionsEvent, 176);
FIELD(KovaCaptionsEvent, time, int64_t, 0);
FIELD(KovaCaptionsEvent, source, uint8_t, 8);
FIELD(KovaCaptionsEvent, code, uint8_t, 9);
FIELD(KovaCaptionsEvent, argument_count, uint8_t, 10);
FIELD(KovaCaptionsEvent, character_count, uint8_t, 11);
ARRAY(KovaCaptionsEvent, arguments, uint16_t, 16, 16);
ARRAY(KovaCaptionsEvent, characters, uint16_t, 64, 48);

RECORD(KovaCaptionsCounters, 64);
FIELD(KovaCaptionsCounters, triplets, uint32_t, 0);
FIELD(KovaCaptionsCounters, packets, uint32_t, 4);
FIELD(KovaCaptionsCounters, parity_errors, uint32_t, 8);
FIELD(KovaCaptionsCounters, sequence_gaps, uint32_t, 12);
FIELD(KovaCaptionsCounters, short_packets, uint32_t, 16);
FIELD(KovaCaptionsCounters, stray_data, uint32_t, 20);
FIELD(KovaCaptionsCounters, bad_service_blocks, uint32_t, 24);
FIELD(KovaCaptionsCounters, cut_elements, uint32_t, 28);
FIELD(KovaCaptionsCounters, cut_cc_data, uint32_t, 32);
FIELD(KovaCaptionsCounters, unknown_codes, uint32_t, 36);
FIELD(KovaCaptionsCounters, full_buffers, uint32_t, 40);
FIELD(KovaCaptionsCounters, xds_errors, uint32_t, 44);
FIELD(KovaCaptionsCounters, timeouts, uint32_t, 48);
FIELD(KovaCaptionsCounters, discontinuities, uint32_t, 52);
FIELD(KovaCaptionsCounters, lost_events, uint32_t, 56);

RECORD(KovaCaptionsActivity, 24);
FIELD(KovaCaptionsActivity, services_with_data, uint64_t, 0);
FIELD(KovaCaptionsActivity, services_with_text, uint64_t, 8);
FIELD(KovaCaptionsActivity, channels_with_data, uint8_t, 16);
FIELD(KovaCaptionsActivity, channels_with_text, uint8_t, 17);

RECORD(KovaCaptionsOptions, 40);
FIELD(KovaCaptionsOptions, services, uint64_t, 0);
FIELD(KovaCaptionsOptions, korean_services, uint64_t, 8);
FIELD(KovaCaptionsOptions, channel_timeout, int64_t, 16);
FIELD(KovaCaptionsOptions, service_timeout, int64_t, 24);
FIELD(KovaCaptionsOptions, event_capacity, uint32_t, 32);

RECORD(KovaCaptionsSettings, 832);
FIELD(KovaCaptionsSettings, foreground, uint8_t, 0);
FIELD(KovaCaptionsSettings, foreground_opacity, uint8_t, 1);
FIELD(KovaCaptionsSettings, background, uint8_t, 2);
FIELD(KovaCaptionsSettings, background_opacity, uint8_t, 3);
FIELD(KovaCaptionsSettings, window, uint8_t, 4);
FIELD(KovaCaptionsSettings, window_opacity, uint8_t, 5);
FIELD(KovaCaptionsSettings, edge_type, uint8_t, 6);
FIELD(KovaCaptionsSettings, edge_color, uint8_t, 7);
FIELD(KovaCaptionsSettings, font, uint8_t, 8);
FIELD(KovaCaptionsSettings, italics, uint8_t, 9);
FIELD(KovaCaptionsSettings, underline, uint8_t, 10);
FIELD(KovaCaptionsSettings, flash, uint8_t, 11);
FIELD(KovaCaptionsSettings, size, uint8_t, 12);
FIELD(KovaCaptionsSettings, safe_area, uint8_t, 13);
FIELD(KovaCaptionsSettings, source, uint8_t, 14);
FIELD(KovaCaptionsSettings, easy_reader, uint8_t, 15);
ARRAY(KovaCaptionsSettings, language, char, 4, 16);
static_assert(sizeof(KovaCaptionsSettings::fonts) == 8 * 100 && offsetof(KovaCaptionsSettings, fonts) == 32);
