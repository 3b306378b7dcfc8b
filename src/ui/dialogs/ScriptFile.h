#pragma once

#include <QString>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FileSystem.h"

namespace tessaloom {

/// A script file as it is edited: read whole, written whole, and looked after meanwhile.
///
/// Texts have "\n" between their lines. A file is written as UTF-8, with the mark that it had and the line
/// end that most of its lines had; a new one gets CR LF.
class ScriptFile {
public:
    /// Larger files are no scripts that a person edits.
    static constexpr std::size_t Limit = std::size_t{4} << 20;

    enum class State {
        NoName,
        Missing,
        Unreadable,  ///< `Failure` tells why.
        NotText,     ///< Never written to.
        TooLarge,
        Whole,
    };

    explicit ScriptFile(FileSystem& files) : files_(files) {}

    /// Reads the file at `path`; "" unless it is then `Whole`.
    QString Open(const std::string& path);

    /// Puts `text` in the file's place; false with a `Failure`. A text that was kept is dropped.
    bool Save(const QString& text);

    const std::string& Path() const { return path_; }
    State TheState() const { return state_; }
    bool Editable() const { return state_ == State::Whole || state_ == State::Missing; }

    /// "Windows-1252", "UTF-8, LF" ...
    QString Format() const;

    const std::string& Failure() const { return failure_; }

    /// @name What others do to the file
    /// @{
    bool ChangedOutside() const { return files_.Stamp(path_) != stamp_; }
    bool Gone() const { return stamp_ && !files_.Stamp(path_); }

    /// The file as it is now counts as the one that was read.
    void AcceptOutside();
    /// @}

    /// @name A text for which there was no time to ask whether to save it
    /// It lies beside the script, readable by its owner alone, until the script is saved or it is dropped.
    /// @{
    std::string KeptPath() const { return path_ + ".unsaved"; }
    bool HasKept() const { return !path_.empty() && files_.FileExists(KeptPath()); }
    bool Keep(const QString& text);
    std::optional<QString> Kept();
    void DropKept();
    /// @}

private:
    QString Decoded(std::string_view bytes);
    std::string Encoded(QString text) const;

    FileSystem& files_;
    std::string path_, failure_;
    std::optional<FileStamp> stamp_;  ///< Of the file as it was read or written; none: it was missing.
    QString lineEnd_ = "\r\n";
    State state_ = State::NoName;
    bool marked_ = false;       ///< It began with the mark of UTF-8.
    bool windows1252_ = false;  ///< It was read as that.
};

}  // namespace tessaloom
