// SPDX-License-Identifier: MIT
// What an operation does when one of its DirectFB calls fails, worked out from what it does when none fails
// and from a table of what each call is worth: which form reports it, and what its failure changes beyond the
// report. The table is written from what the operations promise; nothing in it is read off the library.
#ifndef TESTS_ORACLE_H
#define TESTS_ORACLE_H

#include "support.h"

#include <set>

namespace test
{

// A call that fails, or one that says OK and gives nothing.
struct Fault_t {
    int iCall;         // 1 the first; 0 none
    DFBResult eResult; // DFB_OK: it gives nothing
};

// What was seen, or is expected to be.
struct Run_t {
    std::string trace;
    std::string answer;  // the result, and what else the scenario tells of
    std::string left;    // names of the objects that stay when the display is gone
    std::string keepers; // operations that kept the lock
    bool bRecordLost = false;
    std::string state;      // what the record says afterwards
    bool bSameState = true; // whether that is what it says without the failure
};

struct Scenario_t {
    const char *pcOperation;      // of the table, or of the life of a display
    const char *pcVariant;        // "" for the plain one
    KovaGraphicLayer_e eLayer;    // of the display
    std::string unchanged;        // the answer where an activation is given up
    std::set<std::string> absent; // kinds of objects that the display lacks: "base", "layer", "dfb"
};

// The text that is compared: without the records of single colours and encodings, palettes under one name,
// and lines of DFB_CHECK without indentation, for they are noticed at the next event only.
std::string Comparable(const std::vector<Line_t> &lines);
// Without the numbers of palettes and fonts: each fetching of one makes an object.
std::string Unnumbered(const std::string &names);

Run_t Expected(const Scenario_t &scenario, const std::vector<Line_t> &clean, const std::string &answer,
               const Fault_t &fault);

} // namespace test

#endif
