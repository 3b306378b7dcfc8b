#include "script/library/Stream.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/FileSystem.h"
#include "platform/TextEncoding.h"
#include "script/library/ByteArray.h"
#include "script/library/FileOperations.h"
#include "script/library/TextCodec.h"
#include "vbscript/Array.h"
#include "vbscript/MemberTable.h"
#include "vbscript/MemoryBudget.h"

namespace tessaloom::library {

using namespace vbscript;

namespace {

enum StreamError {
    BadArgument = 3001,
    NotOpened = 3002,
    NotWritten = 3004,
    NotInThisContext = 3219,
    IsClosed = 3704,
    IsOpen = 3705,
};

[[noreturn]] void Refuse(StreamError error) {
    const auto text = [&]() -> std::u16string_view {
        switch (error) {
            case NotOpened:
                return u"File could not be opened.";
            case NotWritten:
                return u"Write to file failed.";
            case NotInThisContext:
                return u"Operation is not allowed in this context.";
            case IsClosed:
                return u"Operation is not allowed when the object is closed.";
            case IsOpen:
                return u"Operation is not allowed when the object is open.";
            case BadArgument:
                break;
        }
        return u"Arguments are of the wrong type, are out of acceptable range, or are in conflict with one "
               u"another.";
    };
    throw RuntimeError(error, std::u16string(text()), u"ADODB.Stream");
}

/// The first `units` UTF-16 units of a text, as the number of bytes that hold them.
std::size_t BytesOfUnits(std::string_view bytes, std::size_t units, Charset charset) {
    if (charset == Charset::Utf16 || charset == Charset::Utf16BigEndian)
        return std::min(bytes.size(), units > bytes.size() ? bytes.size() : units * 2);
    if (charset != Charset::Utf8 && charset != Charset::Utf8OrWindows) return std::min(bytes.size(), units);
    std::size_t at = 0;
    for (std::size_t taken = 0; at < bytes.size() && taken < units;) {
        TimeLimit::Poll();
        const auto lead = static_cast<unsigned char>(bytes[at]);
        taken += lead >= 0xF0 ? 2 : 1;
        for (++at; at < bytes.size() && ContinuesCharacter(bytes[at]);) ++at;
    }
    return at;
}

class Stream final : public TableObject<Stream> {
public:
    static constexpr std::u16string_view Name = u"Stream";
    static std::span<const Member<Stream>> Members();

    explicit Stream(const LibraryServices& services) : services_(services) {}

private:
    enum Type { Binary = 1, Text = 2 };
    enum Separator { CrLf = -1, Lf = 10, Cr = 13 };
    static constexpr int All = -1, Line = -2;  ///< In place of a count.

    void NeedOpen() const {
        if (!open_) Refuse(IsClosed);
    }
    void NeedType(Type type) const {
        NeedOpen();
        if (type_ != type) Refuse(NotInThisContext);
    }
    /// What says how the content is read can be changed while none of it has been.
    void NeedStart() const {
        if (open_ && at_ != 0) Refuse(NotInThisContext);
    }

    void Empty() {
        content_ = BudgetBytes();
        at_ = 0;
    }

    void PutBytes(std::string_view bytes) {
        if (content_.size() - at_ < bytes.size()) content_.resize(at_ + bytes.size());
        bytes.copy(content_.data() + at_, bytes.size());
        at_ += bytes.size();
    }

    void PutText(std::u16string_view text) {
        if (content_.empty()) PutBytes(MarkOf(charset_));
        while (!text.empty()) {
            BudgetBytes bytes;
            AppendEncoded(bytes, TakePiece(text), charset_);
            PutBytes(bytes);
        }
    }

    std::string_view TakeBytes(int count) {
        if (count < All) Refuse(BadArgument);
        const auto bytes = std::string_view(content_).substr(
            at_, count == All ? std::string_view::npos : static_cast<std::size_t>(count));
        at_ += bytes.size();
        return bytes;
    }

