#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/SetupValues.h"
#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "model/edit/PropertySet.h"
#include "publish/CanvasSaves.h"
#include "support/TestPlatform.h"
#include "text/Text.h"
#include "ui/dialogs/SetupProperties.h"
#include "ui/dialogs/Setups.h"
#include "ui/property/LayerPanel.h"
#include "ui/property/PropertyForm.h"
#include "ui/property/ScheduleSetup.h"
#include "ui/property/TextTags.h"
#include "ui/property/TransparentColours.h"
#include "ui/shared/Workspace.h"

namespace tessaloom::testing {
namespace {

constexpr LayerId FirstText{LayerId::Kind::Text, 1}, FirstPicture{LayerId::Kind::Graphic, 1};

/// What holds for each window alike.
class EveryWindowTest : public ::testing::Test {
protected:
    EveryWindowTest() {
        it.files[it.files.CurrentFolder() + "\\Tessaloom.INI"].bytes =
            "[General]\r\nStationLatitude=48\r\nStationLongitude=11\r\n";
        it.files["p.por"].bytes = "[Canvas01]\r\nFileName=c.can\r\n[VideoFeeds]\r\nFeed0Name=cam\r\n";
        it.files["c.can"].bytes =
            "[General]\r\nName=Harbour\r\nWidth=64\r\nHeight=48\r\n"
            "[Text001]\r\nEnabled=True\r\nText=one\r\n[Graphic001]\r\nEnabled=True\r\n";
        modMain::StartOptions options;
        options.portfolio = "p.por";
        modMain::Main(it.platform, options);
        workspace = std::make_unique<Workspace>(it.platform);
        workspace->Activate(1);
        it.time.Advance(0.01);
        it.timer.Tick();
    }
    ~EveryWindowTest() override {
        Q_EMIT workspace->SetupMustClose();
        parts.clear();
        modMain::modMain_Shutdown();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        tessaloom::Setup() = {};
    }

    Portfolio& Open() { return *modMain::OpenPortfolio(); }

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

    /// All that windows set, as text.
    std::string Everything() {
        std::unique_ptr<PropertySet> sets[] = {
            PropertySets::Layer(Open(), 1, FirstText),
            PropertySets::Layer(Open(), 1, FirstPicture),
            PropertySets::CanvasGeneral(Open(), 1),
            PropertySets::FixedSave(Open(), 1),
            PropertySets::SequentialSave(Open(), 1),
            PropertySets::Wallpaper(Open(), 1),
            PropertySets::FTPUpload(Open(), 1),
            PropertySets::WebPicture(Open(), 1),
            PropertySets::Feed(Open(), 0),
            PropertySets::Motion(Open(), 0),
            PropertySets::Web(Open()),
            PropertySets::Weather(Open()),
            PropertySets::Scripting(Open()),
            std::make_unique<SetupProperties>(it.platform),
        };
        std::string all;
        for (const auto& set : sets)
            for (std::size_t row = 0; row < set->Properties().size(); ++row)
                all.append(set->Properties()[row].name).append("=").append(set->Get(row)).append("\n");
        return all;
    }

    TestPlatform it;
    std::unique_ptr<Workspace> workspace;
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
    QPointer<QWidget> window;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->objectName() == "CanvasSetup1") window = widget;
    ASSERT_TRUE(window);
    auto* line = window->findChild<QWidget*>("FixedRate")->findChild<QLineEdit*>();
    line->selectAll();
    QTest::keyClicks(line->parentWidget(), "soon");
    auto* tabs = window->findChild<QTabWidget*>();
    tabs->setCurrentIndex(0);
    QTest::mouseClick(window->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
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
    const std::string before = Everything();
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
        EXPECT_NE(Everything(), before);
        QTest::mouseClick(cancel, Qt::LeftButton);
        EXPECT_EQ(Everything(), before);
    });
}

}  // namespace
}  // namespace tessaloom::testing
