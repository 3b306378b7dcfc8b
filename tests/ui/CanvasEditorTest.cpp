// The canvas's window: real mouse and key events, the real engine, on a platform of fakes.

#include "ui/canvas/CanvasEditor.h"

#include "model/edit/Layers.h"
#include "text/Text.h"
#include "ui/Desk.h"
#include "ui/canvas/LayerFrame.h"
#include "ui/canvas/Notice.h"
#include "ui/canvas/PictureFileDialog.h"

namespace tessaloom::testing {
namespace {

using Kind = LayerId::Kind;

/// A canvas of 400 x 300 pixels in slot 1, shown pixel for pixel.
class CanvasEditorTest : public Desk {
protected:
    void SetUp() override {
        Start();
        canvas_ = &TheCanvas();
        canvas_->SetWidthHeight(400, 300);
        canvas_->SetEnabled(true);
        canvas_->SetFileName("folder\\harbour.can");
        workspace->Activate(1);
        editor_ = std::make_unique<CanvasEditor>(*workspace, 1);
        editor_->resize(400, 300);
        editor_->show();
    }
    void TearDown() override {
        editor_.reset();
        Desk::TearDown();
    }

    void Tick() {
        it.time.Advance(0.02);
        it.timer.Tick();
        if (canvas_) editor_->ShowPicture(canvas_->Picture());
        QApplication::processEvents();
    }

    /// A plain block in `slot`, composed.
    Graphic& Block(int slot, int x, int y, int width, int height, int colour = 0xFF) {
        Graphic& graphic = *canvas_->AddGraphic(slot);
        graphic.SetBackgroundColor(colour);
        graphic.Setx(x);
        graphic.SetY(y);
        graphic.SetStretchWidth(width);
        graphic.SetStretchHeight(height);
        Tick();
        return graphic;
    }

