#include <QDial>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <algorithm>
#include <cmath>

#include "core/modNumbers.h"
#include "platform/Platform.h"
#include "ui/property/editors/NumberText.h"
#include "ui/property/editors/Parts.h"
#include "ui/property/editors/StepBox.h"
#include "ui/property/editors/TypedEditor.h"
#include "ui/shared/Workspace.h"

namespace tessaloom::Editors {

namespace {

/// A number with arrows and its unit.
class NumberEditor : public TypedEditor {
public:
    explicit NumberEditor(const Subject& subject) : TypedEditor(subject) {
        box_ = new StepBox([this](int steps) { Step(steps); }, Characters());
        GuardWheel(box_);
        SetLine(box_->Line());
        box_->installEventFilter(this);  // keys go to the box, not to its line
        connect(box_, &QAbstractSpinBox::editingFinished, this, [this] { Finish(); });
        layout_ = LayParts(this, box_);
        if (const auto unit = Description().unit; !unit.empty()) layout_->addWidget(new QLabel(Words(unit)));
        layout_->addStretch();
    }

protected:
    const Property& Description() const { return subject_.Description(); }
    const UserLocale& Locale() const { return subject_.workspace.Services().locale; }

    QString Display(const std::string& text) const override { return NumberText::Shown(text, Locale()); }

    Reading Read(const QString& typed) const override {
        const std::optional<double> value = NumberText::Read(typed, Description().unit, Locale());
        if (!value) return {std::nullopt, Whole() ? "Must be a whole number." : "Must be a number."};
        if (Whole() && *value != std::round(*value)) return {std::nullopt, "Must be a whole number."};
        return {modNumbers::CStrNI(*value), NumberText::OutsideRange(Description(), *value, Locale())};
    }

    bool TakesAtOnce() const override { return true; }

    /// Where a slider or a dial goes.
    void AddPart(QWidget* part, int stretch) {
        delete layout_->takeAt(layout_->count() - 1);
        layout_->addWidget(part, stretch);
        GuardWheel(part);
        if (stretch == 0) layout_->addStretch();
    }

    double Current() const {
        double value = 0;
        return modNumbers::TryDblNI(Stored(), value) ? value : Description().low;
    }

private:
    bool Whole() const {
        return Description().kind != PropertyKind::Real && Description().kind != PropertyKind::Angle;
    }

    /// Most ranges are of one width, so that boxes and units stand beneath each other.
    int Characters() const {
        const auto digits = [](double value) { return modNumbers::CStrNI(std::trunc(value)).size(); };
        const auto whole = std::max(digits(Description().low), digits(Description().high));
        const int fraction = Description().decimals > 0 ? Description().decimals + 1 : 0;
        return std::clamp(static_cast<int>(whole) + fraction, 6, 10);
    }

    /// Narrow ranges go by their last digit, wide ones by ones.
    double StepSize() const {
        if (Whole() || Description().high - Description().low > 2) return 1;
        return std::pow(10.0, -std::clamp(Description().decimals, 1, 6));
    }

    void Step(int steps) {
        const Reading typed = Read(Line()->text());
        double from = Current();
        if (typed.value) modNumbers::TryDblNI(*typed.value, from);
        const double size = StepSize();
        const double to = std::round(from / size + steps) * size;
        // Rounded to the digits shown, so that 0.1 + 0.2 does not show its error.
        const double digits = 1e6;
        const double rounded = std::round(to * digits) / digits;
        Take(modNumbers::CStrNI(std::clamp(rounded, Description().low, Description().high)));
        box_->selectAll();
    }

    StepBox* box_;
    QHBoxLayout* layout_;
};

class PercentEditor final : public NumberEditor {
public:
    explicit PercentEditor(const Subject& subject)
        : NumberEditor(subject), slider_(new QSlider(Qt::Horizontal)) {
        slider_->setRange(static_cast<int>(Description().low), static_cast<int>(Description().high));
        slider_->setPageStep(10);
        slider_->setAccessibleName(Words(Description().label));
        AddPart(slider_, 1);
        connect(slider_, &QSlider::valueChanged, this,
                [this](int value) { Take(modNumbers::CStrNI(value)); });
    }

protected:
    void ValueShown(const std::string&) override {
        const QSignalBlocker quiet(slider_);
        slider_->setValue(static_cast<int>(std::lround(Current())));
    }

private:
    QSlider* slider_;
};

class AngleEditor final : public NumberEditor {
public:
    explicit AngleEditor(const Subject& subject) : NumberEditor(subject), dial_(new QDial) {
        dial_->setRange(0, 360);
        dial_->setWrapping(true);
        dial_->setInvertedAppearance(true);
        dial_->setPageStep(15);
        dial_->setAccessibleName(Words(Description().label));
        const int side = fontMetrics().height() * 2;
        dial_->setFixedSize(side, side);
        AddPart(dial_, 0);
        connect(dial_, &QDial::valueChanged, this,
                [this](int position) { Take(modNumbers::CStrNI((position + 360 - AtRight) % 360)); });
    }

protected:
    void ValueShown(const std::string&) override {
        const QSignalBlocker quiet(dial_);
        dial_->setValue((static_cast<int>(std::lround(Current())) + AtRight) % 360);
    }

private:
    /// A dial counts from its bottom, an angle counterclockwise from the right.
    static constexpr int AtRight = 90;

    QDial* dial_;
};

}  // namespace

PropertyEditor* MakeNumber(const Subject& subject) { return new NumberEditor(subject); }
PropertyEditor* MakePercent(const Subject& subject) { return new PercentEditor(subject); }
PropertyEditor* MakeAngle(const Subject& subject) { return new AngleEditor(subject); }

}  // namespace tessaloom::Editors
