// What people do with the program from end to end: mouse and keys on real windows above the real engine, in a
// folder of its own. Nothing is set through the model; it is only asked what came of it.

#include "app/Services.h"
#include "core/RunFlags.h"
#include "core/SetupValues.h"
#include "support/TemporaryFolder.h"
#include "support/TestPlatform.h"
#include "ui/AllSettings.h"
#include "ui/DesktopFrontEnd.h"
#include "ui/Person.h"
#include "ui/canvas/Notice.h"
#include "ui/frmMain.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/SetupWindow.h"

namespace tessaloom::testing {
namespace {

using Button = QDialogButtonBox;
using Values = std::map<std::string, std::string>;

class WorkIn {
public:
    explicit WorkIn(const std::string& folder) { std::filesystem::current_path(folder); }
    ~WorkIn() { std::filesystem::current_path(before_); }

private:
    const std::filesystem::path before_ = std::filesystem::current_path();
};

/// The program with its own timer, files, codecs, fonts and cameras. Only what would reach outside is a fake:
/// the wallpaper and the network.
class FlowsTest : public ::testing::Test {
protected:
    FlowsTest() : flags_(Flags()) {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        front_.Connect(platform_);
    }
    ~FlowsTest() override {
        modMain::modMain_Shutdown();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        tessaloom::Setup() = {};
        Flags() = flags_;
    }

    void Start(const std::string& portfolio = "") {
        Flags() = {.running = true};
        modMain::StartOptions options;
        options.views = front_.Views();
        options.portfolio = portfolio;
        modMain::Main(platform_, options);
        Person::Activate(Window());
    }

    frmMain& Window() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* window = qobject_cast<frmMain*>(widget)) return *window;
        throw std::logic_error("no main window");
    }
    void Choose(const QString& menu, const std::vector<QString>& commands) {
        Person::Choose(Window(), menu, commands);
    }

    /// A portfolio with one canvas, unsaved.
    void MakeDocuments(Person& person, const QString& name) {
        person.WillPress("New Portfolio", Button::Ok);
        Choose("mnuFile", {"cmdPortfolioNew"});
        MakeCanvas(person, name);
    }
    void MakeCanvas(Person& person, const QString& name) {
        person.WillEnter("Canvas Name", name);
        Choose("mnuFile", {"cmdCanvasNew"});
    }
    void AddCamera() {
        Choose("mnuSetup", {"cmdVideoFeeds"});
        QDialog& feeds = Person::Window("VideoFeedsSetup");
        auto& add = Person::Visible<QPushButton>(feeds, "cmdAddFeed");
        QTimer::singleShot(0, &feeds, [&] { Person::ChooseFrom(*add.menu(), "Test Pattern"); });
        Person::Click(add);
        auto& state = Person::Visible<QLabel>(feeds, "state");
        EXPECT_TRUE(Person::Wait([&] { return state.text().contains("640 × 480 pixels"); }));
        Person::Press(feeds, Button::Ok);
        Choose("mnuCanvas", {"cmdAddFeed"});
    }

    Canvas& TheCanvas(int slot = 1) { return modMain::OpenPortfolio()->Canvas(slot); }
    QWidget& Editor(const char* canvas = "Canvas01") {
        return Person::Visible(Person::Visible(Window(), canvas), "CanvasEditor");
    }
    /// A point of the canvas on its editor, which shows it in the middle, as large as there is room.
    QPointF On(const QWidget& editor, QPointF canvas) {
        const QSizeF whole(TheCanvas().Width(), TheCanvas().Height());
        const QSizeF shown = whole.scaled(editor.size(), Qt::KeepAspectRatio);
        return canvas * (shown.width() / whole.width()) +
               QPointF(editor.width() - shown.width(), editor.height() - shown.height()) / 2;
    }
    void Drag(QPointF from, QPointF to) {
        QWidget& editor = Editor();
        Person::Drag(editor, On(editor, from), On(editor, to), Qt::AltModifier);  // without snapping
    }
    PropertyForm& Properties() {
        return Person::Visible<PropertyForm>(Person::Visible(Window(), "dockProperties"));
    }
    void Set(PropertyForm& form, const char* property, const QString& text) {
        form.ensureWidgetVisible(form.EditorOf(property));
        Person::Enter(*form.EditorOf(property), text);
    }

