#include "imaging/Graphic.h"
#include "model/edit/Layers.h"
#include "text/Tags.h"
#include "text/Text.h"
#include "text/TextBox.h"
#include "ui/Desk.h"
#include "ui/property/PropertyForm.h"
#include "ui/property/RateBox.h"
#include "ui/property/ScheduleSetup.h"
#include "ui/property/TagWords.h"
#include "ui/property/TaggedTextEdit.h"
#include "ui/property/TextTags.h"
#include "ui/property/TransparentColours.h"

namespace tessaloom::testing {
namespace {

/// A portfolio whose canvas 1 has a text and a picture, red on the left and blue on the right.
class PropertyWindowsTest : public Desk {
protected:
    PropertyWindowsTest() {
        it.time.Set(FakeTime::FirstDay, 12, 0, 0);
        Start();
        TheCanvas().SetEnabled(true);
        TheCanvas().AddText(1);
        Graphic& graphic = *TheCanvas().AddGraphic(1);
        DIB picture;
        picture.SetWidthHeight(40, 20);
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 40; ++x) picture.Row(y)[x * 3 + (x < 20 ? 2 : 0)] = 200;
        graphic.Image().LoadIntoPictureDIB(picture);
        workspace->Activate(1);
    }

    Schedule& TheSchedule() { return TheCanvas().Text(1)->Schedule(); }
    Graphic& ThePicture() { return *TheCanvas().Graphic(1); }
    void Undo() { workspace->HistoryOf(1)->Undo(); }

    QWidget& Window(const char* name) {
        if (QWidget* window = Desk::Window(name)) return *window;
        throw std::logic_error(std::string("no window ") + name);
    }

    void OpenSchedule() {
        ShowScheduleSetup(*workspace, nullptr, "Text 1", 1, [this] { return std::vector{&TheSchedule()}; });
    }

    static void Press(QWidget& window, const char* name) {
        QTest::mouseClick(window.findChild<QWidget*>(name), Qt::LeftButton, {}, {8, 8});
    }
    static void PressButton(QWidget& window, QDialogButtonBox::StandardButton button) {
        QTest::mouseClick(window.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
    }
    static void Focus(QWidget& widget) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(widget.window()));
        widget.setFocus();
    }
    template <typename Box>
    static void Type(QWidget& window, const char* name, const char* text) {
        auto* box = window.findChild<Box*>(name);
        Focus(*box);
        if constexpr (std::is_same_v<Box, QTimeEdit>)
            box->setSelectedSection(QDateTimeEdit::HourSection);
        else
            box->selectAll();
        QTest::keyClicks(box, text);
        QTest::keyClick(box, Qt::Key_Tab);
    }
};

TEST_F(PropertyWindowsTest, EveryTagOfTheEngineIsListedOnceWithItsMeaning) {
    std::multiset<QString> expected, listed;
    for (const std::string& tag : AllTags()) expected.insert(QString::fromStdString(tag));
    for (const ArrowWord& arrow : ArrowWords())
        expected.insert(QString::fromUtf8(arrow.word.data(), static_cast<qsizetype>(arrow.word.size())));
    for (const TagWords::Entry& entry : TagWords::All()) {
        listed.insert(entry.tag);
        EXPECT_FALSE(entry.meaning.isEmpty()) << entry.tag.toStdString();
        EXPECT_NE(TagWords::Expanded(*workspace, entry.tag), entry.tag);
    }
    EXPECT_EQ(listed, expected);
    EXPECT_TRUE(TagWords::Known(u"<time>"));
    EXPECT_FALSE(TagWords::Known(u"<times>"));
}

