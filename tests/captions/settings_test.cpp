// SPDX-License-Identifier: MIT
// The viewer's settings: their text form, and how they override what a stream asks for.
#include "requirement.h"

#include "kova/kova_captions_settings.h"

#include <cstring>
#include <string>
#include <vector>

using Settings = KovaCaptionsSettings;

static const uint8_t kAsProvided = KOVA_CAPTIONS_AS_PROVIDED;

static Settings Defaults()
{
    Settings settings;

    std::memset(&settings, 0xA5, sizeof settings);
    Kova_Captions_GetDefaultSettings(&settings);
    return settings;
}

// The number of the wrong line; 0 if there is none.
static unsigned Read(Settings &settings, const std::string &text)
{
    unsigned line = 99;
    const int result = Kova_Captions_ReadSettings(&settings, text.data(), text.size(), &line);

    EXPECT_EQ(result, line == 0 ? 0 : -1);
    return line;
}

static Settings SettingsOf(const std::string &text)
{
    Settings settings = Defaults();

    EXPECT_EQ(Read(settings, text), 0u) << text;
    return settings;
}

static std::string Written(const Settings &settings)
{
    char text[KOVA_CAPTIONS_SETTINGS_TEXT];
    const int length = Kova_Captions_WriteSettings(&settings, text, sizeof text);

    EXPECT_EQ(length, int(std::strlen(text)));
    return text;
}

static bool Same(const Settings &one, const Settings &other)
{
    return std::memcmp(&one, &other, sizeof one) == 0;
}

static std::vector<std::string> Names()
{
    std::vector<std::string> names;

    while (const char *const name = Kova_Captions_SettingName(unsigned(names.size()))) names.push_back(name);
    return names;
}

static std::vector<std::string> ValuesOf(const std::string &name)
{
    std::vector<std::string> values;

    for (unsigned i = 0; i < Names().size(); i++) {
        while (const char *const value =
                   Names()[i] == name ? Kova_Captions_SettingValue(i, unsigned(values.size())) : nullptr) {
            values.push_back(value);
        }
    }
    return values;
}

static std::string ValueOf(const Settings &settings, const std::string &name)
{
    char text[KOVA_CAPTIONS_FONT_FILE] = "no such setting";

    for (unsigned i = 0; i < Names().size(); i++) {
        if (Names()[i] != name) continue;
        EXPECT_GE(Kova_Captions_WriteSetting(&settings, i, text, sizeof text), 0);
    }
    return text;
}

/* -------------------------------------------------------------------------------------------------------- Defaults */

TEST(DefaultSettings, LeaveEverythingToTheStream)
{
    Requirement("D1");
    const Settings settings = Defaults();

    for (const uint8_t attribute :
         {settings.foreground, settings.foreground_opacity, settings.background, settings.background_opacity,
          settings.window, settings.window_opacity, settings.edge_type, settings.edge_color, settings.font,
          settings.italics, settings.underline, settings.flash}) {
        EXPECT_EQ(attribute, kAsProvided);
    }
    EXPECT_EQ(settings.size, 100);
    EXPECT_EQ(settings.safe_area, 80);
    EXPECT_EQ(settings.source, KOVA_CAPTIONS_NONE);
    EXPECT_EQ(settings.easy_reader, 0);
    EXPECT_STREQ(settings.language, "");
    for (const auto &file : settings.fonts) EXPECT_STREQ(file, "");
}

/* ------------------------------------------------------------------------------------------------------- Text form */

// A record with another value than the default in every field.
static Settings Unusual()
{
    Settings settings = Defaults();

    settings.foreground = KOVA_CAPTIONS_YELLOW;
    settings.foreground_opacity = KOVA_CAPTIONS_TRANSLUCENT;
    settings.background = 0x1B; // 1,2,3
    settings.background_opacity = KOVA_CAPTIONS_SOLID;
    settings.window = KOVA_CAPTIONS_BLUE;
    settings.window_opacity = KOVA_CAPTIONS_TRANSPARENT;
    settings.edge_type = KOVA_CAPTIONS_EDGE_SHADOW_LEFT;
    settings.edge_color = KOVA_CAPTIONS_BLACK;
    settings.font = KOVA_CAPTIONS_FONT_SMALL_CAPITALS;
    settings.italics = settings.underline = settings.flash = 0;
    settings.size = 150;
    settings.safe_area = 90;
    settings.source = KOVA_CAPTIONS_CC3;
    settings.easy_reader = 1;
    std::strcpy(settings.language, "spa");
    for (int i = 0; i < KOVA_CAPTIONS_FONTS; i++) {
        std::strcpy(settings.fonts[i], ("/fonts/Ünïcode = # " + std::to_string(i) + ".ttf").c_str());
    }
    return settings;
}

