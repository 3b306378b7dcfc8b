#pragma once

#include <QLineEdit>
#include <QString>
#include <optional>
#include <string>

#include "ui/property/editors/Editors.h"

namespace tessaloom::Editors {

/// An editor around one line that is typed into.
///
/// What is typed is taken with Enter or when the focus leaves, or already while typing where the editor says
/// so; for several values always only then. What is no value stays in the line, with the reason, until it is
/// mended; Escape brings back the value that was there before.
class TypedEditor : public PropertyEditor {
public:
    void Show(const std::string& text) override;
    void ShowMixed(const std::string& lead) override;
    bool Busy() const override { return typing_; }
    void Finish() override;
    bool Mistaken() const override { return typing_ && !GivenUp() && !Read(line_->text()).value; }

protected:
    struct Reading {
        std::optional<std::string> value;  ///< As the file holds it; nothing when what is typed is no value.
        QString objection;                 ///< Why it is none, or why it will not be taken as it is.
    };

    explicit TypedEditor(const Subject& subject);

    /// The line, which is part of the editor's own layout.
    void SetLine(QLineEdit* line);
    QLineEdit* Line() const { return line_; }

    /// The value as it was shown or entered last; of several, one of them.
    const std::string& Stored() const { return stored_; }
    bool Mixed() const { return mixed_; }

    /// Ends typing and enters a value that was chosen by other means.
    void Take(const std::string& text);

    /// What the empty line says while the value is `text`.
    virtual QString Placeholder(const std::string&) const { return {}; }

    /// The default, which an emptied text of a file means.
    QString Fallback() const;

    virtual QString Display(const std::string& text) const { return QString::fromStdString(text); }
    virtual Reading Read(const QString& typed) const { return {typed.toStdString(), {}}; }

    /// Values without objection are taken while they are typed.
    virtual bool TakesAtOnce() const { return false; }

    /// The value or what is typed changed; for parts that show it in another way.
    virtual void ValueShown(const std::string&) {}

    bool eventFilter(QObject* object, QEvent* event) override;

    const Subject subject_;

private:
    void Typed(const QString& text);
    void Put(const std::string& text, bool mixed);
    void Revert();

    /// What was begun for several values was deleted again.
    bool GivenUp() const { return mixed_ && line_->text().isEmpty(); }

    QLineEdit* line_ = nullptr;
    std::string stored_;
    std::string before_;  ///< The value when typing began.
    bool typing_ = false;
    bool mixed_ = false;
};

}  // namespace tessaloom::Editors
