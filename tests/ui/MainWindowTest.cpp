#include "core/ErrorReport.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "ui/DesktopRun.h"
#include "ui/Twips.h"

namespace tessaloom::testing {
namespace {

constexpr const char* CanvasFile =
    "[General]\r\nName=Harbour\r\nWidth=64\r\nHeight=48\r\nWindowState=0\r\n"
    "PosX=1500\r\nPosY=750\r\n";

class MainWindowTest : public ::testing::Test {
protected:
    void StartWithCanvas() {
        run.it.files["p.por"].bytes = "[Canvas01]\r\nFileName=c.can\r\n";
        run.it.files["c.can"].bytes = CanvasFile;
        run.Start("StartupMode=1\r\nStartupState=0\r\nStartupWidth=12000\r\nStartupHeight=9000\r\n", "p.por");
    }
    Portfolio& Open() { return *modMain::OpenPortfolio(); }

    DesktopRun run;
};

auto Press(QMessageBox::StandardButton button, QString* shown = nullptr) {
    return [=](QWidget& dialog) {
        auto& box = dynamic_cast<QMessageBox&>(dialog);
        if (shown) *shown = box.windowTitle() + ": " + box.text();
        QTest::mouseClick(box.button(button), Qt::LeftButton);
    };
}

void Type(QWidget& dialog, const char* text) {
    auto* line = dialog.findChild<QLineEdit*>();
    line->selectAll();
    QTest::keyClicks(line, text);
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

TEST_F(MainWindowTest, AppearsAsTheStartUpModeSays) {
    const int x = Twips::PerPixel(Qt::Horizontal), y = Twips::PerPixel(Qt::Vertical);
    const std::string normal = "StartupMode=1\r\nStartupState=0\r\nStartupLastNonMinimizedState=0\r\n";
    const struct {
        std::string settings;
        WindowState state;
        int lastState;
        QRect place;
    } cases[] = {
  // clang-format off
        {"StartupMode=0\r\n", WindowState::Minimized, 2, {}},
        {"StartupMode=2\r\n", WindowState::Maximized, 2, {}},
        {"StartupMode=1\r\nStartupState=1\r\nStartupLastNonMinimizedState=0\r\n", WindowState::Minimized, 0, {}},
        {normal + "StartupLeft=150\r\nStartupTop=300\r\nStartupWidth=9750\r\nStartupHeight=9000\r\n",
         WindowState::Normal, 0, {150 / x, 300 / y, 9750 / x, 9000 / y}},
        // A place beside all screens is brought back.
        {normal + "StartupLeft=900000\r\nStartupTop=0\r\nStartupWidth=7500\r\nStartupHeight=6000\r\n",
         WindowState::Normal, 0, {800 - 7500 / x, 0, 7500 / x, 6000 / y}},
  // clang-format on
    };
    for (const auto& [settings, state, lastState, place] : cases) {
        SCOPED_TRACE(settings);
        DesktopRun one;
        one.Start(settings);
        EXPECT_EQ(one.Window().isMinimized(), state == WindowState::Minimized);
        EXPECT_EQ(one.Window().isMaximized() && !one.Window().isMinimized(), state == WindowState::Maximized);
        EXPECT_EQ(tessaloom::Setup().startupState, static_cast<int>(state));
        EXPECT_EQ(tessaloom::Setup().startupLastNonMinimizedState, lastState);
        if (place.isValid()) {
            EXPECT_EQ(QRect(one.Window().pos(), one.Window().size()), place);
        }
        one.Window().ShowMe();
        EXPECT_FALSE(one.Window().isMinimized());
        EXPECT_EQ(one.Window().isMaximized(), lastState == 2);
    }
}

TEST_F(MainWindowTest, HasEachMnemonicOnceInAMenu) {
    run.Start();
    for (const QMenu* menu : run.Window().findChildren<QMenu*>()) {
        QStringList seen;
        for (const QAction* action : menu->actions()) {
            const QString keys = QKeySequence::mnemonic(action->text()).toString();
            EXPECT_FALSE(!keys.isEmpty() && seen.contains(keys)) << action->text().toStdString();
            seen += keys;
        }
    }
}

TEST_F(MainWindowTest, FitsWindowsToTheFrameUntilTheyAreSizedAndLeadsTabFromTheSearchIntoTheForm) {
    StartWithCanvas();
    Open().Canvas(1).SetWidth(1600);
    Open().Canvas(1).SetHeight(1200);
    auto& window = run.Find<QMdiSubWindow>("Canvas01");
    QCoreApplication::processEvents();
    const QSize fitted = window.size();
    run.Window().resize(run.Window().size() + QSize(300, 300));
    QCoreApplication::processEvents();
    EXPECT_GT(window.width(), fitted.width());
    window.resize(200, 150);
    run.Window().resize(run.Window().size() - QSize(100, 100));
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), QSize(200, 150));

