#include "ui/dialogs/ScriptFile.h"

#include <utility>

#include "platform/TextEncoding.h"

namespace tessaloom {

namespace {

QString MostUsedLineEnd(const QString& text) {
    const auto pairs = text.count("\r\n");
    const auto feeds = text.count('\n') - pairs, returns = text.count('\r') - pairs;
    if (feeds > pairs && feeds >= returns) return "\n";
    return returns > pairs ? "\r" : "\r\n";
}

}  // namespace

QString ScriptFile::Open(const std::string& path) {
    path_ = path;
    failure_.clear();
    lineEnd_ = "\r\n";
    marked_ = windows1252_ = false;
    stamp_ = files_.Stamp(path_);
    const auto is = [this](State state) {
        state_ = state;
        return QString();
    };
    if (path_.empty()) return is(State::NoName);
    if (!stamp_ && !files_.FolderExists(path_)) return is(State::Missing);
    if (stamp_ && stamp_->size > Limit) return is(State::TooLarge);
    const std::optional<std::string> bytes = files_.ReadFile(path_, Limit);
    if (!bytes) {
        failure_ = files_.LastFailure();
        return is(State::Unreadable);
    }
    if (bytes->find('\0') != std::string::npos) return is(State::NotText);
    state_ = State::Whole;
    marked_ = bytes->starts_with(Utf8Mark);
    windows1252_ = !IsUtf8(*bytes);
    QString text = Decoded(*bytes);
    lineEnd_ = MostUsedLineEnd(text);
    return text.replace("\r\n", "\n").replace('\r', '\n');
}

QString ScriptFile::Decoded(std::string_view bytes) {
    if (bytes.starts_with(Utf8Mark)) bytes.remove_prefix(Utf8Mark.size());
    return QString::fromStdString(ToUtf8(bytes));
}

std::string ScriptFile::Encoded(QString text) const {
    return (marked_ ? std::string(Utf8Mark) : std::string()) + text.replace('\n', lineEnd_).toStdString();
}

bool ScriptFile::Save(const QString& text) {
    if (!Editable() || !files_.ReplaceFile(path_, Encoded(text))) {
        failure_ = Editable() ? files_.LastFailure() : "it cannot be written";
        return false;
    }
    failure_.clear();
    state_ = State::Whole;
    windows1252_ = false;
    AcceptOutside();
    DropKept();
    return true;
}

QString ScriptFile::Format() const {
    if (!Editable()) return {};
    const QString lines = lineEnd_ == "\r\n" ? "CR LF" : lineEnd_ == "\n" ? "LF" : "CR";
    return (windows1252_ ? "Windows-1252, will be saved as UTF-8, " : "UTF-8, ") + lines;
}

void ScriptFile::AcceptOutside() {
    stamp_ = files_.Stamp(path_);
    if (!stamp_ && state_ == State::Whole) state_ = State::Missing;
}

bool ScriptFile::Keep(const QString& text) {
    return files_.ReplaceFile(KeptPath(), Encoded(text), Access::OwnerOnly);
}

std::optional<QString> ScriptFile::Kept() {
    const std::optional<std::string> bytes = files_.ReadFile(KeptPath(), Limit);
    if (!bytes) return std::nullopt;
    return Decoded(*bytes).replace("\r\n", "\n").replace('\r', '\n');
}

void ScriptFile::DropKept() {
    if (HasKept()) files_.DeleteFile(KeptPath());
}

}  // namespace tessaloom
