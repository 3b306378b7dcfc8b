#include "ui/property/editors/NumberText.h"

#include <QLocale>
#include <QtNumeric>

#include "core/modNumbers.h"
#include "platform/UserLocale.h"

namespace tessaloom::NumberText {

namespace {

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString WithUnit(double value, const Property& property, const UserLocale& locale) {
    const QString number = Shown(value, locale);
    return property.unit.empty() ? number : number + QChar(QChar::Nbsp) + Text(property.unit);
}

}  // namespace

QString Shown(const std::string& fileText, const UserLocale& locale) {
    QString shown = QString::fromStdString(fileText);
    return shown.replace('.', QString::fromStdString(locale.decimal));
}

QString Shown(double value, const UserLocale& locale) { return Shown(modNumbers::CStrNI(value), locale); }

std::optional<double> Read(const QString& typed, std::string_view unit, const UserLocale& locale) {
    QString text = typed.simplified();
    if (!unit.empty() && text.endsWith(Text(unit), Qt::CaseInsensitive)) text.chop(Text(unit).size());
    text = text.trimmed();
    text.replace(QString::fromStdString(locale.decimal), ".").replace(',', '.');
    text.replace(QChar(0x2212), '-');  // the typographic minus
    bool isNumber = false;
    const double value = QLocale::c().toDouble(text, &isNumber);
    if (!isNumber || !qIsFinite(value)) return std::nullopt;
    return value;
}

QString OutsideRange(const Property& property, double value, const UserLocale& locale) {
    if (value > property.high) return "Is at most " + WithUnit(property.high, property, locale) + ".";
    if (value < property.low) return "Is at least " + WithUnit(property.low, property, locale) + ".";
    return {};
}

}  // namespace tessaloom::NumberText