TEST_F(PropertyWindowsTest, RatesAreReadAsPeopleWriteThem) {
    const std::pair<const char*, double> good[] = {
        {"0.5",              0.5     },
        {"0,5 sec",          0.5     },
        {" 90 SEC ",         90      },
        {"2 min",            120     },
        {"1/30 sec",         1.0 / 30},
        {"1:30",             90      },
        {"1:00:00",          3600    },
        {"1 hr 30 min",      5400    },
        {"250 ms",           0.25    },
        {"only when forced", 0       },
        {"0",                0       },
    };
    for (const auto& [text, seconds] : good) {
        SCOPED_TRACE(text);
        ASSERT_TRUE(RateText::Seconds(QString::fromUtf8(text)));
        EXPECT_DOUBLE_EQ(*RateText::Seconds(QString::fromUtf8(text)), seconds);
    }
    for (const char* bad : {"", "abc", "1/0", "-5", "5 parsecs", "1:75", "1:2:3:4", "1..2", "nan", "1 min x"})
        EXPECT_FALSE(RateText::Seconds(bad)) << bad;
    const std::pair<double, const char*> labels[] = {
        {0,        "Only when forced"   },
        {0.033333, "1/30 sec"           }, // as a document holds it
        {60,       "1 min"              },
        {90,       "1 min 30 sec"       },
        {0.7,      "0.7 sec"            },
        {86399,    "23 hr 59 min 59 sec"},
    };
    for (const auto& [seconds, label] : labels) {
        EXPECT_EQ(RateText::Label(seconds).toStdString(), label);
        EXPECT_NEAR(*RateText::Seconds(label), seconds, 1e-6);
    }
}

TEST_F(PropertyWindowsTest, ARateIsTakenOnlyWhenItIsOne) {
    RateBox box(RateBox::List::WholeSeconds, 1, 3600);
    box.show();
    std::vector<double> entered;
    QString wrong;
    QObject::connect(&box, &RateBox::Entered, [&](double seconds) { entered.push_back(seconds); });
    QObject::connect(&box, &RateBox::Wrong, [&](const QString& reason) { wrong = reason; });
    auto* line = box.findChild<QLineEdit*>();
    const auto type = [&](const char* text) {
        Focus(*line);
        line->selectAll();
        QTest::keyClicks(line, text);
        QTest::keyClick(line, Qt::Key_Return);
    };
    type("1:40");
    EXPECT_THAT(entered, ElementsAre(100));
    EXPECT_EQ(line->text(), "1 min 40 sec");
    type("2 hr");
    EXPECT_EQ(wrong, "At most 1 hr.");
    EXPECT_THAT(entered, ElementsAre(100));
    box.findChild<QComboBox*>()->clearFocus();
    EXPECT_TRUE(box.Mistaken());
    QTest::keyClick(box.findChild<QComboBox*>(), Qt::Key_Escape);
    EXPECT_EQ(line->text(), "1 min 40 sec");
    EXPECT_EQ(wrong, "");
    EXPECT_EQ(box.findChild<QComboBox*>()->itemText(0), "1 sec");
}

TEST_F(PropertyWindowsTest, TagsAreCompletedAndInsertedFromTheList) {
    TaggedTextEdit editor(*workspace);
    editor.ShowText("one\r\ntwo ");
    editor.show();
    std::string edited;
    QObject::connect(&editor, &TaggedTextEdit::Edited, [&](const std::string& text) { edited = text; });
    auto* edit = editor.findChild<QPlainTextEdit*>();
    Focus(*edit);
    edit->moveCursor(QTextCursor::End);
    QTest::keyClicks(edit, "<time1");
    QWidget* popup = QApplication::activePopupWidget();
    ASSERT_TRUE(popup);
    QTest::keyClick(popup, Qt::Key_Return);
    EXPECT_EQ(edited, "one\r\ntwo <TIME12H>");
    EXPECT_EQ(editor.findChild<QLabel*>("preview")->text(), "one\ntwo 12:00:00 PM");

    QTest::mouseClick(editor.findChild<QPushButton*>("insertTag"), Qt::LeftButton);
    QWidget& tags = Window("frmTextTags");
    Type<QLineEdit>(tags, "search", "ordinal");
    Press(tags, "insert");
    EXPECT_EQ(edited, "one\r\ntwo <TIME12H><DATEFORMALDAY>");
    editor.hide();
    Press(tags, "insert");
    EXPECT_EQ(QApplication::clipboard()->text(), "<DATEFORMALDAY>");
}

