#pragma once

#include <functional>
#include <string>

namespace tessaloom {

/// One thing wrong with a document file, told while it is read. Reading goes on.
struct DocumentFault {
    std::string file;
    std::string section;  ///< "" when the whole file is meant.
    std::string key;      ///< "" when the whole section is meant.
    std::string value;    ///< As the file has it; "***" in place of a secret.
    std::string reason;   ///< "out of range, 3000 taken", "not a number, 0 taken", "missing file" ...
    int line = 0;         ///< Counted from 1; 0: not known.

    /// One line for a log: "file(line) [section] key=value: reason", without the parts that are empty.
    std::string Text() const;

    bool operator==(const DocumentFault&) const = default;
};

using DocumentFaultHandler = std::function<void(const DocumentFault&)>;

/// What reading a document does to its file.
enum class Reading {
    Completing,  ///< Missing keys are written with their defaults; activities that are enabled come to life.
    Passive,     ///< The file is left as it is.
};

}  // namespace tessaloom
