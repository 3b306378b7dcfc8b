#pragma once

#include <QWidget>
#include <memory>
#include <string>

namespace tessaloom {

class Workspace;

/// Several lines of text with live tags: tags stand out in colour, unknown ones are marked, and a line
/// beneath shows the text as it is expanded now. "<" offers the tags; "Insert Tag..." opens the list of all
/// of them.
class TaggedTextEdit : public QWidget {
    Q_OBJECT

public:
    explicit TaggedTextEdit(Workspace& workspace, QWidget* parent = nullptr);
    ~TaggedTextEdit() override;

    /// Shows a text that came from elsewhere; emits nothing. The cursor stays where it can.
    void ShowText(const std::string& text);

    /// What the empty editor says until something is typed; empty: what can be typed.
    void SetPlaceholder(const QString& text);

    /// As typed. Lines end as those of the text that was shown last.
    std::string Text() const;

    /// The person is in the middle of typing.
    bool Busy() const;

    /// Puts `tag` where the cursor is, in place of what is selected.
    void InsertTag(const QString& tag);

    /// The editor that had the focus last and can still be seen; null when there is none.
    static TaggedTextEdit* LastUsed();

Q_SIGNALS:
    /// With every change that the person makes.
    void Edited(const std::string& text);

    /// The focus left the editor.
    void Left();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace tessaloom
