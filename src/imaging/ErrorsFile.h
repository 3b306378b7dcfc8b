#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tessaloom {

class FileSystem;
struct UserLocale;

/// The file "errors.txt" in the current directory, to which a few routines append their errors, a line each.
class ErrorsFile {
public:
    struct Field {
        std::string_view name;
        std::string value;
    };

    ErrorsFile(FileSystem& files, const UserLocale& locale) : files_(files), locale_(locale) {}

    /// Appends "Error `where`, Time=(now)" and then ", name=value" for each field. Failures are ignored.
    ///
    /// where: for example "Picture.cls (Get hDC)".
    void Append(std::string_view where, std::initializer_list<Field> fields);

private:
    FileSystem& files_;
    const UserLocale& locale_;
};

}  // namespace tessaloom
