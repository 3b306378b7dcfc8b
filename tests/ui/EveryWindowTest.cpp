#include "publish/CanvasSaves.h"
#include "text/Text.h"
#include "ui/AllSettings.h"
#include "ui/Desk.h"
#include "ui/dialogs/Setups.h"
#include "ui/property/LayerPanel.h"
#include "ui/property/PropertyForm.h"
#include "ui/property/ScheduleSetup.h"
#include "ui/property/TextTags.h"
#include "ui/property/TransparentColours.h"

namespace tessaloom::testing {
namespace {

constexpr LayerId FirstText{LayerId::Kind::Text, 1}, FirstPicture{LayerId::Kind::Graphic, 1};

/// What holds for each window alike.
class EveryWindowTest : public Desk {
protected:
    EveryWindowTest() {
        Start(
            {
                {"p.por", "[Canvas01]\r\nFileName=c.can\r\n[VideoFeeds]\r\nFeed0Name=cam\r\n"},
                {"c.can",
                 "[General]\r\nName=Harbour\r\nWidth=64\r\nHeight=48\r\n"
                 "[Text001]\r\nEnabled=True\r\nText=one\r\n[Graphic001]\r\nEnabled=True\r\n" }
        },
            "StationLatitude=48\r\nStationLongitude=11\r\n");
        workspace->Activate(1);
        Tick();
    }
    void TearDown() override {
        parts.clear();
        Desk::TearDown();
    }

