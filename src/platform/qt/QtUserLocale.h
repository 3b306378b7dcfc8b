#pragma once

#include <string_view>

#include "platform/UserLocale.h"

namespace tessaloom {

/// The regional settings of this session, or of the locale called `name` (such as "de_DE").
///
/// "C" and unknown names give the initial values of `UserLocale`.
UserLocale QtUserLocale(std::string_view name = {});

}  // namespace tessaloom
