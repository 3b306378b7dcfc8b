#include "script/library/ClassLibrary.h"

#include <algorithm>

#include "platform/Ascii.h"
#include "script/library/Dictionary.h"
#include "script/library/FileSystemObject.h"
#include "script/library/Shell.h"
#include "script/library/Stream.h"
#include "script/library/XmlHttp.h"
#include "vbscript/RegExp.h"

namespace tessaloom::library {

using vbscript::Object;
using vbscript::Ref;

namespace {

struct Class {
    std::string_view name;
    Ref<Object> (*make)(const LibraryServices& services);
};

constexpr Class Classes[] = {
    {"Scripting.Dictionary", [](const LibraryServices&) { return MakeDictionary(); }},
    {"Scripting.FileSystemObject", MakeFileSystemObject},
    {"VBScript.RegExp", [](const LibraryServices&) { return vbscript::MakeRegExp(); }},
    {"MSXML2.XMLHTTP", [](const LibraryServices& services) { return MakeXmlHttp(services, false); }},
    {"Microsoft.XMLHTTP", [](const LibraryServices& services) { return MakeXmlHttp(services, false); }},
    {"MSXML2.ServerXMLHTTP", [](const LibraryServices& services) { return MakeXmlHttp(services, true); }},
    {"ADODB.Stream", MakeStream},
    {"WScript.Shell", MakeShell},
};

/// Whether `name` is that of the class, alone or with a version (".6.0") behind it.
bool Names(std::string_view name, const Class& known) {
    if (!ascii::StartsWithText(name, known.name)) return false;
    const std::string_view version = name.substr(known.name.size());
    return version.empty() || (version.front() == '.' && version.size() > 1 &&
                               version.find_first_not_of(".0123456789") == version.npos);
}

}  // namespace

Ref<Object> CreateObject(const LibraryServices& services, std::string_view programId) {
    const auto* found =
        std::ranges::find_if(Classes, [&](const Class& known) { return Names(programId, known); });
    return found == std::end(Classes) ? nullptr : found->make(services);
}

}  // namespace tessaloom::library
