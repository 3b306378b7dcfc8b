#include "ui/dialogs/WebAddress.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QHostAddress>
#include <QNetworkInterface>
#include <QUrl>

#include "ui/dialogs/Wording.h"

namespace tessaloom::WebAddress {

namespace {

constexpr int DefaultPort = 80;  ///< Left out of addresses.

QString Make(const QString& host, int port, std::string_view path) {
    QUrl address;
    address.setScheme("http");
    address.setHost(host);
    if (port != DefaultPort) address.setPort(port);
    address.setPath("/" + Wording::Words(path), QUrl::DecodedMode);
    return address.toString(QUrl::FullyEncoded);
}

/// The first address that other computers can use.
QString HostInNetwork() {
    for (const QHostAddress& address : QNetworkInterface::allAddresses())
        if (address.protocol() == QAbstractSocket::IPv4Protocol && !address.isLoopback() &&
            !address.isLinkLocal())
            return address.toString();
    return {};
}

}  // namespace

QString Local(int port, std::string_view path) { return Make("localhost", port, path); }

QString Network(int port, std::string_view path) {
    const QString host = HostInNetwork();
    return host.isEmpty() ? QString() : Make(host, port, path);
}

void Open(const QString& address) { QDesktopServices::openUrl(QUrl(address)); }

void Copy(const QString& address) { QGuiApplication::clipboard()->setText(address); }

}  // namespace tessaloom::WebAddress
