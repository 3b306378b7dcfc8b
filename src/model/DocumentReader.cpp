#include "model/DocumentReader.h"

#include "platform/Ascii.h"

namespace tessaloom {

std::string_view ReasonOf(ProfileState state) {
    switch (state) {
        case ProfileState::Missing:
            return "missing file";
        case ProfileState::Unreadable:
            return "unreadable file";
        case ProfileState::NotText:
            return "not a text file";
        case ProfileState::Readable:
            break;
    }
    return "";
}

std::string DocumentReader::Get(std::string_view section, std::string_view key, std::string_view fallback) {
    Note(section, key);
    if (mode_ == Mode::Completing) return ini_.GetKey(section, key, WriteDefault::Yes, fallback);
    std::string value = ini_.GetKey(section, key, WriteDefault::No, {});
    return value.empty() ? std::string(fallback) : value;
}

std::string DocumentReader::Peek(std::string_view section, std::string_view key) {
    Note(section, key);
    return ini_.GetKey(section, key, WriteDefault::No, {});
}

void DocumentReader::Fault(std::string_view section, std::string_view key, std::string_view value,
                           std::string_view reason) const {
    if (!faults_) return;
    faults_({.file = ini_.File(),
             .section = std::string(section),
             .key = std::string(key),
             .value = std::string(value),
             .reason = std::string(reason)});
}

bool DocumentReader::Asked(std::string_view section, std::string_view key) const {
    return asked_.contains({ascii::LowerText(section), ascii::LowerText(key)});
}

bool DocumentReader::AskedSection(std::string_view section) const {
    const std::string lower = ascii::LowerText(section);
    const auto at = asked_.lower_bound({lower, ""});
    return at != asked_.end() && at->first == lower;
}

void DocumentReader::Note(std::string_view section, std::string_view key) {
    if (noting_) asked_.emplace(ascii::LowerText(section), ascii::LowerText(key));
}

}  // namespace tessaloom
