#include "vbscript/Locales.h"

#include <algorithm>
#include <array>

#include "vbscript/String.h"

namespace tessaloom::vbscript {

namespace {

constexpr int EnglishUnitedStates = 1033, EnglishUnitedKingdom = 2057, German = 1031, French = 1036;

constexpr auto Known = std::to_array<KnownLocale>({
    {EnglishUnitedStates,  "en-us"},
    {EnglishUnitedKingdom, "en-gb"},
    {German,               "de-de"},
    {French,               "fr-fr"},
    {EnglishUnitedStates,  "en"   },
    {German,               "de"   },
    {French,               "fr"   },
});

void MakeBritish(UserLocale& locale) {
    locale.currency = "£";
    locale.negativeCurrency = "-$n";
    locale.dateOrder = DateOrder::DayMonthYear;
    locale.shortDate = "dd/MM/yyyy";
    locale.longDate = "dd MMMM yyyy";
    locale.time = "HH:mm:ss";
    locale.firstWeekday = 2;
}

void MakeGerman(UserLocale& locale) {
    locale.decimal = ",";
    locale.grouping = ".";
    locale.currency = "€";
    locale.positiveCurrency = "n $";
    locale.negativeCurrency = "-n $";
    locale.dateOrder = DateOrder::DayMonthYear;
    locale.dateSeparator = ".";
    locale.shortDate = "dd.MM.yyyy";
    locale.longDate = "dddd, d. MMMM yyyy";
    locale.time = "HH:mm:ss";
    locale.amMark = locale.pmMark = "";
    locale.firstWeekday = 2;
    locale.weekdays = {"Sonntag", "Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag"};
    locale.shortWeekdays = {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"};
    locale.months = {"Januar", "Februar", "März",      "April",   "Mai",      "Juni",
                     "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
    locale.shortMonths = {"Jan", "Feb", "Mrz", "Apr", "Mai", "Jun", "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
}

void MakeFrench(UserLocale& locale) {
    locale.decimal = ",";
    locale.grouping = "\u00a0";
    locale.currency = "€";
    locale.positiveCurrency = "n $";
    locale.negativeCurrency = "-n $";
    locale.dateOrder = DateOrder::DayMonthYear;
    locale.shortDate = "dd/MM/yyyy";
    locale.longDate = "dddd d MMMM yyyy";
    locale.time = "HH:mm:ss";
    locale.amMark = locale.pmMark = "";
    locale.firstWeekday = 2;
    locale.weekdays = {"dimanche", "lundi", "mardi", "mercredi", "jeudi", "vendredi", "samedi"};
    locale.shortWeekdays = {"dim.", "lun.", "mar.", "mer.", "jeu.", "ven.", "sam."};
    locale.months = {"janvier", "février", "mars",      "avril",   "mai",      "juin",
                     "juillet", "août",    "septembre", "octobre", "novembre", "décembre"};
    locale.shortMonths = {"janv.", "févr.", "mars",  "avr.", "mai",  "juin",
                          "juil.", "août",  "sept.", "oct.", "nov.", "déc."};
}

template <typename Matches>
std::optional<KnownLocale> FindWhere(Matches matches) {
    const auto found = std::ranges::find_if(Known, matches);
    if (found == Known.end()) return std::nullopt;
    return *found;
}

}  // namespace

std::optional<KnownLocale> FindLocale(int id) {
    return FindWhere([&](const KnownLocale& row) { return row.id == id; });
}

std::optional<KnownLocale> FindLocale(std::u16string_view name) {
    return FindWhere([&](const KnownLocale& row) { return SameName(Utf16Of(row.name), name); });
}

UserLocale SettingsOf(const KnownLocale& locale) {
    UserLocale settings;
    if (locale.id == EnglishUnitedKingdom) MakeBritish(settings);
    if (locale.id == German) MakeGerman(settings);
    if (locale.id == French) MakeFrench(settings);
    return settings;
}

}  // namespace tessaloom::vbscript
