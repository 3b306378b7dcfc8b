#include "platform/profile/ProfileDocument.h"

#include <algorithm>
#include <utility>

#include "platform/Ascii.h"
#include "platform/TextEncoding.h"

namespace tessaloom {

namespace {

std::string_view Trimmed(std::string_view text) { return ascii::Trimmed(text, ascii::Blanks); }

bool EndsLine(char c) { return c == '\r' || c == '\n'; }

/// The length of the first line of `text`, its end included.
std::size_t LineLength(std::string_view text) {
    const auto end =
        static_cast<std::size_t>(std::find_if(text.begin(), text.end(), EndsLine) - text.begin());
    if (end == text.size()) return end;
    return text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n' ? end + 2 : end + 1;
}

/// line: a single one. Only its end is looked at: this is called for every line several times.
std::string_view WithoutEnd(std::string_view line) {
    while (!line.empty() && EndsLine(line.back())) line.remove_suffix(1);
    return line;
}

std::string_view EndOf(std::string_view line) { return line.substr(WithoutEnd(line).size()); }

bool IsBlank(std::string_view line) { return Trimmed(WithoutEnd(line)).empty(); }

/// The section that a line names. A line without the closing bracket names none.
std::optional<std::string_view> SectionName(std::string_view line) {
    line = Trimmed(WithoutEnd(line));
    if (!line.starts_with('[')) return std::nullopt;
    const std::size_t close = line.find(']');
    if (close == line.npos) return std::nullopt;
    return Trimmed(line.substr(1, close - 1));
}

struct KeyLine {
    std::string_view name, value;
};

std::string_view Unquoted(std::string_view value) {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

/// The key that a line holds. Comments start with ";"; whatever else has no "=" is kept and means nothing.
std::optional<KeyLine> ParseKey(std::string_view line) {
    line = Trimmed(WithoutEnd(line));
    const std::size_t equals = line.find('=');
    if (equals == line.npos || line.front() == ';') return std::nullopt;
    return KeyLine{Trimmed(line.substr(0, equals)), Unquoted(Trimmed(line.substr(equals + 1)))};
}

std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t length = LineLength(text);
        lines.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

/// Whether `text` is one line that will be read back as `key`.
bool IsPlainKeyLine(std::string_view text, std::string_view key) {
    if (LineLength(text) != text.size() || SectionName(text)) return false;
    const std::optional<KeyLine> parsed = ParseKey(text);
    return parsed && parsed->name == Trimmed(key);
}

}  // namespace

ProfileDocument::ProfileDocument(std::string_view bytes) {
    if (bytes.starts_with(Utf8Mark)) {
        mark_ = Utf8Mark;
        bytes.remove_prefix(Utf8Mark.size());
    }
    if (IsUtf8(bytes)) {
        Parse(bytes);
    } else {
        Parse(FromWindows1252(bytes));
    }
}

std::string ProfileDocument::Text() const {
    std::size_t size = mark_.size();
    for (const Section& section : sections_)
        for (const std::string& line : section.lines) size += line.size();
    std::string text;
    text.reserve(size);
    text += mark_;
    for (const Section& section : sections_)
        for (const std::string& line : section.lines) text += line;
    return text;
}

std::optional<std::string_view> ProfileDocument::Find(std::string_view section, std::string_view key) const {
    const Section* found = FindSection(section);
    if (!found) return std::nullopt;
    const auto entry = found->keys.find(Folded(key));
    if (entry == found->keys.end()) return std::nullopt;
    return ParseKey(found->lines[entry->second])->value;
}

bool ProfileDocument::Set(std::string_view section, std::string_view key, std::string_view value) {
    auto line = [value](std::string_view name) { return std::string(name).append("=").append(value); };
    const auto found = index_.find(Folded(section));
    if (found == index_.end()) {
        AddSection(Trimmed(section), line(Trimmed(key)));
        return true;
    }
    Section& owner = sections_[found->second];
    const auto entry = owner.keys.find(Folded(key));
    if (entry != owner.keys.end())
        return ReplaceLine(owner, entry->second, line(ParseKey(owner.lines[entry->second])->name));

    const std::string text = line(Trimmed(key)) + "\r\n";
    std::size_t at = owner.lines.size();
    while (at > 1 && IsBlank(owner.lines[at - 1])) --at;
    if (EndOf(owner.lines[at - 1]).empty()) owner.lines[at - 1] += "\r\n";
    if (IsPlainKeyLine(text, key)) {
        owner.lines.insert(owner.lines.begin() + static_cast<std::ptrdiff_t>(at), text);
        owner.keys.emplace(Folded(key), at);
    } else {
        InsertLines(owner, at, text);
    }
    return true;
}

bool ProfileDocument::RemoveSection(std::string_view section) {
    const auto found = index_.find(Folded(section));
    if (found == index_.end()) return false;
    for (std::size_t at = found->second; at != 0;) at = std::exchange(sections_[at], Section()).sameName;
    index_.erase(found);
    while (sections_.size() > 1 && sections_.back().lines.empty()) sections_.pop_back();
    return true;
}

std::vector<ProfileSection> ProfileDocument::Sections() const {
    std::vector<ProfileSection> found;
    std::size_t line = sections_[0].lines.size();
    for (std::size_t i = 1; i < sections_.size(); ++i) {
        if (!sections_[i].lines.empty()) found.push_back({sections_[i].name, static_cast<int>(line + 1)});
        line += sections_[i].lines.size();
    }
    return found;
}

std::vector<ProfileKey> ProfileDocument::Keys(std::string_view section) const {
    std::vector<ProfileKey> found;
    const Section* owner = FindSection(section);
    if (!owner) return found;
    std::size_t before = 0;
    for (const Section* each = sections_.data(); each != owner; ++each) before += each->lines.size();
    for (std::size_t i = 1; i < owner->lines.size(); ++i)
        if (const std::optional<KeyLine> key = ParseKey(owner->lines[i]))
            found.push_back(
                {std::string(key->name), std::string(key->value), static_cast<int>(before + i + 1)});
    return found;
}

/// `name` as the indexes hold it; valid until the next call.
std::string_view ProfileDocument::Folded(std::string_view name) const {
    FoldCase(Trimmed(name), folded_);
    return folded_;
}

void ProfileDocument::Parse(std::string_view text) {
    sections_.clear();
    sections_.emplace_back();
    while (!text.empty()) {
        const std::size_t length = LineLength(text);
        AddLine(text.substr(0, length));
        text.remove_prefix(length);
    }
    IndexSections();
}

void ProfileDocument::AddLine(std::string_view line) {
    if (const auto name = SectionName(line)) {
        sections_.emplace_back();
        sections_.back().name = *name;
        sections_.back().lines.emplace_back(line);
        return;
    }
    Section& section = sections_.back();
    if (const auto key = ParseKey(line)) section.keys.emplace(FoldCase(key->name), section.lines.size());
    section.lines.emplace_back(line);
}

void ProfileDocument::IndexSections() {
    index_.clear();
    for (std::size_t i = 1; i < sections_.size(); ++i) IndexSection(i);
}

void ProfileDocument::IndexSection(std::size_t at) {
    const auto [first, isFirst] = index_.emplace(Folded(sections_[at].name), at);
    if (!isFirst) sections_[at].sameName = std::exchange(sections_[first->second].sameName, at);
}

/// Gives the last line of the document an end, so that another can follow.
void ProfileDocument::EndLastLine() {
    std::vector<std::string>& lines = sections_.back().lines;
    if (!lines.empty() && EndOf(lines.back()).empty()) lines.back() += "\r\n";
}

const ProfileDocument::Section* ProfileDocument::FindSection(std::string_view name) const {
    const auto found = index_.find(Folded(name));
    return found == index_.end() ? nullptr : &sections_[found->second];
}

void ProfileDocument::AddSection(std::string_view name, const std::string& line) {
    EndLastLine();
    const std::string text = std::string("[").append(name).append("]\r\n").append(line).append("\r\n");
    const std::size_t added = sections_.size();
    for (const std::string& each : SplitLines(text)) AddLine(each);
    for (std::size_t i = added; i < sections_.size(); ++i) IndexSection(i);
}

/// Puts `line`, which may turn out to be several, in the place of the key line `at`.
bool ProfileDocument::ReplaceLine(Section& section, std::size_t at, std::string line) {
    std::string& old = section.lines[at];
    line += EndOf(old).empty() ? "\r\n" : EndOf(old);
    if (old == line) return false;
    if (IsPlainKeyLine(line, ParseKey(old)->name)) {
        old = std::move(line);
        return true;
    }
    // The rest of the same value, stored before, is still there: adding it again would make the file grow.
    const std::vector<std::string> lines = SplitLines(line);
    const auto rest = section.lines.begin() + static_cast<std::ptrdiff_t>(at) + 1;
    const bool known = static_cast<std::size_t>(section.lines.end() - rest) >= lines.size() - 1 &&
                       std::equal(lines.begin() + 1, lines.end(), rest);
    if (known && old == lines[0]) return false;
    section.lines.erase(rest - 1);
    InsertLines(section, at, known ? lines[0] : line);
    return true;
}

/// Inserts lines of any kind, then reads as much anew as they may have changed.
void ProfileDocument::InsertLines(Section& section, std::size_t at, std::string_view text) {
    std::vector<std::string> lines = SplitLines(text);
    const bool newSection =
        std::any_of(lines.begin(), lines.end(), [](auto& line) { return SectionName(line); });
    section.lines.insert(section.lines.begin() + static_cast<std::ptrdiff_t>(at),
                         std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end()));
    if (newSection) {
        const std::string mark = std::exchange(mark_, {});
        Parse(Text());
        mark_ = mark;
        return;
    }
    section.keys.clear();
    for (std::size_t i = 1; i < section.lines.size(); ++i)
        if (const auto key = ParseKey(section.lines[i])) section.keys.emplace(FoldCase(key->name), i);
}

}  // namespace tessaloom
