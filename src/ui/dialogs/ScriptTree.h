#pragma once

#include <QWidget>

class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace tessaloom {

enum class SCKind;

/// The object tree that scripts see, to look up names and to put them into the script.
class ScriptTree : public QWidget {
    Q_OBJECT

public:
    explicit ScriptTree(QWidget* parent = nullptr);

Q_SIGNALS:
    /// A member was chosen: "Tessaloom.Portfolio.Canvas(1).Name".
    void Chosen(const QString& path);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void AddMembers(QTreeWidgetItem* owner, SCKind kind);
    void Filter(const QString& text);

    QLineEdit* filter_;
    QTreeWidget* tree_;
};

}  // namespace tessaloom