TEST_F(PropertyWindowsTest, AScheduleIsSetLiveUndoneAndCancelled) {
    OpenSchedule();
    QWidget* window = &Window("frmScheduler");
    EXPECT_EQ(window->windowTitle(), "Schedule Setup");
    const std::pair<const char*, const char*> captions[] = {
        {"Always",             "24-&Hours"             },
        {"FromStartTo",        "&From Start to"        },
        {"StartAbsoluteTime",  "&Abs. Time: (HH:MM:SS)"},
        {"StartSunriseOffset", "&Sunrise +/- minutes"  },
        {"StartSunsetOffset",  "S&unset +/- minutes"   },
        {"StopAbsoluteTime",   "Abs. &Time: (HH:MM:SS)"},
        {"StopSunriseOffset",  "Su&nrise +/- minutes"  },
        {"StopSunsetOffset",   "Sunse&t +/- minutes"   },
    };
    for (const auto& [name, caption] : captions)
        EXPECT_EQ(window->findChild<QRadioButton*>(name)->text(), caption);

    Press(*window, "FromStartTo");
    Type<QTimeEdit>(*window, "StartAbsoluteTimeValue", "080000");
    Press(*window, "StopSunsetOffset");
    Type<QDoubleSpinBox>(*window, "StopSunsetOffsetValue", "-15.5");
    EXPECT_EQ(TheSchedule().Description(), "08:00:00 to sunset-15.5 min");
    EXPECT_THAT(window->findChild<QLabel*>("summary")->text().toStdString(),
                StartsWith("Schedule: 08:00:00 to sunset-15.5 min. On now, until 17:"));
    PressButton(*window, QDialogButtonBox::Ok);
    EXPECT_EQ(workspace->HistoryOf(1)->UndoName(), "Change schedule");

    OpenSchedule();
    window = &Window("frmScheduler");
    Press(*window, "Always");
    EXPECT_EQ(TheSchedule().Description(), "24-hours");
    PressButton(*window, QDialogButtonBox::Cancel);
    EXPECT_EQ(TheSchedule().Description(), "08:00:00 to sunset-15.5 min");
    while (workspace->HistoryOf(1)->CanUndo()) Undo();
    EXPECT_EQ(TheSchedule().Description(), "24-hours");
}

