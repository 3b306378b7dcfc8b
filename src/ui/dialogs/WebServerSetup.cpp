#include <QPushButton>
#include <QVBoxLayout>

#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "publish/VideoStreaming.h"
#include "publish/WebServer.h"
#include "ui/dialogs/FactList.h"
#include "ui/dialogs/Hint.h"
#include "ui/dialogs/SetupPage.h"
#include "ui/dialogs/Setups.h"
#include "ui/dialogs/WebAddresses.h"
#include "ui/dialogs/Wording.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/SetupWindow.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

constexpr int FirstFreePort = 1024;  ///< Those below are kept for administrators.

/// A change of the port takes effect when the server starts.
void Restart(WebServer& server) {
    server.SetEnabled(false);
    server.SetEnabled(true);
}

class WebServerPage final : public SetupPage {
public:
    explicit WebServerPage(Workspace& workspace)
        : SetupPage(workspace, PropertySets::Web(*workspace.Portfolio())) {
        Facts()->Add("factState", "State");
        Facts()->Add("factConnections", "Connections");
        Facts()->Add("factRequests", "Requests");
        Facts()->Add("factPictures", "Pictures");
        Facts()->Add("factFolder", "Web folder");
        WebAddresses::AddRows(*Facts());
        open_ = AddAction("cmdOpenPage", "Open in &Browser", [this] { addresses_.OpenInBrowser(); });
        AddAction("cmdCopyAddress", "&Copy Address", [this] { addresses_.Copy(); });
        restart_ = AddAction("cmdRestartServer", "Re&start Server",
                             [this] { Restart(TheWorkspace().Portfolio()->WebServer()); });
    }

private:
    void ShowFacts(Portfolio& portfolio) override {
        const WebServer& server = portfolio.WebServer();
        const bool on = server.Enabled();
        Facts()->Tell("factState",
                      on ? QString("Listening on port %1").arg(server.ListeningPort())
                         : QString(server.Failure().empty() ? "Switched off" : "Could not start"));
        Facts()->Tell(
            "factConnections",
            on ? QString("%1 of at most %2").arg(server.Connections()).arg(WebServer::PoolSize) : QString());
        Facts()->Tell("factRequests", QString("%L1 since the portfolio was opened").arg(server.Requests()));
        const QStringList pictures = Pictures(portfolio);
        Facts()->Tell("factPictures", pictures.isEmpty() ? "None is published" : pictures.join(", "));
        const bool files = server.AllowNonCanvasServes();
        const FileSystem& fileSystem = TheWorkspace().Services().fileSystem;
        Facts()->TellPath("factFolder", files ? Wording::FullPath(fileSystem, server.WebPath()) : QString());

        addresses_.Show(*Facts(), on ? server.ListeningPort() : server.Port(),
                        files || pictures.isEmpty() ? std::string() : pictures.front().toStdString());
        open_->setEnabled(on && (files || !pictures.isEmpty()));
        restart_->setEnabled(on);
        ShowHints(server, pictures.isEmpty());
    }

    void ShowHints(const WebServer& server, bool noPictures) {
        QStringList hints;
        const bool on = server.Enabled();
        if (!on && !server.Failure().empty()) {
            hints +=
                QString("The server could not listen on its port: %1.").arg(Wording::Words(server.Failure()));
            if (server.Port() < FirstFreePort)
                hints += QString("Port %1 needs administrator rights; those from %2 on do not.")
                             .arg(server.Port())
                             .arg(FirstFreePort);
        }
        if (on && server.ListeningPort() != server.Port())
            hints += QString("Port %1 is used when the server is started anew.").arg(server.Port());
        if (server.AllowNonCanvasServes() &&
            !TheWorkspace().Services().fileSystem.FolderExists(server.WebPath()))
            hints += "The web folder does not exist: only the list of the pictures is served.";
        if (on && noPictures && !server.AllowNonCanvasServes())
            hints += "There is nothing to see: no canvas has its web picture on, and no files are served.";
        Hints()->Tell(hints);
    }

    /// The names under which canvases are published.
    static QStringList Pictures(const Portfolio& portfolio) {
        QStringList names;
        for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) {
            const Canvas& canvas = portfolio.Canvas(slot);
            const CanvasWebServer& web = canvas.VideoStreaming().CanvasWebServer();
            if (canvas.Enabled() && web.Enabled()) names += Wording::Words(web.FileName());
        }
        return names;
    }

    WebAddresses addresses_;
    QPushButton* open_;
    QPushButton* restart_;
};

class WebServerSetup final : public SetupWindow {
public:
    WebServerSetup(Workspace& workspace, QWidget* parent)
        : SetupWindow(workspace, "WebServerSetup", "Web Server", parent),
          page_(new WebServerPage(workspace)),
          port_(workspace.Portfolio()->WebServer().Port()) {
        Contents()->addWidget(page_);
        resize(fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 32);
    }

protected:
    void Restore() override {
        Portfolio* portfolio = TheWorkspace().Portfolio();
        if (!portfolio) return;
        WebServer& server = portfolio->WebServer();
        server.SetPort(port_);  // before the server is switched on again
        page_->Form()->Restore();
        if (server.Enabled() && server.ListeningPort() != port_) Restart(server);
    }

private:
    WebServerPage* page_;
    const int port_;  ///< As the window found it.
};

}  // namespace

void ShowWebServerSetup(Workspace& workspace, QWidget* parent) {
    if (!workspace.Portfolio()) return;
    SetupWindow::ShowOnly("WebServerSetup", [&] { return new WebServerSetup(workspace, parent); });
}

}  // namespace tessaloom
