#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "script/library/ClassLibrary.h"
#include "vbscript/MemberTable.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/String.h"

namespace tessaloom::library {

enum class StreamMode { Reading = 1, Writing = 2, Appending = 8 };

/// How a file holds text: one byte a character here means UTF-8, or Windows-1252 where a file is no UTF-8;
/// two bytes mean UTF-16, low byte first, behind its mark.
enum class StreamFormat { Narrow, Unicode };

/// The object "TextStream": a file read or written as text, from its begin to its end.
///
/// A file that is read is taken in whole when it is opened. What is written goes out in blocks, at Close and
/// at the end of the object.
class TextStream final : public vbscript::TableObject<TextStream> {
public:
    static constexpr std::u16string_view Name = u"TextStream";
    static std::span<const vbscript::Member<TextStream>> Members();

    /// Takes bytes that are to be written; false when that failed.
    using Sink = std::function<bool(std::string_view bytes)>;

    /// For reading.
    explicit TextStream(vbscript::String text) : text_(std::move(text)), mode_(StreamMode::Reading) {}

    /// For writing.
    /// sinkBytes: what the sink holds beside itself.
    TextStream(Sink sink, StreamFormat format, std::size_t sinkBytes = 0)
        : sink_(std::move(sink)), charge_(sinkBytes), mode_(StreamMode::Writing), format_(format) {}

    ~TextStream() override;

private:
    std::u16string_view Rest() const { return text_.View().substr(at_); }
    void NeedMode(StreamMode mode) const;
    void NeedMore() const;
    vbscript::Value Take(std::size_t units);
    vbscript::Value TakeLine();
    void Put(std::u16string_view text);
    bool Flush();
    void Close();
    void Move(std::u16string_view passed);

    vbscript::String text_;  ///< Of a file that is read.
    std::size_t at_ = 0;     ///< In it.
    Sink sink_;
    vbscript::MemoryCharge charge_;
    vbscript::BudgetBytes waiting_;  ///< Bytes to be written.
    StreamMode mode_;
    StreamFormat format_ = StreamFormat::Narrow;
    bool open_ = true;
    int line_ = 1, column_ = 1;
};

/// Opens `path` as scripts ask for it. Throws RuntimeError: 53 when it is missing and not to be made, 76
/// without its folder, 70 when it is not allowed.
vbscript::Ref<vbscript::Object> OpenTextStream(const LibraryServices& services, std::string_view path,
                                               StreamMode mode, StreamFormat format, bool create);

/// The same for writing a new file; 58 when it is there and not to be overwritten.
vbscript::Ref<vbscript::Object> CreateTextFile(const LibraryServices& services, std::string_view path,
                                               bool overwrite, bool unicode);

/// Standard input (0, always at its end), output (1) or errors (2).
vbscript::Ref<vbscript::Object> StandardStream(int number);

/// The stream arguments of scripts as numbers; throw RuntimeError 5 for others.
StreamMode StreamModeOf(int number);
StreamFormat StreamFormatOf(int number);

}  // namespace tessaloom::library