    String TakeText(int count) {
        if (count < Line) Refuse(BadArgument);
        const std::string_view mark = MarkOf(charset_);
        if (at_ == 0 && !mark.empty() && content_.starts_with(mark)) at_ = mark.size();
        if (count == Line) return TakeLine();
        const std::string_view rest = std::string_view(content_).substr(at_);
        const std::size_t bytes =
            count == All ? rest.size() : BytesOfUnits(rest, static_cast<std::size_t>(count), charset_);
        at_ += bytes;
        return DecodeText(rest.substr(0, bytes), charset_);
    }

    String TakeLine() {
        const std::string_view rest = std::string_view(content_).substr(at_);
        BudgetBytes separator;
        AppendEncoded(separator, SeparatorText(), charset_);
        std::size_t end = rest.find(separator);
        const bool wide = charset_ == Charset::Utf16 || charset_ == Charset::Utf16BigEndian;
        while (wide && end != rest.npos && end % 2 != 0) end = rest.find(separator, end + 1);
        at_ += end == rest.npos ? rest.size() : end + separator.size();
        return DecodeText(rest.substr(0, end), charset_);
    }

    std::u16string_view SeparatorText() const {
        return separator_ == CrLf ? u"\r\n" : separator_ == Lf ? u"\n" : u"\r";
    }

    static Value Write(Stream& self, const Arguments& arguments) {
        self.NeedType(Binary);
        if (!arguments[0].Is(VarType::Array)) Refuse(BadArgument);
        self.PutBytes(BytesOf(arguments.GetContext(), arguments[0]));
        return {};
    }

    static Value WriteText(Stream& self, const Arguments& arguments) {
        self.NeedType(Text);
        self.PutText(arguments.Text(0).View());
        constexpr int WithSeparator = 1;
        if (arguments.LongOr(1, 0) == WithSeparator) self.PutText(self.SeparatorText());
        return {};
    }

    static Value Read(Stream& self, const Arguments& arguments) {
        self.NeedType(Binary);
        const std::string_view bytes = self.TakeBytes(arguments.LongOr(0, All));
        return bytes.empty() ? Value::Null() : Value::OfArray(Array::OfBytes(bytes));
    }

    static Value CopyTo(Stream& self, const Arguments& arguments) {
        auto* const target =
            arguments[0].Is(VarType::Object) ? dynamic_cast<Stream*>(arguments[0].AsObject()) : nullptr;
        if (!target || target == &self) Refuse(BadArgument);
        self.NeedOpen();
        target->NeedOpen();
        const int count = arguments.LongOr(1, All);
        if (count < All) Refuse(BadArgument);
        if (self.type_ == Text && target->type_ == Text)
            target->PutText(self.TakeText(count).View());
        else
            target->PutBytes(self.TakeBytes(count));
        return {};
    }

    static Value Load(Stream& self, const Arguments& arguments) {
        self.NeedOpen();
        MemoryCharge charge;
        const auto bytes = ReadCharged(self.services_.files, arguments.Text(0).ToUtf8(), charge);
        if (!bytes) Refuse(NotOpened);
        self.Empty();
        self.PutBytes(*bytes);
        self.at_ = 0;
        return {};
    }

    static Value Save(Stream& self, const Arguments& arguments) {
        self.NeedOpen();
        constexpr int CreateOnly = 1, Overwrite = 2;
        const int option = arguments.LongOr(1, CreateOnly);
        if (option != CreateOnly && option != Overwrite) Refuse(BadArgument);
        const std::string path = arguments.Text(0).ToUtf8();
        if (option == CreateOnly && self.services_.files.FileExists(path)) Refuse(NotWritten);
        if (!self.services_.files.WriteFile(path, self.content_)) Refuse(NotWritten);
        self.at_ = 0;
        return {};
    }

    static Value Open(Stream& self, const Arguments&) {
        if (self.open_) Refuse(IsOpen);
        self.open_ = true;
        return {};
    }

    static Value Close(Stream& self, const Arguments&) {
        self.NeedOpen();
        self.open_ = false;
        self.Empty();
        return {};
    }

    static Value SetPosition(Stream& self, const Arguments& arguments) {
        self.NeedOpen();
        const int position = ToLong(arguments.GetContext(), arguments.NewValue());
        if (position < 0) Refuse(BadArgument);
        const auto place = static_cast<std::size_t>(position);
        if (place > self.content_.size()) self.content_.resize(place);
        self.at_ = place;
        return {};
    }

