#pragma once

#include <QWidget>
#include <cstddef>
#include <string>

#include "model/edit/PropertySet.h"

namespace tessaloom {

class Workspace;

/// One property's editor. It speaks the texts of the document files (model/edit/Property.h).
class PropertyEditor : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Shows a value that came from elsewhere; emits nothing.
    virtual void Show(const std::string& text) = 0;

    /// Shows that several things have different values; what is entered is for all of them. lead: the value
    /// of one of them, from which steps go.
    virtual void ShowMixed(const std::string& lead) = 0;

    /// The person is in the middle of entering something: not to be overwritten.
    virtual bool Busy() const { return false; }

    /// Takes what was typed so far as entered, where it is a value.
    virtual void Finish() {}

    /// What is typed is no value, so that it cannot be taken.
    virtual bool Mistaken() const { return false; }

    /// The control that has the keyboard while the property is edited.
    QWidget& Field();

    /// For screen readers: what is edited and, where something is wrong, what.
    void Describe(const QString& label, const QString& remark);

Q_SIGNALS:
    /// The person chose or typed a value.
    void Entered(const std::string& text);

    /// What is typed so far is no value, or names what is not there; "" when it is one again.
    void Wrong(const QString& reason);
};

/// The editor for a row of `set`, by its kind. Never null. `set` outlives the editor.
PropertyEditor* MakePropertyEditor(Workspace& workspace, PropertySet& set, std::size_t row, QWidget* parent);

}  // namespace tessaloom
