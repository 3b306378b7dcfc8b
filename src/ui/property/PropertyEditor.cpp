#include "ui/property/PropertyEditor.h"

#include "ui/property/editors/Editors.h"

namespace tessaloom {

namespace {

using Maker = PropertyEditor* (*)(const Editors::Subject&);

Maker MakerFor(PropertyKind kind) {
    switch (kind) {
        case PropertyKind::Switch:
            return Editors::MakeSwitch;
        case PropertyKind::Whole:
        case PropertyKind::Real:
            return Editors::MakeNumber;
        case PropertyKind::Percent:
            return Editors::MakePercent;
        case PropertyKind::Angle:
            return Editors::MakeAngle;
        case PropertyKind::Choice:
            return Editors::MakeChoice;
        case PropertyKind::Colour:
            return Editors::MakeColour;
        case PropertyKind::Line:
        case PropertyKind::Address:
            return Editors::MakeLine;
        case PropertyKind::TaggedText:
            return Editors::MakeTaggedText;
        case PropertyKind::Password:
            return Editors::MakePassword;
        case PropertyKind::OpenFile:
        case PropertyKind::SaveFile:
        case PropertyKind::Folder:
            return Editors::MakePath;
        case PropertyKind::Font:
            return Editors::MakeFont;
        case PropertyKind::Rate:
            return Editors::MakeRate;
        case PropertyKind::TimeOfDay:
            return Editors::MakeTimeOfDay;
        case PropertyKind::Feed:
            return Editors::MakeFeed;
        case PropertyKind::Canvas:
            return Editors::MakeCanvas;
        case PropertyKind::Schedule:
            return Editors::MakeSchedule;
        case PropertyKind::TransparentColours:
            return Editors::MakeTransparentColours;
    }
    return Editors::MakeLine;
}

}  // namespace

QWidget& PropertyEditor::Field() {
    QWidget* field = this;
    while (field->focusProxy()) field = field->focusProxy();
    return *field;
}

void PropertyEditor::Describe(const QString& label, const QString& remark) {
    QWidget& field = Field();
    field.setAccessibleName(label);
    // What is chosen in a combo box goes for its name.
    const bool named = !field.inherits("QComboBox");
    field.setAccessibleDescription(named || !remark.isEmpty() ? remark : label);
}

PropertyEditor* MakePropertyEditor(Workspace& workspace, PropertySet& set, std::size_t row, QWidget* parent) {
    const Property& property = set.Properties()[row];
    PropertyEditor* editor = MakerFor(property.kind)({workspace, set, row, parent});
    const auto text = [](std::string_view words) {
        return QString::fromUtf8(words.data(), static_cast<qsizetype>(words.size()));
    };
    editor->setObjectName(text(property.name));
    editor->setToolTip(text(property.tip));
    editor->Describe(text(property.label).remove('&'), {});
    return editor;
}

}  // namespace tessaloom
