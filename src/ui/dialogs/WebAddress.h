#pragma once

#include <QString>
#include <string_view>

namespace tessaloom::WebAddress {

/// What a browser on this computer asks for: "http://localhost:18080/Canvas01.jpg".
QString Local(int port, std::string_view path);

/// The same for the other computers of the network; "" without a network.
QString Network(int port, std::string_view path);

void Open(const QString& address);
void Copy(const QString& address);

}  // namespace tessaloom::WebAddress
