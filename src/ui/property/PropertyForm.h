#pragma once

#include <QScrollArea>
#include <memory>
#include <string>
#include <vector>

#include "model/edit/PropertySet.h"

namespace tessaloom {

class PropertyEditor;
class Workspace;

/// The editors of a set of properties, made from its descriptions: label, editor, unit, and a button that
/// resets the row to its default.
///
/// Every change takes effect at once and, for what a canvas owns, is a step of that canvas's history. What
/// others change shows within a quarter of a second, but never under the hands of who is typing. A value that
/// cannot be taken is shown as wrong beside its editor, with the reason; the thing keeps its last good one.
/// When the thing goes, the form is disabled and says so.
class PropertyForm : public QScrollArea {
    Q_OBJECT

public:
    explicit PropertyForm(Workspace& workspace, QWidget* parent = nullptr);
    ~PropertyForm() override;

    /// Shows `set`; null shows `emptyText`.
    void Show(std::unique_ptr<PropertySet> set, const QString& emptyText = {});

    PropertySet* Set() const { return set_.get(); }

    /// The values as they were when the set was shown are put back, as one step.
    void Restore();

    /// The editor widget of a property, to be found by its name as object name, too.
    QWidget* EditorOf(std::string_view name) const;

Q_SIGNALS:
    /// A property was set here.
    void Changed(const QString& name);

private:
    struct Row;

    void Build();
    void Refresh();
    void Apply(std::size_t row, const std::string& text);

    Workspace& workspace_;
    std::unique_ptr<PropertySet> set_;
    std::vector<Row> rows_;
    std::vector<std::string> found_;  ///< The values when the set was shown.
};

}  // namespace tessaloom
