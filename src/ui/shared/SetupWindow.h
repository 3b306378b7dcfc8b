#pragma once

#include <QDialog>
#include <QString>

class QDialogButtonBox;
class QVBoxLayout;

namespace tessaloom {

class Workspace;

/// A set-up window: beside the others, never before them. What is set takes effect at once; "OK" keeps it,
/// "Cancel", Escape and the close button put back what the window found. While a field holds what is no
/// value, "OK" shows that field instead.
///
/// It closes by itself, keeping what was set, when its portfolio goes. Its place is remembered under its
/// object name. One window of a kind is open at most: `ShowOnly` brings an open one to the front.
class SetupWindow : public QDialog {
    Q_OBJECT

public:
    /// name: the object name, "WebServerSetup".
    SetupWindow(Workspace& workspace, const QString& name, const QString& title, QWidget* parent);
    ~SetupWindow() override;

    /// The open window of that object name, brought to the front; else the one that `make` returns, shown.
    /// Windows delete themselves when closed.
    template <typename Make>
    static SetupWindow* ShowOnly(const QString& name, Make make) {
        SetupWindow* window = FindOpen(name);
        if (!window) window = make();
        window->ShowInFront();
        return window;
    }

    void done(int result) override;

protected:
    /// Where the contents go, above the buttons.
    QVBoxLayout* Contents() const { return contents_; }
    QDialogButtonBox* ButtonRow() const { return buttons_; }
    Workspace& TheWorkspace() const { return workspace_; }

    /// Puts back what the window found; called for "Cancel". Nothing by default.
    virtual void Restore() {}

    /// Called before the window goes, whatever was pressed.
    virtual void Closing() {}

private:
    /// Closes the window unless something that was typed is no value.
    void Keep();

    static SetupWindow* FindOpen(const QString& name);
    void ShowInFront();

    /// Tab goes through the contents, then the buttons; the first field has the focus.
    void OrderFocus();
    void KeepOnScreen();

    Workspace& workspace_;
    QVBoxLayout* contents_;
    QDialogButtonBox* buttons_;
    bool ended_ = false;
};

}  // namespace tessaloom