    QWidget* Widget() { return editor_.get(); }
    void Press(QPoint at, Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(Widget(), Qt::LeftButton, keys, at);
    }
    void MoveTo(QPoint at, Qt::KeyboardModifiers keys = {}) {
        QMouseEvent event(QEvent::MouseMove, at, editor_->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                          keys);
        QApplication::sendEvent(Widget(), &event);
    }
    void Release(QPoint at) { QTest::mouseRelease(Widget(), Qt::LeftButton, {}, at); }
    void Drag(QPoint from, QPoint to, Qt::KeyboardModifiers keys = Qt::AltModifier) {
        Press(from, keys & ~Qt::KeyboardModifiers(Qt::AltModifier | Qt::ShiftModifier | Qt::ControlModifier));
        MoveTo(to, keys);
        Release(to);
        Tick();
    }
    void Click(QPoint at, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(Widget(), Qt::LeftButton, keys, at);
    }
    void Key(int key, Qt::KeyboardModifiers keys = {}) {
        QTest::keyClick(Widget(), static_cast<Qt::Key>(key), keys);
    }
    void Drop(const QMimeData& data, QPoint at) {
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(Widget(), &enter);
        QDropEvent event(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(Widget(), &event);
        Tick();
    }

    std::vector<int> Selected() const {
        std::vector<int> slots;
        for (const LayerId layer : workspace->Selection()) slots.push_back(layer.slot);
        return slots;
    }
    History& Steps() { return *workspace->HistoryOf(1); }
    QString Told() const { return editor_->findChild<Notice*>()->Text(); }

    std::unique_ptr<CanvasEditor> editor_;
    Canvas* canvas_ = nullptr;
};

TEST_F(CanvasEditorTest, ShowsThePictureScaledAndPixelForPixel) {
    Block(1, 0, 0, 200, 300, 0xFF);
    EXPECT_EQ(editor_->grab().toImage().pixelColor(100, 280), QColor(Qt::red));
    EXPECT_EQ(editor_->grab().toImage().pixelColor(300, 280), QColor(Qt::white));
    editor_->resize(200, 200);
    EXPECT_EQ(editor_->grab().toImage().pixelColor(98, 170), QColor(Qt::red));
    EXPECT_EQ(editor_->grab().toImage().pixelColor(103, 170), QColor(Qt::white));
    Block(1, 50, 0, 100, 300, 0xFF00);
    EXPECT_EQ(editor_->grab().toImage().pixelColor(50, 100), QColor(Qt::green)) << "a part anew";
    editor_->SetScaled(false);
    EXPECT_EQ(editor_->minimumSizeHint(), QSize(400, 300));
}

TEST_F(CanvasEditorTest, SelectsByClickKeysAndRectangle) {
    Block(1, 0, 0, 100, 100);
    Block(2, 50, 50, 100, 100);
    Block(3, 300, 200, 50, 50);
    const QPoint both(75, 75);
    struct Row {
        const char* name;
        std::function<void()> act;
        std::vector<int> selected;
    };
    const Row rows[] = {
        {"the topmost",      [&] { Click(both); },                             {2}      },
        {"the next below",   [&] { Click(both, Qt::AltModifier); },            {1}      },
        {"round again",      [&] { Click(both, Qt::AltModifier); },            {2}      },
        {"one more",
         [&] {
             Click({310, 210}, Qt::ShiftModifier);
         },                                                                    {2, 3}   },
        {"one less",         [&] { Click(both, Qt::ControlModifier); },        {3}      },
        {"nothing",
         [&] {
             Click({390, 10});
         },                                                                    {}       },
        {"within",
         [&] {
             Drag({399, 299}, {40, 40});
         },                                                                    {2, 3}   },
        {"Escape",           [&] { Key(Qt::Key_Escape); },                     {}       },
        {"Tab: the topmost", [&] { Key(Qt::Key_Tab); },                        {3}      },
        {"Tab",              [&] { Key(Qt::Key_Tab); },                        {2}      },
        {"and back",         [&] { Key(Qt::Key_Backtab, Qt::ShiftModifier); }, {3}      },
        {"all",              [&] { Key(Qt::Key_A, Qt::ControlModifier); },     {1, 2, 3}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        row.act();
        EXPECT_EQ(Selected(), row.selected);
    }
    EXPECT_FALSE(Steps().CanUndo());
}

TEST_F(CanvasEditorTest, MovesWithGuidesInOneStep) {
    Graphic& block = Block(1, 20, 20, 60, 40);
    Drag({30, 30}, {77, 50});
    EXPECT_EQ(block.x(), 67);
    EXPECT_EQ(block.Y(), 40);
    EXPECT_EQ(Steps().UndoName(), "Move");
    Drag({80, 50}, {89, 250}, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(block.x(), 67) << "along one axis";
    EXPECT_EQ(block.Y(), 240);
    Drag({80, 250}, {9, 186}, {});
    EXPECT_EQ(block.x(), 0) << "snaps to the edge";
    EXPECT_EQ(block.Y(), 176);
    Steps().Undo();
    EXPECT_EQ(canvas_->Graphic(1)->Y(), 240);
}

TEST_F(CanvasEditorTest, MovesByKeysInOneStep) {
    Graphic& block = Block(1, 20, 20, 60, 40);
    Key(Qt::Key_Right);
    EXPECT_EQ(block.x(), 20) << "nothing is selected";
    Click({30, 30});
    for (int i = 0; i < 3; ++i) Key(Qt::Key_Right);
    Key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(block.x(), 23);
    EXPECT_EQ(block.Y(), 30);
    Steps().Undo();
    EXPECT_EQ(canvas_->Graphic(1)->x(), 20);
    EXPECT_FALSE(Steps().CanUndo());
}

TEST_F(CanvasEditorTest, ResizesAndTurnsByGrips) {
    Graphic& block = Block(1, 100, 100, 100, 60);
    Click({120, 120});
    Drag({200, 160}, {230, 200});
    EXPECT_EQ(QSize(block.StretchWidth(), block.StretchHeight()), QSize(130, 100));
    EXPECT_EQ(QPoint(block.x(), block.Y()), QPoint(100, 100));
    Drag({100, 150}, {90, 150}, Qt::AltModifier | Qt::ControlModifier);
    EXPECT_EQ(block.StretchWidth(), 150) << "from the centre";
    EXPECT_EQ(block.x(), 90);
    Drag({165, 76}, {250, 150}, Qt::ShiftModifier);
    EXPECT_EQ(block.RotationAngle(), 270) << "a quarter clockwise";
    EXPECT_EQ(Steps().UndoName(), "Turn");
    for (int i = 0; i < 3; ++i) Steps().Undo();
    EXPECT_EQ(canvas_->Graphic(1)->StretchWidth(), 100);
    EXPECT_EQ(canvas_->Graphic(1)->RotationAngle(), 0);

    canvas_->Graphic(1)->SetY(0);
    Tick();
    Drag({150, 84}, {90, 30}, Qt::ShiftModifier);
    EXPECT_EQ(canvas_->Graphic(1)->RotationAngle(), 270) << "by the grip beneath, where none can be above";
}

TEST_F(CanvasEditorTest, TextsGrowByTheirFont) {
    Text& text = *canvas_->AddText(1);
    text.SetValue("MMMMMMMM");
    text.SetFontSize(20);
    text.Setx(50);
    text.SetY(50);
    Tick();
    const auto before = Layers::GeometryOf(*canvas_, {Kind::Text, 1});
    ASSERT_TRUE(before);
    Click({before->left + 5, before->top + 5});
    Drag({before->right, before->bottom}, {before->right + static_cast<int>(before->width),
                                           before->bottom + static_cast<int>(before->height)});
    EXPECT_NEAR(text.FontSize(), 40, 2);
    QSignalSpy edits(editor_.get(), &CanvasEditor::EditRequested);
    QTest::mouseDClick(Widget(), Qt::LeftButton, {}, {before->left + 5, before->top + 5});
    EXPECT_EQ(edits.count(), 1);
}

TEST_F(CanvasEditorTest, SurvivesWhatOthersDoInMidDrag) {
    const std::pair<const char*, std::function<void()>> meanwhile[] = {
        {"Escape",                [&] { Key(Qt::Key_Escape); }                     },
        {"the layer goes",        [&] { canvas_->RemoveGraphic(1); }               },
        {"the layer changes",     [&] { canvas_->Graphic(1)->SetStretchWidth(10); }},
        {"the canvas is resized", [&] { canvas_->SetWidthHeight(200, 150); }       },
        {"the window is hidden",  [&] { editor_->hide(); }                         },
        {"the canvas goes",
         [&] {
             Open().ResetCanvas(1);
             workspace->CanvasClosed(1);
             canvas_ = nullptr;
         }                                                                         },
    };
    for (const auto& [name, act] : meanwhile) {
        SCOPED_TRACE(name);
        canvas_->SetWidthHeight(400, 300);
        editor_->show();
        Block(1, 20, 20, 60, 40);
        workspace->Select({});
        Press({30, 30});
        MoveTo({60, 60}, Qt::AltModifier);
        EXPECT_EQ(canvas_->Graphic(1)->x(), 50);
        act();
        if (name == std::string_view("Escape")) {
            EXPECT_EQ(canvas_->Graphic(1)->x(), 20);
        }
        Tick();
        MoveTo({90, 90}, Qt::AltModifier);
        Release({90, 90});
        Tick();
        editor_->grab();
    }
}

TEST_F(CanvasEditorTest, CopiesPastesAndOrders) {
    Block(1, 0, 0, 50, 50);
    Block(2, 60, 0, 50, 50);
    Block(3, 120, 0, 50, 50, 0xFF00);
    Click({10, 10});
    Click({70, 10}, Qt::ControlModifier);
    editor_->ToFront();
    std::vector<int> columns;
    for (const LayerId layer : Layers::InDrawingOrder(*canvas_))
        columns.push_back(canvas_->Graphic(layer.slot)->x());
    EXPECT_THAT(columns, ElementsAre(120, 0, 60)) << "both above, in their order";
    std::vector<int> chosen;
    for (const int slot : Selected()) chosen.push_back(canvas_->Graphic(slot)->x());
    EXPECT_THAT(chosen, ElementsAre(0, 60)) << "the same are selected, whatever their slots";
    Key(Qt::Key_C, Qt::ControlModifier);
    Key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_EQ(Selected().size(), 2u);
    EXPECT_EQ(canvas_->Graphic(Selected().front())->x(), 10) << "beside the first ones";
    Key(Qt::Key_Delete);
    EXPECT_EQ(Layers::InDrawingOrder(*canvas_).size(), 3u);
    EXPECT_EQ(Steps().UndoName(), "Delete");
}

TEST_F(CanvasEditorTest, TakesDroppedPicturesAndRefusesTheRest) {
    QTemporaryDir folder;
    const QString picture = folder.filePath("logo.png"), notes = folder.filePath("notes.txt");
    QImage(80, 60, QImage::Format_RGB32).save(picture);
    it.files[picture.toStdString()].bytes = PlainPicture{.width = 80, .height = 60}.Bytes(false);
    it.files[notes.toStdString()].bytes = "no picture";
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(picture), QUrl::fromLocalFile(notes), QUrl("http://camera/a.jpg")});
    Drop(data, {200, 100});
    const Graphic* dropped = nullptr;
    for (const LayerId layer : Layers::InDrawingOrder(*canvas_))
        if (const Graphic* graphic = canvas_->Graphic(layer.slot);
            graphic->SourceType() == Graphic::PictureFile)
            dropped = graphic;
    ASSERT_TRUE(dropped) << Told().toStdString();
    EXPECT_EQ(dropped->SourceFileName(), picture.toStdString());
    EXPECT_EQ(QPoint(dropped->x(), dropped->Y()), QPoint(160, 70)) << "its middle lies where it was dropped";
    EXPECT_EQ(Layers::InDrawingOrder(*canvas_).size(), 2u);
    EXPECT_THAT(Told().toStdString(), HasSubstr("notes.txt"));
}

TEST_F(CanvasEditorTest, OffersAndPreviewsWhatLayersCanLoad) {
    QTemporaryDir folder;
    const auto write = [&](const char* name, const std::string& bytes) {
        QFile file(folder.filePath(name));
        file.open(QIODevice::WriteOnly);
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        return file.fileName();
    };
    const QString good = write("a.png", PlainPicture{.width = 8, .height = 6, .alpha = 64}.Bytes(false));
    const QString bad = write("b.png", PlainPicture{.whole = false}.Bytes(false));
    PictureFileDialog dialog(nullptr, folder.path(), it.pictureLoader);
    ASSERT_EQ(dialog.nameFilters().size(), 2);
    for (const char* pattern : {"*.png", "*.svg", "*.ico", "*.tif", "*.webp", "*.pbm"})
        EXPECT_TRUE(dialog.nameFilters().front().contains(pattern)) << pattern;
    for (const char* pattern : {"mng", "tga", "icns", "wbmp", "xpm", "xbm", "svgz"})
        EXPECT_FALSE(dialog.nameFilters().front().contains(pattern)) << pattern;

    const auto label = [&](auto&& shows) {
        const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), shows);
    };
    Q_EMIT dialog.currentChanged(good);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return label([](const QLabel* shown) { return shown->text() == "8 \u00d7 6 pixels"; }); }));
    EXPECT_TRUE(label([](const QLabel* shown) {
        const QImage image = shown->pixmap().toImage();
        return image.width() == 8 && qAlpha(image.pixel(1, 1)) == 64 && qAlpha(image.pixel(7, 1)) == 255;
    }));
    Q_EMIT dialog.currentChanged(bad);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return label([](const QLabel* shown) { return shown->text() == "Not a picture"; }); }));
}

