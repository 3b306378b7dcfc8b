#pragma once

#include <QString>
#include <optional>
#include <string>

#include "model/edit/Property.h"

namespace tessaloom {

struct UserLocale;

/// Numbers as people read and type them.
namespace NumberText {

/// A number of a document file with the user's decimal separator.
QString Shown(const std::string& fileText, const UserLocale& locale);

/// The same of a number, without needless digits.
QString Shown(double value, const UserLocale& locale);

/// What was typed, with a point, a comma or the user's decimal separator, and with or without the unit.
/// Nothing for what is no number.
std::optional<double> Read(const QString& typed, std::string_view unit, const UserLocale& locale);

/// Why `value` is outside the property's range, "Is at most 3000 px."; "" when it lies within.
QString OutsideRange(const Property& property, double value, const UserLocale& locale);

}  // namespace NumberText
}  // namespace tessaloom
