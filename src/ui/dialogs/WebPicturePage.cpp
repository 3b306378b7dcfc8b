#include <QPushButton>

#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "model/edit/Conflicts.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "publish/VideoStreaming.h"
#include "publish/WebServer.h"
#include "ui/dialogs/CanvasSetupPage.h"
#include "ui/dialogs/FactList.h"
#include "ui/dialogs/Hint.h"
#include "ui/dialogs/Setups.h"
#include "ui/dialogs/WebAddresses.h"
#include "ui/dialogs/Wording.h"
#include "ui/shared/Workspace.h"

namespace tessaloom::CanvasPages {

namespace {

class WebPicturePage final : public CanvasSetupPage {
public:
    WebPicturePage(Workspace& workspace, int canvas)
        : CanvasSetupPage(workspace, canvas, PropertySets::WebPicture(*workspace.Portfolio(), canvas)) {
        WebAddresses::AddRows(*Facts());
        Facts()->Add("factLast", "Last picture made");
        open_ = AddAction("cmdOpenPage", "Open in &Browser", [this] { addresses_.OpenInBrowser(); });
        AddAction("cmdCopyAddress", "&Copy Address", [this] { addresses_.Copy(); });
        AddAction("cmdWebServer", "&Web Server...",
                  [this] { ShowWebServerSetup(TheWorkspace(), window()->parentWidget()); });
    }

private:
    void ShowCanvas(Portfolio& portfolio, Canvas& canvas) override {
        const CanvasWebServer& web = canvas.VideoStreaming().CanvasWebServer();
        const WebServer& server = portfolio.WebServer();
        const int port = server.Enabled() ? server.ListeningPort() : server.Port();
        addresses_.Show(*Facts(), port, web.FileName());
        Facts()->Tell("factLast", web.LastModified() > 0
                                      ? Wording::Moment(web.LastModified(), portfolio.Now())
                                      : "None asked for since the program was started");
        open_->setEnabled(server.Enabled() && web.Enabled());
        open_->setToolTip(open_->isEnabled() ? QString() : "Only while the page and the web server are on");
        ShowHints(portfolio, web);
    }

    void ShowHints(Portfolio& portfolio, const CanvasWebServer& web) {
        QStringList hints;
        if (web.Enabled() && !portfolio.WebServer().Enabled())
            hints += "The web server is off, so nobody can see the picture.";
        if (web.FileName().empty()) hints += "Without a name the picture takes the place of the start page.";
        if (web.Enabled())
            hints += Clash(portfolio, Conflicts::WebName(portfolio, Slot()),
                           "The same name is used by %1: visitors see only one of the two.");
        if (web.Schedule().ScheduleMode() != Schedule::Always && !OffScheduleFileExists(portfolio, web))
            hints += QString(
                         "There is no file %1 in the web folder or beside the portfolio: outside the "
                         "schedule visitors are told that there is nothing.")
                         .arg(Wording::Words(web.OffScheduleFile()));
        hints.removeAll(QString());
        Hints()->Tell(hints);
    }

    bool OffScheduleFileExists(Portfolio& portfolio, const CanvasWebServer& web) const {
        const FileSystem& files = TheWorkspace().Services().fileSystem;
        const std::string& name = web.OffScheduleFile();
        return files.FileExists(name) || files.FileExists(JoinPath(portfolio.WebServer().WebPath(), name)) ||
               files.FileExists(JoinPath(ParentFolderName(portfolio.FileName()), name));
    }

    WebAddresses addresses_;
    QPushButton* open_;
};

}  // namespace

SetupPage* WebPicture(Workspace& workspace, int canvas) { return new WebPicturePage(workspace, canvas); }

}  // namespace tessaloom::CanvasPages