TEST_F(CanvasEditorTest, LoadsDroppedPicturesOneATick) {
    QTemporaryDir folder;
    QMimeData data;
    QList<QUrl> pictures;
    for (const char* name : {"1.png", "2.png", "3.png"}) {
        const QString path = folder.filePath(name);
        QImage(80, 60, QImage::Format_RGB32).save(path);
        it.files[path.toStdString()].bytes = PlainPicture{.width = 80, .height = 60}.Bytes(false);
        pictures << QUrl::fromLocalFile(path);
    }
    data.setUrls(pictures);
    Drop(data, {200, 100});
    EXPECT_EQ(Layers::InDrawingOrder(*canvas_).size(), 3u);
    const auto count = [&](auto&& has) {
        int found = 0;
        for (int slot : {1, 2, 3}) found += has(slot);
        return found;
    };
    for (int loaded = 1; loaded <= 3; ++loaded) {  // the first one at once
        EXPECT_EQ(count([&](int slot) { return canvas_->Graphic(slot)->Width() > 0; }), loaded);
        const auto due = [&] {
            return count([&](int slot) { return canvas_->Timing().Graphic(slot).force; }) == 1;
        };
        ASSERT_TRUE(loaded == 3 || QTest::qWaitFor(due));
        Tick();
    }
}

