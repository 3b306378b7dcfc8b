#include <QCheckBox>
#include <QHBoxLayout>

#include "ui/property/editors/Editors.h"
#include "ui/property/editors/Parts.h"

namespace tessaloom::Editors {

namespace {

/// A check box that bears the property's label.
class SwitchEditor final : public PropertyEditor {
public:
    explicit SwitchEditor(const Subject& subject)
        : PropertyEditor(subject.parent), box_(new QCheckBox(Words(subject.Description().label))) {
        LayParts(this, box_)->addStretch();
        connect(box_, &QCheckBox::clicked, this, [this](bool on) { Q_EMIT Entered(on ? "True" : "False"); });
    }

    void Show(const std::string& text) override {
        box_->setTristate(false);
        box_->setChecked(text == "True");
    }

    void ShowMixed(const std::string&) override { box_->setCheckState(Qt::PartiallyChecked); }

private:
    QCheckBox* box_;
};

}  // namespace

PropertyEditor* MakeSwitch(const Subject& subject) { return new SwitchEditor(subject); }

}  // namespace tessaloom::Editors
