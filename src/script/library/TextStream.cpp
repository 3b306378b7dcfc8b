#include "script/library/TextStream.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "platform/FileSystem.h"
#include "platform/TextEncoding.h"
#include "script/library/FileOperations.h"
#include "script/library/FilePaths.h"
#include "script/library/TextCodec.h"
#include "vbscript/Context.h"

namespace tessaloom::library {

using namespace vbscript;

namespace {

constexpr std::size_t BlockBytes = 64 << 10;

constexpr int MostBlankLines = 1 << 24;

String TextOfFile(const LibraryServices& services, std::string_view path, StreamFormat format) {
    MemoryCharge charge;
    const auto bytes = ReadCharged(services.files, path, charge);
    if (!bytes) Raise(FileError::PermissionDenied);
    return DecodeText(*bytes, format == StreamFormat::Unicode ? Charset::Utf16 : Charset::Utf8OrWindows);
}

}  // namespace

TextStream::~TextStream() {
    if (open_) Flush();
}

void TextStream::NeedMode(StreamMode mode) const {
    if (!open_) Raise(FileError::BadFileNumber);
    if (mode_ != mode) Raise(FileError::BadFileMode);
}

void TextStream::NeedMore() const {
    NeedMode(StreamMode::Reading);
    if (Rest().empty()) Raise(FileError::PastEndOfFile);
}

Value TextStream::Take(std::size_t units) {
    const std::u16string_view taken = Rest().substr(0, units);
    Move(taken);
    at_ += taken.size();
    return Value::OfText(taken);
}

/// Without its end, which is CR LF or LF.
Value TextStream::TakeLine() {
    const std::size_t end = Rest().find(u'\n');
    std::u16string_view line = Rest().substr(0, end);
    if (end != line.npos && line.ends_with(u'\r')) line.remove_suffix(1);
    const Value result = Value::OfText(line);
    Take(end == line.npos ? end : end + 1);
    return result;
}

void TextStream::Put(std::u16string_view text) {
    NeedMode(StreamMode::Writing);
    while (!text.empty()) {
        const std::u16string_view piece = TakePiece(text);
        AppendEncoded(waiting_, piece, format_ == StreamFormat::Unicode ? Charset::Utf16 : Charset::Utf8);
        Move(piece);
        if (waiting_.size() >= BlockBytes && !Flush()) Raise(FileError::DeviceFault);
    }
}

bool TextStream::Flush() {
    const bool done = waiting_.empty() || sink_(waiting_);
    waiting_.clear();
    return done;
}

void TextStream::Close() {
    if (!open_) return;
    const bool done = mode_ == StreamMode::Reading || Flush();
    open_ = false;
    text_ = {};
    at_ = 0;
    if (!done) Raise(FileError::DeviceFault);
}

void TextStream::Move(std::u16string_view passed) {
    const std::size_t last = passed.rfind(u'\n');
    line_ += static_cast<int>(std::ranges::count(passed, u'\n'));
    if (last != passed.npos) column_ = 1;
    column_ += static_cast<int>(passed.size() - (last == passed.npos ? 0 : last + 1));
}

std::span<const Member<TextStream>> TextStream::Members() {
    using Self = TextStream;
    static constexpr auto CountOf = [](const Arguments& arguments) {
        const int count = arguments.Long(0);
        if (count < 0) Raise(FileError::InvalidCall);
        return static_cast<std::size_t>(count);
    };
    static constexpr std::array<Member<Self>, 13> All = {{
        {u"Line", 0, 0, [](Self& self, const Arguments&) { return Value::OfLong(self.line_); }},
        {u"Column", 0, 0, [](Self& self, const Arguments&) { return Value::OfLong(self.column_); }},
        {u"AtEndOfStream", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedMode(StreamMode::Reading);
             return Value::OfBoolean(self.Rest().empty());
         }},
        {u"AtEndOfLine", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedMode(StreamMode::Reading);
             const auto rest = self.Rest();
             return Value::OfBoolean(rest.empty() || rest.starts_with(u"\r\n") || rest.starts_with(u'\n'));
         }},
        {u"Read", 1, 1,
         [](Self& self, const Arguments& arguments) {
             self.NeedMore();
             return self.Take(CountOf(arguments));
         }},
        {u"ReadLine", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedMore();
             return self.TakeLine();
         }},
        {u"ReadAll", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedMore();
             return self.Take(std::u16string_view::npos);
         }},
        {u"Skip", 1, 1,
         [](Self& self, const Arguments& arguments) {
             self.NeedMore();
             self.Take(CountOf(arguments));
             return Value();
         }},
        {u"SkipLine", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedMore();
             self.TakeLine();
             return Value();
         }},
        {u"Write", 1, 1,
         [](Self& self, const Arguments& arguments) {
             self.Put(arguments.Text(0).View());
             return Value();
         }},
        {u"WriteLine", 0, 1,
         [](Self& self, const Arguments& arguments) {
             self.Put(arguments.TextOr(0, u"").View());
             self.Put(u"\r\n");
             return Value();
         }},
        {u"WriteBlankLines", 1, 1,
         [](Self& self, const Arguments& arguments) {
             const std::size_t lines = CountOf(arguments);
             if (lines > MostBlankLines) Raise(FileError::InvalidCall);
             for (std::size_t i = 0; i < lines; ++i) self.Put(u"\r\n");
             return Value();
         }},
        {u"Close", 0, 0,
         [](Self& self, const Arguments&) {
             self.Close();
             return Value();
         }},
    }};
    return All;
}

