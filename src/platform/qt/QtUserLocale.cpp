#include "platform/qt/QtUserLocale.h"

#include <QLocale>
#include <QString>
#include <algorithm>
#include <utility>

namespace tessaloom {

namespace {

std::string Utf8(const QString& text) { return text.toStdString(); }

/// Blanks that do not break a line become plain ones and invisible marks of direction go, as in what users
/// type.
QString Plain(QString text) {
    text.replace(QChar(0x00A0), QLatin1Char(' '));
    text.replace(QChar(0x202F), QLatin1Char(' '));
    return text.removeIf([](QChar c) { return c.category() == QChar::Other_Format; });
}

/// Calls `visit` with each run of one letter outside apostrophes, and with every other character alone.
template <typename Visit>
void ForEachField(const QString& pattern, Visit&& visit) {
    bool quoted = false;
    for (qsizetype at = 0; at < pattern.size();) {
        const QChar c = pattern[at];
        if (c == u'\'') quoted = !quoted;
        qsizetype end = at + 1;
        while (!quoted && c.isLetter() && end < pattern.size() && pattern[end] == c) ++end;
        visit(pattern.mid(at, end - at), !quoted && c.isLetter());
        at = end;
    }
}

/// The year always in four digits, as files and logs of this program show it.
QString DatePattern(const QLocale& locale, QLocale::FormatType type) {
    QString out;
    ForEachField(Plain(locale.dateFormat(type)), [&](const QString& field, bool isField) {
        out += isField && field.startsWith(u'y') ? QStringLiteral("yyyy") : field;
    });
    return out;
}

/// What stands right between hours and minutes, if times of the files can be read back with it; else a colon.
QChar TimeSeparatorOf(const QString& pattern) {
    QChar separator = u':';
    bool afterHours = false;
    ForEachField(pattern, [&](const QString& field, bool) {
        if (afterHours && field == u'.') separator = u'.';
        afterHours = field.front().toLower() == u'h';
    });
    return separator;
}

/// The short time with seconds, in the notation of `UserLocale`: the toolkit's own has "h" for 24 hours, too,
/// where no "AP" follows. Whatever stands between hours, minutes and seconds gives way to the separator, so
/// that every time that is shown can be read.
QString TimePattern(const QLocale& locale, QChar separator) {
    const QString pattern = Plain(locale.timeFormat(QLocale::ShortFormat));
    const bool twelveHours = pattern.contains(QLatin1String("ap"), Qt::CaseInsensitive);
    QString out, between;  // since the last field
    ForEachField(pattern, [&](const QString& field, bool isField) {
        if (!isField) {
            between += field;
            return;
        }
        const QChar letter = field.front().toLower();
        if (letter == u'a')
            out += between + QLatin1String("tt");
        else if (letter == u'h')
            out += between + QString(field.size(), twelveHours ? u'h' : u'H');
        else if (letter == u'm')
            out += separator + field + separator + QLatin1String("ss");
        if (letter != u'p') between.clear();
    });
    return out + between;
}

DateOrder OrderOf(const QString& pattern) {
    const auto day = pattern.indexOf(u'd'), month = pattern.indexOf(u'M'), year = pattern.indexOf(u'y');
    if (year < month && year < day) return DateOrder::YearMonthDay;
    return day < month ? DateOrder::DayMonthYear : DateOrder::MonthDayYear;
}

/// The first character between two fields.
QChar SeparatorOf(const QString& pattern, QChar fallback) {
    for (qsizetype at = 1; at < pattern.size(); ++at)
        if (!pattern[at].isLetter() && pattern[at] != u'\'') return pattern[at];
    return fallback;
}

/// Where the sign and the minus stand, seen from the way the toolkit writes an amount of `number`.
std::string CurrencyPattern(const QLocale& locale, int number) {
    QString text = Plain(locale.toCurrencyString(double(number), QStringLiteral("$"), 0));
    text.replace(locale.negativeSign(), QLatin1String("-"));
    text.replace(locale.toString(std::abs(number)), QLatin1String("n"));
    return Utf8(text);
}

/// Files can be read back only with a point or a comma, so another sign gives way to the point (and its
/// comma).
void SetSeparators(UserLocale& user, const QLocale& locale) {
    const QString decimal = locale.decimalPoint();
    if (decimal != u'.' && decimal != u',') return;
    user.decimal = Utf8(decimal);
    user.grouping = Utf8(locale.groupSeparator());
}

void SetAmounts(UserLocale& user, const QLocale& locale) {
    if (const auto sign = locale.currencySymbol(); !sign.isEmpty()) user.currency = Utf8(sign);
    user.positiveCurrency = CurrencyPattern(locale, 1);
    user.negativeCurrency = CurrencyPattern(locale, -1);
}

void SetDatesAndTimes(UserLocale& user, const QLocale& locale) {
    const QString shortDate = DatePattern(locale, QLocale::ShortFormat);
    const QChar timeSeparator = TimeSeparatorOf(Plain(locale.timeFormat(QLocale::ShortFormat)));
    user.shortDate = Utf8(shortDate);
    user.longDate = Utf8(DatePattern(locale, QLocale::LongFormat));
    user.time = Utf8(TimePattern(locale, timeSeparator));
    user.dateOrder = OrderOf(shortDate);
    user.dateSeparator = Utf8(SeparatorOf(shortDate, u'/'));
    user.timeSeparator = Utf8(timeSeparator);
    user.amMark = Utf8(Plain(locale.amText()));
    user.pmMark = Utf8(Plain(locale.pmText()));

    user.firstWeekday = locale.firstDayOfWeek() % 7 + 1;  // the toolkit counts from Monday
    for (int i = 0; i < 7; ++i) {
        const int day = i == 0 ? 7 : i;
        const auto at = static_cast<std::size_t>(i);
        user.weekdays[at] = Utf8(locale.standaloneDayName(day, QLocale::LongFormat));
        user.shortWeekdays[at] = Utf8(locale.standaloneDayName(day, QLocale::ShortFormat));
    }
    for (int i = 0; i < 12; ++i) {
        const auto at = static_cast<std::size_t>(i);
        user.months[at] = Utf8(locale.standaloneMonthName(i + 1, QLocale::LongFormat));
        user.shortMonths[at] = Utf8(locale.standaloneMonthName(i + 1, QLocale::ShortFormat));
    }
}

UserLocale Combined(const QLocale& numbers, const QLocale& amounts, const QLocale& times) {
    UserLocale user;
    if (numbers.language() != QLocale::C) SetSeparators(user, numbers);
    if (amounts.language() != QLocale::C) SetAmounts(user, amounts);
    if (times.language() != QLocale::C) SetDatesAndTimes(user, times);
    return user;
}

/// What the environment says of one category. The toolkit's own locale of the system is not asked: it knows
/// no categories where the main language is "C", as on many servers.
QLocale SessionLocale(const char* category) {
    for (const char* variable : {"LC_ALL", category, "LANG"})
        if (!qEnvironmentVariableIsEmpty(variable)) return QLocale(qEnvironmentVariable(variable));
    return QLocale::c();
}

}  // namespace

UserLocale QtUserLocale(std::string_view name) {
    if (name.empty())
        return Combined(SessionLocale("LC_NUMERIC"), SessionLocale("LC_MONETARY"), SessionLocale("LC_TIME"));
    const QLocale locale(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    return Combined(locale, locale, locale);
}

}  // namespace tessaloom
