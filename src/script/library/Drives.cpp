#include "script/library/Drives.h"

#include <array>

#include "platform/Folders.h"
#include "script/library/FileObjects.h"
#include "script/library/FilePaths.h"
#include "script/library/Listing.h"
#include "vbscript/MemberTable.h"

namespace tessaloom::library {

using namespace vbscript;

namespace {

constexpr std::string_view Root = "/";

/// The disk that holds the root.
class Drive final : public TableObject<Drive> {
public:
    static constexpr std::u16string_view Name = u"Drive";
    static std::span<const Member<Drive>> Members();

    explicit Drive(const LibraryServices& services) : services_(services) {}

private:
    template <std::uint64_t DiskDetails::*Count>
    static Value Size(Drive& self, const Arguments&) {
        return ByteCount(self.Details().*Count);
    }
    static Value Nameless(Drive&, const Arguments&) { return Value::OfText(u""); }

    DiskDetails Details() const {
        const auto details = services_.folders.Disk(Root);
        if (!details) Raise(FileError::DeviceUnavailable);
        return *details;
    }

    const LibraryServices services_;
};

std::span<const Member<Drive>> Drive::Members() {
    using Self = Drive;
    static constexpr int FixedDisk = 2;
    static constexpr std::array<Member<Self>, 12> All = {{
        {u"Path", 0, 0, [](Self&, const Arguments&) { return Value::OfUtf8(Root); }, nullptr, nullptr,
         IsDefault::Yes},
        {u"DriveLetter", 0, 0, Nameless},
        {u"ShareName", 0, 0, Nameless},
        {u"VolumeName", 0, 0, Nameless,
         [](Self&, const Arguments&) -> Value { Raise(FileError::PermissionDenied); }},
        {u"DriveType", 0, 0, [](Self&, const Arguments&) { return Value::OfLong(FixedDisk); }},
        {u"FileSystem", 0, 0,
         [](Self& self, const Arguments&) { return Value::OfUtf8(self.Details().fileSystem); }},
        {u"SerialNumber", 0, 0,
         [](Self& self, const Arguments&) {
             return Value::OfLong(static_cast<std::int32_t>(self.Details().serialNumber));
         }},
        {u"IsReady", 0, 0,
         [](Self& self, const Arguments&) {
             return Value::OfBoolean(self.services_.folders.Disk(Root).has_value());
         }},
        {u"TotalSize", 0, 0, Size<&DiskDetails::totalBytes>},
        {u"FreeSpace", 0, 0, Size<&DiskDetails::freeBytes>},
        {u"AvailableSpace", 0, 0, Size<&DiskDetails::availableBytes>},
        {u"RootFolder", 0, 0,
         [](Self& self, const Arguments&) {
             return Value::OfObject(MakeFolderObject(self.services_, Root));
         }},
    }};
    return All;
}

class Drives final : public TableObject<Drives> {
public:
    static constexpr std::u16string_view Name = u"Drives";
    static std::span<const Member<Drives>> Members();

    explicit Drives(const LibraryServices& services) : services_(services) {}

    std::unique_ptr<Enumerator> Enumerate(Context&) override {
        return std::make_unique<Listing>(BudgetVector<Value>{Value::OfObject(MakeDrive(services_))});
    }

private:
    const LibraryServices services_;
};

std::span<const Member<Drives>> Drives::Members() {
    using Self = Drives;
    static constexpr std::array<Member<Self>, 2> All = {{
        {u"Item", 1, 1,
         [](Self& self, const Arguments& arguments) {
             if (!IsOnDrive(arguments.Text(0).ToUtf8())) Raise(FileError::DeviceUnavailable);
             return Value::OfObject(MakeDrive(self.services_));
         },
         nullptr, nullptr, IsDefault::Yes},
        {u"Count", 0, 0, [](Self&, const Arguments&) { return Value::OfLong(1); }},
    }};
    return All;
}

}  // namespace

Ref<Object> MakeDrive(const LibraryServices& services) { return Make<Drive>(services); }

Ref<Object> MakeDrives(const LibraryServices& services) { return Make<Drives>(services); }

bool IsOnDrive(std::string_view path) {
    return !path.empty() && IsSeparator(path.front()) && !path.starts_with("\\\\");
}

}  // namespace tessaloom::library