TEST(SettingsText, HasEverySettingUnderItsName)
{
    Requirement("D2");

    EXPECT_EQ(Written(Unusual()), "# Caption settings\n"
                                  "version = 1\n"
                                  "foreground = yellow\n"
                                  "foreground_opacity = translucent\n"
                                  "background = 1,2,3\n"
                                  "background_opacity = solid\n"
                                  "window = blue\n"
                                  "window_opacity = transparent\n"
                                  "edge_type = shadow-left\n"
                                  "edge_color = black\n"
                                  "font = small-capitals\n"
                                  "italics = off\n"
                                  "underline = off\n"
                                  "flash = off\n"
                                  "size = 150\n"
                                  "safe_area = 90\n"
                                  "source = cc3\n"
                                  "easy_reader = on\n"
                                  "language = spa\n"
                                  "font_file_default = /fonts/Ünïcode = # 0.ttf\n"
                                  "font_file_mono_serif = /fonts/Ünïcode = # 1.ttf\n"
                                  "font_file_serif = /fonts/Ünïcode = # 2.ttf\n"
                                  "font_file_mono_sans = /fonts/Ünïcode = # 3.ttf\n"
                                  "font_file_sans = /fonts/Ünïcode = # 4.ttf\n"
                                  "font_file_casual = /fonts/Ünïcode = # 5.ttf\n"
                                  "font_file_cursive = /fonts/Ünïcode = # 6.ttf\n"
                                  "font_file_small_capitals = /fonts/Ünïcode = # 7.ttf\n");
}

TEST(SettingsText, BringsBackTheSameRecordWhateverWasThere)
{
    Requirement("D2");
    Settings unusual = Defaults(), usual = Unusual();

    EXPECT_EQ(Read(unusual, Written(Unusual())), 0u);
    EXPECT_EQ(Read(usual, Written(Defaults())), 0u);

    EXPECT_TRUE(Same(unusual, Unusual()));
    EXPECT_TRUE(Same(usual, Defaults()));
}

TEST(SettingsText, BringsBackEveryColour)
{
    Requirement("D2", "D3");
    Settings settings = Defaults();

    for (uint8_t color = 0; color <= KOVA_CAPTIONS_WHITE; color++) {
        settings.foreground = settings.background = settings.window = settings.edge_color = color;
        EXPECT_TRUE(Same(SettingsOf(Written(settings)), settings)) << int(color);
    }
}

TEST(SettingsText, BringsBackEverySizeAndSource)
{
    Requirement("D2");
    Settings settings = Defaults();

    for (unsigned size = KOVA_CAPTIONS_SMALLEST_SIZE; size <= KOVA_CAPTIONS_LARGEST_SIZE; size++) {
        settings.size = uint8_t(size);
        EXPECT_EQ(SettingsOf(Written(settings)).size, size);
    }
    for (unsigned source = KOVA_CAPTIONS_NONE; source <= KOVA_CAPTIONS_T4; source++) {
        settings.source = uint8_t(source);
        EXPECT_EQ(SettingsOf(Written(settings)).source, source);
    }
}

TEST(SettingsText, BringsBackEveryListedValue)
{
    Requirement("D2");

    for (const std::string &name : Names()) {
        for (const std::string &value : ValuesOf(name)) {
            const Settings settings = SettingsOf(name + " = " + value);
            EXPECT_EQ(ValueOf(settings, name), value) << name;
            EXPECT_TRUE(Same(SettingsOf(Written(settings)), settings)) << name << " = " << value;
        }
    }
}

TEST(SettingsText, ToleratesBlanksCommentsAndForeignLineEnds)
{
    const Settings settings = SettingsOf("\xEF\xBB\xBF# comment = no setting\r\n"
                                         "\r\n"
                                         " \t size=\t120 \r\n"
                                         "  # another\r\n"
                                         "language =\r\n"
                                         "font_file_serif = /a b/c#d.ttf  \r\n"
                                         "foreground = 3,0,1");

    EXPECT_EQ(settings.size, 120);
    EXPECT_EQ(settings.foreground, 0x31);
    EXPECT_STREQ(settings.fonts[KOVA_CAPTIONS_FONT_SERIF], "/a b/c#d.ttf");
}

TEST(SettingsText, OverAnotherKeepsWhatItDoesNotName)
{
    Settings settings = SettingsOf("size = 150\nforeground = red\n");

    EXPECT_EQ(Read(settings, "size = 60\nsize = 70\n"), 0u);

    EXPECT_EQ(settings.size, 70);
    EXPECT_EQ(settings.foreground, KOVA_CAPTIONS_RED);
}

