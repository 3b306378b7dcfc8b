#include "platform/text/FreeTypeFonts.h"

#include "platform/text/FallbackList.h"
#include "platform/text/FontLibrary.h"
#include "platform/text/FreeTypeFont.h"
#include "platform/text/Utf8.h"

#include <algorithm>

namespace tessaloom {
namespace {

constexpr std::size_t LongestFaceName = 31;

LogicalFont Bounded(const LogicalFont& logical) {
    LogicalFont bounded = logical;
    const std::string_view name = logical.faceName;
    bounded.faceName = EncodeUtf8(DecodeUtf8(name.substr(0, name.find('\0')), LongestFaceName));
    bounded.pixelHeight = std::clamp(logical.pixelHeight, 1, 1000);
    return bounded;
}

}  // namespace

FreeTypeFonts::FreeTypeFonts(const std::string& configFile)
    : library_(std::make_shared<FontLibrary>(configFile)) {}

FreeTypeFonts::~FreeTypeFonts() = default;

std::shared_ptr<Font> FreeTypeFonts::Create(const LogicalFont& asked) {
    const LogicalFont logical = Bounded(asked);
    return fonts_.Get(logical, [&]() -> std::shared_ptr<Font> {
        auto list = lists_.Get({logical.faceName, logical.bold, logical.italic}, [&] {
            return std::make_shared<FallbackList>(library_, logical.faceName, logical.bold, logical.italic);
        });
        return std::make_shared<FreeTypeFont>(library_, std::move(list), logical);
    });
}

void FreeTypeFonts::SetClearType(const ClearTypeSettings& settings) { library_->SetClearType(settings); }

ClearTypeSettings FreeTypeFonts::ClearType() const { return library_->ClearType(); }

std::vector<std::string> FreeTypeFonts::FaceNames() const {
    std::vector<std::string> names;
    FcPattern* any = FcPatternCreate();
    FcObjectSet* wanted = FcObjectSetBuild(FC_FAMILY, static_cast<char*>(nullptr));
    FcPatternAddBool(any, FC_OUTLINE, FcTrue);
    if (FcFontSet* found = FcFontList(library_->Config(), any, wanted)) {
        for (int i = 0; i < found->nfont; ++i) {
            FcChar8* name = nullptr;
            if (FcPatternGetString(found->fonts[i], FC_FAMILY, 0, &name) == FcResultMatch)
                names.emplace_back(reinterpret_cast<const char*>(name));
        }
        FcFontSetDestroy(found);
    }
    FcObjectSetDestroy(wanted);
    FcPatternDestroy(any);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

}  // namespace tessaloom
