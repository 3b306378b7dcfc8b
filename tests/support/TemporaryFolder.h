#pragma once

#include <unistd.h>

#include "support/Testing.h"

namespace tessaloom::testing {

/// An empty folder of a test's own, removed with all that it holds.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
        std::string path = (parent / "tessaloom-XXXXXX").string();
        if (!mkdtemp(path.data())) throw std::runtime_error("cannot make " + path);
        path_ = path;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }

    /// A folder in memory where the system has one: for tests that flush files to the disk very often.
    static std::filesystem::path InMemory() {
        const std::filesystem::path memory = "/dev/shm";
        return access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
    }

    const std::string& Path() const { return path_; }
    std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

private:
    std::string path_;
};

}  // namespace tessaloom::testing
