#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tessaloom {

/// How people set a property, and what its text looks like. Texts are those of the document files: numbers
/// with a point, "True" and "False", colours "&HBBGGRR", times "HH:MM:SS".
enum class PropertyKind {
    Switch,              ///< "True" or "False".
    Whole,               ///< A whole number within `low` .. `high`.
    Real,                ///< A number within `low` .. `high`, with `decimals`.
    Percent,             ///< A whole number, set with a slider, too.
    Angle,               ///< Degrees, set with a dial, too.
    Choice,              ///< One of `choices`.
    Colour,              ///< "&H" and six hexadecimal digits.
    Line,                ///< One line of text.
    TaggedText,          ///< Lines of text with live tags.
    Password,            ///< Never shown.
    OpenFile,            ///< A file that is read; `filter` names its kinds.
    SaveFile,            ///< A file that is written.
    Folder,              ///< A folder that is written into.
    Address,             ///< A web address.
    Font,                ///< A font's family name.
    Rate,                ///< Seconds between two runs, from a list or typed; 0: not by itself. The list
                         ///< has half a second with one of the `decimals`, smaller parts with more.
    TimeOfDay,           ///< "HH:MM:SS".
    Feed,                ///< The name of a video feed of the portfolio.
    Canvas,              ///< The slot of another canvas.
    Schedule,            ///< The daily window: its keys' texts, parted by ";"; a window of its own sets it.
    TransparentColours,  ///< Groups "colour colour tolerance opacity" (per cent), separated by "; ".
};

/// A value of a `PropertyKind::Choice`.
struct PropertyChoice {
    std::string_view value;  ///< As the file holds it.
    std::string_view label;  ///< As people read it.
};

/// Describes one property to the windows that show it. Editors are made from this alone.
struct Property {
    std::string_view name;           ///< Of the file's key; unique within its set.
    std::string_view label;          ///< Without colon; with an "&" before its mnemonic where it has one.
    std::string_view group = {};     ///< Heading under which it stands; rows of a group follow each other.
    std::string_view fallback = {};  ///< The default, as the file holds it.
    PropertyKind kind = PropertyKind::Line;
    double low = 0;
    double high = 0;
    int decimals = 0;
    std::string_view unit = {};  ///< "px", "%", "s" ...; shown behind the number.
    std::string_view unitBelow =
        {};  ///< That of numbers below 0, where it is another one; shown without sign.
    std::span<const PropertyChoice> choices = {};
    std::string_view filter = {};  ///< Of files: "Pictures|*.jpg *.png".
    std::string_view tip = {};     ///< One sentence: what it does. "" where the label says it.

    /// The row matters only while the property `relevantIf` has one of the comma-separated values
    /// `relevantValues`; it is shown disabled otherwise. "" for always.
    std::string_view relevantIf = {};
    std::string_view relevantValues = {};
};

}  // namespace tessaloom
