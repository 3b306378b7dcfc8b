#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The heads of the web server's responses, with the empty line that ends them. Dates are in the user's own
/// format.
namespace tessaloom {

/// Of a file of `bytes` bytes.
std::string FileHead(std::string_view contentType, std::size_t bytes);

/// Of a canvas picture, encoded at moment `lastModified`.
std::string PictureHead(double lastModified, std::size_t bytes);

/// Kept: protocol version 1.0 here, 1.1 on success.
std::string NotFoundHead();

/// By the extension of `path`, whatever its case; "text/plain" for unknown ones.
std::string_view ContentTypeOf(std::string_view path);

}  // namespace tessaloom
