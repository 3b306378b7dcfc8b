#pragma once

#include <QWidget>
#include <vector>

namespace tessaloom {

/// A day from midnight to midnight: night, twilight and day, sunrise and sunset, the hours of a daily window
/// and the present time.
class DayBand : public QWidget {
public:
    static constexpr int MinutesPerDay = 1440;

    explicit DayBand(QWidget* parent = nullptr);

    /// Times of day, fractions of a day. on: for each minute of the day, whether the window is open.
    void ShowDay(double sunrise, double sunset, std::vector<bool> on);
    void ShowNow(double timeOfDay);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF Band() const;
    double Column(double timeOfDay) const;
    double Daylight(double timeOfDay) const;
    void PaintSky(QPainter& painter) const;
    void PaintWindow(QPainter& painter) const;
    void PaintHours(QPainter& painter) const;
    void PaintSun(QPainter& painter) const;
    void PaintNow(QPainter& painter) const;
    QRectF Text(QPainter& painter, double column, double top, const QString& text, double from = 0) const;

    double sunrise_ = 0.25, sunset_ = 0.75, now_ = -1;
    std::vector<bool> on_;
};

}  // namespace tessaloom
