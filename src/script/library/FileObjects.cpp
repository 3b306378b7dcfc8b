#include "script/library/FileObjects.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Folders.h"
#include "platform/Paths.h"
#include "script/library/Drives.h"
#include "script/library/FileOperations.h"
#include "script/library/FilePaths.h"
#include "script/library/Listing.h"
#include "script/library/TextStream.h"
#include "vbscript/Context.h"
#include "vbscript/MemberTable.h"

namespace tessaloom::library {

using namespace vbscript;

namespace {

Value Text(std::string_view text) { return Value::OfUtf8(text); }

std::string PathArgument(const Arguments& arguments, std::size_t index) {
    return arguments.Text(index).ToUtf8();
}

/// What a file and a folder have in common.
class DiskObject {
public:
    DiskObject(const LibraryServices& services, std::string_view path, FileError missing)
        : services_(services), path_(AbsolutePath(services, path)), missing_(missing) {}

    FileDetails Details() const {
        const auto details = services_.folders.Details(path_);
        if (!details) Raise(missing_);
        return *details;
    }

    const LibraryServices services_;
    std::string path_;
    const FileError missing_;
    MemoryCharge charge_{path_.capacity()};

protected:
    enum Attribute { ReadOnly = 1, Hidden = 2, Directory = 16, Archive = 32, Alias = 1024 };

    int Attributes() const {
        const FileDetails details = Details();
        return (details.isReadOnly ? ReadOnly : 0) | (details.name.starts_with('.') ? Hidden : 0) |
               (details.isFolder ? Directory : Archive) | (details.isLink ? Alias : 0);
    }

    /// Only one of them can be changed here.
    void SetAttributes(int attributes) const {
        if (!services_.folders.SetReadOnly(path_, (attributes & ReadOnly) != 0))
            Raise(FileError::PermissionDenied);
    }

    /// A new name in the same folder.
    template <typename Move>
    void Rename(const std::string& name, Move&& move) {
        if (name.empty() || std::ranges::any_of(name, IsSeparator)) Raise(FileError::InvalidCall);
        const std::string target = JoinPath(ParentFolderName(path_), name);
        move(services_, path_, target);
        SetPath(target);
    }

    void SetPath(std::string path) {
        charge_.GiveBack();
        charge_.Take(path.capacity());
        path_ = std::move(path);
    }

    /// Where it lies after a move to `target`.
    void MovedTo(const std::string& target) {
        const bool into = !target.empty() && IsSeparator(target.back());
        SetPath(AbsolutePath(services_, into ? JoinPath(target, FileName(path_)) : target));
    }

    Value Parent() const {
        const std::string parent = ParentFolderName(path_);
        return parent.empty() ? Value::Nothing() : Value::OfObject(MakeFolderObject(services_, parent));
    }
};

/// The rows that the tables of both begin with.
template <typename T>
struct SharedRows {
    using Row = Member<T>;

    template <double FileDetails::*Moment>
    static constexpr Row MomentRow(std::u16string_view name) {
        return {name, 0, 0, [](T& self, const Arguments&) { return Value::OfDate(self.Details().*Moment); }};
    }

    static Value Path(T& self, const Arguments&) { return Text(self.path_); }
    static Value Name(T& self, const Arguments&) { return Text(FileName(self.path_)); }

    static constexpr std::array<Row, 11> Rows = {{
        {u"Path", 0, 0, Path, nullptr, nullptr, IsDefault::Yes},
        {u"ShortPath", 0, 0, Path},
        {u"Name", 0, 0, Name,
         [](T& self, const Arguments& arguments) {
             self.Rename(ToText(arguments.GetContext(), arguments.NewValue()).ToUtf8(), T::MoveOnDisk);
             return Value();
         }},
        {u"ShortName", 0, 0, Name},
        {u"Attributes", 0, 0, [](T& self, const Arguments&) { return Value::OfLong(self.Attributes()); },
         [](T& self, const Arguments& arguments) {
             self.SetAttributes(ToLong(arguments.GetContext(), arguments.NewValue()));
             return Value();
         }},
        MomentRow<&FileDetails::created>(u"DateCreated"),
        MomentRow<&FileDetails::accessed>(u"DateLastAccessed"),
        MomentRow<&FileDetails::modified>(u"DateLastModified"),
        {u"Drive", 0, 0,
         [](T& self, const Arguments&) { return Value::OfObject(MakeDrive(self.services_)); }},
        {u"ParentFolder", 0, 0, [](T& self, const Arguments&) { return self.Parent(); }},
        {u"Move", 1, 1,
         [](T& self, const Arguments& arguments) {
             const std::string target = PathArgument(arguments, 0);
             T::MoveOnDisk(self.services_, self.path_, target);
             self.MovedTo(target);
             return Value();
         }},
    }};
};

template <typename T, std::size_t Count>
constexpr auto WithSharedRows(const std::array<Member<T>, Count>& own) {
    constexpr auto& Shared = SharedRows<T>::Rows;
    std::array<Member<T>, Shared.size() + Count> all{};
    std::copy(Shared.begin(), Shared.end(), all.begin());
    std::copy(own.begin(), own.end(), all.begin() + Shared.size());
    return all;
}

class File final : public TableObject<File>, public DiskObject {
public:
    static constexpr std::u16string_view Name = u"File";
    static std::span<const Member<File>> Members();

