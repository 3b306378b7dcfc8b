#pragma once

#include "platform/Desktop.h"

namespace tessaloom {

/// What a machine without a desktop offers: the user's data folder and the instance lock.
class HeadlessDesktop : public Desktop {
public:
    HeadlessDesktop() = default;
    ~HeadlessDesktop() override;
    HeadlessDesktop(const HeadlessDesktop&) = delete;
    HeadlessDesktop& operator=(const HeadlessDesktop&) = delete;

    bool SetWallpaper(std::string_view) override { return false; }
    void Beep() override {}

    /// "tessaloom" in $XDG_DATA_HOME, else in ~/.local/share.
    std::string UserDataFolder() const override;

    /// A lock on the folder itself, so that nothing is written there; the kernel frees it however the process
    /// ends. A folder that cannot be locked at all (some network file systems) counts as claimed.
    bool ClaimInstance(std::string_view folder) override;

private:
    int lock_ = -1;
};

}  // namespace tessaloom
