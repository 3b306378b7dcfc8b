#pragma once

#include <string_view>

#include "vbscript/Object.h"

namespace tessaloom {

class Environment;
class FileSystem;
class Folders;
class UrlTransfers;

}  // namespace tessaloom

namespace tessaloom::library {

/// What the classes stand on. All of it outlives the scripts.
struct LibraryServices {
    FileSystem& files;
    Folders& folders;
    Environment& environment;

    /// Used by scripts alone: a script that waits for an answer polls them, and would otherwise run the
    /// listeners of others in the midst of their work.
    UrlTransfers& transfers;
};

/// A new object of a class that scripts may create, by its name, whatever its case: "Scripting.Dictionary",
/// "Scripting.FileSystemObject", "VBScript.RegExp", "MSXML2.XMLHTTP", "MSXML2.ServerXMLHTTP" and
/// "Microsoft.XMLHTTP" (also with a version behind them), "ADODB.Stream", "WScript.Shell". Null for any other
/// name.
vbscript::Ref<vbscript::Object> CreateObject(const LibraryServices& services, std::string_view programId);

}  // namespace tessaloom::library
