#pragma once

#include <QHash>
#include <QWidget>

class QFormLayout;
class QLabel;

namespace tessaloom {

/// What is the case, as opposed to what is set: rows of a label and a text that is looked at, not edited.
class FactList : public QWidget {
    Q_OBJECT

public:
    explicit FactList(QWidget* parent = nullptr);

    /// name: the object name of the text
    void Add(const QString& name, const QString& label);

    /// A row of any other widget.
    void AddWidget(const QString& label, QWidget* widget);

    /// A row without text is hidden. Paths may be broken at their separators.
    void Tell(const QString& name, const QString& text);
    void TellPath(const QString& name, const QString& path);

private:
    QFormLayout* rows_;
    QHash<QString, QLabel*> texts_;
};

}  // namespace tessaloom
