// SPDX-License-Identifier: MIT
// Derives what an operation does when one of its DirectFB calls fails from what it does when none fails and
// from a table of rules: which macro reports the call, and what else its failure changes. The table is
// written from the documented behaviour; nothing in it is copied from the library's output.
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
    bool bArgbBefore = false;     // an activation changes the layer from ARGB to LUT8
};

// The text to compare: without the records of single colours and encodings, with one name for all palettes,
// and without the indentation of DFB_CHECK lines, which appear at the next event only.
std::string Comparable(const std::vector<Line_t> &lines);
// Without the numbers of palettes and fonts: each request creates an object.
std::string Unnumbered(const std::string &names);

Run_t Expected(const Scenario_t &scenario, const std::vector<Line_t> &clean, const std::string &answer,
               const Fault_t &fault);

} // namespace test

#endif
