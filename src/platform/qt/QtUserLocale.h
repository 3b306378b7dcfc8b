#pragma once

#include <string_view>

#include "platform/UserLocale.h"

namespace tessaloom {

/// The regional settings of this session, or of the locale called `name` (such as "de_DE").
///
/// An unknown name gives the toolkit's neutral settings, which are English.
UserLocale QtUserLocale(std::string_view name = {});

}  // namespace tessaloom
