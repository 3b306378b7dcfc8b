#include "ui/property/DayBand.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "text/Tags.h"

namespace tessaloom {

namespace {

/// On each side of sunrise and sunset, minutes in which the sky changes its colour.
constexpr double Twilight = 40;

const QColor Night(0x1B2A4A), Dawn(0xE08A4E), Day(0x9CCBF0);
const QColor SunColour(0xF2B632);

QColor Mixed(const QColor& a, const QColor& b, double part) {
    const auto mix = [&](int from, int to) { return static_cast<int>(from + (to - from) * part); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

}  // namespace

DayBand::DayBand(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("The day"));
}

void DayBand::ShowDay(double sunrise, double sunset, std::vector<bool> on) {
    if (std::pair(sunrise_, sunset_) == std::pair(sunrise, sunset) && on == on_) return;
    sunrise_ = sunrise;
    sunset_ = sunset;
    on_ = std::move(on);
    const auto minutes = std::count(on_.begin(), on_.end(), true);
    setAccessibleDescription(
        tr("Sunrise %1, sunset %2; on for %3 h %4 min of the day")
            .arg(QString::fromStdString(ShortTime24(sunrise)), QString::fromStdString(ShortTime24(sunset)))
            .arg(minutes / 60)
            .arg(minutes % 60));
    update();
}

void DayBand::ShowNow(double timeOfDay) {
    if (std::lround(Column(timeOfDay)) == std::lround(Column(std::exchange(now_, timeOfDay)))) return;
    update();
}

QSize DayBand::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 80, minimumSizeHint().height()};
}

QSize DayBand::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 48, fontMetrics().lineSpacing() * 6};
}

/// Above it stand sunrise and sunset, beneath it the hours.
QRectF DayBand::Band() const {
    const double line = fontMetrics().lineSpacing();
    const double side = fontMetrics().horizontalAdvance(QStringLiteral("00"));
    return QRectF(rect()).adjusted(side, line * 1.4, -side, -line * 1.3);
}

double DayBand::Column(double timeOfDay) const { return Band().left() + Band().width() * timeOfDay; }

/// 0 night .. 0.5 sunrise or sunset .. 1 day.
double DayBand::Daylight(double timeOfDay) const {
    const auto after = [&](double event) {  // minutes since `event`, within half a day
        return std::remainder(timeOfDay - event, 1.0) * MinutesPerDay;
    };
    const bool light = sunrise_ < sunset_ ? timeOfDay >= sunrise_ && timeOfDay < sunset_
                                          : timeOfDay >= sunrise_ || timeOfDay < sunset_;
    const double distance = std::min(std::abs(after(sunrise_)), std::abs(after(sunset_)));
    const double part = std::min(distance / Twilight, 1.0) / 2;
    return light ? 0.5 + part : 0.5 - part;
}

void DayBand::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintSky(painter);
    PaintWindow(painter);
    PaintHours(painter);
    PaintSun(painter);
    PaintNow(painter);
}

void DayBand::PaintSky(QPainter& painter) const {
    const QRectF band = Band();
    QLinearGradient sky(band.topLeft(), band.topRight());
    constexpr int Stops = 288;  // every five minutes
    for (int stop = 0; stop <= Stops; ++stop) {
        const double at = static_cast<double>(stop) / Stops, light = Daylight(at) * 2;
        sky.setColorAt(at, light < 1 ? Mixed(Night, Dawn, light) : Mixed(Dawn, Day, light - 1));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(sky);
    painter.drawRoundedRect(band, 3, 3);
}

/// The window is a bar in the lower half of the sky.
void DayBand::PaintWindow(QPainter& painter) const {
    const QRectF band = Band();
    const double height = band.height() * 0.4;
    QColor edge = palette().color(QPalette::HighlightedText);
    for (std::size_t from = 0; from < on_.size(); ++from) {
        if (!on_[from]) continue;
        std::size_t to = from;
        while (to < on_.size() && on_[to]) ++to;
        const double left = Column(static_cast<double>(from) / MinutesPerDay);
        const double right = Column(static_cast<double>(to) / MinutesPerDay);
        painter.setPen(QPen(edge, 1));
        painter.setBrush(palette().color(QPalette::Highlight));
        painter.drawRoundedRect(QRectF(left, band.bottom() - height - 3, std::max(right - left, 2.0), height),
                                2, 2);
        from = to;
    }
}

void DayBand::PaintHours(QPainter& painter) const {
    const QRectF band = Band();
    constexpr int Step = 3;
    for (int hour = 0; hour <= 24; ++hour) {
        const double x = Column(hour / 24.0);
        const bool named = hour % Step == 0;
        painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
        painter.drawLine(QPointF(x, band.bottom()), QPointF(x, band.bottom() + (named ? 4 : 2)));
        if (named) Text(painter, x, band.bottom() + 4, QString::number(hour));
    }
}

/// A small sun over each of the two, with its time.
void DayBand::PaintSun(QPainter& painter) const {
    const QRectF band = Band();
    const double size = fontMetrics().ascent() * 0.7;
    std::array<std::pair<double, QChar>, 2> events{
        {{sunrise_, QChar(0x2191)}, {sunset_, QChar(0x2193)}}
    };
    std::sort(events.begin(), events.end());
    double from = size * 1.5;  // so that the second does not cover the first
    for (const auto& [time, arrow] : events) {
        const double x = Column(time);
        painter.setPen(QPen(SunColour, 1.5));
        painter.drawLine(QPointF(x, band.top() - 2), QPointF(x, band.bottom()));
        painter.setPen(palette().color(QPalette::WindowText));
        const QString text = QString::fromStdString(ShortTime24(time)) + ' ' + arrow;
        const QRectF place = Text(painter, x + size * 0.7, 0, text, from);
        painter.setPen(Qt::NoPen);
        painter.setBrush(SunColour);
        painter.drawEllipse(QPointF(place.left() - size * 0.8, place.center().y()), size / 2, size / 2);
        from = place.right() + size * 2;
    }
}

void DayBand::PaintNow(QPainter& painter) const {
    if (now_ < 0) return;
    const QRectF band = Band();
    const double x = Column(now_), tip = fontMetrics().ascent() * 0.35;
    const QColor colour(0xD32F2F);
    painter.setPen(QPen(Qt::white, 3.5));
    painter.drawLine(QPointF(x, band.top()), QPointF(x, band.bottom()));
    painter.setPen(QPen(colour, 2));
    painter.drawLine(QPointF(x, band.top()), QPointF(x, band.bottom()));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(QPolygonF({
        {x - tip, band.top() - tip},
        {x + tip, band.top() - tip},
        {x,       band.top() + tip}
    }));
}

/// Centred at `column`, but within the widget and not left of `from`; where it stands.
QRectF DayBand::Text(QPainter& painter, double column, double top, const QString& text, double from) const {
    const QSizeF size(fontMetrics().horizontalAdvance(text), fontMetrics().height());
    const double left = std::max(std::min(column - size.width() / 2, width() - size.width()), from);
    const QRectF place(QPointF(left, top), size);
    painter.drawText(place, Qt::AlignCenter, text);
    return place;
}

}  // namespace tessaloom
