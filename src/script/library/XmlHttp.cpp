#include "script/library/XmlHttp.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>

#include "platform/Ascii.h"
#include "platform/UrlTransfer.h"
#include "script/library/ByteArray.h"
#include "script/library/TextCodec.h"
#include "vbscript/Array.h"
#include "vbscript/Context.h"
#include "vbscript/Holder.h"
#include "vbscript/MemberTable.h"
#include "vbscript/MemoryBudget.h"

namespace tessaloom::library {

using namespace vbscript;

namespace {

/// The numbers of errors as scripts know them from this class.
enum class HttpError : std::int32_t {
    NotOpened = static_cast<std::int32_t>(0x80004005),
    NotYetThere = static_cast<std::int32_t>(0x8000000A),
    NotReached = static_cast<std::int32_t>(0x80072EFD),
    TimedOut = static_cast<std::int32_t>(0x80072EE2),
};

[[noreturn]] void Refuse(HttpError error, std::string_view text) {
    throw RuntimeError(static_cast<int>(error), Utf16Of(text), u"msxml3.dll");
}

/// The values of all headers of that name, one behind the other.
std::string HeaderNamed(std::string_view headers, std::string_view name) {
    std::string values;
    while (!headers.empty()) {
        const std::size_t end = headers.find("\r\n");
        const std::string_view line = headers.substr(0, end);
        const std::size_t colon = line.find(':');
        if (colon != line.npos && ascii::SameText(ascii::Trimmed(line.substr(0, colon), ascii::Blanks), name))
            values.append(values.empty() ? "" : ", ")
                .append(ascii::Trimmed(line.substr(colon + 1), ascii::Blanks));
        headers.remove_prefix(end == headers.npos ? headers.size() : end + 2);
    }
    return values;
}

/// As the content type says; else UTF-8, where the bytes are such.
Charset CharsetOf(std::string_view headers) {
    const std::string type = HeaderNamed(headers, "Content-Type");
    constexpr std::string_view Key = "charset=";
    const auto found = std::ranges::search(type, Key, [](char a, char b) { return ascii::Lower(a) == b; });
    if (found.empty()) return Charset::Utf8OrWindows;
    std::string_view name = std::string_view(type).substr(found.end() - type.begin());
    name = ascii::Trimmed(name.substr(0, name.find(';')), ascii::Blanks);
    if (name.size() >= 2 && name.front() == '"') name = name.substr(1, name.size() - 2);
    return CharsetNamed(name).value_or(Charset::Utf8OrWindows);
}

class XmlHttp final : public TableObject<XmlHttp>, public Holder {
public:
    static constexpr std::u16string_view Name = u"IXMLHTTPRequest";
    static std::span<const Member<XmlHttp>> Members();

    XmlHttp(const LibraryServices& services, bool forServers)
        : transfers_(services.transfers), transfer_(transfers_.MakeTransfer()), forServers_(forServers) {}

    void DropValues() override { const Value dropped = std::exchange(listener_, Value()); }

private:
    enum ReadyState { Unsent = 0, Opened = 1, Sent = 2, Receiving = 3, Done = 4 };

    /// What a transfer takes beside requests and answers, roughly.
    static constexpr std::size_t HandleBytes = 16 << 10;

    /// What scripts read as the status of a request without an answer.
    enum FailedStatus { NoConnection = 12029, TimeOut = 12002 };

    void Forget() {
        transfer_->Cancel();
        body_ = BudgetBytes();
        head_ = {};
        sent_ = taken_ = false;
    }

    /// Takes in what has come meanwhile.
    void Notice(Context& context) {
        const Ref<XmlHttp> alive(this);  // whatever the listener does
        if (sent_ && !taken_) transfers_.Poll();
        if (sent_ && !taken_ && !transfer_->StillExecuting()) Take();
        Tell(context);
    }

    void Take() {
        taken_ = true;
        head_ = transfer_->Response();
        constexpr std::size_t ChunkBytes = 256 << 10;
        try {
            for (std::string chunk; !(chunk = transfer_->GetChunk(ChunkBytes)).empty();) body_ += chunk;
        } catch (...) {
            Forget();  // never a part of an answer
            throw;
        }
        if (!Failed()) return;
        head_.status = head_.late ? TimeOut : NoConnection;
        head_.statusText = transfer_->Failure();
    }

    bool Failed() const { return transfer_->State() == TransferState::Failed; }

    int State() const {
        if (!opened_) return Unsent;
        if (!sent_) return Opened;
        if (taken_) return Done;
        return transfer_->State() == TransferState::Receiving ? Receiving : Sent;
    }

