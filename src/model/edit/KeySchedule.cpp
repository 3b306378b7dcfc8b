#include "model/edit/KeySchedule.h"

#include <vector>

#include "model/CanvasKeys.h"

namespace tessaloom {

namespace {

using CanvasKeys::ScheduleKeys;

std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> parts{""};
    for (const char character : text) {
        if (character == ';')
            parts.emplace_back();
        else
            parts.back() += character;
    }
    return parts;
}

}  // namespace

KeyFault ScheduleText::Judge(const std::string& text) {
    const std::vector<std::string> parts = Split(text);
    if (parts.size() != ScheduleKeys.size()) return KeyFault::NotANumber;
    for (std::size_t i = 0; i < parts.size(); ++i)
        if (const KeyFault fault = ScheduleKeys[i].judge(parts[i]); fault != KeyFault::None) return fault;
    return KeyFault::None;
}

KeyFault ScheduleText::Read(Schedule& schedule, const std::string& text) {
    if (const KeyFault fault = Judge(text); fault != KeyFault::None) return fault;
    const std::vector<std::string> parts = Split(text);
    KeyFault worst = KeyFault::None;
    for (std::size_t i = 0; i < parts.size(); ++i)
        if (const KeyFault fault = ScheduleKeys[i].read(schedule, parts[i]); fault != KeyFault::None)
            worst = fault;
    return worst;
}

std::string ScheduleText::Write(const Schedule& schedule) {
    std::string text;
    for (const auto& key : ScheduleKeys) text += (text.empty() ? "" : ";") + key.write(schedule);
    return text;
}

}  // namespace tessaloom