    /// All that people have set: of the program, the open portfolio and its canvases. As for the files, what
    /// is empty counts as the default.
    Values Settings() {
        Values values;
        for (const auto& [name, set] : AllSets(platform_))
            for (std::size_t row = 0; row < set->Properties().size(); ++row)
                if (const Property& property = set->Properties()[row]; property.name != "SequentialNumber") {
                    std::string& value = values[name + "." + std::string(property.name)] = set->Get(row);
                    if (value.empty()) value = property.fallback;
                }
        return values;
    }

    /// The same as a program without windows reads them from the files, once this one has ended.
    Values ReadByServer(const std::string& portfolio) {
        modMain::modMain_Shutdown();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        tessaloom::Setup() = {};
        Flags() = {.running = true};
        RecordingDialogs dialogs;
        RecordingMainWindow none;
        Platform server{platform_.fileSystem,    platform_.profile,
                        platform_.locale,        platform_.systemTime,
                        platform_.fonts,         platform_.pictureLoader,
                        platform_.jpegCodec,     dialogs,
                        platform_.desktop,       none,
                        platform_.timer,         platform_.urlTransfers,
                        platform_.sockets,       nullptr,
                        platform_.captureDrivers};
        modMain::StartOptions options;
        options.portfolio = portfolio;
        modMain::Main(server, options);
        const Values values = Settings();
        EXPECT_THAT(dialogs.shown, IsEmpty());
        modMain::modMain_Shutdown();
        return values;
    }

    void ChangeOneOfEachKind(PropertyForm& form);

    TemporaryFolder folder_;
    bool ended_ = false;

private:
    const RunFlags flags_;
    WorkIn here_{folder_.Path()};
    DesktopFrontEnd front_{[this] { ended_ = true; }};
    Services services_{front_.Dialogs(), front_.MainWindow()};
    const UserLocale locale_ = EnglishLocale();
    RecordingDesktop desktop_;
    QuietSockets sockets_;
    Platform platform_{services_.All().fileSystem,
                       services_.All().profile,
                       locale_,
                       services_.All().systemTime,
                       services_.All().fonts,
                       services_.All().pictureLoader,
                       services_.All().jpegCodec,
                       front_.Dialogs(),
                       desktop_,
                       front_.MainWindow(),
                       services_.All().timer,
                       services_.All().urlTransfers,
                       sockets_,
                       nullptr,
                       services_.All().captureDrivers};
};

