#include "script/library/Shell.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/Ascii.h"
#include "platform/Environment.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "script/library/FilePaths.h"
#include "script/library/Listing.h"
#include "vbscript/MemberTable.h"

namespace tessaloom::library {

using namespace vbscript;

namespace {

std::optional<std::string> FamiliarVariable(const Environment& environment, std::string_view name) {
    using Source = std::string (*)(const Environment&);
    struct Row {
        std::string_view name;
        Source value;
    };
    static constexpr Row Rows[] = {
        {"TEMP", [](const Environment& of) { return of.TemporaryFolder(); }},
        {"TMP", [](const Environment& of) { return of.TemporaryFolder(); }},
        {"USERNAME", [](const Environment& of) { return of.UserName(); }},
        {"COMPUTERNAME", [](const Environment& of) { return of.ComputerName(); }},
        {"USERPROFILE", [](const Environment& of) { return of.HomeFolder(); }},
        {"HOMEPATH", [](const Environment& of) { return of.HomeFolder(); }},
        {"HOMEDRIVE", [](const Environment&) { return std::string(); }},
        {"SYSTEMDRIVE", [](const Environment&) { return std::string(); }},
        {"APPDATA", [](const Environment& of) { return JoinPath(of.HomeFolder(), ".config"); }},
        {"OS", [](const Environment&) { return std::string("Linux"); }},
    };
    const auto* row =
        std::ranges::find_if(Rows, [&](const Row& known) { return ascii::SameText(known.name, name); });
    return row == std::end(Rows) ? std::nullopt : std::optional(row->value(environment));
}

/// The spelling under which a variable is set; `name` itself when it is not.
std::string SpellingOf(const Environment& environment, const std::string& name) {
    if (environment.Variable(name)) return name;
    for (const auto& [spelling, value] : environment.Variables())
        if (ascii::SameText(spelling, name)) return spelling;
    return name;
}

std::optional<std::string> Variable(const Environment& environment, const std::string& name) {
    const auto set = environment.Variable(SpellingOf(environment, name));
    return set ? set : FamiliarVariable(environment, name);
}

/// Names between percent signs that are no variables stay as they are.
std::string Expanded(const Environment& environment, std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        TimeLimit::Poll();
        const std::size_t begin = text.find('%', at),
                          end = text.find('%', begin == text.npos ? begin : begin + 1);
        if (end == text.npos) return result.append(text.substr(at));
        result += text.substr(at, begin - at);
        const auto value = Variable(environment, std::string(text.substr(begin + 1, end - begin - 1)));
        result += value ? *value : text.substr(begin, end - begin);
        at = value ? end + 1 : end;
    }
    return result;
}

class EnvironmentObject final : public TableObject<EnvironmentObject> {
public:
    static constexpr std::u16string_view Name = u"IWshEnvironment";
    static std::span<const Member<EnvironmentObject>> Members();

    explicit EnvironmentObject(Environment& environment) : environment_(environment) {}

    std::unique_ptr<Enumerator> Enumerate(Context&) override {
        BudgetVector<Value> lines;
        for (const auto& [name, value] : environment_.Variables())
            lines.push_back(Value::OfUtf8(name + "=" + value));
        return std::make_unique<Listing>(std::move(lines));
    }

private:
    static Value Count(EnvironmentObject& self, const Arguments&) {
        return Value::OfLong(static_cast<std::int32_t>(self.environment_.Variables().size()));
    }

    Environment& environment_;
};

std::span<const Member<EnvironmentObject>> EnvironmentObject::Members() {
    using Self = EnvironmentObject;
    static constexpr std::array<Member<Self>, 4> All = {{
        {u"Item", 1, 1,
         [](Self& self, const Arguments& arguments) {
             return Value::OfUtf8(Variable(self.environment_, arguments.Text(0).ToUtf8()).value_or(""));
         },
         [](Self& self, const Arguments& arguments) {
             const std::string name = SpellingOf(self.environment_, arguments.Text(0).ToUtf8());
             const String value = ToText(arguments.GetContext(), arguments.NewValue());
             if (!self.environment_.SetVariable(name, value.ToUtf8())) Fail(ErrorCode::InvalidCall);
             return Value();
         },
         nullptr, IsDefault::Yes},
        {u"Count", 0, 0, Count},
        {u"Length", 0, 0, Count},
        {u"Remove", 1, 1,
         [](Self& self, const Arguments& arguments) {
             self.environment_.RemoveVariable(SpellingOf(self.environment_, arguments.Text(0).ToUtf8()));
             return Value();
         }},
    }};
    return All;
}

/// A folder of the user, below the home folder unless it is absolute; a variable may tell another one.
struct SpecialFolder {
    std::string_view name, path, variable;
};

constexpr SpecialFolder SpecialFolders[] = {
    {"AllUsersDesktop", "/usr/share/applications", ""},
    {"AllUsersStartMenu", "/usr/share/applications", ""},
    {"AllUsersPrograms", "/usr/share/applications", ""},
    {"AllUsersStartup", "/etc/xdg/autostart", ""},
    {"Desktop", "Desktop", "XDG_DESKTOP_DIR"},
    {"Favorites", "Favorites", ""},
    {"Fonts", ".local/share/fonts", ""},
    {"MyDocuments", "Documents", "XDG_DOCUMENTS_DIR"},
    {"NetHood", ".local/share/gvfs-metadata", ""},
    {"PrintHood", ".cups", ""},
    {"Programs", ".local/share/applications", ""},
    {"Recent", ".local/share", ""},
    {"SendTo", ".local/share", ""},
    {"StartMenu", ".local/share/applications", ""},
    {"Startup", ".config/autostart", ""},
    {"Templates", "Templates", "XDG_TEMPLATES_DIR"},
    {"AppData", ".config", "XDG_CONFIG_HOME"},
};

class SpecialFoldersObject final : public TableObject<SpecialFoldersObject> {
public:
    static constexpr std::u16string_view Name = u"IWshCollection";
    static std::span<const Member<SpecialFoldersObject>> Members();

