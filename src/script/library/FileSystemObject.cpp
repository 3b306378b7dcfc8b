#include "script/library/FileSystemObject.h"

#include <array>
#include <random>
#include <string>

#include "platform/Environment.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "script/library/Drives.h"
#include "script/library/FileObjects.h"
#include "script/library/FileOperations.h"
#include "script/library/FilePaths.h"
#include "script/library/TextStream.h"
#include "vbscript/Context.h"
#include "vbscript/MemberTable.h"

namespace tessaloom::library {

using namespace vbscript;

namespace {

std::string PathArgument(const Arguments& arguments, std::size_t index) {
    return arguments.Text(index).ToUtf8();
}

class FileSystemObject final : public TableObject<FileSystemObject> {
public:
    static constexpr std::u16string_view Name = u"FileSystemObject";
    static std::span<const Member<FileSystemObject>> Members();

    explicit FileSystemObject(const LibraryServices& services) : services_(services) {}

private:
    using Row = Member<FileSystemObject>;

    /// A text made of a path, without a look at the disk.
    template <std::string (*Part)(std::string_view)>
    static constexpr Row PartRow(std::u16string_view name) {
        return {name, 1, 1, [](FileSystemObject&, const Arguments& arguments) {
                    return Value::OfUtf8(Part(PathArgument(arguments, 0)));
                }};
    }

    template <bool (FileSystem::*Exists)(std::string_view) const>
    static constexpr Row ExistsRow(std::u16string_view name) {
        return {name, 1, 1, [](FileSystemObject& self, const Arguments& arguments) {
                    const std::string path = PathArgument(arguments, 0);
                    return Value::OfBoolean(!path.empty() && (self.services_.files.*Exists)(path));
                }};
    }

    template <auto Make>
    static constexpr Row ObjectRow(std::u16string_view name) {
        return {name, 1, 1, [](FileSystemObject& self, const Arguments& arguments) {
                    return Value::OfObject(Make(self.services_, PathArgument(arguments, 0)));
                }};
    }

    template <auto Operation>
    static constexpr Row CopyRow(std::u16string_view name) {
        return {name, 2, 3, [](FileSystemObject& self, const Arguments& arguments) {
                    Operation(self.services_, PathArgument(arguments, 0), PathArgument(arguments, 1),
                              arguments.BooleanOr(2, true));
                    return Value();
                }};
    }

    template <auto Operation>
    static constexpr Row MoveRow(std::u16string_view name) {
        return {name, 2, 2, [](FileSystemObject& self, const Arguments& arguments) {
                    Operation(self.services_, PathArgument(arguments, 0), PathArgument(arguments, 1));
                    return Value();
                }};
    }

    template <auto Operation>
    static constexpr Row DeleteRow(std::u16string_view name) {
        return {name, 1, 2, [](FileSystemObject& self, const Arguments& arguments) {
                    Operation(self.services_, PathArgument(arguments, 0), arguments.BooleanOr(1, false));
                    return Value();
                }};
    }

    /// 0: of the system, 1: of its programs' parts, 2: for temporary files.
    Value SpecialFolder(int number) const {
        switch (number) {
            case 0:
                return Value::OfObject(MakeFolderObject(services_, "/usr"));
            case 1:
                return Value::OfObject(MakeFolderObject(services_, "/usr/lib"));
            case 2:
                return Value::OfObject(MakeFolderObject(services_, services_.environment.TemporaryFolder()));
            default:
                Raise(FileError::InvalidCall);
        }
    }

