#include "ui/DesktopDialogs.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QScreen>
#include <QTimer>

#include "core/RunFlags.h"
#include "ui/DesktopRun.h"

namespace tessaloom::testing {
namespace {

TEST(DesktopDialogs, KeepBoxesOnTheScreenHoweverLongTheirText) {
    Flags() = {};
    Flags().running = true;
    DesktopDialogs dialogs;
    std::string text;
    for (int line = 0; line < 500; ++line) text += "line " + std::to_string(line) + "\n";
    const auto look = [&](QWidget& box) {
        EXPECT_LE(box.height(), box.screen()->availableGeometry().height());
        const auto* field = box.findChild<QPlainTextEdit*>("longText");
        ASSERT_TRUE(field);
        EXPECT_TRUE(field->isVisible());
        EXPECT_EQ(field->toPlainText().toStdString(), text);
        dynamic_cast<QDialog&>(box).reject();
    };
    for (const char* kind : {"MessageBox", "InputBox"}) {
        SCOPED_TRACE(kind);
        const WhenShown box(kind, look);
        if (kind == std::string("MessageBox"))
            dialogs.MessageBox(text, "Long", Buttons::Ok);
        else
            dialogs.InputBox(text, "Long", "");
    }
}

TEST(DesktopDialogs, AreNotEvenShownOnceTheSystemHasAskedForTheEnd) {
    Flags() = {.running = true, .withoutQuestions = true};
    DesktopDialogs dialogs;
    int turns = 0;
    QTimer::singleShot(0, [&] { ++turns; });
    EXPECT_EQ(dialogs.MessageBox("Go on?", "Script", Buttons::YesNo), Answer::No);
    EXPECT_EQ(dialogs.InputBox("How?", "Script", "so"), std::nullopt);
    EXPECT_EQ(dialogs.SaveFile({}), std::nullopt);
    EXPECT_EQ(turns, 0) << "a script that shows them without end must get on with its time";
    Flags() = {};
}

}  // namespace
}  // namespace tessaloom::testing