    explicit SpecialFoldersObject(Environment& environment) : environment_(environment) {}

    std::unique_ptr<Enumerator> Enumerate(Context&) override {
        BudgetVector<Value> paths;
        for (const SpecialFolder& folder : SpecialFolders) paths.push_back(PathOf(folder));
        return std::make_unique<Listing>(std::move(paths));
    }

    /// By name or number; "" for others.
    static Value Item(SpecialFoldersObject& self, const Arguments& arguments) {
        if (!arguments[0].Is(VarType::String)) {
            const int index = arguments.Long(0);
            const bool known = index >= 0 && static_cast<std::size_t>(index) < std::size(SpecialFolders);
            return known ? self.PathOf(SpecialFolders[index]) : Value::OfText(u"");
        }
        const std::string name = arguments.Text(0).ToUtf8();
        const auto* row = std::ranges::find_if(
            SpecialFolders, [&](const SpecialFolder& folder) { return ascii::SameText(folder.name, name); });
        return row == std::end(SpecialFolders) ? Value::OfText(u"") : self.PathOf(*row);
    }

private:
    static Value Count(SpecialFoldersObject&, const Arguments&) {
        return Value::OfLong(static_cast<std::int32_t>(std::size(SpecialFolders)));
    }

    Value PathOf(const SpecialFolder& folder) const {
        const auto told = environment_.Variable(folder.variable);
        if (told && !told->empty()) return Value::OfUtf8(*told);
        return Value::OfUtf8(folder.path.starts_with('/')
                                 ? std::string(folder.path)
                                 : environment_.HomeFolder() + "/" + std::string(folder.path));
    }

    Environment& environment_;
};

std::span<const Member<SpecialFoldersObject>> SpecialFoldersObject::Members() {
    using Self = SpecialFoldersObject;
    static constexpr std::array<Member<Self>, 3> All = {{
        {u"Item", 1, 1, Item, nullptr, nullptr, IsDefault::Yes},
        {u"Count", 0, 0, Count},
        {u"Length", 0, 0, Count},
    }};
    return All;
}

class Shell final : public TableObject<Shell> {
public:
    static constexpr std::u16string_view Name = u"IWshShell3";
    static std::span<const Member<Shell>> Members();

    explicit Shell(const LibraryServices& services) : services_(services) {}

private:
    static Value SetCurrentDirectory(Shell& self, const Arguments& arguments) {
        const std::string folder = ToText(arguments.GetContext(), arguments.NewValue()).ToUtf8();
        if (!self.services_.files.FolderExists(folder)) Raise(FileError::PathNotFound);
        if (AbsolutePath(self.services_, folder) != self.services_.files.CurrentFolder())
            Raise(FileError::PermissionDenied);
        return {};
    }

    const LibraryServices services_;
};

std::span<const Member<Shell>> Shell::Members() {
    using Self = Shell;
    static constexpr std::array<Member<Self>, 4> All = {{
        {u"ExpandEnvironmentStrings", 1, 1,
         [](Self& self, const Arguments& arguments) {
             return Value::OfUtf8(Expanded(self.services_.environment, arguments.Text(0).ToUtf8()));
         }},
        {u"Environment", 0, 1,
         [](Self& self, const Arguments&) {
             return Value::OfObject(Make<EnvironmentObject>(self.services_.environment));
         }},
        {u"SpecialFolders", 0, 1,
         [](Self& self, const Arguments& arguments) {
             const auto folders = Make<SpecialFoldersObject>(self.services_.environment);
             return arguments.Has(0) ? SpecialFoldersObject::Item(*folders, arguments)
                                     : Value::OfObject(folders);
         }},
        {u"CurrentDirectory", 0, 0,
         [](Self& self, const Arguments&) { return Value::OfUtf8(self.services_.files.CurrentFolder()); },
         SetCurrentDirectory},
    }};
    return All;
}

}  // namespace

Ref<Object> MakeShell(const LibraryServices& services) { return Make<Shell>(services); }

}  // namespace tessaloom::library
