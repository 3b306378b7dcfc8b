#include "platform/profile/ProfileFiles.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/TextEncoding.h"
#include "platform/profile/ProfileDocument.h"

namespace tessaloom {

namespace {

/// So many parsed files are kept: more than a portfolio has.
constexpr std::size_t KeptFiles = 64;

/// The lines that end in CR LF, LF or CR.
std::size_t LineCount(std::string_view bytes) {
    std::size_t count = 0;
    char before = 0;
    for (const char c : bytes) {
        count += c == '\r' || (c == '\n' && before != '\r') ? 1 : 0;
        before = c;
    }
    return count;
}

/// A text as it may be stored: UTF-8, and no NUL, which would make the file no text any more.
std::string Storable(std::string_view text) { return ToUtf8(text.substr(0, text.find('\0'))); }

}  // namespace

/// One key set, or one section removed.
struct ProfileFiles::Change {
    bool removal;
    std::string section, key, value;
};

struct ProfileFiles::File {
    explicit File(std::string_view name) : path(name) {}

    bool Writable() const { return state == ProfileState::Missing || state == ProfileState::Readable; }
    bool Idle() const { return depth == 0 && !ownerOnly && !reported; }

    /// Takes other content; forgets the parsed one.
    void Become(ProfileState newState, ProfileDocument newDocument = {}) {
        state = newState;
        document = std::move(newDocument);
        content.reset();
    }

    /// False when the document already said so.
    bool Apply(const Change& change) {
        return change.removal ? document.RemoveSection(change.section)
                              : document.Set(change.section, change.key, change.value);
    }

