#pragma once

#include "platform/UserLocale.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// English (United States): the initial values of `UserLocale`.
inline UserLocale EnglishLocale() { return {}; }

/// German (Germany): decimal comma, day before month, 24 hours.
inline UserLocale GermanLocale() {
    UserLocale german;
    german.decimal = ",";
    german.grouping = ".";
    german.currency = "\u20ac";
    german.positiveCurrency = "n $";
    german.negativeCurrency = "-n $";
    german.dateOrder = DateOrder::DayMonthYear;
    german.dateSeparator = ".";
    german.shortDate = "dd.MM.yyyy";
    german.longDate = "dddd, d. MMMM yyyy";
    german.time = "HH:mm:ss";
    german.firstWeekday = 2;
    german.weekdays = {"Sonntag", "Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag"};
    german.shortWeekdays = {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"};
    german.months = {"Januar", "Februar", "M\u00e4rz", "April",   "Mai",      "Juni",
                     "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
    german.shortMonths = {"Jan", "Feb", "Mrz", "Apr", "Mai", "Jun", "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
    return german;
}

}  // namespace tessaloom::testing
