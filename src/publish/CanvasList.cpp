#include "publish/CanvasList.h"

#include "platform/TextEncoding.h"
#include "publish/CanvasWebServer.h"
#include "publish/WebHost.h"

namespace tessaloom {

namespace {

std::string Quoted(std::string_view text) {
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char c : ToUtf8(text)) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            quoted.append({'\\', c});
        else if (code < 0x20)
            quoted.append("\\u00").append({Digits[code >> 4], Digits[code & 15]});
        else
            quoted += c;
    }
    return quoted + '"';
}

}  // namespace

std::string CanvasList(WebHost& host) {
    std::string list;
    for (int slot = 1; slot <= WebHost::Slots; ++slot) {
        const CanvasWebServer* const canvas = host.PublishedCanvas(slot);
        if (!canvas) continue;
        list += list.empty() ? "[" : ",\n ";
        list +=
            "{\"file\": " + Quoted(canvas->FileName()) + ", \"name\": " + Quoted(host.CanvasName(slot)) + "}";
    }
    return (list.empty() ? "[" : list) + "]\n";
}

}  // namespace tessaloom
