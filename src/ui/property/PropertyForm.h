#pragma once

#include <QScrollArea>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "model/edit/PropertySet.h"
#include "ui/shared/EntryForm.h"

namespace tessaloom {

class PropertyGroup;
class Workspace;

/// The editors of a set of properties, made from its descriptions: label, editor, unit, and a button that
/// resets the row to its default.
///
/// Every change takes effect at once and, for what a canvas owns, is a step of that canvas's history. What
/// others change shows within a quarter of a second, but never under the hands of who is typing. A value that
/// cannot be taken is shown as wrong beside its editor, with the reason; the thing keeps its last good one.
/// When the thing goes, the form is disabled and says so.
///
/// Of several layers it shows what they have in common, says how many there are, and sets what is entered in
/// all of them, as one step. Values that differ are shown as such.
class PropertyForm : public QScrollArea, public EntryForm {
    Q_OBJECT

public:
    explicit PropertyForm(Workspace& workspace, QWidget* parent = nullptr);
    ~PropertyForm() override;

    /// Shows `set`; null shows `emptyText`.
    void Show(std::unique_ptr<PropertySet> set, const QString& emptyText = {});

    PropertySet* Set() const;

    /// The values as they were when the set was shown are put back, as one step; but for those in which
    /// several things differed.
    void Restore();

    /// The editor widget of a property, to be found by its name as object name, too. Null when there is none.
    QWidget* EditorOf(std::string_view name) const;

    bool TakeTyped() override;

    /// Opens the page and the group of a property, brings its editor into view and gives it the focus.
    void FocusOn(std::string_view name);

Q_SIGNALS:
    /// A property was set here.
    void Changed(const QString& name);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Parts;

    void Clear();
    void ShowEmpty(const QString& text);
    void Build();
    PropertyGroup* AddGroup(const QString& heading, std::size_t firstRow);
    void ConnectRow(std::size_t row);
    void Apply(std::size_t row, std::optional<std::string> text);
    void FitWidth();
    void PlaceHeader();
    void FocusMoved(QWidget* from, QWidget* to);

    std::shared_ptr<Parts> parts_;
};

}  // namespace tessaloom
