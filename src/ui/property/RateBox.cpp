#include "ui/property/RateBox.h"

#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "core/modNumbers.h"
#include "time/RateChoices.h"
#include "ui/property/editors/Parts.h"

namespace tessaloom {

namespace {

const QString OnlyWhenForced = QStringLiteral("Only when forced");

/// Words for the units of time, each with its seconds.
struct Unit {
    const char* words;  ///< A pattern.
    double seconds;
};
constexpr auto Units = std::to_array<Unit>({
    {"milliseconds?|ms",  0.001},
    {"seconds?|secs?|s|", 1    },
    {"minutes?|mins?|m",  60   },
    {"hours?|hrs?|h",     3600 },
    {"days?|d",           86400},
});

/// The largest rate that is a difference of typing only.
constexpr double Alike = 1e-9;

QString FromLabel(std::string_view label) {
    return QString::fromUtf8(label.data(), static_cast<qsizetype>(label.size()));
}

QString HalfSecondLabel() {
    return FromLabel(modNumbers::DecimalIsComma() ? HalfSecondCommaLabel : HalfSecondChoice.label);
}

/// "1.5" or "1,5" or "1/30".
std::optional<double> Number(const QString& text) {
    const QStringList parts = QString(text).replace(',', '.').split('/');
    bool good = false;
    double value = parts[0].toDouble(&good);
    if (!good || parts.size() > 2) return std::nullopt;
    if (parts.size() == 2) {
        const double below = parts[1].toDouble(&good);
        if (!good || below <= 0) return std::nullopt;
        value /= below;
    }
    return std::isfinite(value) && value >= 0 ? std::optional(value) : std::nullopt;
}

std::optional<double> UnitSeconds(const QString& word) {
    for (const Unit& unit : Units)
        if (QRegularExpression(QStringLiteral("\\A(?:%1)\\z").arg(QLatin1String(unit.words)))
                .match(word)
                .hasMatch())
            return unit.seconds;
    return std::nullopt;
}

/// "1:30" is minutes and seconds, "1:00:00" hours, too.
std::optional<double> Clock(const QString& text) {
    double seconds = 0;
    const QStringList parts = text.split(':');
    if (parts.size() > 3) return std::nullopt;
    for (const QString& part : parts) {
        const auto value = Number(part.trimmed());
        if (!value || (&part != &parts.front() && *value >= 60)) return std::nullopt;
        seconds = seconds * 60 + *value;
    }
    return seconds;
}

/// "1 hr 30 min": numbers, each with its unit; the last one may go without.
std::optional<double> Measured(const QString& text) {
    static const QRegularExpression Term(QStringLiteral("\\G\\s*([0-9.,/]+)\\s*([a-z]*)\\.?\\s*"));
    double seconds = 0;
    qsizetype at = 0;
    while (at < text.size()) {
        const auto match = Term.match(text, at);
        if (!match.hasMatch() || match.capturedLength() == 0) return std::nullopt;
        const auto number = Number(match.captured(1));
        const auto unit = UnitSeconds(match.captured(2));
        if (!number || !unit) return std::nullopt;
        seconds += *number * *unit;
        at = match.capturedEnd();
    }
    return at > 0 ? std::optional(seconds) : std::nullopt;
}

QString Plain(double value) {
    QString text = QString::number(value, 'g', 6);
    return modNumbers::DecimalIsComma() ? text.replace('.', ',') : text;
}

/// The parts of a longer time that are not 0: "1 hr 30 min".
QString Composed(double seconds) {
    QStringList parts;
    double rest = seconds;
    for (const auto& [name, size] : {std::pair("hr", 3600.0), std::pair("min", 60.0)}) {
        const double count = std::floor(rest / size + Alike);
        if (count > 0) parts << QStringLiteral("%1 %2").arg(Plain(count), QLatin1String(name));
        rest -= count * size;
    }
    if (rest > Alike * seconds || parts.isEmpty()) parts << Plain(rest) + QStringLiteral(" sec");
    return parts.join(' ');
}

std::span<const RateChoice> ChoicesOf(RateBox::List list) {
    return list == RateBox::List::SubSecond ? std::span<const RateChoice>(SubSecondRateChoices) : RateChoices;
}

}  // namespace

std::optional<double> RateText::Seconds(const QString& text) {
    const QString plain = text.trimmed().toLower();
    if (plain == OnlyWhenForced.toLower()) return 0;
    return plain.contains(':') ? Clock(plain) : Measured(plain);
}

QString RateText::Label(double seconds) {
    if (seconds == 0) return OnlyWhenForced;
    for (const RateChoice& choice : SubSecondRateChoices)
        // A document holds a fraction of a second in decimals.
        if (std::abs(choice.seconds - seconds) < 0.001 * choice.seconds &&
            (seconds < 1 || choice.seconds == seconds))
            return FromLabel(choice.label);
    return seconds < 60 ? Plain(seconds) + QStringLiteral(" sec") : Composed(seconds);
}

RateBox::RateBox(List list, double low, double high, QWidget* parent)
    : QWidget(parent), box_(new QComboBox), understood_(new QLabel), low_(low), high_(high) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(box_);
    layout->addWidget(understood_);
    setFocusProxy(box_);
    box_->setEditable(true);
    box_->setInsertPolicy(QComboBox::NoInsert);
    box_->setCompleter(nullptr);
    box_->setObjectName(QStringLiteral("rate"));
    understood_->setObjectName(QStringLiteral("understood"));
    understood_->setForegroundRole(QPalette::PlaceholderText);
    understood_->hide();

