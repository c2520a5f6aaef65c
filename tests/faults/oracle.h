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

// A call that fails, or one that returns DFB_OK without an object.
struct Fault_t {
    int iCall;         // 1 the first; 0 none
    DFBResult eResult; // DFB_OK: it returns no object
};

// The observed or expected behaviour.
struct Run_t {
    std::string trace;
    std::string answer;  // the result and other output of the scenario
    std::string left;    // names of the objects that remain after destruction
    std::string keepers; // operations that kept the lock
    bool bRecordLost = false;
    std::string state;      // the record afterwards
    bool bSameState = true; // whether it is the same without the failure
};

struct Scenario_t {
    const char *pcOperation;      // of the table, or creation, contexts, destruction
    const char *pcVariant;        // "" for the default
    KovaGraphicLayer_e eLayer;    // of the display
    std::string unchanged;        // the result if an activation is abandoned
    std::set<std::string> absent; // kinds of missing objects: "base", "layer", "dfb"
};

// The text that is compared: without the records of single colours and encodings, palettes under one name,
// and lines of DFB_CHECK without indentation, for they are noticed at the next event only.
std::string Comparable(const std::vector<Line_t> &lines);
// Without the numbers of palettes and fonts: each request creates an object.
std::string Unnumbered(const std::string &names);

Run_t Expected(const Scenario_t &scenario, const std::vector<Line_t> &clean, const std::string &answer,
               const Fault_t &fault);

} // namespace test

#endif
