#include "imaging/ErrorsFile.h"

#include "locale/Conversion.h"
#include "platform/FileSystem.h"
#include "time/modTime.h"

namespace tessaloom {

void ErrorsFile::Append(std::string_view where, std::initializer_list<Field> fields) {
    std::string line = "Error ";
    line.append(where).append(", Time=").append(TextFromDate(modTime::Clock(), locale_).value);
    for (const Field& field : fields) line.append(", ").append(field.name).append("=").append(field.value);
    files_.AppendText("errors.txt", line.append("\r\n"));
}

}  // namespace tessaloom
