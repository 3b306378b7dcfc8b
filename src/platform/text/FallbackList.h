#pragma once

#include "platform/text/FontLibrary.h"

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace tessaloom {

/// One installed font that may stand in for the one asked for.
struct FallbackFont {
    std::string path;
    int index = 0;
    const FcCharSet* characters = nullptr;  ///< Owned by the list.
    bool embolden = false;                  ///< Bold was asked for and the font has no bold.
    bool slant = false;                     ///< Italic likewise.
};

/// The installed fonts, the best one for a family and style first, each next one adding characters.
class FallbackList {
public:
    FallbackList(std::shared_ptr<FontLibrary> library, const std::string& family, bool bold, bool italic);
    ~FallbackList();
    FallbackList(const FallbackList&) = delete;
    FallbackList& operator=(const FallbackList&) = delete;

    std::size_t Size() const { return fonts_.size(); }
    const FallbackFont& operator[](std::size_t i) const { return fonts_[i]; }

    bool Has(std::size_t i, char32_t character) const;

    /// The first font that has `character`; 0 when none has it.
    std::size_t Find(char32_t character);

private:
    void Sort(const std::string& family, bool bold, bool italic);
    void Take(FcPattern* pattern, bool bold, bool italic);

    std::shared_ptr<FontLibrary> library_;
    FcFontSet* sorted_ = nullptr;
    std::vector<FallbackFont> fonts_;
    std::unordered_map<char32_t, std::size_t> found_;
};

}  // namespace tessaloom
