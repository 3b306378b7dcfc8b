#pragma once

#include <QString>
#include <QWidget>
#include <cstddef>
#include <string>

#include "model/edit/Property.h"

class QGridLayout;
class QLabel;
class QToolButton;

namespace tessaloom {

class PropertyEditor;

/// One property of a form: its label, editor and reset button, and what is to be said of its value. The
/// widgets belong to the group.
struct PropertyRow {
    QLabel* label = nullptr;  ///< Null where the editor bears the label itself.
    PropertyEditor* editor = nullptr;
    QToolButton* reset = nullptr;
    QLabel* remark = nullptr;
    std::string value;   ///< As it was shown last, and
    bool mixed = false;  ///< whether as one of several.
    bool sought = true;  ///< A search hides the others.

    /// several: things have different values, one of them `text`.
    void Show(const std::string& text, bool several);

    /// Shows why a value is wrong; "" shows nothing.
    void Remark(const QString& text);
    /// Says what the button brings back.
    void DescribeReset(const Property& property);
    void SetResettable(bool resettable);
    void SetEnabled(bool enabled);
    void SetVisible(bool visible);
    int LabelWidth() const;
};

/// Rows of a form under a heading, which folds and unfolds them.
class PropertyGroup : public QWidget {
    Q_OBJECT

public:
    /// first: the row of the form that comes first here. Without a heading the rows cannot be folded.
    PropertyGroup(const QString& heading, std::size_t first, QWidget* parent = nullptr);

    /// Takes `editor` in as the next row.
    PropertyRow AddRow(const Property& property, PropertyEditor* editor);

    QString Heading() const { return headingText_; }
    std::size_t First() const { return first_; }
    std::size_t End() const { return first_ + count_; }

    bool IsOpen() const { return open_; }
    void SetOpen(bool open);

    /// The labels of all groups of a form are equally wide.
    void SetLabelWidth(int pixels);

Q_SIGNALS:
    /// Somebody folded the group or opened it.
    void Folded(bool folded);

private:
    QString headingText_;
    const std::size_t first_;
    std::size_t count_ = 0;
    bool open_ = true;
    QToolButton* heading_;
    QWidget* body_;
    QGridLayout* grid_;
};

}  // namespace tessaloom