bool Near(QColor a, QColor b) {
    const int most = std::max(
        {std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
    return most < 30;
}

/// The red and blue of the clock: nothing else in the picture has so little green beside them.
bool IsMagenta(QColor colour) { return std::min(colour.red(), colour.blue()) > colour.green() + 70; }

// --- First canvas in five minutes ---

TEST_F(FlowsTest, FirstCanvas) {
    QImage logo(60, 40, QImage::Format_RGB32);
    logo.fill(QColor(220, 30, 30));
    logo.save("logo.png");
    Person person;
    Start();
    MakeDocuments(person, "Harbour");
    AddCamera();
    person.WillEnter("Add Picture File", "logo.png");
    Choose("mnuCanvas", {"cmdAddPicture"});
    ASSERT_TRUE(person.Answered());
    Drag({160, 120}, {50, 60});
    Drag({80, 80}, {110, 100});  // by the grip at its lower right corner

    Choose("mnuCanvas", {"cmdAddText"});
    auto& text = Person::Visible<QPlainTextEdit>(Properties(), "text");
    Person::Activate(Window());
    ASSERT_EQ(QApplication::focusWidget(), &text) << "a new text is there to be typed over";
    Person::Type(text, "At ");
    Person::Press(Properties(), "insertTag");
    QDialog& tags = Person::Window("frmTextTags");
    Person::Type(Person::Visible<QLineEdit>(tags, "search"), "<time>");
    Person::Press(tags, "insert");
    Person::Press(tags, Button::Close);
    EXPECT_THAT(Person::Visible<QLabel>(Properties(), "preview").text().toStdString(),
                MatchesRegex("At [0-9]+:[0-9]+.*"));
    Set(Properties(), "Color", "#FF00FF");
    Set(Properties(), "FontSize", "24");
    Set(Properties(), "LocationX", "120");
    Set(Properties(), "LocationY", "180");

    Choose("mnuCanvas", {"cmdFixedSave"});
    QDialog& setup = Person::Window("CanvasSetup1");
    auto& save = Person::Visible<PropertyForm>(setup);
    Person::Click(Person::Visible<QCheckBox>(*save.EditorOf("FixedEnabled")));
    Set(save, "FixedFileName", "live.jpg");
    Set(save, "FixedRate", "1 sec");
    Person::Press(setup, Button::Ok);
    QImage published;
    ASSERT_TRUE(Person::Wait([&] { return published.load("live.jpg"); }));

    ASSERT_EQ(published.size(), QSize(320, 240));
    for (const QPoint at : {QPoint(24, 44), QPoint(106, 44), QPoint(24, 96), QPoint(106, 96)})
        EXPECT_TRUE(Near(published.pixelColor(at), logo.pixelColor(0, 0))) << at.x() << ' ' << at.y();
    for (const QPoint at : {QPoint(14, 60), QPoint(116, 60), QPoint(60, 34), QPoint(60, 106)})
        EXPECT_FALSE(Near(published.pixelColor(at), logo.pixelColor(0, 0))) << at.x() << ' ' << at.y();
    EXPECT_TRUE(Near(published.pixelColor(310, 3), QColor(69, 102, 153))) << "the camera's sky";
    EXPECT_TRUE(Near(published.pixelColor(4, 236), QColor(44, 84, 58))) << "and its hills";
    const auto place = Layers::GeometryOf(TheCanvas(), {LayerId::Kind::Text, 1});
    ASSERT_TRUE(place);
    int within = 0, beside = 0;
    for (int y = 0; y < published.height(); ++y)
        for (int x = 0; x < published.width(); ++x)
            if (IsMagenta(published.pixelColor(x, y)))
                ++(x >= place->left && x < place->right && y >= place->top && y < place->bottom ? within
                                                                                                : beside);
    EXPECT_GT(within, 100);
    EXPECT_LT(beside, 20) << "the edge's blur";

    person.WillEnter("Portfolio Save As", "demo");
    person.WillEnter("Canvas Save As", "harbour");
    Choose("mnuFile", {"cmdSaveAll"});
    EXPECT_TRUE(Person::Wait([&] { return Window().windowTitle() == "demo.por - Tessaloom"; }));
    const Values made = Settings();
    EXPECT_EQ(made.at("canvas1.fixed.FixedRate"), "1");
    EXPECT_THAT(ReadByServer(folder_ / "demo.por"), ContainerEq(made));
}

// --- Open, change, save as, reopen ---

TEST_F(FlowsTest, OpenChangeSaveAsReopen) {
    Person person;
    Start();
    MakeDocuments(person, "Harbour");
    Choose("mnuCanvas", {"cmdAddBlock"});
    person.WillEnter("Portfolio Save As", "first");
    person.WillEnter("Canvas Save As", "first");
    Choose("mnuFile", {"cmdSaveAll"});
    person.WillPress("New Portfolio", Button::Ok);
    Choose("mnuFile", {"cmdPortfolioNew"});
    person.WillEnter("Portfolio Open", "first.por");
    Choose("mnuFile", {"cmdPortfolioOpen"});
    const std::string portfolio = BytesOf("first.por"), canvas = BytesOf("first.can");
    const QWidget& editor = Editor();
    QTest::mouseClick(&Editor(), Qt::LeftButton, {}, On(editor, {160, 120}).toPoint());
    Set(Properties(), "BackgroundColor", "#336699");
    QTest::keyClick(&Person::Focus(Editor()), Qt::Key_Right, Qt::ShiftModifier);
    person.WillEnter("Canvas Save As", "second");
    Choose("mnuFile", {"cmdCanvasSaveAs"});
    person.WillEnter("Portfolio Save As", "second");
    Choose("mnuFile", {"cmdPortfolioSaveAs"});
    EXPECT_EQ(BytesOf("first.por"), portfolio);
    EXPECT_EQ(BytesOf("first.can"), canvas);

    Set(Properties(), "Opacity", "50");
    const Values made = Settings();
    EXPECT_EQ(made.at("canvas1.graphic1.BackgroundColor"), "&H996633");
    person.WillPress("Save Open Portfolio and Canvases?", Button::Cancel);
    Choose("mnuFile", {"cmdPortfolioNew"});
    person.WillPress("Save Open Portfolio and Canvases?", Button::Yes);
    person.WillPress("New Portfolio", Button::Ok);
    Choose("mnuFile", {"cmdPortfolioNew"});
    Choose("mnuFile", {"mnuRecent", "cmdRecent1"});
    EXPECT_TRUE(Person::Wait([&] { return Window().windowTitle() == "second.por - Tessaloom"; }));
    EXPECT_THAT(Settings(), ContainerEq(made));
    Choose("mnuFile", {"mnuRecent", "cmdRecent2"});
    EXPECT_EQ(Settings().at("canvas1.graphic1.Opacity"), "100");
    EXPECT_THAT(ReadByServer(folder_ / "second.por"), ContainerEq(made));
}

// --- Every dialog opened, changed, cancelled, changed, kept ---

/// What somebody types into an editor of a kind; none for those that are not typed into.
std::optional<QString> Typed(const Property& property, const std::string& now) {
    const auto number = [&](double share) {
        return QString::number(std::trunc(property.low + (property.high - property.low) * share));
    };
    switch (property.kind) {
        case PropertyKind::Whole:
        case PropertyKind::Real:
        case PropertyKind::Percent:
        case PropertyKind::Angle:
            return number(number(0.25).toStdString() == now ? 0.5 : 0.25);
        case PropertyKind::Colour:
            return now == "&H996633" ? "#CC8844" : "#336699";
        case PropertyKind::Rate:
            return now == "120" ? "3 min" : "2 min";
        case PropertyKind::TimeOfDay:
            return now == "07:30:00" ? "8:15:30" : "7:30";
        case PropertyKind::Font:
            return now == "DejaVu Serif" ? "DejaVu Sans" : "DejaVu Serif";
        case PropertyKind::Line:
        case PropertyKind::TaggedText:
        case PropertyKind::Password:
        case PropertyKind::OpenFile:
        case PropertyKind::SaveFile:
        case PropertyKind::Folder:
        case PropertyKind::Address:
            return now == "other" ? "another" : "other";
        case PropertyKind::Switch:
        case PropertyKind::Choice:
        case PropertyKind::Feed:
        case PropertyKind::Canvas:
        case PropertyKind::Schedule:
        case PropertyKind::TransparentColours:
            break;
    }
    return std::nullopt;
}

/// Of these kinds not everything that can be typed is a value.
bool IsParticular(PropertyKind kind) {
    using enum PropertyKind;
    for (const PropertyKind particular : {Whole, Real, Percent, Angle, Colour, Rate, TimeOfDay})
        if (kind == particular) return true;
    return false;
}

void ChangeSchedule(QDialog& schedule) {
    Person::Press(schedule, "FromStartTo");
    Person::Press(schedule, "StopSunsetOffset");
    Person::Enter(Person::Visible(schedule, "StopSunsetOffsetValue"), "15");
}

void AddTransparentColours(QDialog& colours) {
    Person::Press(colours, "add");
    Person::Enter(Person::Visible<QSpinBox>(colours, "tolerance"), "25");
}

/// Sets a visible property of each kind to something else, after nonsense where that can be typed.
void FlowsTest::ChangeOneOfEachKind(PropertyForm& form) {
    const std::span<const Property> properties = form.Set()->Properties();
    std::set<PropertyKind> seen;
    for (std::size_t row = 0; row < properties.size(); ++row) {
        const Property& property = properties[row];
        SCOPED_TRACE(property.name);
        QWidget& editor = *form.EditorOf(property.name);
        if (property.kind == PropertyKind::TransparentColours || !editor.isVisible() || !editor.isEnabled() ||
            !seen.insert(property.kind).second)
            continue;
        form.ensureWidgetVisible(&editor);
        const std::string before = form.Set()->Get(row);
        if (const auto text = Typed(property, before)) {
            if (IsParticular(property.kind)) {
                Person::Type(editor, "x?!");
                EXPECT_FALSE(
                    Person::Visible<QLabel>(
                        form, QString("remark%1").arg(QString::fromStdString(std::string(property.name))))
                        .text()
                        .isEmpty());
                EXPECT_EQ(form.Set()->Get(row), before);
            }
            Person::Enter(editor, *text);
        } else if (property.kind == PropertyKind::Switch) {
            Person::Click(Person::Visible<QCheckBox>(editor));
        } else if (property.kind == PropertyKind::Schedule) {
            Person::Press(editor, "change");
            QDialog& schedule = Person::Window("frmScheduler");
            ChangeSchedule(schedule);
            Person::Press(schedule, Button::Ok);
        } else {
            auto& box = Person::Visible<QComboBox>(editor);
            const bool last = box.currentIndex() == box.count() - 1;
            QTest::keyClick(&Person::Focus(box), last ? Qt::Key_Up : Qt::Key_Down);
        }
        EXPECT_NE(form.Set()->Get(row), before);
    }
}

TEST_F(FlowsTest, EveryDialogOpenedChangedCancelledChangedKept) {
    const struct {
        const char* menu;
        std::vector<QString> commands;
    } dialogs[] = {
        {"mnuCanvas", {"cmdCanvasProperties"}    },
        {"mnuCanvas", {"cmdFixedSave"}           },
        {"mnuCanvas", {"cmdSequentialSave"}      },
        {"mnuCanvas", {"cmdWallpaper"}           },
        {"mnuCanvas", {"cmdFTPUpload"}           },
        {"mnuCanvas", {"cmdWebPicture"}          },
        {"mnuSetup",  {"mnuMotion", "cmdMotion0"}},
        {"mnuSetup",  {"cmdWebServer"}           },
        {"mnuSetup",  {"cmdWeather"}             },
        {"mnuSetup",  {"cmdScript"}              },
        {"mnuSetup",  {"cmdPreferences"}         },
        {"mnuSetup",  {"cmdVideoFeeds"}          },
    };
    Person person;
    Start();
    MakeDocuments(person, "Harbour");
    AddCamera();
    for (const auto& [menu, commands] : dialogs) {
        SCOPED_TRACE(commands.back().toStdString());
        const Values before = Settings();
        for (const auto button : {Button::Cancel, Button::Ok}) {
            Choose(menu, commands);
            QDialog& dialog = Person::Window("");
            ChangeOneOfEachKind(Person::Visible<PropertyForm>(dialog));
            Person::Press(dialog, button);
            EXPECT_TRUE(Person::Wait([] { return !Person::Seen(""); }));
            if (button == Button::Cancel) {
                EXPECT_THAT(Settings(), ContainerEq(before));
            }
        }
        EXPECT_NE(Settings(), before);
    }
    person.WillEnter("Portfolio Save As", "demo");
    person.WillEnter("Canvas Save As", "harbour");
    Choose("mnuFile", {"cmdSaveAll"});
    const Values made = Settings();
    EXPECT_THAT(ReadByServer(folder_ / "demo.por"), ContainerEq(made));
}

TEST_F(FlowsTest, WindowsOfSinglePropertiesAreCancelledAndKept) {
    const std::pair<const char*, void (*)(QDialog&)> windows[] = {
        {"Schedule",              ChangeSchedule       },
        {"TransparentColorTable", AddTransparentColours},
    };
    Person person;
    Start();
    MakeDocuments(person, "Harbour");
    AddCamera();
    Person::Click(Person::Visible<QCheckBox>(*Properties().EditorOf("TransparentColorEnabled")));
    for (const auto& [property, change] : windows)
        for (const auto button : {Button::Cancel, Button::Ok}) {
            SCOPED_TRACE(property);
            const Values before = Settings();
            Properties().ensureWidgetVisible(Properties().EditorOf(property));
            Person::Press(*Properties().EditorOf(property), "change");
            QDialog& dialog = Person::Window("");
            change(dialog);
            EXPECT_NE(Settings(), before);
            Person::Press(dialog, button);
            EXPECT_TRUE(Person::Wait([] { return !Person::Seen(""); }));
            EXPECT_EQ(Settings() == before, button == Button::Cancel);
        }
}

TEST_F(FlowsTest, EveryKindOfPropertyOfLayersIsUndoneAndDoneAgain) {
    Person person;
    Start();
    MakeDocuments(person, "Harbour");
    AddCamera();
    QAction& undo = *Window().findChild<QAction*>("cmdUndo");
    QAction& redo = *Window().findChild<QAction*>("cmdRedo");
    for (const char* add : {"cmdAddFeed", "cmdAddText"}) {
        SCOPED_TRACE(add);
        Choose("mnuCanvas", {add});
        const Values before = Settings();
        const QString step = undo.text();
        ChangeOneOfEachKind(Properties());
        const Values after = Settings();
        EXPECT_NE(after, before);
        while (undo.text() != step) Choose("mnuEdit", {"cmdUndo"});
        EXPECT_THAT(Settings(), ContainerEq(before));
        while (redo.isEnabled()) Choose("mnuEdit", {"cmdRedo"});
        EXPECT_THAT(Settings(), ContainerEq(after));
    }
}

// --- What goes wrong ---

TEST_F(FlowsTest, WhatIsNoPictureIsRefusedByName) {
    std::ofstream("notes.jpg") << "Dear diary";
    Person person;
    Start();
    MakeDocuments(person, "Harbour");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder_ / "notes.jpg"))});
    QWidget& editor = Editor();
    QDragEnterEvent enter({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&editor, &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent drop({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&editor, &drop);
    EXPECT_TRUE(Layers::InDrawingOrder(TheCanvas()).empty());
    EXPECT_THAT(Person::Visible<Notice>(editor).Text().toStdString(), HasSubstr("notes.jpg"));
}

TEST_F(FlowsTest, RemovesWhatOthersShow) {
    Person person;
    Start();
    MakeDocuments(person, "Source");
    AddCamera();
    MakeCanvas(person, "Copy");
    Choose("mnuCanvas", {"cmdAddCanvas"});
    EXPECT_EQ(Settings().at("canvas2.graphic1.SourceCanvas"), "1");

    // The canvas that the second one shows.
    Choose("mnuWindow", {"cmdCanvas1"});
    person.WillPress("Remove Canvas", Button::Yes);
    person.WillPress("Save Canvas", Button::No);
    Choose("mnuFile", {"cmdCanvasRemove"});
    EXPECT_FALSE(TheCanvas(1).Enabled());
    Editor("Canvas02").grab();

    // The feed whose motion is being set up.
    Choose("mnuSetup", {"mnuMotion", "cmdMotion0"});
    QDialog& motion = Person::Window("MotionDetectSetup0");
    Person::Click(Person::Visible<QCheckBox>(motion, "showDiffFrame"));
    Choose("mnuSetup", {"cmdVideoFeeds"});
    QDialog& feeds = Person::Window("VideoFeedsSetup");
    Person::Press(feeds, "cmdRemoveFeed");
    EXPECT_EQ(Settings().at("feed.Name"), "");
    EXPECT_TRUE(Person::Wait([] { return !Person::Seen("MotionDetectSetup0"); }));
    Person::Press(feeds, Button::Ok);
    person.WillEnter("Portfolio Save As", "demo");
    person.WillEnter("Canvas Save As", "copy");
    Choose("mnuFile", {"cmdSaveAll"});
}

TEST_F(FlowsTest, AllWindowsCloseWhenTheProgramIsToEnd) {
    // What bars the way to the main window comes last.
    const std::pair<const char*, std::function<void()>> last[] = {
        {"PictureFileDialog", [this] { Choose("mnuCanvas", {"cmdAddPicture"}); }},
        {"ColourChooser",
         [this] {
             Choose("mnuCanvas", {"cmdCanvasProperties"});
             Person::Press(Person::Visible(Person::Window("CanvasSetup1"), "BackgroundColor"), "swatch");
         }                                                                      },
 // A box follows that says that no file was selected.
        {"FileDialog",        [this] { Choose("mnuFile", {"cmdSaveAll"}); }     },
    };
    for (const auto& [name, open] : last) {
        SCOPED_TRACE(name);
        {
            Person person;
            Start();
            MakeDocuments(person, "Harbour");
            AddCamera();
        }
        for (const char* command :
             {"cmdVideoFeeds", "cmdWebServer", "cmdWeather", "cmdScript", "cmdPreferences"})
            Choose("mnuSetup", {command});
        Choose("mnuSetup", {"mnuMotion", "cmdMotion0"});
        for (const char* command : {"cmdTextTags", "cmdErrorReports"}) Choose("mnuHelp", {command});
        QTimer end;
        QObject::connect(&end, &QTimer::timeout, [&] {
            if (!Person::Seen(name)) return;
            end.stop();
            Flags().withoutQuestions = true;
            Flags().running = false;
        });
        end.start(10);
        open();
        EXPECT_TRUE(Person::Wait([this] { return std::exchange(ended_, false); }));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (const QWidget* window : QApplication::topLevelWidgets())
            EXPECT_FALSE(window->isVisible()) << window->objectName().toStdString();
    }
}

}  // namespace
}  // namespace tessaloom::testing
