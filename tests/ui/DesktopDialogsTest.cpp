#include "ui/DesktopDialogs.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QScreen>

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

}  // namespace
}  // namespace tessaloom::testing
