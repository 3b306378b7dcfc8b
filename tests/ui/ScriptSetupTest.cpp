#include "app/ScriptServices.h"
#include "script/host/Script.h"
#include "ui/Desk.h"
#include "ui/dialogs/ScriptEditor.h"
#include "ui/dialogs/ScriptSetup.h"
#include "ui/dialogs/Setups.h"

namespace tessaloom::testing {
namespace {

class ScriptSetupTest : public Desk {
protected:
    ScriptSetupTest() {
        Start(
            {
                {"p.por", "[Scripting]\r\nEnabled=True\r\nFileName=s.vbs\r\n"},
                {"s.vbs", Faulty                                             }
        },
            "", &scripts.Engine());
    }

    static QWidget* Window() { return Desk::Window(ScriptSetup::Name); }
    void Show() {
        ShowScriptSetup(*workspace, nullptr);
        EXPECT_TRUE(QTest::qWaitForWindowActive(Window()));
        Q_EMIT workspace->Pulse();
    }
    void Press(auto button) {
        Desk::Press(ScriptSetup::Name, button);
        Q_EMIT workspace->Pulse();
    }
    static ScriptEditor& Editor() { return *Window()->findChild<ScriptEditor*>(); }
    static std::string Status() {
        return Window()->findChild<QPlainTextEdit*>("status")->toPlainText().toStdString();
    }
    std::string File(const char* path) { return it.files.ReadFile(path).value_or("(none)"); }

    // With the mark of UTF-8, a tab, and a blank that does not break.
    static constexpr auto Faulty = "\xEF\xBB\xBFSub Interval()\n\tx = = \"\xC2\xA0\"\nEnd Sub\n";
    ScriptServices scripts{it.platform};
};

TEST_F(ScriptSetupTest, AnErrorIsFoundMendedAndTheSavedTextRuns) {
    Show();
    EXPECT_THAT(Status(), HasSubstr("Script Load-Time Error: "));
    Press("cmdGoToError");
    EXPECT_EQ(Editor().textCursor().blockNumber(), 1);
    EXPECT_EQ(Editor().textCursor().positionInBlock(), 5);
    QTest::keyClick(&Editor(), Qt::Key_Delete);
    QTest::keyClick(&Editor(), Qt::Key_Delete);
    EXPECT_TRUE(Window()->isWindowModified());
    QTest::keyClick(&Editor(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(File("s.vbs"), "\xEF\xBB\xBFSub Interval()\n\tx = \"\xC2\xA0\"\nEnd Sub\n");
    EXPECT_THAT(Status(), HasSubstr("Method Found: Interval()\nRunning Script"));
    EXPECT_FALSE(Window()->findChild<QPushButton*>("cmdGoToError")->isEnabled());
}

TEST_F(ScriptSetupTest, UnsavedTextIsAskedAboutAndKeptWhenThereIsNoTimeToAsk) {
    Show();
    QTest::keyClicks(&Editor(), "'");
    Window()->findChild<QWidget*>("AllowStartup")->findChild<QCheckBox*>()->click();
    EXPECT_TRUE(modMain::OpenPortfolio()->Script().AllowStartup());
    Press(QDialogButtonBox::Cancel);
    Press("cmdKeepEditing");
    Press(QDialogButtonBox::Cancel);
    Press("cmdDiscardAndClose");
    EXPECT_FALSE(Window());
    EXPECT_EQ(File("s.vbs"), Faulty);
    EXPECT_FALSE(modMain::OpenPortfolio()->Script().AllowStartup());

    Show();
    QTest::keyClicks(&Editor(), "'new");
    Q_EMIT workspace->SetupMustClose();
    EXPECT_FALSE(Window());
    EXPECT_EQ(File("s.vbs"), Faulty);
    EXPECT_THAT(File("s.vbs.unsaved"), HasSubstr("'newSub Interval()\n"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    Show();
    Press("cmdTakeKept");
    Press(QDialogButtonBox::Ok);
    Press("cmdSaveAndClose");
    EXPECT_FALSE(Window());
    EXPECT_THAT(File("s.vbs"), HasSubstr("'newSub Interval()\n"));
    EXPECT_FALSE(it.files.FileExists("s.vbs.unsaved"));
}

TEST_F(ScriptSetupTest, WhatOthersDoToTheFileIsNoticedAndNeverOverwrittenUnasked) {
    Show();
    QTest::keyClicks(&Editor(), "'mine ");
    it.files["s.vbs"].bytes = "'theirs";
    Press("cmdSaveScript");
    EXPECT_EQ(File("s.vbs"), "'theirs");
    Press("cmdReloadFile");
    EXPECT_EQ(Editor().Text(), "'theirs");
    it.files["s.vbs"].bytes = "'others";
    Q_EMIT workspace->Pulse();
    Press("cmdKeepMine");
    Press("cmdSaveScript");
    EXPECT_EQ(File("s.vbs"), "'theirs");

    it.files["s.vbs"].readOnly = true;
    Q_EMIT workspace->Pulse();
    Press("cmdReloadFile");
    QTest::keyClicks(&Editor(), "'");
    Press("cmdSaveScript");
    EXPECT_TRUE(Window()->isWindowModified());
    modMain::OpenPortfolio()->Script().SetFileName("none.vbs");
    QTest::keyClicks(&Editor(), "'");
    Q_EMIT workspace->Pulse();
    Press("cmdDiscardFirst");
    Press("cmdStartExample");
    Press("cmdSaveScript");
    EXPECT_THAT(File("none.vbs"), HasSubstr("Option Explicit\r\n"));
    const std::string status = Status();
    std::size_t found = 0;
    for (auto at = status.find("Method Found"); at != status.npos; at = status.find("Method Found", at + 1))
        ++found;
    EXPECT_EQ(found, Script::Events) << status;
}

TEST_F(ScriptSetupTest, TheObjectTreePutsNamesIntoTheScript) {
    Show();
    Editor().ShowText("    x = ");
    Editor().moveCursor(QTextCursor::End);
    const auto choose = [](const QString& part) {
        Window()->findChild<QLineEdit*>("filter")->setText(part);
        auto* tree = Window()->findChild<QTreeWidget*>("objects");
        for (QTreeWidgetItem* item : tree->findItems(part, Qt::MatchExactly | Qt::MatchRecursive)) {
            EXPECT_FALSE(item->isHidden());
            return Q_EMIT tree->itemDoubleClicked(item, 0);
        }
        ADD_FAILURE() << part.toStdString();
    };
    choose("Stage");
    QTest::keyClick(&Editor(), Qt::Key_Return);
    QTest::keyClicks(&Editor(), "Text(2).");
    choose("RotationAngle");
    EXPECT_EQ(Editor().Text(),
              "    x = Tessaloom.Portfolio.Canvas(1).FTPPush.Stage\n    Text(2).RotationAngle");
}

}  // namespace
}  // namespace tessaloom::testing
