#pragma once

#include <QString>
#include <string_view>

namespace tessaloom {

class FactList;

/// Where browsers find a page of the web server: two rows among a page's facts, and what can be done with
/// them.
class WebAddresses {
public:
    static void AddRows(FactList& facts);

    /// Shows the addresses of `path`. The network is asked only when something changed.
    void Show(FactList& facts, int port, std::string_view path);

    void OpenInBrowser() const;

    /// Copies the one that other computers can use, where there is a network.
    void Copy() const;

private:
    QString local_;    ///< "http://localhost:18080/Canvas01.jpg"
    QString network_;  ///< "" without a network.
};

}  // namespace tessaloom