    /// Calls the listener, if any, when the state is another one.
    void Tell(Context& context) {
        if (State() == told_) return;
        told_ = State();
        const Value listener = listener_;
        if (listener.Is(VarType::Object) && !listener.IsNothing())
            listener.AsObject()->Invoke(context, DefaultMember, CallKind::Call, {});
    }

    /// Waits until the answer is there, for `seconds` (0: without end) and within the script's limit.
    bool Wait(Context& context, double seconds) {
        constexpr int Patience = 10;  // milliseconds
        const double begin = context.host.SteadySeconds();
        for (;;) {
            Notice(context);
            if (!sent_ || taken_) return true;
            if (context.limit.IsOver()) Forget();
            TimeLimit::Poll();
            if (seconds > 0 && context.host.SteadySeconds() - begin >= seconds) return false;
            transfers_.Wait(Patience);
        }
    }

    void NeedOpened() const {
        if (!opened_ || sent_) Refuse(HttpError::NotOpened, "Unspecified error");
    }

    void NeedAnswer(Context& context) {
        Notice(context);
        if (!taken_)
            Refuse(HttpError::NotYetThere,
                   "The data necessary to complete this operation is not yet available.");
    }

    static Value Open(XmlHttp& self, const Arguments& arguments) {
        UrlRequest request;
        request.method = arguments.Text(0).ToUtf8();
        std::ranges::transform(request.method, request.method.begin(), ascii::Upper);
        request.address = arguments.Text(1).ToUtf8();
        const bool asynchronous = arguments.BooleanOr(2, !self.forServers_);
        request.user = arguments.TextOr(3, u"").ToUtf8();
        request.password = arguments.TextOr(4, u"").ToUtf8();
        if (!std::ranges::all_of(request.method, ascii::IsLetter) || request.method.empty())
            Fail(ErrorCode::InvalidCall);
        request.connectMilliseconds = self.request_.connectMilliseconds;
        request.totalMilliseconds = self.request_.totalMilliseconds;
        request.trustAnyServer = self.request_.trustAnyServer;
        self.Forget();
        self.headCharge_.GiveBack();
        self.headCharge_.Take(request.address.size() + request.user.size() + request.password.size());
        self.request_ = std::move(request);
        self.asynchronous_ = asynchronous;
        self.opened_ = true;
        self.Tell(arguments.GetContext());
        return {};
    }

    static Value SetRequestHeader(XmlHttp& self, const Arguments& arguments) {
        self.NeedOpened();
        const std::string name = arguments.Text(0).ToUtf8(), value = arguments.Text(1).ToUtf8();
        const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' '; };
        if (name.empty() || name.find(':') != name.npos || std::ranges::any_of(name, isControl) ||
            std::ranges::any_of(value, isControl))
            Fail(ErrorCode::InvalidCall);
        auto& headers = self.request_.headers;
        std::erase_if(headers, [&](const std::string& header) {
            return ascii::SameText(std::string_view(header).substr(0, header.find(':')), name);
        });
        self.headCharge_.Take(name.size() + value.size());
        headers.push_back(name + ": " + value);
        return {};
    }

    static Value Send(XmlHttp& self, const Arguments& arguments) {
        Context& context = arguments.GetContext();
        self.NeedOpened();
        self.request_.body = {};
        self.bodyCharge_.GiveBack();
        if (arguments.Has(0) && !arguments[0].Is(VarType::Empty) && !arguments[0].Is(VarType::Null))
            self.SetBody(arguments);
        self.sent_ = true;
        self.transfer_->Send(self.request_);
        if (self.asynchronous_) {
            self.Notice(context);
            return {};
        }
        self.Wait(context, 0);
        if (self.taken_ && self.Failed()) {
            const bool late = self.head_.status == TimeOut;
            Refuse(
                late ? HttpError::TimedOut : HttpError::NotReached,
                late ? "The operation timed out" : "A connection with the server could not be established");
        }
        return {};
    }

    void SetBody(const Arguments& arguments) {
        if (arguments[0].Is(VarType::Array)) {
            const BudgetBytes bytes = BytesOf(arguments.GetContext(), arguments[0]);
            bodyCharge_.Take(bytes.size());
            request_.body = bytes;
            return;
        }
        const String text = arguments.Text(0);
        constexpr std::size_t MostBytesOfUnit = 3;
        bodyCharge_.Take(text.Length() * MostBytesOfUnit);
        for (std::u16string_view rest = text.View(); !rest.empty();) request_.body += Utf8Of(TakePiece(rest));
    }

    static Value Abort(XmlHttp& self, const Arguments&) {
        self.Forget();
        self.opened_ = false;
        self.told_ = Unsent;
        return {};
    }

