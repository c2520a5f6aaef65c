// SPDX-License-Identifier: MIT
// Which requirements a test proves. The names go into the test's results, and from there into
// docs/captions_conformance.md.
#ifndef KOVA_TESTS_CAPTIONS_REQUIREMENT_H
#define KOVA_TESTS_CAPTIONS_REQUIREMENT_H

#include <gtest/gtest.h>

#include <string>

template <typename... Names> void Requirement(Names... names)
{
    (::testing::Test::RecordProperty(std::string("requirement_") + names, "covered"), ...);
}

#endif
