// SPDX-License-Identifier: MIT
// 16-bit text to UTF-8, compared with the usual libraries.
#include "fixture.h"

#include "operations.h"

#include <iconv.h>
#include <unicode/ustring.h>

namespace bench
{

enum { UNITS = 127 };

// Repeats the sentence up to the length of a string.
static std::vector<unsigned short> Repeat(const char16_t *pText)
{
    std::vector<unsigned short> units;
    while (units.size() < UNITS) {
        for (const char16_t *p = pText; *p && units.size() < UNITS; p++) units.push_back(*p);
    }
    return units;
}

static void WithIconv(benchmark::State &state, const char16_t *pText)
{
    std::vector<unsigned short> units = Repeat(pText);
    char acOurs[1024], acTheirs[1024];
    kova_uint32 uiBytes;
    const iconv_t converter = iconv_open("UTF-8", "UTF-16LE");

    CompareWith(
        state, "iconv",
        [&] {
            textdisp::ConvertUnicode2UTF8(units.data(), UNITS, acOurs, sizeof acOurs, &uiBytes);
            benchmark::DoNotOptimize(acOurs);
        },
        [&] {
            char *pcIn = reinterpret_cast<char *>(units.data()), *pcOut = acTheirs;
            size_t uiIn = 2 * UNITS, uiOut = sizeof acTheirs;
            iconv(converter, &pcIn, &uiIn, &pcOut, &uiOut);
            benchmark::DoNotOptimize(acTheirs);
        });
    iconv_close(converter);
}

static void WithIcu(benchmark::State &state, const char16_t *pText)
{
    const std::vector<unsigned short> units = Repeat(pText);
    const std::u16string text(units.begin(), units.end());
    char acOurs[1024], acTheirs[1024];
    kova_uint32 uiBytes;

    CompareWith(
        state, "ICU",
        [&] {
            textdisp::ConvertUnicode2UTF8(units.data(), UNITS, acOurs, sizeof acOurs, &uiBytes);
            benchmark::DoNotOptimize(acOurs);
        },
        [&] {
            int32_t iLength;
            UErrorCode eError = U_ZERO_ERROR;
            u_strToUTF8(acTheirs, sizeof acTheirs, &iLength, text.data(), UNITS, &eError);
            benchmark::DoNotOptimize(acTheirs);
        });
}

static const int s_registered = [] {
    static constexpr struct {
        const char *pcName;
        const char16_t *pText;
    } TEXTS[] = {{"Latin, only ASCII", u"Is anybody there? The door was open when I came home. "},
                 {"Latin, with accents", u"L'élève a été reçu à l'école où il était né, dès l'été. "},
                 {"Cyrillic", u"Есть здесь кто-нибудь? Дверь была открыта, когда я пришёл. "},
                 {"CJK", u"有人在吗？我回家的时候门是开着的。"}};

    if (IsX11()) return 0;
    for (const auto &text : TEXTS) {
        Register(std::string("utf8/iconv/") + text.pcName,
                 [&text](benchmark::State &state) { WithIconv(state, text.pText); });
        Register(std::string("utf8/ICU/") + text.pcName,
                 [&text](benchmark::State &state) { WithIcu(state, text.pText); });
    }
    return 0;
}();

} // namespace bench