    const auto offer = [&](const QString& label, double seconds) {
        if (seconds >= low && seconds <= high) box_->addItem(label, seconds);
    };
    offer(OnlyWhenForced, 0);
    if (list == List::HalfSecond) offer(HalfSecondLabel(), HalfSecondChoice.seconds);
    for (const RateChoice& choice : ChoicesOf(list)) offer(FromLabel(choice.label), choice.seconds);
    ShowSeconds(0);

    connect(box_, &QComboBox::activated, this, [this](int row) {
        ShowSeconds(box_->itemData(row).toDouble());
        Q_EMIT Entered(seconds_);
    });
    connect(box_->lineEdit(), &QLineEdit::textEdited, this, &RateBox::Typed);
    connect(box_->lineEdit(), &QLineEdit::editingFinished, this, &RateBox::Finish);
    box_->installEventFilter(this);
}

void RateBox::ShowSeconds(double seconds) { Put(seconds, false); }

void RateBox::ShowMixed(double lead) { Put(lead, true); }

void RateBox::Put(double seconds, bool mixed) {
    if (seconds == seconds_ && mixed == mixed_ && !busy_) return;  // an open list would lose its place
    seconds_ = seconds;
    mixed_ = mixed;
    busy_ = false;
    understood_->hide();
    const QSignalBlocker quiet(box_);
    const QString label = RateText::Label(seconds);
    box_->setCurrentIndex(-1);
    box_->lineEdit()->setPlaceholderText(mixed ? Editors::SeveralValues() : QString());
    if (mixed) return box_->setEditText({});
    for (int row = 0; row < box_->count(); ++row)
        if (std::abs(box_->itemData(row).toDouble() - seconds) <= 0.001 * std::min(seconds, 1.0))
            box_->setCurrentIndex(row);
    if (box_->currentIndex() < 0) box_->setEditText(label);
}

QString RateBox::Refusal(const QString& text, std::optional<double>& seconds) const {
    seconds = RateText::Seconds(text);
    if (!seconds) return tr("A time such as \"90 sec\", \"2 min\", \"1:30\" or \"1/2 sec\".");
    if (*seconds < low_) return tr("At least %1.").arg(RateText::Label(low_));
    if (*seconds > high_) return tr("At most %1.").arg(RateText::Label(high_));
    return {};
}

void RateBox::Typed(const QString& text) {
    busy_ = true;
    std::optional<double> seconds;
    const QString refusal = GivenUp() ? QString() : Refusal(text, seconds);
    understood_->setText(seconds && refusal.isEmpty() ? "= " + RateText::Label(*seconds) : refusal);
    understood_->setVisible(!GivenUp());
    Q_EMIT Wrong(refusal);
}

bool RateBox::GivenUp() const { return mixed_ && box_->currentText().isEmpty(); }

void RateBox::Finish() {
    if (!busy_) return;
    if (GivenUp()) return Revert();
    std::optional<double> seconds;
    if (!Refusal(box_->currentText(), seconds).isEmpty()) return;
    ShowSeconds(*seconds);
    Q_EMIT Entered(seconds_);
}

bool RateBox::Mistaken() const {
    std::optional<double> seconds;
    return busy_ && !GivenUp() && !Refusal(box_->currentText(), seconds).isEmpty();
}

void RateBox::Revert() {
    Put(seconds_, mixed_);
    Q_EMIT Wrong({});
}

bool RateBox::eventFilter(QObject* object, QEvent* event) {
    // The wheel turns pages; it must not change a rate that it passes over.
    if (event->type() == QEvent::Wheel && !box_->hasFocus()) {
        event->ignore();
        return true;
    }
    if (busy_ && Editors::EndTyping(
                     *event, [this] { Finish(); }, [this] { Revert(); }))
        return true;
    if (event->type() == QEvent::FocusOut) Finish();
    return QWidget::eventFilter(object, event);
}

}  // namespace tessaloom
