// SPDX-License-Identifier: MIT
#include "text/letters.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

#include <fribidi.h>
#include <unilbrk.h>
#include <uninorm.h>
#include <unistr.h>

#include "base/utf8.h"

namespace caption
{

// Composes characters where possible: a font's own accented letters look better than stacked accents.
static std::vector<std::uint32_t> Composed(const std::string &text)
{
    std::vector<std::uint32_t> codes;
    std::size_t length = 0;

    for (const Character &character : Characters(text)) codes.push_back(character.code);
    const std::unique_ptr<std::uint32_t, void (*)(void *)> composed(
        u32_normalize(UNINORM_NFC, codes.data(), codes.size(), nullptr, &length), std::free);
    if (!composed) throw std::bad_alloc();
    return std::vector<std::uint32_t>(composed.get(), composed.get() + length);
}

static Letters Spread(const Line &line)
{
    Letters letters;

    for (const Run &run : line) {
        if (run.text.empty()) continue;
        for (const std::uint32_t code : Composed(run.text)) {
            Letter letter;
            letter.code = code == '\t' ? U' ' : char32_t(code);
            letter.style = run.style;
            letters.push_back(letter);
        }
    }
    return letters;
}

static std::vector<FriBidiChar> Codes(const Letters &letters)
{
    std::vector<FriBidiChar> codes;

    for (const Letter &letter : letters) codes.push_back(letter.code);
    return codes;
}

static bool IsHangul(char32_t code)
{
    return code >= 0xAC00 && code <= 0xD7A3;
}

// Korean subtitles break at spaces. The general rules would allow a break between any two syllables.
static void FindBreaks(Letters &letters)
{
    const std::vector<FriBidiChar> codes = Codes(letters);
    std::vector<char> breaks(codes.size());

    u32_possible_linebreaks(codes.data(), codes.size(), "UTF-8", breaks.data());
    for (std::size_t i = 1; i < letters.size(); ++i) {
        letters[i].mayBreak =
            breaks[i] == UC_BREAK_POSSIBLE && !(IsHangul(letters[i - 1].code) && IsHangul(letters[i].code));
    }
}

// The first strong character determines the direction of the line.
static void FindDirections(Letters &letters)
{
    std::vector<FriBidiChar> codes = Codes(letters);
    const auto length = FriBidiStrIndex(codes.size());
    std::vector<FriBidiCharType> kinds(codes.size());
    std::vector<FriBidiBracketType> brackets(codes.size());
    std::vector<FriBidiLevel> levels(codes.size());
    std::vector<FriBidiArabicProp> joining(codes.size());
    FriBidiParType direction = FRIBIDI_PAR_ON;

    fribidi_get_bidi_types(codes.data(), length, kinds.data());
    fribidi_get_bracket_types(codes.data(), length, kinds.data(), brackets.data());
    if (!fribidi_get_par_embedding_levels_ex(kinds.data(), brackets.data(), length, &direction,
                                             levels.data())) {
        throw std::bad_alloc();
    }
    fribidi_get_joining_types(codes.data(), length, joining.data());
    fribidi_join_arabic(kinds.data(), length, levels.data(), joining.data());
    fribidi_shape(FRIBIDI_FLAGS_DEFAULT | FRIBIDI_FLAGS_ARABIC, levels.data(), length, joining.data(),
                  codes.data());
    for (std::size_t i = 0; i < letters.size(); ++i) {
        // Letters that should have a joined form here, and have none.
        letters[i].unjoined = codes[i] == letters[i].code && FRIBIDI_JOIN_SHAPE(joining[i]) != 0 &&
                              FRIBIDI_ARAB_SHAPES(joining[i]) != 0 && !FRIBIDI_IS_JOINING_TYPE_T(joining[i]);
        letters[i].code = codes[i];
        letters[i].level = levels[i];
        letters[i].kind = kinds[i];
    }
}

Letters Prepare(const Line &line)
{
    Letters letters = Spread(line);

    if (letters.empty()) return letters;
    FindBreaks(letters);
    FindDirections(letters);
    // Direction marks are no longer needed, and letters that were joined into the one before are gone.
    letters.erase(std::remove_if(letters.begin(), letters.end(),
                                 [](const Letter &letter) { return IsInvisible(letter.code); }),
                  letters.end());
    return letters;
}

// Scripts with reordered vowels and conjunct consonants: of India, Tibet, Myanmar and Cambodia.
static bool HasConjuncts(char32_t code)
{
    return (code >= 0x0900 && code <= 0x0DFF) || (code >= 0x0F00 && code <= 0x109F) ||
           (code >= 0x1780 && code <= 0x17FF);
}

bool NeedsShaping(const Letters &letters)
{
    return std::any_of(letters.begin(), letters.end(),
                       [](const Letter &letter) { return letter.unjoined || HasConjuncts(letter.code); });
}

bool IsSpace(const Letter &letter)
{
    return IsSpace(letter.code);
}

bool IsAccent(const Letter &letter)
{
    return letter.kind == FRIBIDI_TYPE_NSM;
}

} // namespace caption
