#pragma once

#include "support/EagerAlarm.h"
#include "support/Testing.h"
#include "vbscript/Host.h"

namespace tessaloom::testing {

/// A script host whose clocks stand still and whose boxes answer at once.
class FakeScriptHost : public vbscript::Host {
public:
    double now = 38731.645891203705;  ///< 14 January 2006, 15:30:05
    double timer = 55805;
    double steady = 0;
    EagerAlarm alarm;
    UserLocale locale;
    int boxAnswer = 1;
    std::vector<std::string> boxes;  ///< Prompts in the order they were shown.
    std::function<vbscript::Ref<vbscript::Object>(std::string_view)> create;

    double Now() override { return now; }
    double Timer() override { return timer; }
    double SteadySeconds() override { return steady; }
    Alarm& TimeAlarm() override { return alarm; }
    const UserLocale& Locale() override { return locale; }
    int MsgBox(const std::string& prompt, int, const std::string&) override {
        boxes.push_back(prompt);
        return boxAnswer;
    }
    std::string InputBox(const std::string& prompt, const std::string&, const std::string& initial) override {
        boxes.push_back(prompt);
        return initial;
    }
    vbscript::Ref<vbscript::Object> CreateObject(std::string_view programId) override {
        return create ? create(programId) : vbscript::Ref<vbscript::Object>();
    }
};

}  // namespace tessaloom::testing