    File(const LibraryServices& services, std::string_view path)
        : DiskObject(services, path, FileError::FileNotFound) {}

private:
    friend struct SharedRows<File>;
    static constexpr auto MoveOnDisk = &MoveFiles;

    Value Type() const {
        const std::string extension = ExtensionName(path_);
        std::u16string text = Utf16Of(extension);
        std::ranges::transform(text, text.begin(), UpperOf);
        return Value::OfText(text.empty() ? u"File" : text + u" File");
    }
};

std::span<const Member<File>> File::Members() {
    static constexpr auto Own = std::to_array<Member<File>>({
        {u"Size", 0, 0, [](File& self, const Arguments&) { return ByteCount(self.Details().size); }},
        {u"Type", 0, 0, [](File& self, const Arguments&) { return self.Type(); }},
        {u"Copy", 1, 2,
         [](File& self, const Arguments& arguments) {
             CopyFiles(self.services_, self.path_, PathArgument(arguments, 0), arguments.BooleanOr(1, true));
             return Value();
         }},
        {u"Delete", 0, 1,
         [](File& self, const Arguments& arguments) {
             DeleteFiles(self.services_, self.path_, arguments.BooleanOr(0, false));
             return Value();
         }},
        {u"OpenAsTextStream", 0, 2,
         [](File& self, const Arguments& arguments) {
             return Value::OfObject(OpenTextStream(self.services_, self.path_,
                                                   StreamModeOf(arguments.LongOr(0, 1)),
                                                   StreamFormatOf(arguments.LongOr(1, 0)), false));
         }},
    });
    static constexpr auto All = WithSharedRows(Own);
    return All;
}

class Folder final : public TableObject<Folder>, public DiskObject {
public:
    static constexpr std::u16string_view Name = u"Folder";
    static std::span<const Member<Folder>> Members();

    Folder(const LibraryServices& services, std::string_view path)
        : DiskObject(services, path, FileError::PathNotFound) {}

private:
    friend struct SharedRows<Folder>;
    static constexpr auto MoveOnDisk = &MoveFolders;
};

/// The files, or the folders, of a folder.
template <typename T>
class Entries : public TableObject<T> {
public:
    Entries(const LibraryServices& services, std::string folder)
        : services_(services), folder_(std::move(folder)) {}

    std::unique_ptr<Enumerator> Enumerate(Context&) override {
        BudgetVector<Value> all;
        for (const std::string& name : Names()) {
            // It may have gone since.
            try {
                all.push_back(T::MakeEntry(services_, JoinPath(folder_, name)));
            } catch (const RuntimeError& error) {
                if (error.number == static_cast<int>(ErrorCode::OutOfMemory)) throw;
            }
        }
        return std::make_unique<Listing>(std::move(all));
    }

protected:
    std::vector<std::string> Names() const {
        const auto entries = services_.folders.List(folder_);
        if (!entries)
            Raise(services_.files.FolderExists(folder_) ? FileError::PermissionDenied
                                                        : FileError::PathNotFound);
        std::vector<std::string> names;
        for (const FileDetails& entry : *entries)
            if (entry.isFolder == T::AreFolders) names.push_back(entry.name);
        return names;
    }

