#include "ui/property/PropertyForm.h"

#include <QLabel>

#include "ui/shared/Workspace.h"

namespace tessaloom {

struct PropertyForm::Parts {
    Workspace& workspace;
    std::unique_ptr<PropertySet> set;
};

PropertyForm::PropertyForm(Workspace& workspace, QWidget* parent)
    : QScrollArea(parent), parts_(new Parts{workspace, nullptr}) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
}

PropertyForm::~PropertyForm() = default;

void PropertyForm::Show(std::unique_ptr<PropertySet> set, const QString& emptyText) {
    parts_->set = std::move(set);
    setWidget(new QLabel(emptyText));
}

PropertySet* PropertyForm::Set() const { return parts_->set.get(); }

void PropertyForm::Restore() {}

QWidget* PropertyForm::EditorOf(std::string_view) const { return nullptr; }

void PropertyForm::FocusOn(std::string_view) {}

}  // namespace tessaloom