TEST_F(PropertyWindowsTest, EveryChoiceOfAScheduleIsReachedByKeys) {
    OpenSchedule();
    QWidget& window = Window("frmScheduler");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto press = [&](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    const auto tabTo = [&](const QString& name) {
        for (int i = 0; i < 20 && QApplication::focusWidget()->objectName() != name; ++i) press(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget()->objectName(), name);
    };
    tabTo("Always");
    press(Qt::Key_Down);
    EXPECT_EQ(TheSchedule().ScheduleMode(), Schedule::FromStartTo);
    for (const QString end : {"Start", "Stop"}) {
        tabTo(end + "AbsoluteTime");
        tabTo(end + "AbsoluteTimeValue");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        for (const QString way : {"SunriseOffset", "SunsetOffset"}) {
            tabTo(end + (way == "SunriseOffset" ? "AbsoluteTime" : "SunriseOffset"));
            press(Qt::Key_Down);
            tabTo(end + way);
            tabTo(end + way + "Value");
        }
    }
    EXPECT_EQ(TheSchedule().Description(), "sunset to sunset");
}

TEST_F(PropertyWindowsTest, WindowsFollowTheirLayersAndSetSeveralAlike) {
    const auto text = [](int slot) { return LayerId{LayerId::Kind::Text, slot}; };
    TheCanvas().AddText(2);
    TheCanvas().AddText(3)->Schedule().SetStartAbsoluteTime(0.5);
    PropertyForm form(*workspace);
    const LayerId layers[] = {text(1), text(3)};
    form.Show(PropertySets::Layers(*modMain::OpenPortfolio(), 1, layers));
    Press(*form.EditorOf("Schedule"), "change");
    QWidget& window = Window("frmScheduler");
    EXPECT_TRUE(window.findChild<QLabel*>("differ")->isVisible());
    workspace->Select({text(3)});
    History& history = *workspace->HistoryOf(1);
    {
        const HistoryStep step(&history, "Lower");
        history.Renamed(Layers::NamesAfter(TheCanvas(), text(3), &Layers::Lower));
    }
    EXPECT_THAT(workspace->Selection(), ElementsAre(text(2)));
    Press(window, "FromStartTo");
    const auto started = [&](int slot) { return TheCanvas().Text(slot)->Schedule().StartAbsoluteTime(); };
    EXPECT_EQ(started(1), 0.5) << "like the one that is shown";
    EXPECT_EQ(started(3), 0) << "was not asked for";
    EXPECT_FALSE(window.findChild<QLabel*>("differ")->isVisible());
    Undo();
    Undo();
    EXPECT_THAT(workspace->Selection(), ElementsAre(text(3)));
    Press(window, "FromStartTo");
    PressButton(window, QDialogButtonBox::Cancel);
    EXPECT_EQ(started(3), 0.5);
    EXPECT_EQ(started(1), 0);
}

TEST_F(PropertyWindowsTest, ColoursArePickedFromThePicture) {
    ShowTransparentColours(*workspace, nullptr, 1,
                           {
                               {LayerId::Kind::Graphic, 1}
    });
    QWidget* window = &Window("TransparentColours");
    auto* picture = window->findChild<QWidget*>("picture");
    const QPoint middle = picture->rect().center();
    const auto group = [&](int place) { return ThePicture().TransparentColorTable(place); };

    QTest::mouseClick(picture, Qt::LeftButton, {}, middle - QPoint(20, 0));
    EXPECT_TRUE(ThePicture().TransparentColorEnable());
    EXPECT_EQ(group(0), 0x0000C8);
    EXPECT_EQ(group(1), 0x0000C8);

    Press(*window, "add");
    QTest::mousePress(picture, Qt::LeftButton, {}, middle - QPoint(20, 0));
    QTest::mouseMove(picture, middle + QPoint(20, 10));
    QTest::mouseRelease(picture, Qt::LeftButton, {}, middle + QPoint(20, 10));
    Type<QSpinBox>(*window, "tolerance", "7");
    EXPECT_EQ(ThePicture().TransparentColorCount(), 2);
    EXPECT_EQ(group(4), 0x000000);
    EXPECT_EQ(group(5), 0xC800C8);
    EXPECT_EQ(group(6), 7);
    EXPECT_EQ(window->findChild<QTreeWidget*>("groups")->topLevelItem(1)->text(0), u"#000000 \u2013 #C800C8");
    Undo();
    EXPECT_EQ(group(6), 0);

    PressButton(*window, QDialogButtonBox::Cancel);
    EXPECT_FALSE(ThePicture().TransparentColorEnable());
    EXPECT_EQ(ThePicture().TransparentColorCount(), 1);
    EXPECT_EQ(group(0), 0);
}

TEST_F(PropertyWindowsTest, WindowsOutliveWhatTheyShowAndCloseWithThePortfolio) {
    OpenSchedule();
    ShowTransparentColours(*workspace, nullptr, 1,
                           {
                               {LayerId::Kind::Graphic, 1}
    });
    QPointer<QWidget> colours = &Window("TransparentColours");
    TheCanvas().RemoveGraphic(1);
    workspace->SetAwake(true);  // looks at once
    EXPECT_FALSE(colours->findChild<QWidget*>("picture")->isEnabled());
    Press(*colours, "add");
    workspace->PortfolioClosing();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(colours);
}

}  // namespace
}  // namespace tessaloom::testing
