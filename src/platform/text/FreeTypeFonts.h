#pragma once

#include "platform/Fonts.h"
#include "platform/text/RecentlyUsed.h"

#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace tessaloom {

class FallbackList;
class FontLibrary;

/// The machine's fonts, drawn with FreeType, shaped with HarfBuzz, chosen with Fontconfig.
///
/// Fonts made here may outlive it. A machine without any font draws nothing.
class FreeTypeFonts : public Fonts {
public:
    /// `configFile`: a Fontconfig file to use instead of the machine's.
    explicit FreeTypeFonts(const std::string& configFile = {});
    ~FreeTypeFonts() override;

    std::shared_ptr<Font> Create(const LogicalFont& logical) override;
    void SetClearType(const ClearTypeSettings& settings) override;
    ClearTypeSettings ClearType() const override;
    std::vector<std::string> FaceNames() const override;

private:
    using Style = std::tuple<std::string, bool, bool>;  ///< Family, bold, italic.

    std::shared_ptr<FontLibrary> library_;
    // A canvas with a font of its own for each of its hundred texts still finds them all ready.
    RecentlyUsed<Style, FallbackList> lists_{64};
    RecentlyUsed<LogicalFont, Font> fonts_{128};
};

}  // namespace tessaloom