    static constexpr std::array<Member<T>, 2> SharedMembers = {{
        {u"Item", 1, 1,
         [](T& self, const Arguments& arguments) {
             const std::string name = PathArgument(arguments, 0);
             if (std::ranges::any_of(name, IsSeparator)) Raise(FileError::InvalidCall);
             return T::MakeEntry(self.services_, JoinPath(self.folder_, name));
         },
         nullptr, nullptr, IsDefault::Yes},
        {u"Count", 0, 0,
         [](T& self, const Arguments&) {
             return Value::OfLong(static_cast<std::int32_t>(self.Names().size()));
         }},
    }};

    const LibraryServices services_;
    const std::string folder_;
    const MemoryCharge charge_{folder_.capacity()};
};

class Files final : public Entries<Files> {
public:
    static constexpr std::u16string_view Name = u"Files";
    static constexpr bool AreFolders = false;
    static std::span<const Member<Files>> Members() { return SharedMembers; }

    using Entries::Entries;

    static Value MakeEntry(const LibraryServices& services, const std::string& path) {
        return Value::OfObject(MakeFile(services, path));
    }

private:
    friend class Entries<Files>;
};

class SubFolders final : public Entries<SubFolders> {
public:
    static constexpr std::u16string_view Name = u"Folders";
    static constexpr bool AreFolders = true;
    static std::span<const Member<SubFolders>> Members();

    using Entries::Entries;

    static Value MakeEntry(const LibraryServices& services, const std::string& path) {
        return Value::OfObject(MakeFolderObject(services, path));
    }

private:
    friend class Entries<SubFolders>;
};

std::span<const Member<SubFolders>> SubFolders::Members() {
    static constexpr std::array<Member<SubFolders>, 3> All = {{
        SharedMembers[0],
        SharedMembers[1],
        {u"Add", 1, 1,
         [](SubFolders& self, const Arguments& arguments) {
             const std::string path = JoinPath(self.folder_, PathArgument(arguments, 0));
             CreateFolder(self.services_, path);
             return MakeEntry(self.services_, path);
         }},
    }};
    return All;
}

std::span<const Member<Folder>> Folder::Members() {
    static constexpr auto Own = std::to_array<Member<Folder>>({
        {u"Size", 0, 0,
         [](Folder& self, const Arguments&) { return ByteCount(FolderSize(self.services_, self.path_)); }},
        {u"Type", 0, 0, [](Folder&, const Arguments&) { return Value::OfText(u"File folder"); }},
        {u"IsRootFolder", 0, 0,
         [](Folder& self, const Arguments&) {
             return Value::OfBoolean(ParentFolderName(self.path_).empty());
         }},
        {u"Files", 0, 0,
         [](Folder& self, const Arguments&) {
             return Value::OfObject(Make<Files>(self.services_, self.path_));
         }},
        {u"SubFolders", 0, 0,
         [](Folder& self, const Arguments&) {
             return Value::OfObject(Make<SubFolders>(self.services_, self.path_));
         }},
        {u"Copy", 1, 2,
         [](Folder& self, const Arguments& arguments) {
             CopyFolders(self.services_, self.path_, PathArgument(arguments, 0),
                         arguments.BooleanOr(1, true));
             return Value();
         }},
        {u"Delete", 0, 1,
         [](Folder& self, const Arguments& arguments) {
             DeleteFolders(self.services_, self.path_, arguments.BooleanOr(0, false));
             return Value();
         }},
        {u"CreateTextFile", 1, 3,
         [](Folder& self, const Arguments& arguments) {
             return Value::OfObject(
                 CreateTextFile(self.services_, JoinPath(self.path_, PathArgument(arguments, 0)),
                                arguments.BooleanOr(1, true), arguments.BooleanOr(2, false)));
         }},
    });
    static constexpr auto All = WithSharedRows(Own);
    return All;
}

}  // namespace

Value ByteCount(std::uint64_t bytes) {
    return bytes <= std::numeric_limits<std::int32_t>::max() ? Value::OfLong(static_cast<std::int32_t>(bytes))
                                                             : Value::OfDouble(static_cast<double>(bytes));
}

Ref<Object> MakeFile(const LibraryServices& services, std::string_view path) {
    if (path.empty()) Raise(FileError::InvalidCall);
    const auto details = services.folders.Details(path);
    if (!details || details->isFolder) Raise(FileError::FileNotFound);
    return Make<File>(services, path);
}

Ref<Object> MakeFolderObject(const LibraryServices& services, std::string_view path) {
    if (path.empty()) Raise(FileError::InvalidCall);
    if (!services.files.FolderExists(path)) Raise(FileError::PathNotFound);
    return Make<Folder>(services, path);
}

}  // namespace tessaloom::library
