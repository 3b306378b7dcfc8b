#pragma once

#include <optional>
#include <string_view>

#include "platform/UserLocale.h"

namespace tessaloom::vbscript {

/// A locale that SetLocale can choose, by its Windows number or its name.
struct KnownLocale {
    int id;                 ///< 1033
    std::string_view name;  ///< "en-us", in lower case
};

std::optional<KnownLocale> FindLocale(int id);
std::optional<KnownLocale> FindLocale(std::u16string_view name);

/// The settings of a known locale.
UserLocale SettingsOf(const KnownLocale& locale);

}  // namespace tessaloom::vbscript