Ref<Object> OpenTextStream(const LibraryServices& services, std::string_view path, StreamMode mode,
                           StreamFormat format, bool create) {
    if (path.empty()) Raise(FileError::InvalidCall);
    const bool exists = services.files.FileExists(path);
    if (services.files.FolderExists(path)) Raise(FileError::PermissionDenied);
    if (!exists && !create) Raise(FileError::FileNotFound);
    const std::string absolute = AbsolutePath(services, path);
    const bool fresh = !exists || mode == StreamMode::Writing;
    if (fresh && !services.files.WriteFile(absolute, "")) RaiseNotWritten(services, absolute);
    if (mode == StreamMode::Reading) return Make<TextStream>(TextOfFile(services, path, format));

    const auto append = [&files = services.files, absolute](std::string_view bytes) {
        return files.AppendText(absolute, bytes);
    };
    if (!fresh && !append("")) RaiseNotWritten(services, absolute);
    const auto stamp = services.files.Stamp(absolute);
    const bool needsMark = format == StreamFormat::Unicode && stamp && stamp->size == 0;
    if (needsMark && !append(Utf16Mark)) RaiseNotWritten(services, absolute);
    return Make<TextStream>(append, format, absolute.capacity());
}

Ref<Object> CreateTextFile(const LibraryServices& services, std::string_view path, bool overwrite,
                           bool unicode) {
    if (!overwrite && services.files.FileExists(path)) Raise(FileError::FileExists);
    return OpenTextStream(services, path, StreamMode::Writing,
                          unicode ? StreamFormat::Unicode : StreamFormat::Narrow, true);
}

Ref<Object> StandardStream(int number) {
    if (number < 0 || number > 2) Raise(FileError::InvalidCall);
    if (number == 0) return Make<TextStream>(String());
    std::FILE* const file = number == 1 ? stdout : stderr;
    const auto write = [file](std::string_view bytes) {
        return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
    };
    return Make<TextStream>(write, StreamFormat::Narrow);
}

StreamMode StreamModeOf(int number) {
    if (number != 1 && number != 2 && number != 8) Raise(FileError::InvalidCall);
    return static_cast<StreamMode>(number);
}

StreamFormat StreamFormatOf(int number) {
    constexpr int SystemDefault = -2, Unicode = -1, Ascii = 0;
    if (number == Unicode) return StreamFormat::Unicode;
    if (number != Ascii && number != SystemDefault) Raise(FileError::InvalidCall);
    return StreamFormat::Narrow;
}

}  // namespace tessaloom::library
