#include <cstddef>

#include "libquilp.h"

// The record layouts are part of the binary interface.
constexpr std::size_t kWord = sizeof(char*);
static_assert(sizeof(KaraokeLanguageEntry) == (kWord == 8 ? 7 : 8) * kWord,
              "KaraokeLanguageEntry has changed");
static_assert(sizeof(KaraokeCodeEntry) == 3 * kWord, "KaraokeCodeEntry has changed");
static_assert(sizeof(SeparatorEntry) == 12, "SeparatorEntry has changed");
static_assert(sizeof(CountryEntry) == 4 * kWord, "CountryEntry has changed");
static_assert(sizeof(TitleSearchPattern_t) == sizeof(std::string) + 8,
              "TitleSearchPattern_t has changed");
static_assert(sizeof(ArtistSearchPattern_t) == sizeof(TitleSearchPattern_t),
              "ArtistSearchPattern_t has changed");
static_assert(sizeof(ArtistData_t) == sizeof(std::string) + 8 + 3 * kWord,
              "ArtistData_t has changed");
static_assert(sizeof(KTV_ExtraData_t) == (kWord == 8 ? 24 : 20) + sizeof(std::string) + 12 * kWord,
              "KTV_ExtraData_t has changed");
static_assert(offsetof(KTV_ExtraData_t, title) == (kWord == 8 ? 24 : 20) &&
                  offsetof(KTV_ExtraData_t, artists) ==
                      offsetof(KTV_ExtraData_t, title) + sizeof(std::string) &&
                  offsetof(KTV_ExtraData_t, reserved3) ==
                      offsetof(KTV_ExtraData_t, artists) + 6 * kWord,
              "KTV_ExtraData_t has changed");

KaraokeLanguageEntry g_LanguageCode[9] = {
    {"Mandarin", "[M]", 0, "[國]", 0, "[国]", 0, 1},
    {"Cantonese", "[C]", 0, "[粵]", 0, "[粤]", 0, 2},
    {"Taiwanese", "[T]", 0, "[台]", 0, "[闽]", 0, 3},
    {"English", "[E]", 0, "[英]", 0, "[英]", 0, 4},
    {"Japanese", "[J]", 0, "[日]", 0, "[日]", 0, 5},
    {"Korean", "[K]", 0, "[韓]", 0, "[韩]", 0, 6},
    {"Thai", "[THA]", 0, "[泰]", 0, "[泰]", 0, 7},
    {"Spain", "[ES]", 0, "[西]", 0, "[西]", 0, 8},
    {},
};

const KaraokeCodeEntry g_VocalTrackCode[6] = {
    {1, "[L]", 3}, {2, "[R]", 3}, {3, "[S]", 3}, {4, "[0]", 3}, {5, "[1]", 3}, {},
};

const KaraokeCodeEntry g_GenderCode[4] = {{1, "[M]", 3}, {2, "[F]", 3}, {3, "[G]", 3}, {}};

// The last two are fullwidth.
const SeparatorEntry s_SeparateStr[5] = {{"+", 1}, {"&", 1}, {"＋", 3}, {"＆", 3}, {}};

const char* const year_en[12] = {"Jan.", "Feb.", "Mar.", "Apr.", "May.", "Jun.",
                                 "Jul.", "Aug.", "Sep.", "Oct.", "Nov.", "Dec."};

char gSearchKey[512];