    const LibraryServices services_;
};

/// "rad" and five hexadecimal digits.
std::string TemporaryName() {
    static thread_local std::minstd_rand random{std::random_device{}()};
    std::string name = "rad";
    for (int i = 0; i < 5; ++i) name += "0123456789ABCDEF"[random() >> 8 & 0xF];
    return name + ".tmp";
}

Ref<Object> MakeNewFolder(const LibraryServices& services, std::string_view path) {
    CreateFolder(services, path);
    return MakeFolderObject(services, path);
}

Ref<Object> DriveOf(const LibraryServices& services, std::string_view path) {
    if (path.empty()) Raise(FileError::InvalidCall);
    if (!IsOnDrive(path)) Raise(FileError::DeviceUnavailable);
    return MakeDrive(services);
}

std::span<const Member<FileSystemObject>> FileSystemObject::Members() {
    using Self = FileSystemObject;
    static constexpr std::array<Row, 27> All = {{
        {u"BuildPath", 2, 2,
         [](Self&, const Arguments& arguments) {
             return Value::OfUtf8(BuildPath(PathArgument(arguments, 0), PathArgument(arguments, 1)));
         }},
        CopyRow<CopyFiles>(u"CopyFile"),
        CopyRow<CopyFolders>(u"CopyFolder"),
        ObjectRow<MakeNewFolder>(u"CreateFolder"),
        {u"CreateTextFile", 1, 3,
         [](Self& self, const Arguments& arguments) {
             return Value::OfObject(CreateTextFile(self.services_, PathArgument(arguments, 0),
                                                   arguments.BooleanOr(1, true),
                                                   arguments.BooleanOr(2, false)));
         }},
        DeleteRow<DeleteFiles>(u"DeleteFile"),
        DeleteRow<DeleteFolders>(u"DeleteFolder"),
        {u"DriveExists", 1, 1,
         [](Self&, const Arguments& arguments) {
             return Value::OfBoolean(IsOnDrive(PathArgument(arguments, 0)));
         }},
        {u"Drives", 0, 0,
         [](Self& self, const Arguments&) { return Value::OfObject(MakeDrives(self.services_)); }},
        ExistsRow<&FileSystem::FileExists>(u"FileExists"),
        ExistsRow<&FileSystem::FolderExists>(u"FolderExists"),
        {u"GetAbsolutePathName", 1, 1,
         [](Self& self, const Arguments& arguments) {
             return Value::OfUtf8(AbsolutePath(self.services_, PathArgument(arguments, 0)));
         }},
        PartRow<BaseName>(u"GetBaseName"),
        PartRow<DriveName>(u"GetDriveName"),
        PartRow<ExtensionName>(u"GetExtensionName"),
        PartRow<FileName>(u"GetFileName"),
        PartRow<ParentFolderName>(u"GetParentFolderName"),
        ObjectRow<DriveOf>(u"GetDrive"),
        ObjectRow<MakeFile>(u"GetFile"),
        ObjectRow<MakeFolderObject>(u"GetFolder"),
        {u"GetFileVersion", 1, 1, [](Self&, const Arguments&) { return Value::OfText(u""); }},
        {u"GetSpecialFolder", 1, 1,
         [](Self& self, const Arguments& arguments) { return self.SpecialFolder(arguments.Long(0)); }},
        {u"GetStandardStream", 1, 2,
         [](Self&, const Arguments& arguments) {
             return Value::OfObject(StandardStream(arguments.Long(0)));
         }},
        {u"GetTempName", 0, 0, [](Self&, const Arguments&) { return Value::OfUtf8(TemporaryName()); }},
        MoveRow<MoveFiles>(u"MoveFile"),
        MoveRow<MoveFolders>(u"MoveFolder"),
        {u"OpenTextFile", 1, 4,
         [](Self& self, const Arguments& arguments) {
             return Value::OfObject(OpenTextStream(
                 self.services_, PathArgument(arguments, 0), StreamModeOf(arguments.LongOr(1, 1)),
                 StreamFormatOf(arguments.LongOr(3, 0)), arguments.BooleanOr(2, false)));
         }},
    }};
    return All;
}

}  // namespace

Ref<Object> MakeFileSystemObject(const LibraryServices& services) { return Make<FileSystemObject>(services); }

}  // namespace tessaloom::library
