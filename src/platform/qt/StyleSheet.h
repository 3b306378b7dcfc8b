#pragma once

#include <cstdint>
#include <string_view>

#include "platform/qt/VectorScene.h"

namespace tessaloom {

/// What a declaration or presentation attribute says of how lines and letters are drawn; an empty style when
/// it is about something else.
VectorStyle StyleOf(std::string_view property, std::string_view value);

/// The style sheets of one vector picture, counted but not applied: whatever element a declaration is for, it
/// may be for all.
class StyleSheet {
public:
    /// Takes in the text of a sheet, or of an attribute "style".
    void Add(std::string_view text);

    const VectorStyle& Style() const { return style_; }
    double MiterLimit() const { return miterLimit_; }

    /// Whether it may transform elements.
    bool Transforms() const { return transforms_; }

    /// What it takes to apply it to `elements` elements in up to `depth` levels, whose classes are written in
    /// `classLetters` letters altogether; in about two nanoseconds each.
    double Work(double elements, double depth, double classLetters) const;

private:
    void AddSelectors(std::string_view selectors);
    void AddDeclaration(std::string_view declaration);

    VectorStyle style_;
    double miterLimit_ = 0;
    bool transforms_ = false;
    double selectors_ = 0, declarations_ = 0;
    double ofAncestors_ = 0;  ///< Selectors that look at the elements around an element,
    double ofSiblings_ = 0;   ///< and at those before it.
};

}  // namespace tessaloom