    std::string path;
    ProfileDocument document;
    ProfileState state = ProfileState::Missing;
    bool loaded = false;
    std::optional<FileStamp> stamp;  ///< Of the file when it was read; none when there was no file.
    std::optional<std::size_t>
        content;                  ///< Hash of the bytes that the document was made of, before any change.
    int depth = 0;                ///< Open transactions.
    bool changed = false;         ///< The document says more than the file.
    std::vector<Change> changes;  ///< Of the open transaction, to be repeated on a file changed meanwhile.
    bool ownerOnly = false;       ///< To be seen to at the next write.
    bool reported = false;
};

ProfileFiles::ProfileFiles(FileSystem& files, Reporter report) : files_(files), report_(std::move(report)) {}

ProfileFiles::~ProfileFiles() = default;

std::string ProfileFiles::Get(std::string_view path, std::string_view section, std::string_view key,
                              std::size_t limit) {
    return std::string(FirstCharacters(Open(path).document.Find(section, key).value_or(""), limit));
}

bool ProfileFiles::Set(std::string_view path, std::string_view section, std::string_view key,
                       std::string_view value) {
    return Apply(path, {false, Storable(section), Storable(key), Storable(value)});
}

bool ProfileFiles::RemoveSection(std::string_view path, std::string_view section) {
    return Apply(path, {true, Storable(section), {}, {}});
}

std::vector<ProfileSection> ProfileFiles::Sections(std::string_view path) {
    return Open(path).document.Sections();
}

std::vector<ProfileKey> ProfileFiles::Keys(std::string_view path, std::string_view section) {
    return Open(path).document.Keys(section);
}

ProfileState ProfileFiles::State(std::string_view path) { return Open(path).state; }

void ProfileFiles::Begin(std::string_view path) { ++Open(path).depth; }

bool ProfileFiles::Commit(std::string_view path) {
    File& file = Open(path);
    if (file.depth == 0 || --file.depth > 0) return true;
    const std::vector<Change> changes = std::exchange(file.changes, {});
    if (std::exchange(file.changed, false)) {
        if (!Current(file) && Load(file) && file.Writable())
            for (const Change& change : changes) file.Apply(change);
        return Write(file);
    }
    if (!file.ownerOnly || file.state != ProfileState::Readable) return true;
    file.ownerOnly = false;
    return files_.MakeOwnerOnly(file.path) || Fail(file, "cannot be protected: " + files_.LastFailure());
}

void ProfileFiles::Rollback(std::string_view path) {
    File& file = Open(path);
    if (file.depth == 0) return;
    --file.depth;
    file.changes.clear();
    if (!std::exchange(file.changed, false)) return;
    file.content.reset();
    Load(file);
}

void ProfileFiles::SetOwnerOnly(std::string_view path) { Open(path).ownerOnly = true; }

/// The file of that path, as it is on the disk or, in a transaction, in memory.
ProfileFiles::File& ProfileFiles::Open(std::string_view path) {
    if (!latest_ || latest_->path != path) latest_ = &Find(path);
    if (latest_->depth == 0 && !Current(*latest_)) Load(*latest_);
    return *latest_;
}

ProfileFiles::File& ProfileFiles::Find(std::string_view path) {
    std::string key(path);
    std::replace(key.begin(), key.end(), '/', '\\');
    auto found = open_.find(key);
    if (found == open_.end()) {
        if (open_.size() >= KeptFiles) {
            latest_ = nullptr;
            std::erase_if(open_, [](const auto& entry) { return entry.second->Idle(); });
        }
        found = open_.emplace(std::move(key), std::make_unique<File>(path)).first;
    }
    return *found->second;
}

bool ProfileFiles::Current(const File& file) const {
    return file.loaded && files_.Stamp(file.path) == file.stamp && (!file.stamp || file.stamp->settled);
}

/// Reads the file. True when the document was made anew, false when the bytes are those that it was made of.
bool ProfileFiles::Load(File& file) {
    file.loaded = true;
    file.stamp = files_.Stamp(file.path);  // before reading: a change in between shows at the next call
    if (!file.stamp) {
        file.Become(ProfileState::Missing);
        return true;
    }
    const std::optional<std::string> bytes = files_.ReadFile(file.path, FileLimit);
    if (!bytes) {
        file.Become(ProfileState::Unreadable);
        Fail(file, "cannot be read: " + files_.LastFailure());
        return true;
    }
    const std::size_t content = std::hash<std::string>()(*bytes);
    if (file.content == content) return false;
    if (bytes->find('\0') != bytes->npos) {
        file.Become(ProfileState::NotText);
        Fail(file, "is not text: it is left alone");
    } else if (LineCount(*bytes) > LineLimit) {
        file.Become(ProfileState::Unreadable);
        Fail(file, "cannot be read: it has too many lines");
    } else {
        file.Become(ProfileState::Readable, ProfileDocument(*bytes));
    }
    file.content = content;
    return true;
}

bool ProfileFiles::Apply(std::string_view path, Change change) {
    File& file = Open(path);
    const bool writable = file.Writable();
    const bool changed = !writable || file.Apply(change);
    if (file.depth == 0) return !changed || Write(file);
    file.changed |= changed;
    file.changes.push_back(std::move(change));
    return writable;
}

bool ProfileFiles::Write(File& file) {
    if (!file.Writable()) return Fail(file, "was not written, since it could not be read as text");
    const std::string text = file.document.Text();
    const Access access = file.ownerOnly ? Access::OwnerOnly : Access::Keep;
    if (!files_.ReplaceFile(file.path, text, access)) {
        const std::string reason = files_.LastFailure();
        file.content.reset();
        Load(file);
        return Fail(file, "cannot be written: " + reason);
    }
    file.stamp = files_.Stamp(file.path);
    file.content = std::hash<std::string>()(text);
    file.state = ProfileState::Readable;
    file.ownerOnly = file.reported = false;
    return true;
}

/// Reports a trouble once until the file has been written; false, for callers to return.
bool ProfileFiles::Fail(File& file, std::string_view trouble) {
    if (!std::exchange(file.reported, true) && report_)
        report_(std::string(file.path).append(" ").append(trouble));
    return false;
}

}  // namespace tessaloom