TEST_F(CanvasEditorTest, KeepsPastedPicturesBesideTheCanvas) {
    QGuiApplication::clipboard()->setImage(QImage(800, 400, QImage::Format_RGB32));
    editor_->Paste();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !Layers::InDrawingOrder(*canvas_).empty(); }));
    const Graphic& pasted = *canvas_->Graphic(1);
    EXPECT_THAT(pasted.SourceFileName(), StartsWith("folder\\pasted-"));
    EXPECT_TRUE(it.files.FileExists(pasted.SourceFileName()));
}

TEST_F(CanvasEditorTest, AddsLayersAndSaysWhyItDoesNot) {
    editor_->AddFeed();
    EXPECT_THAT(Told().toStdString(), HasSubstr("no video feed"));
    editor_->AddCanvas();
    EXPECT_THAT(Told().toStdString(), HasSubstr("No other canvas"));
    editor_->AddText();
    editor_->AddBlock();
    EXPECT_EQ(Layers::InDrawingOrder(*canvas_).size(), 2u);
    EXPECT_EQ(Steps().UndoName(), "Add block");
    while (canvas_->FreeGraphicSlot()) canvas_->AddGraphic(canvas_->FreeGraphicSlot());
    editor_->AddBlock();
    EXPECT_THAT(Told().toStdString(), HasSubstr("no room"));
}

TEST(LayerFrame, KeepsTheOppositeCornerOfATurnedFrame) {
    for (const double angle : {0.0, 30.0, 90.0, 200.0}) {
        SCOPED_TRACE(angle);
        const LayerFrame frame{
            {100, 100},
            80, 40, angle
        };
        const QPointF by = LayerFrame::Turned({20, 10}, angle);
        const LayerFrame grown = frame.Resized({Grip::Kind::Size, 1, 1}, by, {});
        EXPECT_EQ(QSizeF(grown.width, grown.height), QSizeF(100, 50));
        const QPointF shift = grown.Corner(-1, -1) - frame.Corner(-1, -1);
        EXPECT_NEAR(std::hypot(shift.x(), shift.y()), 0, 1e-9);
        const QPointF up = frame.At({0, -50});
        EXPECT_EQ(frame.TurnedTo(up, frame.At({-50, 0}), 10), std::fmod(angle + 90, 360));
    }
}

}  // namespace
}  // namespace tessaloom::testing
