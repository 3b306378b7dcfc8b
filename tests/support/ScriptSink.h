#pragma once

#include "support/Testing.h"
#include "vbscript/MemberTable.h"

namespace tessaloom::testing {

/// An object WScript whose Echo collects lines.
class ScriptSink final : public vbscript::TableObject<ScriptSink> {
public:
    static constexpr std::u16string_view Name = u"Object";
    static std::span<const vbscript::Member<ScriptSink>> Members() {
        static constexpr auto All = std::to_array<vbscript::Member<ScriptSink>>({
            {u"Echo", 0, 100, [](ScriptSink& self, const vbscript::Arguments& arguments) {
                 for (std::size_t i = 0; i < arguments.Count(); ++i)
                     self.text += (i > 0 ? " " : "") + arguments.Text(i).ToUtf8();
                 self.text += '\n';
                 return vbscript::Value();
             }}
        });
        return All;
    }

    std::string text;
};

}  // namespace tessaloom::testing
