#pragma once

#include "platform/Dialogs.h"

namespace tessaloom {

/// Dialogs without a person: messages go to the log, questions get their safe answer at once.
class HeadlessDialogs : public Dialogs {
public:
    bool Interactive() const override { return false; }
    Answer MessageBox(std::string_view text, std::string_view title, Buttons buttons) override;
    std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                        std::string_view defaultText) override;
    std::optional<std::string> OpenFile(const FileDialog& dialog) override;
    std::optional<std::string> SaveFile(const FileDialog& dialog) override;
    void ShowStatus(std::string_view text) override;
    void UpdateStatus() override {}
    void HideStatus() override {}
    void UnloadStatus() override {}
};

}  // namespace tessaloom