    static Value SetCharset(Stream& self, const Arguments& arguments) {
        self.NeedStart();
        const String name = ToText(arguments.GetContext(), arguments.NewValue());
        const auto charset = CharsetNamed(name.ToUtf8());
        if (!charset) Refuse(BadArgument);
        self.charset_ = *charset;
        self.charsetName_ = name;
        return {};
    }

    /// A whole number among those allowed.
    template <std::size_t Count>
    static int Choice(const Arguments& arguments, const std::array<int, Count>& allowed) {
        const int choice = ToLong(arguments.GetContext(), arguments.NewValue());
        if (std::ranges::find(allowed, choice) == allowed.end()) Refuse(BadArgument);
        return choice;
    }

    static Value Number(std::size_t number) { return Value::OfLong(static_cast<std::int32_t>(number)); }

    const LibraryServices services_;
    BudgetBytes content_;
    std::size_t at_ = 0;  ///< In bytes, up to the content's end.
    bool open_ = false;
    int type_ = Text;
    int separator_ = CrLf;
    int mode_ = 0;
    Charset charset_ = Charset::Utf16;
    String charsetName_ = String(u"Unicode");
};

std::span<const Member<Stream>> Stream::Members() {
    using Self = Stream;
    static constexpr std::array<Member<Self>, 21> Rows = {{
        {u"Type", 0, 0, [](Self& self, const Arguments&) { return Value::OfLong(self.type_); },
         [](Self& self, const Arguments& arguments) {
             self.NeedStart();
             self.type_ = Choice(arguments, std::array<int, 2>{Binary, Text});
             return Value();
         }},
        {u"Charset", 0, 0, [](Self& self, const Arguments&) { return Value::OfString(self.charsetName_); },
         SetCharset},
        {u"LineSeparator", 0, 0, [](Self& self, const Arguments&) { return Value::OfLong(self.separator_); },
         [](Self& self, const Arguments& arguments) {
             self.separator_ = Choice(arguments, std::array<int, 3>{CrLf, Lf, Cr});
             return Value();
         }},
        {u"Mode", 0, 0, [](Self& self, const Arguments&) { return Value::OfLong(self.mode_); },
         [](Self& self, const Arguments& arguments) {
             if (self.open_) Refuse(IsOpen);
             self.mode_ = ToLong(arguments.GetContext(), arguments.NewValue());
             return Value();
         }},
        {u"State", 0, 0, [](Self& self, const Arguments&) { return Value::OfLong(self.open_ ? 1 : 0); }},
        {u"Position", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedOpen();
             return Number(self.at_);
         },
         SetPosition},
        {u"Size", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedOpen();
             return Number(self.content_.size());
         }},
        {u"EOS", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedOpen();
             return Value::OfBoolean(self.at_ >= self.content_.size());
         }},
        {u"Open", 0, 5, Open},
        {u"Close", 0, 0, Close},
        {u"Read", 0, 1, Read},
        {u"Write", 1, 1, Write},
        {u"ReadText", 0, 1,
         [](Self& self, const Arguments& arguments) {
             self.NeedType(Text);
             return Value::OfString(self.TakeText(arguments.LongOr(0, All)));
         }},
        {u"WriteText", 1, 2, WriteText},
        {u"SkipLine", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedType(Text);
             self.TakeText(Line);
             return Value();
         }},
        {u"SetEOS", 0, 0,
         [](Self& self, const Arguments&) {
             self.NeedOpen();
             self.content_.resize(self.at_);
             return Value();
         }},
        {u"CopyTo", 1, 2, CopyTo},
        {u"LoadFromFile", 1, 1, Load},
        {u"SaveToFile", 1, 2, Save},
        {u"Flush", 0, 0, [](Self&, const Arguments&) { return Value(); }},
        {u"Cancel", 0, 0, [](Self&, const Arguments&) { return Value(); }},
    }};
    return Rows;
}

}  // namespace

Ref<Object> MakeStream(const LibraryServices& services) { return Make<Stream>(services); }

}  // namespace tessaloom::library