    /// Resolve, connect, send, receive: milliseconds; 0: no bound of its own.
    static Value SetTimeouts(XmlHttp& self, const Arguments& arguments) {
        int sum = 0;
        bool bounded = true;
        for (std::size_t i = 0; i < 4; ++i) {
            constexpr int Longest = 24 * 3600 * 1000;
            const int milliseconds = arguments.Long(i);
            if (milliseconds < 0) Fail(ErrorCode::InvalidCall);
            bounded = bounded && (milliseconds > 0 || i == 0);
            sum += std::min(milliseconds, Longest);
        }
        self.request_.connectMilliseconds = arguments.Long(1);
        self.request_.totalMilliseconds = bounded ? sum : 0;
        return {};
    }

    static Value SetOption(XmlHttp& self, const Arguments& arguments) {
        constexpr int IgnoredCertificateFaults = 2;
        const std::size_t value = arguments.Count() - 1;
        if (arguments.Long(0) == IgnoredCertificateFaults)
            self.request_.trustAnyServer = arguments.Long(value) != 0;
        return {};
    }

    static Value SetListener(XmlHttp& self, const Arguments& arguments) {
        self.listener_ = arguments.NewValue();
        return {};
    }

    UrlTransfers& transfers_;
    std::unique_ptr<UrlTransfer> transfer_;
    bool forServers_;
    bool asynchronous_ = true;
    bool opened_ = false, sent_ = false;
    bool taken_ = false;  ///< The answer, or the failure, is here.
    int told_ = Unsent;   ///< The state that the listener knows.
    UrlRequest request_;
    UrlResponse head_;
    MemoryCharge handle_{HandleBytes};
    MemoryCharge headCharge_, bodyCharge_;  ///< Of the request.
    BudgetBytes body_;
    Value listener_;
};

std::span<const Member<XmlHttp>> XmlHttp::Members() {
    using Self = XmlHttp;
    static constexpr auto Ignored = [](Self&, const Arguments&) { return Value(); };
    static constexpr std::array<Member<Self>, 20> All = {{
        {u"open", 2, 5, Open},
        {u"setRequestHeader", 2, 2, SetRequestHeader},
        {u"send", 0, 1, Send},
        {u"abort", 0, 0, Abort},
        {u"readyState", 0, 0,
         [](Self& self, const Arguments& arguments) {
             self.Notice(arguments.GetContext());
             return Value::OfLong(self.State());
         }},
        {u"status", 0, 0,
         [](Self& self, const Arguments& arguments) {
             self.NeedAnswer(arguments.GetContext());
             return Value::OfLong(self.head_.status);
         }},
        {u"statusText", 0, 0,
         [](Self& self, const Arguments& arguments) {
             self.NeedAnswer(arguments.GetContext());
             return Value::OfUtf8(self.head_.statusText);
         }},
        {u"responseText", 0, 0,
         [](Self& self, const Arguments& arguments) {
             self.NeedAnswer(arguments.GetContext());
             return Value::OfString(DecodeText(self.body_, CharsetOf(self.head_.headers)));
         }},
        {u"responseBody", 0, 0,
         [](Self& self, const Arguments& arguments) {
             self.NeedAnswer(arguments.GetContext());
             return Value::OfArray(Array::OfBytes(self.body_));
         }},
        {u"responseXML", 0, 0, [](Self&, const Arguments&) { return Value::Nothing(); }},
        {u"getResponseHeader", 1, 1,
         [](Self& self, const Arguments& arguments) {
             self.NeedAnswer(arguments.GetContext());
             return Value::OfUtf8(HeaderNamed(self.head_.headers, arguments.Text(0).ToUtf8()));
         }},
        {u"getAllResponseHeaders", 0, 0,
         [](Self& self, const Arguments& arguments) {
             self.NeedAnswer(arguments.GetContext());
             return Value::OfUtf8(self.head_.headers);
         }},
        {u"onreadystatechange", 0, 0, [](Self& self, const Arguments&) { return self.listener_; },
         SetListener, SetListener},
        {u"setTimeouts", 4, 4, SetTimeouts},
        {u"waitForResponse", 0, 1,
         [](Self& self, const Arguments& arguments) {
             const double seconds = arguments.Has(0) ? arguments.Double(0) : 0;
             return Value::OfBoolean(self.Wait(arguments.GetContext(), std::max(seconds, 0.0)));
         }},
        {u"setOption", 2, 2, SetOption},
        {u"getOption", 1, 1, [](Self&, const Arguments&) { return Value::OfLong(0); }},
        {u"option", 1, 1, [](Self&, const Arguments&) { return Value::OfLong(0); }, SetOption},
        {u"setProxy", 1, 3, Ignored},
        {u"setProxyCredentials", 2, 2, Ignored},
    }};
    return All;
}

}  // namespace

Ref<Object> MakeXmlHttp(const LibraryServices& services, bool forServers) {
    return Make<XmlHttp>(services, forServers);
}

}  // namespace tessaloom::library