TEST(SettingsText, MayBeEmpty)
{
    EXPECT_TRUE(Same(SettingsOf(""), Defaults()));
    EXPECT_TRUE(Same(SettingsOf("\n\n"), Defaults()));
}

TEST(SettingsText, TellsTheLineThatIsWrongAndChangesNothing)
{
    const struct {
        const char *text;
        unsigned line;
    } rows[] = {{"size 120", 1},
                {"foreground = purple", 1},
                {"size = 100\n\n# comment\nforeground = White\n", 4},
                {"foreground = 1,2,4", 1},
                {"foreground = 1,2", 1},
                {"foreground = 1,2,3,0", 1},
                {"foreground = 1 2 3", 1},
                {"foreground =", 1},
                {"foreground = solid", 1},
                {"window_opacity = opaque", 1},
                {"size = 49", 1},
                {"size = 201", 1},
                {"size = 100%", 1},
                {"size = 356", 1},
                {"size = 4294967396", 1},
                {"size = -100", 1},
                {"size =", 1},
                {"safe_area = 79", 1},
                {"safe_area = 101", 1},
                {"source = s64", 1},
                {"source = xds", 1},
                {"source = -", 1},
                {"italics = on", 1},
                {"easy_reader = as-provided", 1},
                {"language = en", 1},
                {"language = engl", 1},
                {"language = e1g", 1},
                {"colour = red", 1},
                {"foreground_ = red", 1},
                {"foregroun = red", 1},
                {" = red", 1},
                {"=", 1},
                {"version = 0", 1},
                {"version = one", 1},
                {"size = 120\nversion = 1\nversions = 1", 3}};

    for (const auto &row : rows) {
        Settings settings = Unusual();
        EXPECT_EQ(Read(settings, row.text), row.line) << row.text;
        EXPECT_TRUE(Same(settings, Unusual())) << row.text;
    }
}

TEST(SettingsText, OfANewerVersionIsReadAsFarAsItIsKnown)
{
    Settings settings = Defaults();

    EXPECT_EQ(Read(settings, "version = 2\ncolour = red\nforeground = purple\nsize = 120\n"), 0u);
    EXPECT_EQ(settings.size, 120);
    EXPECT_EQ(settings.foreground, kAsProvided);
    // The form of a line is the same in every version.
    EXPECT_EQ(Read(settings, "version = 2\nsize = 130\ncolour red\n"), 3u);
    EXPECT_EQ(settings.size, 120);
}

TEST(SettingsText, HoldsFileNamesThatFitTheRecord)
{
    const std::string longest(KOVA_CAPTIONS_FONT_FILE - 1, 'x');
    Settings settings = SettingsOf("font_file_casual = " + longest);

    EXPECT_EQ(settings.fonts[KOVA_CAPTIONS_FONT_CASUAL], longest);
    EXPECT_EQ(Read(settings, "font_file_casual = " + longest + "x"), 1u);
    EXPECT_EQ(Read(settings, "font_file_casual = a\tb"), 1u);
    EXPECT_EQ(Read(settings, std::string("font_file_casual = a\0b", 22)), 1u);
}

TEST(SettingsText, OfTheLongestFitsTheRoomThatIsAlwaysEnough)
{
    Settings settings = Unusual();

    settings.foreground_opacity = settings.background_opacity = settings.window_opacity = kAsProvided;
    settings.foreground = settings.background = settings.window = settings.edge_color = kAsProvided;
    for (auto &file : settings.fonts)
        std::strcpy(file, std::string(KOVA_CAPTIONS_FONT_FILE - 1, 'x').c_str());

    EXPECT_TRUE(Same(SettingsOf(Written(settings)), settings));
}

TEST(SettingsText, IsCutOffWhereTheRoomEnds)
{
    char room[12] = "unchanged..";
    const Settings settings = Defaults();
    const int length = int(Written(settings).size());

    EXPECT_EQ(Kova_Captions_WriteSettings(&settings, room, 10), length);
    EXPECT_STREQ(room, "# Caption");
    EXPECT_EQ(Kova_Captions_WriteSettings(&settings, nullptr, 0), length);
}

