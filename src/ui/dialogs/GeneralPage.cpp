#include <QMenu>
#include <QPushButton>
#include <numeric>

#include "imaging/DIB.h"
#include "model/Canvas.h"
#include "model/edit/History.h"
#include "platform/Platform.h"
#include "ui/dialogs/CanvasSetupPage.h"
#include "ui/dialogs/FactList.h"
#include "ui/dialogs/Wording.h"
#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom::CanvasPages {

namespace {

/// Pixels.
struct Preset {
    int width, height;
    const char* name;
};

constexpr Preset Presets[] = {
    {320,  240,  "4:3, small"           },
    {640,  480,  "4:3"                  },
    {800,  600,  "4:3"                  },
    {1024, 768,  "4:3"                  },
    {640,  360,  "16:9, small"          },
    {1280, 720,  "16:9, high definition"},
    {1920, 1080, "16:9, full definition"},
    {720,  1280, "9:16, upright"        },
};

QString SizeText(int width, int height) { return QString("%1 × %2").arg(width).arg(height); }

/// "4:3"; "" where the terms are too large to tell anybody anything.
QString Proportions(int width, int height) {
    const int divisor = std::gcd(width, height);
    const int across = width / divisor, down = height / divisor;
    return across > 32 || down > 32 ? QString() : QString(" (%1:%2)").arg(across).arg(down);
}

int Layers(const Canvas& canvas, bool texts) {
    int count = 0;
    for (int slot = 1; slot <= Canvas::MaxText; ++slot)
        count += texts ? canvas.Text(slot) != nullptr : canvas.Graphic(slot) != nullptr;
    return count;
}

class GeneralPage final : public CanvasSetupPage {
public:
    GeneralPage(Workspace& workspace, int canvas)
        : CanvasSetupPage(workspace, canvas, PropertySets::CanvasGeneral(*workspace.Portfolio(), canvas)),
          sizes_(new QMenu(this)) {
        Facts()->Add("factSize", "Size");
        Facts()->Add("factLayers", "Layers");
        Facts()->Add("factFile", "File");
        presets_ = AddAction("cmdSizePresets", "Size &Presets", [] {});
        presets_->setMenu(sizes_);
        connect(sizes_, &QMenu::aboutToShow, this, [this] { FillSizes(); });
        turn_ = AddAction("cmdTurnSize", "Swap Wid&th and Height", [this] {
            if (const Canvas* now = TheCanvas()) SetSize(now->Height(), now->Width());
        });
    }

private:
    void ShowCanvas(Portfolio&, Canvas& canvas) override {
        const int width = canvas.Width(), height = canvas.Height();
        Facts()->Tell("factSize", SizeText(width, height) + " px" + Proportions(width, height));
        Facts()->Tell(
            "factLayers",
            QString("%1 of text, %2 of pictures").arg(Layers(canvas, true)).arg(Layers(canvas, false)));
        const QString file = Wording::FullPath(TheWorkspace().Services().fileSystem, canvas.FileName());
        Facts()->TellPath("factFile", file.isEmpty() ? "Not saved yet" : file);
        const QString locked = canvas.SizeLocked() ? "The size is locked" : QString();
        for (QPushButton* button : {presets_, turn_}) {
            button->setEnabled(!canvas.SizeLocked());
            button->setToolTip(locked);
        }
    }

    void FillSizes() {
        sizes_->clear();
        for (const Preset& preset : Presets) AddSize(preset.width, preset.height, preset.name);
        sizes_->addSeparator();
        const Portfolio* portfolio = TheWorkspace().Portfolio();
        for (int feed = 0; portfolio && feed < Portfolio::MaxFeed; ++feed) {
            const VideoFeed& video = portfolio->VideoFeed(feed);
            if (const auto frame = video.Frame(); video.Enabled() && frame && frame->DIBPtr())
                AddSize(frame->Width(), frame->Height(), "as " + Wording::Words(video.FeedName()));
        }
    }

    void AddSize(int width, int height, const QString& name) {
        QAction* action = sizes_->addAction(SizeText(width, height) + "  " + name);
        connect(action, &QAction::triggered, this, [this, width, height] {
            SetSize(width, height);
            Refresh();
        });
    }

    void SetSize(int width, int height) {
        Canvas* canvas = TheCanvas();
        if (!canvas || canvas->SizeLocked()) return;
        const HistoryStep step(TheWorkspace().HistoryOf(Slot()), "Change size");
        canvas->SetWidthHeight(width, height);
    }

    QMenu* sizes_;
    QPushButton* presets_;
    QPushButton* turn_;
};

}  // namespace

SetupPage* General(Workspace& workspace, int canvas) { return new GeneralPage(workspace, canvas); }

}  // namespace tessaloom::CanvasPages
