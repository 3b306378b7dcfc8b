#include "platform/text/FallbackList.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/Ascii.h"

namespace tessaloom {
namespace {

/// Families for which the machine's own configuration often knows nothing near, with the nearest free ones.
struct StandIn {
    std::string_view family;
    std::array<const char*, 3> nearest;
};
constexpr StandIn StandIns[] = {
    {"Arial",                {"Liberation Sans"}                                },
    {"Arial Black",          {"Liberation Sans"}                                },
    {"Arial Narrow",         {"Liberation Sans Narrow", "DejaVu Sans Condensed"}},
    {"Arial Unicode MS",     {"DejaVu Sans"}                                    },
    {"Helvetica",            {"Liberation Sans"}                                },
    {"Calibri",              {"Carlito", "Liberation Sans"}                     },
    {"Cambria",              {"Caladea", "Liberation Serif"}                    },
    {"Consolas",             {"Inconsolata", "DejaVu Sans Mono"}                },
    {"Courier",              {"Liberation Mono"}                                },
    {"Courier New",          {"Liberation Mono"}                                },
    {"Fixedsys",             {"Liberation Mono"}                                },
    {"Garamond",             {"EB Garamond", "Liberation Serif"}                },
    {"Georgia",              {"Gelasio", "DejaVu Serif"}                        },
    {"Impact",               {"Anton", "DejaVu Sans Condensed"}                 },
    {"Lucida Console",       {"DejaVu Sans Mono"}                               },
    {"Lucida Sans Unicode",  {"DejaVu Sans"}                                    },
    {"Microsoft Sans Serif", {"Liberation Sans"}                                },
    {"MS Sans Serif",        {"Liberation Sans"}                                },
    {"MS Serif",             {"Liberation Serif"}                               },
    {"Palatino Linotype",    {"P052", "Liberation Serif"}                       },
    {"Segoe UI",             {"Open Sans", "Liberation Sans"}                   },
    {"System",               {"Liberation Sans"}                                },
    {"Tahoma",               {"DejaVu Sans Condensed", "DejaVu Sans"}           },
    {"Terminal",             {"Liberation Mono"}                                },
    {"Times",                {"Liberation Serif"}                               },
    {"Times New Roman",      {"Liberation Serif"}                               },
    {"Trebuchet MS",         {"Fira Sans", "DejaVu Sans Condensed"}             },
    {"Verdana",              {"DejaVu Sans"}                                    },
};

/// Drawn with other fonts even where one of that name is installed, because its character codes are not ours.
constexpr StandIn Replaced[] = {
    {"Symbol", {"DejaVu Sans", "Liberation Sans"}}
};

constexpr int MostFonts = 100;  ///< Of one list; each one costs a look at every character that none has.
constexpr std::size_t MostRemembered = 65536;

template <std::size_t N>
const StandIn* Lookup(const StandIn (&table)[N], std::string_view family) {
    const auto* row = std::find_if(std::begin(table), std::end(table),
                                   [&](const StandIn& r) { return ascii::SameText(r.family, family); });
    return row == std::end(table) ? nullptr : row;
}

void AddFamily(FcPattern* pattern, const char* name) {
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(name));
}

void AddFamilies(FcPattern* pattern, const std::string& family) {
    const StandIn* row = Lookup(Replaced, family);
    if (!row) {
        if (!family.empty()) AddFamily(pattern, family.c_str());
        row = Lookup(StandIns, family);
    }
    if (!row) return;
    for (const char* name : row->nearest)
        if (name) AddFamily(pattern, name);
}

int IntegerOf(FcPattern* pattern, const char* object, int missing) {
    int value = missing;
    return FcPatternGetInteger(pattern, object, 0, &value) == FcResultMatch ? value : missing;
}

bool BoolOf(FcPattern* pattern, const char* object, bool missing) {
    FcBool value = missing;
    return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch ? value == FcTrue : missing;
}

}  // namespace

FallbackList::FallbackList(std::shared_ptr<FontLibrary> library, const std::string& family, bool bold,
                           bool italic)
    : library_(std::move(library)) {
    if (library_->Config() && library_->Rasteriser()) Sort(family, bold, italic);
}

FallbackList::~FallbackList() {
    if (sorted_) FcFontSetDestroy(sorted_);
}

void FallbackList::Sort(const std::string& family, bool bold, bool italic) {
    FcPattern* wanted = FcPatternCreate();
    if (!wanted) return;
    AddFamilies(wanted, family);
    FcPatternAddInteger(wanted, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(wanted, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(wanted, FC_SCALABLE, FcTrue);
    FcPatternAddBool(wanted, FC_OUTLINE, FcTrue);
    FcConfigSubstitute(library_->Config(), wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultNoMatch;
    sorted_ = FcFontSort(library_->Config(), wanted, FcTrue, nullptr, &result);
    FcPatternDestroy(wanted);
    if (!sorted_) return;
    for (int i = 0; i < sorted_->nfont && i < MostFonts; ++i) Take(sorted_->fonts[i], bold, italic);
}

void FallbackList::Take(FcPattern* pattern, bool bold, bool italic) {
    FcChar8* path = nullptr;
    FcCharSet* characters = nullptr;
    // A pattern for all weights of a variable font has no style of its own; its named ones are listed too.
    if (!BoolOf(pattern, FC_OUTLINE, false) || BoolOf(pattern, FC_VARIABLE, false) ||
        FcPatternGetString(pattern, FC_FILE, 0, &path) != FcResultMatch ||
        FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) != FcResultMatch)
        return;
    fonts_.push_back({
        .path = reinterpret_cast<const char*>(path),
        .index = IntegerOf(pattern, FC_INDEX, 0),
        .characters = characters,
        .embolden = bold && IntegerOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR) <= FC_WEIGHT_MEDIUM,
        .slant = italic && IntegerOf(pattern, FC_SLANT, FC_SLANT_ROMAN) == FC_SLANT_ROMAN,
    });
}

bool FallbackList::Has(std::size_t i, char32_t character) const {
    return FcCharSetHasChar(fonts_[i].characters, character) == FcTrue;
}

std::size_t FallbackList::Find(char32_t character) {
    if (fonts_.empty() || Has(0, character)) return 0;
    if (const auto known = found_.find(character); known != found_.end()) return known->second;
    std::size_t i = 1;
    while (i < fonts_.size() && !Has(i, character)) ++i;
    if (found_.size() >= MostRemembered) found_.clear();
    return found_[character] = i < fonts_.size() ? i : 0;
}

}  // namespace tessaloom
