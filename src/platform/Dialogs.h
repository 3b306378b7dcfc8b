#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessaloom {

/// Which buttons a message box offers.
enum class Buttons { Ok, OkCancel, AbortRetryIgnore, YesNoCancel, YesNo, RetryCancel };

/// The button that was pressed.
enum class Answer { Ok, Cancel, Abort, Retry, Ignore, Yes, No };

/// A file dialog as the document commands ask for it.
struct FileDialog {
    std::string title;
    std::string filter;            ///< Description and pattern, parted by "|": "Portfolios (*.por)|*.por".
    std::string defaultExtension;  ///< With its dot: ".por". Added to a name that has none.
    std::string defaultName;       ///< Only for saving.
    bool confirmOverwrite = true;  ///< Only for saving: the dialog asks before a file that exists is chosen.
};

/// Everything the program says to, or asks of, the person before it.
class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// Whether a person can answer. Where none can, questions that only a person decides are left out.
    virtual bool Interactive() const = 0;

    /// Shows `text` under `title` and waits for a button. Without a person the safe answer comes at once:
    /// Ok, No for Yes/No, Abort or Cancel where that is offered.
    virtual Answer MessageBox(std::string_view text, std::string_view title,
                              Buttons buttons = Buttons::Ok) = 0;

    /// The text that was typed; nothing when the box was cancelled, and without a person.
    virtual std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                                std::string_view defaultText) = 0;

    /// The full path that was chosen; nothing when the dialog was cancelled, and without a person.
    virtual std::optional<std::string> OpenFile(const FileDialog& dialog) = 0;
    virtual std::optional<std::string> SaveFile(const FileDialog& dialog) = 0;

    /// The small status window: one line of text during long operations. `UpdateStatus` keeps it painted.
    virtual void ShowStatus(std::string_view text) = 0;
    virtual void UpdateStatus() = 0;
    virtual void HideStatus() = 0;
    virtual void UnloadStatus() = 0;

    /// The longest time that a box or dialog opened from now on waits for the person, in seconds; it then
    /// closes with its safe answer. 0, as at first: it waits for ever.
    int Patience() const { return patience_; }
    void SetPatience(int seconds) { patience_ = seconds; }

    /// How many boxes and dialogs have waited for the person so far.
    int Waits() const { return waits_; }

protected:
    void NoteWait() { ++waits_; }

private:
    int patience_ = 0;
    int waits_ = 0;
};

/// The safe answer of a box: what it answers when nobody does.
constexpr Answer SafeAnswer(Buttons buttons) {
    switch (buttons) {
        case Buttons::Ok:
            return Answer::Ok;
        case Buttons::AbortRetryIgnore:
            return Answer::Abort;
        case Buttons::YesNo:
            return Answer::No;
        case Buttons::OkCancel:
        case Buttons::YesNoCancel:
        case Buttons::RetryCancel:
            break;
    }
    return Answer::Cancel;
}

}  // namespace tessaloom
