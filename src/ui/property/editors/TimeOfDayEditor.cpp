#include <QHBoxLayout>
#include <array>

#include "model/KeyKinds.h"
#include "ui/property/editors/Parts.h"
#include "ui/property/editors/StepBox.h"
#include "ui/property/editors/TypedEditor.h"

namespace tessaloom::Editors {

namespace {

constexpr int SecondsPerHour = 3600, SecondsPerMinute = 60, SecondsPerDay = 86400;

/// "7", "7:30" and "07:30:15" in seconds after midnight.
std::optional<int> Seconds(const QString& typed) {
    constexpr std::array Units = {SecondsPerHour, SecondsPerMinute, 1};
    const QStringList parts = typed.trimmed().split(':');
    if (parts.size() > static_cast<qsizetype>(Units.size())) return std::nullopt;
    int seconds = 0;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        bool isNumber = false;
        const int part = parts[i].trimmed().toInt(&isNumber);
        if (!isNumber || part < 0 || part > (i == 0 ? 24 : 59)) return std::nullopt;
        seconds += part * Units[static_cast<std::size_t>(i)];
    }
    if (seconds > SecondsPerDay) return std::nullopt;
    return seconds;
}

/// A time of day; the arrows move the part at the cursor.
class TimeOfDayEditor final : public TypedEditor {
public:
    explicit TimeOfDayEditor(const Subject& subject) : TypedEditor(subject) {
        box_ = new StepBox([this](int steps) { Step(steps); }, 8);
        GuardWheel(box_);
        SetLine(box_->Line());
        box_->installEventFilter(this);  // keys go to the box, not to its line
        connect(box_, &QAbstractSpinBox::editingFinished, this, [this] { Finish(); });
        LayParts(this, box_)->addStretch();
    }

protected:
    Reading Read(const QString& typed) const override {
        if (const auto seconds = Seconds(typed)) return {TimeOfDay::Write(*seconds), {}};
        return {std::nullopt, "Must be a time such as 07:30:00."};
    }

private:
    void Step(int steps) {
        const QString shown = Line()->text().isEmpty() ? Display(Stored()) : Line()->text();
        const int cursor = Line()->cursorPosition();
        const auto part = shown.left(cursor).count(':');
        const int unit = part == 0 ? SecondsPerHour : part == 1 ? SecondsPerMinute : 1;
        const int to = Seconds(shown).value_or(0) + steps * unit;
        if (to < 0 || to >= SecondsPerDay) return;
        Take(TimeOfDay::Write(to));
        Line()->setCursorPosition(cursor);
    }

    StepBox* box_;
};

}  // namespace

PropertyEditor* MakeTimeOfDay(const Subject& subject) { return new TimeOfDayEditor(subject); }

}  // namespace tessaloom::Editors