    /// Opens one window after the other.
    void ForEach(const std::function<void(QWidget&)>& look) {
        const std::function<void()> opens[] = {
            [&] { ShowCanvasSetup(*workspace, nullptr, 1); },
            [&] { ShowVideoFeedsSetup(*workspace, nullptr); },
            [&] { ShowMotionDetectSetup(*workspace, nullptr, 0); },
            [&] { ShowWebServerSetup(*workspace, nullptr); },
            [&] { ShowWeatherSetup(*workspace, nullptr); },
            [&] { ShowScriptSetup(*workspace, nullptr); },
            [&] { ShowPreferences(*workspace, nullptr); },
            [&] {
                ShowScheduleSetup(*workspace, nullptr, "one", 1,
                                  [&] { return std::vector{&Open().Canvas(1).Text(1)->Schedule()}; });
            },
            [&] { ShowTransparentColours(*workspace, nullptr, 1, {FirstPicture}); },
            [&] { ShowTextTags(*workspace, nullptr); },
            [&] { ShowForm(FirstText); },
            [&] { ShowForm(FirstPicture); },
            [&] { ShowPart(std::make_unique<LayerPanel>(*workspace)); },
        };
        for (const auto& open : opens) {
            open();
            QCoreApplication::processEvents();
            Q_EMIT workspace->Pulse();
            QWidget* window = nullptr;
            for (QWidget* widget : QApplication::topLevelWidgets())
                if (widget->isVisible()) window = widget;
            ASSERT_TRUE(window);
            SCOPED_TRACE(window->windowTitle().toStdString() + " " + window->metaObject()->className());
            look(*window);
            Q_EMIT workspace->SetupMustClose();
            parts.clear();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    /// Shows one page of tabs after the other; a window without tabs is one page.
    static void ForEachPage(QWidget& window, const std::function<void()>& look) {
        auto* tabs = window.findChild<QTabWidget*>();
        for (int page = 0; page < (tabs ? tabs->count() : 1); ++page) {
            if (tabs) tabs->setCurrentIndex(page);
            QCoreApplication::processEvents();
            SCOPED_TRACE(page);
            look();
        }
    }

    void ShowPart(std::unique_ptr<QWidget> part) {
        part->show();
        parts.push_back(std::move(part));
    }
    void ShowForm(LayerId layer) {
        auto form = std::make_unique<PropertyForm>(*workspace);
        form->Show(PropertySets::Layer(Open(), 1, layer));
        ShowPart(std::move(form));
    }

    std::vector<std::unique_ptr<QWidget>> parts;
};

/// A part of a control, which people never meet by itself.
bool IsInner(const QWidget& widget) {
    const QWidget* parent = widget.parentWidget();
    return widget.objectName().startsWith("qt_") ||
           (widget.inherits("QLineEdit") && parent &&
            (parent->inherits("QAbstractSpinBox") || parent->inherits("QComboBox")));
}

TEST_F(EveryWindowTest, NamesAllThatTheKeyboardReachesAndHasEachMnemonicOnce) {
    ForEach([](QWidget& window) {
        const QWidget* first = window.focusWidget();
        EXPECT_TRUE(first && !first->inherits("QPushButton")) << "the first field has the focus";
        ForEachPage(window, [&] {
            std::map<QString, QStringList> mnemonics;
            const auto note = [&](const QString& text) {
                if (const QString key = QKeySequence::mnemonic(text).toString(); !key.isEmpty())
                    mnemonics[key] += text;
            };
            for (QWidget* widget : window.findChildren<QWidget*>()) {
                if (!widget->isVisible()) continue;
                if (const auto* button = qobject_cast<QAbstractButton*>(widget)) note(button->text());
                if (const auto* label = qobject_cast<QLabel*>(widget); label && label->buddy())
                    note(label->text());
                if (const auto* tabs = qobject_cast<QTabBar*>(widget))
                    for (int i = 0; i < tabs->count(); ++i) note(tabs->tabText(i));
                if (!(widget->focusPolicy() & Qt::TabFocus) || widget->focusProxy() || IsInner(*widget) ||
                    widget->inherits("QTabBar"))
                    continue;
                const QAccessibleInterface* known = QAccessible::queryAccessibleInterface(widget);
                // What is chosen in a combo box goes for its name.
                const auto text =
                    widget->inherits("QComboBox") ? QAccessible::Description : QAccessible::Name;
                EXPECT_TRUE(known && !known->text(text).isEmpty())
                    << widget->metaObject()->className() << " " << widget->objectName().toStdString()
                    << " in " << widget->parentWidget()->objectName().toStdString();
            }
            if (window.windowTitle() == "Schedule Setup") mnemonics.erase("Alt+T");  // its captions are given
            for (const auto& [key, texts] : mnemonics)
                EXPECT_EQ(texts.size(), 1) << key.toStdString() << ": " << texts.join(" | ").toStdString();
        });
    });
}

TEST_F(EveryWindowTest, StaysWithAMistakeUntilItIsMended) {
    ShowCanvasSetup(*workspace, nullptr, 1, CanvasPage::FixedSave);
    QPointer<QWidget> window = Window("CanvasSetup1");
    ASSERT_TRUE(window);
    auto* line = window->findChild<QWidget*>("FixedRate")->findChild<QLineEdit*>();
    line->selectAll();
    QTest::keyClicks(line->parentWidget(), "soon");
    auto* tabs = window->findChild<QTabWidget*>();
    tabs->setCurrentIndex(0);
    Press("CanvasSetup1", QDialogButtonBox::Ok);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(tabs->currentIndex(), 1);
    line->selectAll();
    QTest::keyClicks(line->parentWidget(), "2 min");
    QTest::keyClick(line->parentWidget(), Qt::Key_Return);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(Open().Canvas(1).Saves().FixedRate(), 120);
    QTest::keyClick(line->parentWidget(), Qt::Key_Return);
    EXPECT_FALSE(window && window->isVisible());
}

TEST_F(EveryWindowTest, TakesNonsenseEverywhereAndCancelPutsAllBack) {
    const auto before = AllSettings(it.platform);
    ForEach([&](QWidget& window) {
        const auto* buttons = window.findChild<QDialogButtonBox*>();
        QAbstractButton* cancel = buttons ? buttons->button(QDialogButtonBox::Cancel) : nullptr;
        if (!cancel) return;
        for (const char* typed : {"-1e999 <&\"%n", "99999999999", "7"})
            ForEachPage(window, [&] {
                for (auto* box : window.findChildren<QCheckBox*>())
                    if (box->isVisible() && box->isEnabled()) box->click();
                for (auto* button : window.findChildren<QRadioButton*>())
                    if (button->isVisible() && button->isEnabled()) button->click();
                for (auto* combo : window.findChildren<QComboBox*>())
                    if (combo->isVisible() && combo->isEnabled()) QTest::keyClick(combo, Qt::Key_End);
                for (auto* line : window.findChildren<QLineEdit*>()) {
                    if (!line->isVisible() || !line->isEnabled() || line->isReadOnly()) continue;
                    line->setFocus();
                    line->selectAll();
                    QTest::keyClicks(line, typed);
                    QTest::keyClick(line, Qt::Key_Tab);
                }
            });
        EXPECT_NE(AllSettings(it.platform), before);
        QTest::mouseClick(cancel, Qt::LeftButton);
        EXPECT_EQ(AllSettings(it.platform), before);
    });
}

}  // namespace
}  // namespace tessaloom::testing
