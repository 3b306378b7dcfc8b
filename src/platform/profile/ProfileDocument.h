#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/PrivateProfile.h"

namespace tessaloom {

/// The lines of one profile file, with an index of its sections and keys.
///
/// Lines keep every byte, their line ends included, until the key they hold is set. A text ends a line by CR
/// LF, LF or CR. Names are folded (see `FoldCase`) and trimmed for comparing. Nothing here knows of files.
class ProfileDocument {
public:
    ProfileDocument() : ProfileDocument(std::string_view()) {}

    /// bytes: UTF-8 with or without its mark, or Windows-1252.
    explicit ProfileDocument(std::string_view bytes);

    /// The whole document as UTF-8.
    std::string Text() const;

    /// The value of a key, trimmed and without its quotes; valid until the next change. Nothing when it is
    /// missing.
    std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

    /// Changes the key's line or adds one; an added line goes before the blank lines that end its section, an
    /// added section to the end. All texts are UTF-8 without NUL. False when the document already said so.
    ///
    /// A value with line breaks is stored as it is; what follows its first line then is whatever it looks
    /// like.
    bool Set(std::string_view section, std::string_view key, std::string_view value);

    /// Removes all sections of that name; false when there was none.
    bool RemoveSection(std::string_view section);

    std::vector<ProfileSection> Sections() const;
    std::vector<ProfileKey> Keys(std::string_view section) const;

private:
    /// Lets a `std::string_view` be looked up.
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
    };
    using Index = std::unordered_map<std::string, std::size_t, NameHash, std::equal_to<>>;

    struct Section {
        std::string name;                ///< As the file spells it.
        std::vector<std::string> lines;  ///< With their ends. The first is the section line, but of
                                         ///< `sections_[0]`; none in a section that was removed.
        Index keys;                      ///< Folded key to the first line that holds it.
        std::size_t sameName = 0;        ///< Another section of that name; 0: no more.
    };

    std::string_view Folded(std::string_view name) const;
    void Parse(std::string_view text);
    void AddLine(std::string_view line);
    void IndexSections();
    void IndexSection(std::size_t at);
    void EndLastLine();
    const Section* FindSection(std::string_view name) const;
    void AddSection(std::string_view name, const std::string& line);
    bool ReplaceLine(Section& section, std::size_t at, std::string line);
    void InsertLines(Section& section, std::size_t at, std::string_view text);

    std::string mark_;  ///< The UTF-8 mark, if the file had it.
    std::vector<Section>
        sections_;                ///< The first holds what precedes the first section line, and has no name.
    Index index_;                 ///< Folded name to the first section of that name.
    mutable std::string folded_;  ///< Room for the name being looked up.
};

}  // namespace tessaloom
