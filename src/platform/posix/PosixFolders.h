#pragma once

#include "platform/Folders.h"

namespace tessaloom {

/// The folders of this machine.
class PosixFolders final : public Folders {
public:
    std::optional<FileDetails> Details(std::string_view path) const override;
    std::optional<std::vector<FileDetails>> List(std::string_view folder) const override;
    bool Move(std::string_view source, std::string_view target) override;
    bool RemoveFolder(std::string_view folder) override;
    bool SetReadOnly(std::string_view path, bool readOnly) override;
    std::optional<DiskDetails> Disk(std::string_view path) const override;
};

}  // namespace tessaloom
