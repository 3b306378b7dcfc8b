#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// One section line of a profile file; lines count from 1.
struct ProfileSection {
    std::string name;
    int line = 0;
};

/// One key line of a profile file, its value whole and as `Get` reads it.
struct ProfileKey {
    std::string name;
    std::string value;
    int line = 0;
};

/// What kind of file lies at a path.
enum class ProfileState { Missing, Unreadable, NotText, Readable };

/// Profile files: sections in square brackets, below them lines of the form key=value.
///
/// Section and key names are compared without regard to case; the first section and the first key of a name
/// count. Blanks around names and values are dropped, and one pair of quotes around a value. Texts are UTF-8;
/// what is not valid in a text to be stored is taken as Windows-1252, and a NUL ends it. Comments, unknown
/// lines and the order of all lines survive a change byte by byte.
///
/// A change made to a file by somebody else is seen at the next call, except during a transaction. Nothing
/// throws. A file that cannot be read has no keys; it is never written to, nor is one that is not text.
class PrivateProfile {
public:
    /// Values are cut after so many characters when they are read.
    static constexpr std::size_t ValueLimit = 254;

    virtual ~PrivateProfile() = default;

    /// The value's first `limit` characters; "" when the key is missing.
    virtual std::string Get(std::string_view path, std::string_view section, std::string_view key,
                            std::size_t limit = ValueLimit) = 0;

    /// Changes or adds one key, making section and file when missing. Outside a transaction the file is
    /// written at once. False when that failed: the file then keeps its old value.
    virtual bool Set(std::string_view path, std::string_view section, std::string_view key,
                     std::string_view value) = 0;

    /// Removes every section of that name with all its lines, comments included. True when none is left.
    virtual bool RemoveSection(std::string_view path, std::string_view section) = 0;

    /// All section lines and the key lines of one section (of the first of that name), in file order.
    virtual std::vector<ProfileSection> Sections(std::string_view path) = 0;
    virtual std::vector<ProfileKey> Keys(std::string_view path, std::string_view section) = 0;

    virtual ProfileState State(std::string_view path) = 0;

    /// Starts a transaction on one file: changes are visible at once and reach the disk together at `Commit`.
    /// Transactions nest; the outermost one writes. A file changed by somebody else meanwhile keeps his
    /// changes, save for the keys set here.
    virtual void Begin(std::string_view path) = 0;

    /// Ends the innermost transaction. False when the file had to be written and could not be; it is then the
    /// old one, whole, and what was set is gone. A file that would not change is left alone.
    virtual bool Commit(std::string_view path) = 0;

    /// Ends the innermost transaction and drops everything set since the outermost one began.
    virtual void Rollback(std::string_view path) = 0;

    /// The file is readable by its owner alone from its next write on (at latest the end of the transaction).
    virtual void SetOwnerOnly(std::string_view path) = 0;
};

}  // namespace tessaloom