TEST(SettingsText, IsRefusedForFileNamesThatALineCannotHold)
{
    char text[KOVA_CAPTIONS_SETTINGS_TEXT];
    Settings settings = Defaults();

    for (const char *const name : {" a.ttf", "a.ttf ", "a\nb.ttf", "\r", "a\x7F.ttf"}) {
        std::strcpy(settings.fonts[3], name);
        EXPECT_EQ(Kova_Captions_WriteSettings(&settings, text, sizeof text), -1) << name;
    }
    std::memset(settings.fonts[3], 'x', sizeof settings.fonts[3]);
    EXPECT_EQ(Kova_Captions_WriteSettings(&settings, text, sizeof text), -1);
}

TEST(SettingsText, HasTheDefaultForValuesOutOfRange)
{
    Settings settings = Defaults();

    settings.foreground = settings.background = settings.window = settings.edge_color = 64;
    settings.foreground_opacity = settings.background_opacity = settings.window_opacity = 4;
    settings.edge_type = 6;
    settings.font = 8;
    settings.italics = settings.underline = settings.flash = 1;
    settings.size = 49;
    settings.safe_area = 101;
    settings.source = KOVA_CAPTIONS_XDS;
    settings.easy_reader = 2;
    std::strcpy(settings.language, "E1");

    EXPECT_EQ(Written(settings), Written(Defaults()));
}

TEST(SettingsText, WithoutARecordOrRoomIsRefused)
{
    Settings settings = Unusual();
    unsigned line = 7;

    EXPECT_EQ(Kova_Captions_ReadSettings(nullptr, "", 0, &line), -1);
    EXPECT_EQ(line, 0u);
    EXPECT_EQ(Kova_Captions_ReadSettings(&settings, nullptr, 0, nullptr), -1);
    EXPECT_EQ(Kova_Captions_ReadSettings(&settings, "?", 1, nullptr), -1);
    EXPECT_EQ(Kova_Captions_WriteSettings(nullptr, nullptr, 0), -1);
    EXPECT_EQ(Kova_Captions_WriteSettings(&settings, nullptr, 1), -1);
    EXPECT_EQ(Kova_Captions_WriteSetting(nullptr, 0, nullptr, 0), -1);
    EXPECT_EQ(Kova_Captions_WriteSetting(&settings, 0, nullptr, 1), -1);
    EXPECT_EQ(Kova_Captions_WriteSetting(&settings, unsigned(Names().size()), nullptr, 0), -1);
    EXPECT_EQ(Kova_Captions_WriteSetting(&settings, 0, nullptr, 0), 6); // yellow
    Kova_Captions_GetDefaultSettings(nullptr);
    EXPECT_TRUE(Same(settings, Unusual()));
}

// A generator of its own, so that every run is the same.
static unsigned Random()
{
    static unsigned state = 1;

    state = state * 1664525 + 1013904223;
    return state >> 8;
}

TEST(SettingsText, OfAnyBytesIsReadOrRefused)
{
    int accepted = 0;

    for (int i = 0; i < 20000; i++) {
        std::string text = Written(Unusual());
        for (unsigned changes = Random() % 4; changes > 0; changes--) {
            const std::size_t at = Random() % text.size();
            text[at] = char(Random());
            if (Random() % 8 == 0) text.resize(at + 1);
        }
        Settings settings = Defaults();
        const unsigned line = Read(settings, text);
        EXPECT_LE(line, 27u + 3); // a comment, the version, 25 settings, and three new lines
        if (line != 0) continue;
        accepted++;
        EXPECT_TRUE(Same(SettingsOf(Written(settings)), settings)) << text;
    }

    EXPECT_GT(accepted, 4000);
}

/* ----------------------------------------------------------------------------------------------------------- Menus */

TEST(SettingValues, OfferEightColoursFourOpacitiesAllEdgesAndFonts)
{
    Requirement("D3", "D4", "D6", "D7", "D8", "D9");
    const std::vector<std::string> colors = {"as-provided", "black",   "blue",   "green", "cyan",
                                             "red",         "magenta", "yellow", "white"},
                                   opacities = {"as-provided", "solid", "flash", "translucent",
                                                "transparent"};

    for (const char *const name : {"foreground", "background", "window", "edge_color"}) {
        EXPECT_EQ(ValuesOf(name), colors) << name;
    }
    for (const char *const name : {"foreground_opacity", "background_opacity", "window_opacity"}) {
        EXPECT_EQ(ValuesOf(name), opacities) << name;
    }
    EXPECT_EQ(ValuesOf("edge_type"), (std::vector<std::string>{"as-provided", "none", "raised", "depressed",
                                                               "uniform", "shadow-left", "shadow-right"}));
    EXPECT_EQ(ValuesOf("font"),
              (std::vector<std::string>{"as-provided", "default", "mono-serif", "serif", "mono-sans", "sans",
                                        "casual", "cursive", "small-capitals"}));
}

