#include <algorithm>

#include "vbscript/Arguments.h"
#include "vbscript/BuiltinTables.h"
#include "vbscript/Locales.h"

/// What the host answers, and what the engine says of itself.
namespace tessaloom::vbscript {

namespace {

Value MsgBox(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const std::string prompt = of.Text(0).ToUtf8(), title = of.TextOr(2, u"").ToUtf8();
    const int buttons = of.LongOr(1, 0);
    const TimeLimit::Pause pause(context.limit);
    return Value::OfInteger(context.host.MsgBox(prompt, buttons, title));
}

Value InputBox(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const std::string prompt = of.Text(0).ToUtf8(), title = of.TextOr(1, u"").ToUtf8();
    const std::string initial = of.TextOr(2, u"").ToUtf8();
    const TimeLimit::Pause pause(context.limit);
    return Value::OfUtf8(context.host.InputBox(prompt, title, initial));
}

Value CreateObject(Context& context, std::span<Value> values) {
    const String name = Arguments(context, values).Text(0);
    const Ref<Object> object = context.host.CreateObject(name.ToUtf8());
    if (!object) FailNaming(ErrorCode::CannotCreateObject, name.View());
    if (auto* const holder = dynamic_cast<Holder*>(object.Get())) context.holders.Add(*holder);
    return Value::OfObject(object);
}

Value GetObject(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const String path = of.TextOr(0, u""), name = of.TextOr(1, u"");
    const Ref<Object> object = context.host.GetObject(path.ToUtf8(), name.ToUtf8());
    if (!object) FailNaming(ErrorCode::CannotCreateObject, (path.IsEmpty() ? name : path).View());
    return Value::OfObject(object);
}

Value LoadPicture(Context&, std::span<Value>) { Fail(ErrorCode::InvalidPicture); }

Value GetLocale(Context& context, std::span<Value>) { return Value::OfLong(context.localeId); }

/// Without an argument, and for 0: back to the user's own.
Value SetLocale(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const int before = context.localeId;
    const bool isName = of.Has(0) && values[0].Is(VarType::String) && !IsNumeric(context, values[0]);
    const int id = isName ? 0 : of.LongOr(0, 0);
    const auto known = isName ? FindLocale(values[0].Text()) : FindLocale(id);
    if (!isName && (id == 0 || id == context.host.LocaleId())) {
        context.locale = context.host.Locale();
        context.localeId = context.host.LocaleId();
    } else if (known) {
        context.locale = SettingsOf(*known);
        context.localeId = known->id;
    } else {
        Fail(ErrorCode::LocaleNotSupported);
    }
    return Value::OfLong(before);
}

/// Each part at most 255.
Value Rgb(Context& context, std::span<Value> values) {
    int colour = 0;
    for (std::size_t i = 3; i-- > 0;) {
        const int part = ToLong(context, values[i]);
        if (part < 0) Fail(ErrorCode::InvalidCall);
        colour = colour << 8 | std::min(part, 255);
    }
    return Value::OfLong(colour);
}

Value ScriptEngine(Context&, std::span<Value>) { return Value::OfText(u"VBScript"); }

template <int Whole>
Value WholeNumber(Context&, std::span<Value>) {
    return Value::OfLong(Whole);
}

constexpr Builtin Functions[] = {
    {u"CreateObject",             1, 2, CreateObject      },
    {u"GetLocale",                0, 0, GetLocale         },
    {u"GetObject",                0, 2, GetObject         },
    {u"GetUILanguage",            0, 0, WholeNumber<1033> },
    {u"InputBox",                 1, 7, InputBox          },
    {u"LoadPicture",              1, 1, LoadPicture       },
    {u"MsgBox",                   1, 5, MsgBox            },
    {u"RGB",                      3, 3, Rgb               },
    {u"ScriptEngine",             0, 0, ScriptEngine      },
    {u"ScriptEngineBuildVersion", 0, 0, WholeNumber<16384>},
    {u"ScriptEngineMajorVersion", 0, 0, WholeNumber<5>    },
    {u"ScriptEngineMinorVersion", 0, 0, WholeNumber<8>    },
    {u"SetLocale",                0, 1, SetLocale         },
};

}  // namespace

std::span<const Builtin> HostFunctions() { return Functions; }

}  // namespace tessaloom::vbscript
