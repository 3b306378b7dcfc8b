#pragma once

#include "vbscript/Holder.h"
#include "vbscript/Host.h"
#include "vbscript/Random.h"
#include "vbscript/TimeLimit.h"

namespace tessaloom::vbscript {

/// What operators, conversions, built-in functions and objects need of the running engine. One per engine.
struct Context {
    explicit Context(Host& theHost)
        : host(theHost), limit(theHost), locale(theHost.Locale()), localeId(theHost.LocaleId()) {}

    Host& host;
    TimeLimit limit;
    UserLocale locale;  ///< The host's, or what SetLocale chose.
    int localeId;
    Random random;
    Holders holders;  ///< Among the objects that scripts have created.
};

}  // namespace tessaloom::vbscript