TEST(SettingValues, OfferEverySourceAndNoneWhereTheyAreFree)
{
    EXPECT_EQ(ValuesOf("source").size(), 1u + 63 + 8);
    EXPECT_EQ(ValuesOf("source").front(), "automatic");
    EXPECT_EQ(ValuesOf("source").back(), "t4");
    for (const char *const name : {"size", "safe_area", "language", "font_file_sans"}) {
        EXPECT_EQ(ValuesOf(name), std::vector<std::string>()) << name;
    }
    EXPECT_EQ(Kova_Captions_SettingValue(unsigned(Names().size()), 0), nullptr);
    EXPECT_EQ(Kova_Captions_SettingName(4000000000u), nullptr);
}

TEST(SettingValues, AreTheConstantsOfTheirNames)
{
    const Settings settings =
        SettingsOf("foreground = cyan\nbackground = magenta\nwindow = green\nedge_color = white\n"
                   "foreground_opacity = solid\nbackground_opacity = flash\n"
                   "window_opacity = translucent\nedge_type = depressed\nfont = mono-sans\n"
                   "source = s63\n");

    EXPECT_EQ(settings.foreground, KOVA_CAPTIONS_CYAN);
    EXPECT_EQ(settings.background, KOVA_CAPTIONS_MAGENTA);
    EXPECT_EQ(settings.window, KOVA_CAPTIONS_GREEN);
    EXPECT_EQ(settings.edge_color, KOVA_CAPTIONS_WHITE);
    EXPECT_EQ(settings.foreground_opacity, KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(settings.background_opacity, KOVA_CAPTIONS_FLASH);
    EXPECT_EQ(settings.window_opacity, KOVA_CAPTIONS_TRANSLUCENT);
    EXPECT_EQ(settings.edge_type, KOVA_CAPTIONS_EDGE_DEPRESSED);
    EXPECT_EQ(settings.font, KOVA_CAPTIONS_FONT_MONO_SANS);
    EXPECT_EQ(settings.source, KOVA_CAPTIONS_S63);
}

/* -------------------------------------------------------------------------------------------------------- Applying */

// A pen of a stream with a value of its own in every field.
static KovaCaptionsPen ProvidedPen()
{
    KovaCaptionsPen pen = {};

    pen.foreground = KOVA_CAPTIONS_CYAN;
    pen.foreground_opacity = KOVA_CAPTIONS_FLASH;
    pen.background = KOVA_CAPTIONS_RED;
    pen.background_opacity = KOVA_CAPTIONS_TRANSLUCENT;
    pen.edge_color = KOVA_CAPTIONS_BLUE;
    pen.edge_type = KOVA_CAPTIONS_EDGE_RAISED;
    pen.size = KOVA_CAPTIONS_PEN_LARGE;
    pen.offset = KOVA_CAPTIONS_SUPERSCRIPT;
    pen.font = KOVA_CAPTIONS_FONT_CURSIVE;
    pen.italics = pen.underline = 1;
    pen.text_tag = 5;
    return pen;
}

static KovaCaptionsPen Applied(const Settings &settings, KovaCaptionsPen pen)
{
    KovaCaptionsPen applied;

    std::memset(&applied, 0xA5, sizeof applied);
    Kova_Captions_ApplyToPen(&settings, &pen, &applied);
    Kova_Captions_ApplyToPen(&settings, &pen, &pen);
    EXPECT_EQ(std::memcmp(&applied, &pen, sizeof pen), 0) << "in place";
    return applied;
}

static KovaCaptionsPen Applied(const std::string &text, KovaCaptionsPen pen)
{
    return Applied(SettingsOf(text), pen);
}

// Only this field differs from the stream's pen.
static void ExpectAlone(const std::string &text, uint8_t KovaCaptionsPen::*field, uint8_t value)
{
    KovaCaptionsPen expected = ProvidedPen();
    const KovaCaptionsPen applied = Applied(text, ProvidedPen());

    expected.*field = value;
    EXPECT_EQ(int(applied.*field), int(value)) << text;
    EXPECT_EQ(std::memcmp(&applied, &expected, sizeof expected), 0) << text;
}

TEST(AppliedToPens, DefaultsChangeNothing)
{
    Requirement("D1");

    ExpectAlone("", &KovaCaptionsPen::text_tag, 5);
    // Not even what cannot be read.
    KovaCaptionsPen pen = ProvidedPen();
    pen.foreground = pen.background = KOVA_CAPTIONS_WHITE;
    pen.foreground_opacity = pen.background_opacity = KOVA_CAPTIONS_SOLID;
    pen.edge_type = KOVA_CAPTIONS_EDGE_NONE;
    const KovaCaptionsPen applied = Applied("", pen);
    EXPECT_EQ(std::memcmp(&applied, &pen, sizeof pen), 0);
}

TEST(AppliedToPens, EachSettingReplacesItsAttributeAlone)
{
    Requirement("D3", "D4", "D6", "D7", "D8", "D15");

    ExpectAlone("foreground = white", &KovaCaptionsPen::foreground, KOVA_CAPTIONS_WHITE);
    ExpectAlone("foreground = 1,0,2", &KovaCaptionsPen::foreground, 0x12);
    ExpectAlone("foreground_opacity = solid", &KovaCaptionsPen::foreground_opacity, KOVA_CAPTIONS_SOLID);
    ExpectAlone("foreground_opacity = translucent", &KovaCaptionsPen::foreground_opacity,
                KOVA_CAPTIONS_TRANSLUCENT);
    ExpectAlone("background = black", &KovaCaptionsPen::background, KOVA_CAPTIONS_BLACK);
    ExpectAlone("background_opacity = solid", &KovaCaptionsPen::background_opacity, KOVA_CAPTIONS_SOLID);
    ExpectAlone("background_opacity = transparent", &KovaCaptionsPen::background_opacity,
                KOVA_CAPTIONS_TRANSPARENT);
    ExpectAlone("edge_type = none", &KovaCaptionsPen::edge_type, KOVA_CAPTIONS_EDGE_NONE);
    ExpectAlone("edge_type = shadow-right", &KovaCaptionsPen::edge_type, KOVA_CAPTIONS_EDGE_SHADOW_RIGHT);
    ExpectAlone("edge_color = green", &KovaCaptionsPen::edge_color, KOVA_CAPTIONS_GREEN);
    ExpectAlone("font = default", &KovaCaptionsPen::font, KOVA_CAPTIONS_FONT_DEFAULT);
    ExpectAlone("italics = off", &KovaCaptionsPen::italics, 0);
    ExpectAlone("underline = off", &KovaCaptionsPen::underline, 0);
    // Sizes and windows are not the pen's.
    ExpectAlone("size = 200\nwindow = green\nwindow_opacity = solid\nsafe_area = 100\nlanguage = eng\n"
                "font_file_cursive = a.ttf",
                &KovaCaptionsPen::text_tag, 5);
}

TEST(AppliedToPens, FlashingEndsWithAChosenOpacityOrWhereItIsOff)
{
    Requirement("D15");
    KovaCaptionsPen pen = ProvidedPen();
    pen.background_opacity = KOVA_CAPTIONS_FLASH;

    EXPECT_EQ(Applied("foreground = white", pen).foreground_opacity, KOVA_CAPTIONS_FLASH);
    EXPECT_EQ(Applied("background = white", pen).background_opacity, KOVA_CAPTIONS_FLASH);
    EXPECT_EQ(Applied("background_opacity = translucent", pen).background_opacity, KOVA_CAPTIONS_TRANSLUCENT);
    EXPECT_EQ(Applied("flash = off", pen).foreground_opacity, KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(Applied("flash = off", pen).background_opacity, KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(Applied("flash = off\nforeground_opacity = flash", pen).foreground_opacity,
              KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(Applied("flash = off\nbackground_opacity = transparent", pen).background_opacity,
              KOVA_CAPTIONS_TRANSPARENT);
    pen.foreground_opacity = KOVA_CAPTIONS_TRANSLUCENT;
    EXPECT_EQ(Applied("flash = off", pen).foreground_opacity, KOVA_CAPTIONS_TRANSLUCENT);
}

TEST(AppliedToPens, ABlackBackgroundForLine21CanBeChosen)
{
    Requirement("D13");
    KovaCaptionsPen pen = {}; // of line 21: white on a transparent background
    pen.foreground = KOVA_CAPTIONS_WHITE;
    pen.background = KOVA_CAPTIONS_BLUE;
    pen.background_opacity = KOVA_CAPTIONS_TRANSPARENT;

    const KovaCaptionsPen applied = Applied("background = black\nbackground_opacity = solid", pen);

    EXPECT_EQ(applied.background, KOVA_CAPTIONS_BLACK);
    EXPECT_EQ(applied.background_opacity, KOVA_CAPTIONS_SOLID);
    EXPECT_EQ(applied.foreground, KOVA_CAPTIONS_WHITE);
}

static KovaCaptionsPen SolidPen(uint8_t foreground, uint8_t background)
{
    KovaCaptionsPen pen = {};

    pen.foreground = foreground;
    pen.background = background;
    return pen;
}

// Foreground and background of a solid pen without an edge, after the settings.
static std::pair<int, int> Pair(const std::string &text, const KovaCaptionsPen &pen)
{
    const KovaCaptionsPen applied = Applied(text, pen);
    return {applied.foreground, applied.background};
}

TEST(AppliedToPens, TextThatWouldVanishTurnsBlackOrWhite)
{
    Requirement("D17");
    using Colors = std::pair<int, int>;
    const KovaCaptionsPen pen = SolidPen(KOVA_CAPTIONS_YELLOW, KOVA_CAPTIONS_BLUE);

    // The viewer's colour stays, the other one changes: to black beside bright colours, to white beside dark ones.
    EXPECT_EQ(Pair("foreground = blue", pen), Colors(KOVA_CAPTIONS_BLUE, KOVA_CAPTIONS_WHITE));
    EXPECT_EQ(Pair("background = yellow", pen), Colors(KOVA_CAPTIONS_BLACK, KOVA_CAPTIONS_YELLOW));
    for (const int dark : {0x00, 0x03, 0x30, 0x33, 0x15, 0x04}) {
        Settings settings = Defaults();
        settings.background = uint8_t(dark);
        EXPECT_EQ(Applied(settings, SolidPen(uint8_t(dark), KOVA_CAPTIONS_BLACK)).foreground,
                  KOVA_CAPTIONS_WHITE)
            << dark;
    }
    for (const int bright : {0x3F, 0x0C, 0x0F, 0x3C, 0x2A}) {
        Settings settings = Defaults();
        settings.background = uint8_t(bright);
        EXPECT_EQ(Applied(settings, SolidPen(uint8_t(bright), KOVA_CAPTIONS_BLACK)).foreground,
                  KOVA_CAPTIONS_BLACK)
            << bright;
    }
}

TEST(AppliedToPens, TextThatTheViewerMadeVanishStands)
{
    Requirement("D17");
    using Colors = std::pair<int, int>;
    const KovaCaptionsPen pen = SolidPen(KOVA_CAPTIONS_YELLOW, KOVA_CAPTIONS_BLUE);

    EXPECT_EQ(Pair("foreground = red\nbackground = red", pen), Colors(KOVA_CAPTIONS_RED, KOVA_CAPTIONS_RED));
}

TEST(AppliedToPens, TextThatCanBeSeenOtherwiseKeepsItsColour)
{
    Requirement("D17");
    using Colors = std::pair<int, int>;
    const Colors blue = {KOVA_CAPTIONS_BLUE, KOVA_CAPTIONS_BLUE};
    KovaCaptionsPen edged = SolidPen(KOVA_CAPTIONS_YELLOW, KOVA_CAPTIONS_BLUE), faint = edged, open = edged;
    edged.edge_type = KOVA_CAPTIONS_EDGE_UNIFORM;
    faint.foreground_opacity = KOVA_CAPTIONS_TRANSLUCENT;
    open.background_opacity = KOVA_CAPTIONS_TRANSPARENT;

    for (const KovaCaptionsPen &pen : {edged, faint, open}) EXPECT_EQ(Pair("foreground = blue", pen), blue);
    EXPECT_EQ(
        Pair("foreground = blue\nedge_type = raised", SolidPen(KOVA_CAPTIONS_WHITE, KOVA_CAPTIONS_BLUE)),
        blue);
    // As soon as the edge goes or the background comes, it would vanish.
    EXPECT_EQ(Pair("foreground = blue\nedge_type = none", edged),
              Colors(KOVA_CAPTIONS_BLUE, KOVA_CAPTIONS_WHITE));
    EXPECT_EQ(Pair("foreground = blue\nbackground_opacity = solid", open),
              Colors(KOVA_CAPTIONS_BLUE, KOVA_CAPTIONS_WHITE));
}

TEST(AppliedToPens, TextOfTheColourOfItsHiddenBackgroundStaysReadable)
{
    Requirement("D17");
    using Colors = std::pair<int, int>;
    KovaCaptionsPen open = SolidPen(KOVA_CAPTIONS_WHITE, KOVA_CAPTIONS_WHITE);
    open.background_opacity = KOVA_CAPTIONS_TRANSPARENT;

    EXPECT_EQ(Pair("background_opacity = solid", open), Colors(KOVA_CAPTIONS_BLACK, KOVA_CAPTIONS_WHITE));
    // The stream hides it already, and the viewer's colour shows it.
    EXPECT_EQ(Pair("foreground = white", SolidPen(KOVA_CAPTIONS_WHITE, KOVA_CAPTIONS_WHITE)),
              Colors(KOVA_CAPTIONS_WHITE, KOVA_CAPTIONS_BLACK));
    EXPECT_EQ(Pair("foreground_opacity = solid", SolidPen(KOVA_CAPTIONS_WHITE, KOVA_CAPTIONS_WHITE)),
              Colors(KOVA_CAPTIONS_WHITE, KOVA_CAPTIONS_WHITE));
}

static KovaCaptionsWindowAttributes Applied(const std::string &text, KovaCaptionsWindowAttributes window)
{
    const Settings settings = SettingsOf(text);

    Kova_Captions_ApplyToWindow(&settings, &window, &window);
    return window;
}

TEST(AppliedToWindows, ColourAndOpacityReplaceTheFillAlone)
{
    Requirement("D1", "D9", "D15");
    KovaCaptionsWindowAttributes window;
    std::memset(&window, 1, sizeof window);
    window.fill_color = KOVA_CAPTIONS_GREEN;
    window.fill_opacity = KOVA_CAPTIONS_FLASH;
    const auto differences = [&](const std::string &text) {
        const KovaCaptionsWindowAttributes applied = Applied(text, window);
        KovaCaptionsWindowAttributes rest = applied;
        rest.fill_color = window.fill_color;
        rest.fill_opacity = window.fill_opacity;
        EXPECT_EQ(std::memcmp(&rest, &window, sizeof rest), 0) << text;
        return std::pair<int, int>(applied.fill_color, applied.fill_opacity);
    };
    using Fill = std::pair<int, int>;

    EXPECT_EQ(differences(""), Fill(KOVA_CAPTIONS_GREEN, KOVA_CAPTIONS_FLASH));
    EXPECT_EQ(differences("foreground = red\nbackground = red"),
              Fill(KOVA_CAPTIONS_GREEN, KOVA_CAPTIONS_FLASH));
    EXPECT_EQ(differences("window = red"), Fill(KOVA_CAPTIONS_RED, KOVA_CAPTIONS_FLASH));
    for (const auto &[name, opacity] : {std::pair<const char *, int>("solid", KOVA_CAPTIONS_SOLID),
                                        {"translucent", KOVA_CAPTIONS_TRANSLUCENT},
                                        {"transparent", KOVA_CAPTIONS_TRANSPARENT}}) {
        EXPECT_EQ(differences(std::string("window_opacity = ") + name), Fill(KOVA_CAPTIONS_GREEN, opacity));
    }
    EXPECT_EQ(differences("flash = off"), Fill(KOVA_CAPTIONS_GREEN, KOVA_CAPTIONS_SOLID));
    EXPECT_EQ(differences("window = black\nwindow_opacity = solid"),
              Fill(KOVA_CAPTIONS_BLACK, KOVA_CAPTIONS_SOLID));
}

TEST(AppliedSettings, OutOfRangeCountAsProvided)
{
    Settings settings = Defaults();
    settings.foreground = settings.background = settings.edge_color = settings.window = 64;
    settings.foreground_opacity = settings.background_opacity = settings.window_opacity = 4;
    settings.edge_type = 6;
    settings.font = 8;
    settings.italics = settings.underline = settings.flash = 1;
    KovaCaptionsWindowAttributes window = {}, same = window;
    const KovaCaptionsPen pen = ProvidedPen(), applied = Applied(settings, pen);

    Kova_Captions_ApplyToWindow(&settings, &window, &window);

    EXPECT_EQ(std::memcmp(&applied, &pen, sizeof pen), 0);
    EXPECT_EQ(std::memcmp(&window, &same, sizeof window), 0);
}

TEST(AppliedSettings, OfNobodyChangeNothing)
{
    const Settings settings = Unusual();
    KovaCaptionsPen pen = ProvidedPen();
    KovaCaptionsWindowAttributes window = {};

    Kova_Captions_ApplyToPen(nullptr, &pen, &pen);
    Kova_Captions_ApplyToPen(&settings, nullptr, &pen);
    Kova_Captions_ApplyToPen(&settings, &pen, nullptr);
    Kova_Captions_ApplyToWindow(nullptr, &window, &window);
    Kova_Captions_ApplyToWindow(&settings, nullptr, &window);
    Kova_Captions_ApplyToWindow(&settings, &window, nullptr);

    const KovaCaptionsPen same = ProvidedPen();
    EXPECT_EQ(std::memcmp(&pen, &same, sizeof pen), 0);
    EXPECT_EQ(window.fill_color, 0);
}
