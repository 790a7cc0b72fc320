#include "languages.h"

#include <algorithm>
#include <array>

namespace quilp::catalogue {
namespace {

struct Region {
  std::string_view region;
  std::string_view language;
};

constexpr std::array kRegions = {
    Region{"AE", "ar"}, Region{"AR", "es"},   Region{"AT", "de"},  Region{"AU", "en"},
    Region{"BG", "bg"}, Region{"BR", "pt"},   Region{"CL", "es"},  Region{"CN", "zh"},
    Region{"CO", "es"}, Region{"CZ", "cs"},   Region{"DE", "de"},  Region{"DK", "da"},
    Region{"EE", "et"}, Region{"EG", "ar"},   Region{"ES", "es"},  Region{"FI", "fi"},
    Region{"FR", "fr"}, Region{"GB", "en"},   Region{"GR", "el"},  Region{"HK", "zh"},
    Region{"HR", "hr"}, Region{"HU", "hu"},   Region{"ID", "id"},  Region{"IE", "en"},
    Region{"IL", "he"}, Region{"IR", "fa"},   Region{"IS", "is"},  Region{"IT", "it"},
    Region{"JP", "ja"}, Region{"KR", "ko"},   Region{"LT", "lt"},  Region{"LV", "lv"},
    Region{"MX", "es"}, Region{"NL", "nl"},   Region{"NO", "no"},  Region{"NZ", "en"},
    Region{"PE", "es"}, Region{"PL", "pl"},   Region{"PT", "pt"},  Region{"RO", "ro"},
    Region{"RS", "sr"}, Region{"RU", "ru"},   Region{"SE", "sv"},  Region{"SI", "sl"},
    Region{"SK", "sk"}, Region{"SUHH", "ru"}, Region{"TH", "th"},  Region{"TR", "tr"},
    Region{"TW", "zh"}, Region{"UA", "uk"},   Region{"US", "en"},  Region{"UY", "es"},
    Region{"VE", "es"}, Region{"VN", "vi"},   Region{"XWG", "de"},
};

}  // namespace

std::string_view languageOf(std::string_view region) {
  const auto* found = std::find_if(kRegions.begin(), kRegions.end(),
                                   [&](const Region& each) { return each.region == region; });
  return found == kRegions.end() ? std::string_view() : found->language;
}

}  // namespace quilp::catalogue
