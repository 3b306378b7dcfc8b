#pragma once

#include "script/library/ClassLibrary.h"

namespace tessaloom::library {

/// A new "WScript.Shell", of which there is: ExpandEnvironmentStrings, Environment, SpecialFolders and
/// CurrentDirectory.
///
/// Names of variables are found whatever their case, and some that scripts expect (TEMP, USERNAME ...) have
/// the values of this system where they are not set. Changed variables are seen by scripts alone. The current
/// directory cannot be changed: the files of the program lie in it.
vbscript::Ref<vbscript::Object> MakeShell(const LibraryServices& services);

}  // namespace tessaloom::library
