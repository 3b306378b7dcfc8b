#include "publish/ResponseHead.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "core/modNumbers.h"
#include "locale/Conversion.h"
#include "platform/Ascii.h"
#include "platform/Paths.h"
#include "time/modTime.h"

namespace tessaloom {

namespace {

constexpr std::string_view LineEnd = "\r\n";

struct ContentType {
    std::string_view extension, type;
};

// "movie/quicktime" and "movie/mpeg" are kept: nobody else calls them so.
// clang-format off
constexpr auto ContentTypes = std::to_array<ContentType>({
    {"htm",  "text/html"},                {"html", "text/html"},                {"txt",  "text/plain"},
    {"jpg",  "image/jpeg"},               {"jpeg", "image/jpeg"},               {"jpe",  "image/jpeg"},
    {"gif",  "image/gif"},                {"png",  "image/png"},                {"bmp",  "image/bmp"},
    {"pdf",  "application/pdf"},          {"avi",  "video/x-msvideo"},          {"mid",  "audio/midi"},
    {"midi", "audio/midi"},               {"doc",  "application/msword"},       {"exe",  "application/octet-stream"},
    {"mov",  "movie/quicktime"},          {"mp2",  "audio/mpeg"},               {"mp3",  "audio/mpeg"},
    {"mpga", "audio/mpeg"},               {"mpe",  "movie/mpeg"},               {"mpeg", "movie/mpeg"},
    {"mpg",  "movie/mpeg"},               {"ppt",  "application/mspowerpoint"}, {"qt",   "video/quicktime"},
    {"ps",   "application/postscript"},   {"ra",   "audio/x-realaudio"},        {"rm",   "audio/x-pn-realaudio"},
    {"rpm",  "audio/x-pn-realaudio-plugin"}, {"rtf", "text/rtf"},               {"rtx",  "text/richtext"},
    {"tif",  "image/tiff"},               {"tiff", "image/tiff"},               {"wav",  "audio/x-wav"},
    {"xls",  "application/vnd.ms-excel"}, {"xml",  "text/xml"},                 {"zip",  "application/zip"},
});
// clang-format on

std::string DateText(double moment) { return TextFromDate(moment, modNumbers::Locale()).value; }

std::string Lines(std::initializer_list<std::string_view> lines) {
    std::string head;
    head.reserve(512);
    for (const std::string_view line : lines) head.append(line).append(LineEnd);
    return head;
}

/// What both successes begin with.
std::string Success(std::string_view contentType) {
    return Lines({"HTTP/1.1 200 OK", "Server: Tessaloom Web Server",
                  "Date: " + DateText(modTime::Clock() - modTime::HalfSecondBias),
                  std::string("Content-Type: ").append(contentType), "Pragma: no-cache",
                  // Kept: both lines are sent, which differ only in case.
                  "cache-control: no-cache, must-revalidate", "Cache-control: no-cache, must-revalidate",
                  "Expires: Mon, 26 Jul 1997 05:00:00 GMT"});
}

std::string ContentLength(std::size_t bytes) { return "Content-Length: " + std::to_string(bytes); }

}  // namespace

std::string FileHead(std::string_view contentType, std::size_t bytes) {
    return Success(contentType) + Lines({ContentLength(bytes), ""});
}

std::string PictureHead(double lastModified, std::size_t bytes) {
    return Success("image/jpeg") +
           Lines({"Last-Modified: " + DateText(lastModified), ContentLength(bytes), ""});
}

std::string NotFoundHead() {
    return Lines({"HTTP/1.0 404 Not Found", "Server: Tessaloom Web Server",
                  "Date: " + DateText(modTime::Clock() - modTime::HalfSecondBias), "Content-Type: text/html",
                  ContentLength(0), ""});
}

std::string_view ContentTypeOf(std::string_view path) {
    const std::string extension = ExtensionName(path);
    const auto found = std::ranges::find_if(
        ContentTypes, [&](const ContentType& row) { return ascii::SameText(row.extension, extension); });
    return found == ContentTypes.end() ? "text/plain" : found->type;
}

}  // namespace tessaloom
