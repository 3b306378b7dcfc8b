#include <QHeaderView>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>

#include "imaging/DIB.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "model/edit/Conflicts.h"
#include "publish/VideoStreaming.h"
#include "ui/dialogs/CanvasSetupPage.h"
#include "ui/dialogs/FactList.h"
#include "ui/dialogs/Hint.h"
#include "ui/dialogs/Wording.h"
#include "ui/shared/Workspace.h"

namespace tessaloom::CanvasPages {

namespace {

/// What a stage in which an upload failed means to a person; "%1" is the status.
constexpr struct {
    std::string_view stage;
    const char* meaning;
} Failures[] = {
    {"Connect Error",       "The server could not be reached or did not let us in: %1"                     },
    {"Timeout: Connect",    "The server did not answer: %1"                                                },
    {"Local store error.",  "The picture could not be kept on this computer for sending: %1"               },
    {"Store Error",         "The server did not take the file: %1"                                         },
    {"Timeout: Store",      "The server stopped taking the file: %1"                                       },
    {"Rename Error",        "The file was sent, but the server did not give it its final name: %1"         },
    {"Timeout: Rename",     "The file was sent, but the server did not say that it renamed it: %1"         },
    {"Timeout: Delete",     "The file was sent, but the server did not say that it deleted the old one: %1"},
    {"Timeout: Disconnect", "The file was sent, but the server did not say goodbye: %1"                    },
};

/// The outcome of the last upload in a sentence.
QString Outcome(const InetFTP& transfer) {
    const auto& steps = transfer.Steps();
    if (transfer.Uploading()) return "Uploading...";
    if (steps.empty()) return "No upload since the program was started";
    if (steps.back().stage == "Idle") return "Cancelled";
    if (!transfer.LastFailed()) return "The picture is on the server";
    for (auto step = steps.rbegin(); step != steps.rend(); ++step)
        if (const auto found =
                std::ranges::find(Failures, step->stage, [](const auto& row) { return row.stage; });
            found != std::end(Failures))
            return QString(found->meaning).arg(Wording::Words(step->status));
    return Wording::Words(steps.back().stage + ": " + steps.back().status);
}

class FTPUploadPage final : public CanvasSetupPage {
public:
    FTPUploadPage(Workspace& workspace, int canvas)
        : CanvasSetupPage(workspace, canvas, PropertySets::FTPUpload(*workspace.Portfolio(), canvas)),
          steps_(new QTreeWidget),
          busy_(new QProgressBar) {
        Facts()->Add("factNext", "Next upload");
        Facts()->Add("factResult", "Last upload");
        steps_->setObjectName("steps");
        steps_->setAccessibleName("Steps of the last upload");
        steps_->setHeaderLabels({"Time", "Stage", "Status"});
        steps_->setRootIsDecorated(false);
        steps_->setUniformRowHeights(true);
        steps_->setMinimumHeight(fontMetrics().height() * 7);
        steps_->setMaximumHeight(fontMetrics().height() * 10);
        steps_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        busy_->setRange(0, 0);
        busy_->setTextVisible(false);
        busy_->setAccessibleName("Uploading");
        busy_->hide();
        steps_->hide();
        Extras()->addWidget(steps_);
        Extras()->addWidget(busy_);
        test_ = AddAction("cmdTestNow", "&Test Now", [this] { Test(); });
        cancel_ = AddAction("cmdCancelTest", "Cance&l Upload", [this] {
            if (Canvas* of = TheCanvas()) of->VideoStreaming().FTPPush().UnloadClass();
        });
    }

private:
    void Test() {
        Canvas* canvas = TheCanvas();
        if (!canvas) return;
        FTPPush& upload = canvas->VideoStreaming().FTPPush();
        upload.Upload();
        refused_ = !upload.Transfer() || !upload.Transfer()->Uploading();
    }

    void ShowCanvas(Portfolio& portfolio, Canvas& canvas) override {
        const FTPPush& upload = canvas.VideoStreaming().FTPPush();
        const InetFTP* transfer = upload.Transfer();
        Facts()->Tell("factNext", Wording::Next(upload.Enabled(), upload.Interval(), upload.NextUploadTime(),
                                                upload.Schedule(), portfolio.Now()));
        Facts()->Tell("factResult", transfer ? Outcome(*transfer) : QString());
        const bool uploading = transfer && transfer->Uploading();
        refused_ = refused_ && !uploading;
        ShowHints(portfolio, upload, canvas.Picture().DIBPtr() != nullptr);
        busy_->setVisible(uploading);
        test_->setEnabled(transfer && !uploading && !upload.ServerName().empty());
        cancel_->setEnabled(uploading);
        if (transfer) ShowSteps(*transfer, portfolio.Now());
    }

    void ShowHints(const Portfolio& portfolio, const FTPPush& upload, bool picture) {
        QStringList hints;
        if (!upload.Transfer()) hints += "This program cannot upload anything.";
        if (upload.ServerName().empty()) hints += "There is no server yet.";
        if (refused_) hints += picture ? Wording::Words(upload.Status()) : "The canvas has no picture yet.";
        if (upload.Enabled())
            hints +=
                Clash(portfolio, Conflicts::Upload(portfolio, Slot()),
                      "The same file of this server is written by %1: each overwrites the other's picture.");
        hints.removeAll(QString());
        Hints()->Tell(hints);
    }

    void ShowSteps(const InetFTP& transfer, double now) {
        const auto& steps = transfer.Steps();
        const double latest = steps.empty() ? 0 : steps.back().moment;
        const int count = static_cast<int>(steps.size());
        if (count == steps_->topLevelItemCount() && latest == latest_) return;
        latest_ = latest;
        steps_->setVisible(count > 0);
        steps_->clear();
        for (const InetFTP::Shown& step : steps)
            steps_->addTopLevelItem(
                new QTreeWidgetItem({Wording::Moment(step.moment, now), Wording::Words(step.stage),
                                     Wording::Words(step.status)}));
        steps_->scrollToBottom();
    }

    QTreeWidget* steps_;
    QProgressBar* busy_;
    QPushButton* test_;
    QPushButton* cancel_;
    double latest_ = 0;     ///< Moment of the last step that is shown.
    bool refused_ = false;  ///< The last test could not begin.
};

}  // namespace

SetupPage* FTPUpload(Workspace& workspace, int canvas) { return new FTPUploadPage(workspace, canvas); }

}  // namespace tessaloom::CanvasPages
