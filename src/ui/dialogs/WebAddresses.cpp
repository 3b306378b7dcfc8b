#include "ui/dialogs/WebAddresses.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QHostAddress>
#include <QNetworkInterface>
#include <QUrl>

#include "ui/dialogs/FactList.h"
#include "ui/dialogs/Wording.h"

namespace tessaloom {

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

void WebAddresses::AddRows(FactList& facts) {
    facts.Add("factLocal", "On this computer");
    facts.Add("factNetwork", "In the network");
}

void WebAddresses::Show(FactList& facts, int port, std::string_view path) {
    const QString local = Make("localhost", port, path);
    if (local != local_) {
        local_ = local;
        const QString host = HostInNetwork();
        network_ = host.isEmpty() ? QString() : Make(host, port, path);
    }
    facts.TellPath("factLocal", local_);
    facts.TellPath("factNetwork", network_);
}

void WebAddresses::OpenInBrowser() const { QDesktopServices::openUrl(QUrl(local_)); }

void WebAddresses::Copy() const {
    QGuiApplication::clipboard()->setText(network_.isEmpty() ? local_ : network_);
}

}  // namespace tessaloom
