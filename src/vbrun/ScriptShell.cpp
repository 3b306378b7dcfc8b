#include "vbrun/ScriptShell.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

#include "platform/Paths.h"
#include "vbscript/Array.h"

namespace tessaloom::vbrun {

using vbscript::Arguments;
using vbscript::IsDefault;
using vbscript::Member;
using vbscript::Value;

namespace {

/// The words of the command line behind the script's name.
class CommandArguments final : public vbscript::TableObject<CommandArguments> {
public:
    static constexpr std::u16string_view Name = u"Object";

    explicit CommandArguments(std::vector<std::string> words) : words_(std::move(words)) {}

    static std::span<const Member<CommandArguments>> Members() {
        static constexpr auto Table = std::to_array<Member<CommandArguments>>({
            {u"Item", 1, 1, &CommandArguments::Item, nullptr, nullptr, IsDefault::Yes},
            {u"Count", 0, 0, &CommandArguments::Count},
            {u"Length", 0, 0, &CommandArguments::Count},
        });
        return Table;
    }

    std::unique_ptr<vbscript::Enumerator> Enumerate(vbscript::Context&) override {
        class Words final : public vbscript::Enumerator {
        public:
            explicit Words(const std::vector<std::string>& words) : words_(words) {}
            bool Next(Value& item) override {
                if (next_ == words_.size()) return false;
                item = Value::OfUtf8(words_[next_++]);
                return true;
            }

        private:
            std::vector<std::string> words_;
            std::size_t next_ = 0;
        };
        return std::make_unique<Words>(words_);
    }

private:
    static Value Item(CommandArguments& self, const Arguments& arguments) {
        const int index = arguments.Long(0);
        if (index < 0 || static_cast<std::size_t>(index) >= self.words_.size())
            vbscript::Fail(vbscript::ErrorCode::SubscriptOutOfRange);
        return Value::OfUtf8(self.words_[static_cast<std::size_t>(index)]);
    }
    static Value Count(CommandArguments& self, const Arguments&) {
        return Value::OfLong(static_cast<int>(self.words_.size()));
    }

    std::vector<std::string> words_;
};

}  // namespace

ScriptShell::ScriptShell(vbscript::Engine& engine, vbscript::Host& host, std::string fullName,
                         std::vector<std::string> arguments)
    : engine_(engine), host_(host), fullName_(std::move(fullName)),
      arguments_(vbscript::Make<CommandArguments>(std::move(arguments))) {}

std::span<const Member<ScriptShell>> ScriptShell::Members() {
    constexpr int AnyCount = 1000;
    static constexpr auto Table = std::to_array<Member<ScriptShell>>({
        {u"Echo", 0, AnyCount, &ScriptShell::Echo},
        {u"Quit", 0, 1, &ScriptShell::Quit},
        {u"Sleep", 1, 1, &ScriptShell::Sleep},
        {u"Arguments", 0, 1,
         [](ScriptShell& self, const Arguments& arguments) {
             if (arguments.Count() == 0) return Value::OfObject(self.arguments_);
             return self.arguments_->Invoke(arguments.GetContext(), vbscript::Object::DefaultMember,
                                            vbscript::CallKind::Get, {&arguments[0], 1});
         }},
        {u"ScriptFullName", 0, 0,
         [](ScriptShell& self, const Arguments&) { return Value::OfUtf8(self.fullName_); }},
        {u"ScriptName", 0, 0,
         [](ScriptShell& self, const Arguments&) { return Value::OfUtf8(FileName(self.fullName_)); }},
        {u"Name", 0, 0, [](ScriptShell&, const Arguments&) { return Value::OfText(u"vbrun"); }},
        {u"Version", 0, 0, [](ScriptShell&, const Arguments&) { return Value::OfText(u"5.8"); }},
        {u"CreateObject", 1, 2,
         [](ScriptShell& self, const Arguments& arguments) {
             const auto object = self.host_.CreateObject(arguments.Text(0).ToUtf8());
             if (!object) vbscript::Fail(vbscript::ErrorCode::CannotCreateObject);
             return Value::OfObject(object);
         }},
    });
    return Table;
}

Value ScriptShell::Echo(ScriptShell&, const Arguments& arguments) {
    const auto print = [](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); };
    for (std::size_t i = 0; i < arguments.Count(); ++i) {
        if (i > 0) print(" ");
        if (arguments[i].IsMissing()) continue;
        const vbscript::String text = arguments.Text(i);
        for (std::u16string_view rest = text.View(); !rest.empty();)
            print(vbscript::Utf8Of(vbscript::TakePiece(rest)));
    }
    print("\n");
    return {};
}

Value ScriptShell::Quit(ScriptShell& self, const Arguments& arguments) {
    self.hasQuit_ = true;
    self.exitCode_ = arguments.LongOr(0, 0);
    self.engine_.Interrupt();
    return {};
}

Value ScriptShell::Sleep(ScriptShell&, const Arguments& arguments) {
    std::fflush(stdout);
    std::this_thread::sleep_for(std::chrono::milliseconds(std::max(0, arguments.Long(0))));
    return {};
}

}  // namespace tessaloom::vbrun
