#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

class PrivateProfile;

/// Whether reading a missing (or empty) key stores its default.
enum class WriteDefault { No, Yes };

/// The settings of one file, key by key.
///
/// Holds the path alone; the file itself is the business of the profile, which must outlive this object.
class INI {
public:
    explicit INI(PrivateProfile& profile, std::string_view file = {}) : profile_(profile), file_(file) {}

    /// Full path. The file need not exist: the first write makes it.
    void SetFile(std::string_view path) { file_ = path; }
    const std::string& File() const { return file_; }

    /// The value, at most 254 characters, with every "&34" turned into a double quote.
    ///
    /// An empty value counts as a missing one. A missing key gives `fallback`, and stores it, with
    /// `WriteDefault::Yes`; "" with `WriteDefault::No`.
    std::string GetKey(std::string_view section, std::string_view key, WriteDefault writeDefault,
                       std::string_view fallback);

    /// Stores `value` with every double quote as "&34". A write that fails is ignored here: the profile
    /// reports it.
    void SetKey(std::string_view section, std::string_view key, std::string_view value);

    void RemoveSection(std::string_view section);

    /// Between these two, keys are read and set in memory and reach the file together. False when the file
    /// could not be written. See `PrivateProfile` for nesting.
    void Begin();
    bool Commit();
    void Rollback();

    /// The file holds a password: from its next write on it is readable by its owner alone.
    void SetOwnerOnly();

private:
    PrivateProfile& profile_;
    std::string file_;
};

}  // namespace tessaloom
