#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>

#include "core/ErrorReport.h"
#include "platform/Dialogs.h"

class QDialog;
class QLabel;

namespace tessaloom {

class ErrorDebugReport;

/// Boxes and dialogs before the person at the desktop. Ticks run on while one is open.
///
/// One that nobody answers closes with its safe answer when `Patience` runs out, shown as a countdown in its
/// last ten seconds; so does one that was opened while the program ran, when that is to end.
class DesktopDialogs final : public Dialogs {
public:
    DesktopDialogs();
    ~DesktopDialogs() override;

    /// The window before which dialogs appear; null for none.
    void SetParent(QWidget* parent) { parent_ = parent; }

    /// While the person is closing the program, boxes stay although it is to end, unless the system asks for
    /// that.
    void SetClosing(bool closing) { closing_ = closing; }

    /// Adds a report to the one window that shows them all.
    void AddReport(const ErrorReport& report);
    void ShowReports();
    void UnloadReports();

    bool Interactive() const override { return true; }
    Answer MessageBox(std::string_view text, std::string_view title, Buttons buttons) override;
    std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                        std::string_view defaultText) override;
    std::optional<std::string> OpenFile(const FileDialog& dialog) override;
    std::optional<std::string> SaveFile(const FileDialog& dialog) override;
    void ShowStatus(std::string_view text) override;
    void UpdateStatus() override;
    void HideStatus() override;
    void UnloadStatus() override;

private:
    QWidget* Parent() const;
    int Wait(QDialog& dialog, QLabel* countdown);
    std::optional<std::string> ChooseFile(const FileDialog& dialog, bool save);

    QPointer<QWidget> parent_;
    bool closing_ = false;
    std::unique_ptr<QLabel> status_;
    std::unique_ptr<ErrorDebugReport> reports_;
};

}  // namespace tessaloom
