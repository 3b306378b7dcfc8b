// What a person sees while dragging a layer on a canvas of 1920 x 1080 pixels with 30 layers: the pointer's
// move, the whole tick, and the painting of the canvas's window into memory. Items are redraws; 30 a second
// are wanted.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QMouseEvent>
#include <memory>

#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "model/Documents.h"
#include "model/edit/Layers.h"
#include "ui/canvas/CanvasEditor.h"
#include "ui/shared/Workspace.h"

using namespace tessaloom;
using tessaloom::testing::Documents;
using tessaloom::testing::TestPlatform;

namespace {

constexpr int Slot = 1;
constexpr QSize CanvasSize(1920, 1080);

/// The canvas's view, which hands its picture on.
class View : public CanvasView {
public:
    explicit View(std::unique_ptr<CanvasEditor>& editor) : editor_(editor) {}
    void ShowPicture(const DIB& picture) override {
        if (editor_) editor_->ShowPicture(picture);
    }
    void CanvasChanged() override {}
    void ActivitateFormTimer() override {}
    int Left() const override { return 0; }
    int Top() const override { return 0; }

private:
    std::unique_ptr<CanvasEditor>& editor_;
};

/// A picture that covers the canvas, 14 blocks over it, some see-through, some with a shadow, and 15 texts.
void Fill(Canvas& canvas) {
    canvas.SetWidthHeight(CanvasSize.width(), CanvasSize.height());
    for (int slot = 1; slot <= 15; ++slot) {
        const bool ground = slot == 1;
        Graphic& graphic =
            Documents::Block(canvas, slot, 0x203040 * slot % 0x1000000, ground ? 0 : 110 * slot,
                             ground ? 0 : 50 * slot, ground ? 1920 : 320, ground ? 1080 : 180);
        if (slot % 3 == 0) graphic.SetOpacity(60);
        graphic.SetShadow(slot % 4 == 0);
        Documents::Boxes(canvas, slot, "A line of text", 0xFFFFFF, 60 * slot, 1000 - 55 * slot)
            .SetShadow(slot % 2 == 0);
    }
}

struct Desktop {
    TestPlatform it;
    std::unique_ptr<CanvasEditor> editor;
    std::unique_ptr<Workspace> workspace;

    explicit Desktop(QSize window) {
        modMain::Main(it.platform, {.portfolio = "a.por",
                                    .views = [this](Canvas&) { return std::make_unique<View>(editor); }});
        Canvas& canvas = modMain::OpenPortfolio()->Canvas(Slot);
        canvas.SetEnabled(true);
        canvas.SetVisible(true);
        Fill(canvas);
        workspace = std::make_unique<Workspace>(it.platform);
        workspace->Activate(Slot);
        editor = std::make_unique<CanvasEditor>(*workspace, Slot);
        editor->resize(window);
        editor->show();
        Tick();
    }
    ~Desktop() {
        editor.reset();
        workspace.reset();
        modMain::modMain_Shutdown();
    }

    void Tick() {
        it.time.Advance(modMain::TickInterval / 1000.0);
        it.timer.Tick();
        QApplication::processEvents();
    }

    void Mouse(QEvent::Type type, QPointF at, Qt::MouseButtons buttons) {
        QMouseEvent event(type, at, editor->mapToGlobal(at), Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(editor.get(), &event);
    }
};

/// window: the widget's width; the picture is scaled to it.
void Drag(benchmark::State& state) {
    Desktop desktop(CanvasSize * (static_cast<double>(state.range(0)) / CanvasSize.width()));
    const double scale = static_cast<double>(state.range(0)) / CanvasSize.width();
    const LayerId layer{LayerId::Kind::Graphic, 9};  // see-through, among others
    const auto place = Layers::GeometryOf(*desktop.workspace->ActiveCanvas(), layer);
    if (!place) return state.SkipWithError("no layer to drag");
    const QPointF start = QPointF(place->left + 20, place->top + 150) * scale;
    desktop.Mouse(QEvent::MouseButtonPress, start, Qt::LeftButton);
    int step = 0;
    for (auto redraw : state) {
        ++step;
        const QPointF way((step * 7) % 200, (step * 5) % 120);
        desktop.Mouse(QEvent::MouseMove, start + way, Qt::LeftButton);
        desktop.Tick();
    }
    desktop.Mouse(QEvent::MouseButtonRelease, start, Qt::NoButton);
    state.SetItemsProcessed(state.iterations());
    const auto after = Layers::GeometryOf(*desktop.workspace->ActiveCanvas(), layer);
    if (step > 1 && (!after || after->left == place->left)) state.SkipWithError("nothing was dragged");
}

BENCHMARK(Drag)->Arg(1920)->Arg(1280)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