    run.Command("cmdAddText").trigger();
    QWidget* next = &run.Find<QLineEdit>("search");
    do next = next->nextInFocusChain();
    while (!(next->focusPolicy() & Qt::TabFocus) || !next->isVisible());
    EXPECT_EQ(next->objectName(), "groupText");
}

TEST_F(MainWindowTest, KeepsItsPlaceWhileItIsMoved) {
    run.Start("StartupMode=1\r\nStartupState=0\r\nStartupWidth=9000\r\nStartupHeight=9000\r\n");
    run.Window().resize(610, 520);
    run.Window().move(40, 30);
    modMain::modMain_Shutdown();
    const std::string settings = run.it.files[run.SettingsPath()].bytes;
    for (const auto& [key, pixels] : {
             std::pair("StartupWidth", 610), {"StartupHeight", 520},
               {"StartupLeft",   40 },
               {"StartupTop",    30 }
    })
        EXPECT_NE(settings.find(std::string(key) + "=" +
                                std::to_string(pixels * Twips::PerPixel(Qt::Horizontal)) + "\r\n"),
                  std::string::npos)
            << key << "\n"
            << settings;
}

TEST_F(MainWindowTest, AsksAboutUnsavedChangesWhenItIsClosed) {
    StartWithCanvas();
    Open().Canvas(1).SetBackgroundColor(0x112233);
    QString shown;
    {
        const WhenShown box("MessageBox", Press(QMessageBox::Cancel, &shown));
        run.Window().close();
    }
    EXPECT_EQ(shown, "Save Files?: Would you like to save all files?");
    EXPECT_EQ(run.quits, 0);
    EXPECT_TRUE(run.Window().isVisible());
    const WhenShown box("MessageBox", Press(QMessageBox::Yes));
    run.Command("cmdExit").trigger();
    EXPECT_EQ(run.quits, 1);
    EXPECT_NE(run.it.files["c.can"].bytes.find("&H112233"), std::string::npos);
}

TEST_F(MainWindowTest, EnablesCommandsOnlyWhereTheyMakeSense) {
    const auto enabled = [&](std::initializer_list<const char*> names) {
        std::string states;
        for (const char* name : names) states += run.Command(name).isEnabled() ? '1' : '0';
        return states;
    };
    const auto states = [&] {
        return enabled({"cmdPortfolioNew", "cmdPortfolioSave", "cmdCanvasNew", "cmdVideoFeeds",
                        "cmdCanvasSave", "cmdAddText", "cmdPaste", "cmdDelete", "cmdUndo", "cmdPreferences"});
    };
    run.Start();
    EXPECT_EQ(states(), "1000000001");
    {
        const WhenShown box("MessageBox", Press(QMessageBox::Ok));
        QTest::mouseClick(&run.Find<QPushButton>("cmdPortfolioNewButton"), Qt::LeftButton);
    }
    EXPECT_EQ(states(), "1111000001");
    {
        const WhenShown box("InputBox", [](QWidget& dialog) { Type(dialog, "Pier"); });
        QTest::mouseClick(&run.Find<QPushButton>("cmdCanvasNewButton"), Qt::LeftButton);
    }
    EXPECT_EQ(states(), "1111111001");
    EXPECT_EQ(Open().Canvas(1).Name(), "Pier");
    run.Command("cmdHideWindow").trigger();
    EXPECT_EQ(states(), "1111100001");
}

TEST_F(MainWindowTest, KeepsThePlaceOfAChildWindowInItsCanvas) {
    StartWithCanvas();
    const auto& canvas = Open().Canvas(1);
    auto& child = run.Find<QMdiSubWindow>("Canvas01");
    EXPECT_EQ(child.windowTitle(), "Harbour");
    EXPECT_EQ(child.pos(),
              QPoint(1500 / Twips::PerPixel(Qt::Horizontal), 750 / Twips::PerPixel(Qt::Vertical)));
    EXPECT_FALSE(Open().NeedSaving());
    child.move(20, 10);
    EXPECT_EQ(canvas.Left(), 20 * Twips::PerPixel(Qt::Horizontal));
    EXPECT_EQ(canvas.Top(), 10 * Twips::PerPixel(Qt::Vertical));
    child.move(0, 0);  // still a place of its own
    EXPECT_NE(canvas.Left(), 0);
    EXPECT_EQ(canvas.Top(), 0);

    // Scrolling the frame moves its windows and changes nothing.
    child.move(2000, 10);
    Open().Canvas(1).SetNeedSaving(false);
    QScrollBar& bar = *run.Window().Area().horizontalScrollBar();
    ASSERT_GT(bar.maximum(), 0);
    bar.setValue(bar.maximum());
    EXPECT_LT(child.x(), 2000);
    EXPECT_EQ(canvas.Left(), 2000 * Twips::PerPixel(Qt::Horizontal));
    EXPECT_FALSE(canvas.NeedSaving());
    child.showMinimized();
    EXPECT_EQ(canvas.WindowState(), 1);
    child.showNormal();
    EXPECT_EQ(canvas.WindowState(), 0);

    // Closing hides; the Window menu brings it back.
    child.close();
    EXPECT_TRUE(canvas.Enabled() && child.isHidden());
    Q_EMIT run.Find<QMenu>("mnuWindow").aboutToShow();
    run.Command("cmdCanvas1").trigger();
    EXPECT_TRUE(child.isVisible());
    EXPECT_EQ(Open().ActiveCanvas(), 1);
}

TEST_F(MainWindowTest, OffersTheLastPortfolios) {
    StartWithCanvas();
    run.it.files["other.por"].bytes = "[General]\r\n";
    {
        const WhenShown dialog("FileDialog", [](QWidget& widget) {
            auto& files = dynamic_cast<QFileDialog&>(widget);
            EXPECT_EQ(files.windowTitle(), "Portfolio Open");
            EXPECT_EQ(files.nameFilters(), QStringList("Portfolios (*.por)"));
            files.reject();
        });
        run.Command("cmdPortfolioOpen").trigger();
    }
    EXPECT_EQ(Open().FileName(), "p.por");
    modMain::OpenPortfolio()->SetFileName("other.por");  // as Save As does
    Q_EMIT run.Find<QMenu>("mnuFile").aboutToShow();
    EXPECT_TRUE(run.Command("cmdRecent1").text().endsWith("other.por"));
}

TEST_F(MainWindowTest, BoxesCloseByThemselvesWithTheSafeAnswer) {
    StartWithCanvas();
    Dialogs& dialogs = run.TheDialogs();
    dialogs.SetPatience(1);
    bool counted = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        const QWidget* box = QApplication::activeModalWidget();
        const auto* label = box ? box->findChild<QLabel*>("lblCountdown") : nullptr;
        counted = counted || (label && label->isVisible());
    });
    look.start(10);
    EXPECT_EQ(dialogs.MessageBox("?", "Title", Buttons::YesNo), Answer::No);
    EXPECT_EQ(dialogs.InputBox("?", "Title", "text"), std::nullopt);
    EXPECT_TRUE(counted);
    dialogs.SetPatience(0);
    const WhenShown box("MessageBox", [](QWidget&) { Flags().running = false; });
    EXPECT_EQ(dialogs.MessageBox("?", "Title", Buttons::AbortRetryIgnore), Answer::Abort);
    // A question that comes up while closing waits for the person all the same.
    const WhenShown closing("MessageBox", Press(QMessageBox::No));
    Open().SetNeedSaving(true);
    run.it.timer.Tick();
    EXPECT_EQ(run.quits, 1);
}

TEST_F(MainWindowTest, CollectsErrorsInOneWindow) {
    run.Start();
    for (int i = 0; i < 3; ++i) run.Front().AddReport({"A.cls", "One", 1, 5, "first"});
    run.Front().AddReport({"B.cls", "Two", 2, 6, "second"});
    QTableWidget* table = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->windowTitle() == "Error Debug Report") table = window->findChild<QTableWidget*>();
    ASSERT_TRUE(table && table->isVisible());
    EXPECT_EQ(table->rowCount(), 2);
    EXPECT_EQ(table->item(0, 1)->text(), "3");
    EXPECT_EQ(table->item(1, 3)->text(), "second");
    // Once closed it comes back for what is new.
    table->window()->close();
    run.Front().AddReport({"B.cls", "Two", 2, 6, "second"});
    EXPECT_FALSE(table->isVisible());
    run.Front().AddReport({"B.cls", "Two", 2, 6, "third"});
    EXPECT_TRUE(table->isVisible());
}

}  // namespace
}  // namespace tessaloom::testing
