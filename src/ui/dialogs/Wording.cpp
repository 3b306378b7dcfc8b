#include "ui/dialogs/Wording.h"

#include <QDate>
#include <QDir>
#include <QLocale>
#include <QTime>
#include <cmath>

#include "platform/FileSystem.h"
#include "time/Schedule.h"
#include "time/modTime.h"

namespace tessaloom::Wording {

namespace {

constexpr int Minute = 60, Hour = 60 * Minute;  // seconds

QString Span(double seconds) {
    constexpr double Rounding = 0.01;  // of moments, far less than a tick shows
    const auto whole = static_cast<long long>(std::ceil(seconds - Rounding));
    if (whole < 2 * Minute) return QString("%1 s").arg(whole);
    if (whole < 2 * Hour) return QString("%1 min").arg((whole + Minute / 2) / Minute);
    return QString("%1 h").arg((whole + Hour / 2) / Hour);
}

/// The schedule is copied: asking it would count as a run.
bool Allows(Schedule schedule, double now) {
    schedule.SetCanvasIndex(0);
    return schedule.EnableNow(now);
}

}  // namespace

QString Words(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString Moment(double moment, double now) {
    const double rounded = std::round(moment * modTime::SecondsPerDay);
    const double day = std::floor(rounded / modTime::SecondsPerDay);
    const int seconds = static_cast<int>(rounded - day * modTime::SecondsPerDay);
    const QString time = QTime(0, 0).addSecs(seconds).toString("HH:mm:ss");
    if (day == std::floor(now)) return time;
    const QDate date = QDate(1899, 12, 30).addDays(static_cast<qint64>(day));
    return QLocale().toString(date, QLocale::ShortFormat) + " " + time;
}

QString Due(double next, double now) {
    const double seconds = (next - now) * modTime::SecondsPerDay;
    if (seconds <= 0) return "Now";
    return QString("%1 (in %2)").arg(Moment(next, now), Span(seconds));
}

QString Next(bool enabled, double rate, double next, const Schedule& schedule, double now) {
    if (!enabled) return "Switched off";
    if (rate == 0) return "Only when forced";
    if (!Allows(schedule, now)) return "Off by its schedule: " + Words(schedule.Description());
    return Due(next, now);
}

QString FullPath(const FileSystem& files, std::string_view path) {
    QString native = Words(path).replace('\\', '/');
    if (native.isEmpty()) return {};
    if (!native.startsWith('/')) native = Words(files.CurrentFolder()) + '/' + native;
    return QDir::cleanPath(native);
}

QString Breakable(QString path) { return path.replace('/', QString("/") + QChar(0x200B)); }

QString Size(std::uint64_t bytes) {
    return QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
}

QString CanvasTitle(int slot, std::string_view name) {
    return QString("canvas %1 (%2)").arg(QString::number(slot), Words(name));
}

}  // namespace tessaloom::Wording
