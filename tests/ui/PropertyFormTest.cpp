// Forms of properties and the list of layers: real widgets on the real engine, on a platform of fakes.

#include "ui/property/PropertyForm.h"

#include "imaging/Graphic.h"
#include "publish/FTPPush.h"
#include "publish/VideoStreaming.h"
#include "text/Text.h"
#include "ui/AllSettings.h"
#include "ui/Desk.h"
#include "ui/property/LayerPanel.h"
#include "ui/property/LayerTree.h"

namespace tessaloom::testing {
namespace {

using Kind = LayerId::Kind;

constexpr LayerId FirstText{Kind::Text, 1}, FirstPicture{Kind::Graphic, 1}, SecondPicture{Kind::Graphic, 2};

class PropertyFormTest : public Desk {
protected:
    PropertyFormTest() {
        it.time.Set(FakeTime::FirstDay, 12, 0, 0);
        Start();
        TheCanvas().SetEnabled(true);
        TheCanvas().AddText(1)->SetEnabled(true);
        for (int slot : {1, 2}) {
            Graphic& graphic = *TheCanvas().AddGraphic(slot);
            graphic.SetEnabled(true);
            graphic.SetSourceType(Graphic::PictureFile);
        }
        workspace->Activate(1);
        form = std::make_unique<PropertyForm>(*workspace);
        form->resize(400, 900);
        Activate(*form);
    }
    void TearDown() override {
        form.reset();
        Desk::TearDown();
    }

    static void Activate(QWidget& window) {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    Text& TheText() { return *TheCanvas().Text(1); }
    void Show(LayerId layer) { form->Show(PropertySets::Layer(Open(), 1, layer)); }

    template <typename Widget>
    Widget& In(std::string_view property) {
        return *form->EditorOf(property)->findChild<Widget*>();
    }
    QString Remark(const char* property) {
        return form->findChild<QLabel*>(QString("remark") + property)->text();
    }

    double Stored(std::string_view property) {
        if (property == "LocationX") return TheText().x();
        if (property == "FontSize") return TheText().FontSize();
        return property == "Color" ? TheText().Color() : TheText().UpdateBaseTime();
    }

    /// Types into the property's editor as if it had been empty.
    void Type(std::string_view property, const char* text, Qt::Key end = Qt::Key_Return) {
        QWidget* focus = form->EditorOf(property)->focusProxy();
        focus->setFocus();
        QTest::keyClick(focus, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(focus, text);
        if (end != Qt::Key_unknown) QTest::keyClick(focus, end);
    }

    std::unique_ptr<PropertyForm> form;
};

TEST_F(PropertyFormTest, ShowsAnEditorForEachPropertyOfEverySet) {
    auto sets = AllSets(it.platform);
    Open().SetNeedSaving(false);
    TheCanvas().SetNeedSaving(false);
    for (auto& [name, set] : sets) {
        const auto properties = set->Properties();
        form->Show(std::move(set));
        ASSERT_FALSE(properties.empty()) << name;
        for (const Property& property : properties) {
            SCOPED_TRACE(name + "." + std::string(property.name));
            const QWidget* editor = form->EditorOf(property.name);
            EXPECT_TRUE(editor && editor->focusProxy());
        }
    }
    EXPECT_FALSE(Open().NeedSaving()) << "showing sets nothing";
}

TEST_F(PropertyFormTest, TakesWhatIsTypedAndSaysWhatItDidNotTake) {
    struct Case {
        std::string_view property;
        const char *typed, *shown, *remark;
        double stored;
    };
    constexpr Case Cases[] = {
        {"LocationX",      "120",     "120",      "",                                  120     },
        {"LocationX",      "99999",   "3000",     "Is at most 3000\u00A0px.",          3000    },
        {"LocationX",      "abc",     "abc",      "Must be a whole number.",           3000    },
        {"LocationX",      "-7 px",   "-7",       "",                                  -7      },
        {"FontSize",       "12,5",    "12.5",     "",                                  12.5    },
        {"FontSize",       "1",       "2",        "Is at least 2\u00A0pt.",            2       },
        {"Color",          "#ff8800", "#FF8800",  "",                                  0x0088FF},
        {"Color",          "#ff88",   "#ff88",    "Must be a colour such as #FF8800.", 0x0088FF},
        {"UpdateBaseTime", "7:30",    "07:30:00", "",                                  27000   },
        {"UpdateBaseTime", "25",      "25",       "Must be a time such as 07:30:00.",  27000   },
    };
    Show(FirstText);
    for (const Case& each : Cases) {
        SCOPED_TRACE(each.typed);
        Type(each.property, each.typed);
        EXPECT_EQ(In<QLineEdit>(each.property).text(), each.shown);
        EXPECT_EQ(Remark(std::string(each.property).c_str()), each.remark);
        EXPECT_EQ(Stored(each.property), each.stored);
    }
    TheText().SetColor(1);
    Q_EMIT workspace->Pulse();
    EXPECT_EQ(In<QLineEdit>("Color").text(), "#ff88") << "never under the hands of who is typing";
    QTest::keyClick(form->EditorOf("Color")->focusProxy(), Qt::Key_Escape);
    Q_EMIT workspace->Pulse();
    EXPECT_EQ(In<QLineEdit>("Color").text(), "#010000");
    EXPECT_EQ(Remark("Color"), "");
}

TEST_F(PropertyFormTest, MakesOneStepOfWhatIsDoneToARow) {
    Show(FirstText);
    In<QSlider>("Opacity").setValue(60);
    In<QSlider>("Opacity").setValue(40);
    Type("LocationY", "15");
    EXPECT_EQ(TheText().Opacity(), 40);
    History& history = *workspace->HistoryOf(1);
    EXPECT_EQ(history.UndoName(), "Change down");
    history.Undo();
    EXPECT_EQ(history.UndoName(), "Change opacity");
    history.Undo();
    EXPECT_FALSE(history.CanUndo());
    Q_EMIT workspace->Pulse();
    EXPECT_EQ(In<QSlider>("Opacity").value(), 100);
    auto& reset = *form->findChild<QToolButton*>("resetOpacity");
    EXPECT_FALSE(reset.isVisible());
    In<QDial>("RotationAngle").setValue(180);  // a dial counts from its bottom
    EXPECT_EQ(TheText().RotationAngle(), 90);
    form->findChild<QToolButton*>("resetRotationAngle")->click();
    EXPECT_EQ(TheText().RotationAngle(), 0);
    In<QCheckBox>("Shadow").click();
    EXPECT_TRUE(form->EditorOf("ShadowSize")->isEnabled());
    form->Restore();
    EXPECT_FALSE(TheText().Shadow());
    EXPECT_FALSE(form->EditorOf("ShadowSize")->isEnabled());
}

TEST_F(PropertyFormTest, SetsSeveralLayersInOneStep) {
    TheCanvas().AddText(2)->SetFontSize(30);
    const LayerId texts[] =
        {
            FirstText, {Kind::Text, 2}
    },
                  all[] = {FirstText, FirstPicture, SecondPicture};
    const auto caption = [&] { return form->findChild<QLabel*>("caption")->text(); };
    form->Show(PropertySets::Layers(Open(), 1, texts));
    EXPECT_EQ(caption(), "2 text layers");
    auto& size = In<QLineEdit>("FontSize");
    EXPECT_EQ(size.text(), "");
    EXPECT_EQ(size.placeholderText(), "Several values");
    EXPECT_EQ(In<QLineEdit>("LocationX").text(), "0") << "the same in all";
    Type("FontSize", "5", Qt::Key_unknown);
    EXPECT_EQ(TheText().FontSize(), 14) << "not before it is entered";
    QTest::keyClick(&size, Qt::Key_Escape);
    EXPECT_EQ(size.text(), "");
    Type("FontSize", "x", Qt::Key_Backspace);
    QTest::keyClick(&size, Qt::Key_Return);
    EXPECT_TRUE(form->TakeTyped()) << "what was begun and given up";
    Type("FontSize", "20");
    EXPECT_EQ(TheCanvas().Text(2)->FontSize(), 20);
    EXPECT_EQ(TheText().FontSize(), 20);
    History& history = *workspace->HistoryOf(1);
    EXPECT_EQ(history.UndoName(), "Change font size of 2 text layers");
    history.Undo();
    Q_EMIT workspace->Pulse();
    EXPECT_EQ(size.placeholderText(), "Several values");
    EXPECT_EQ(TheCanvas().Text(2)->FontSize(), 30);

    TheText().SetShadow(true);
    TheText().SetAlignment(4);
    form->Show(PropertySets::Layers(Open(), 1, all));
    EXPECT_EQ(caption(), "3 layers");
    EXPECT_EQ(form->EditorOf("SourceType"), nullptr);
    EXPECT_EQ(In<QCheckBox>("Shadow").checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(In<QComboBox>("Align").currentIndex(), -1);
    In<QCheckBox>("Shadow").click();
    EXPECT_TRUE(TheCanvas().Graphic(2)->Shadow());
    EXPECT_EQ(In<QCheckBox>("Shadow").checkState(), Qt::Checked);
    QTest::keyClick(&In<QComboBox>("Align"), Qt::Key_Down);
    EXPECT_EQ(TheText().Alignment(), 0);
    form->findChild<QToolButton*>("resetInterval")->click();
    EXPECT_EQ(TheCanvas().Graphic(1)->Rate(), 10);
    EXPECT_EQ(history.UndoName(), "Change update every of 3 layers");
    EXPECT_EQ(In<QLineEdit>("Interval").text(), "") << "defaults differ";
    TheCanvas().RemoveGraphic(2);
    Q_EMIT workspace->Pulse();
    EXPECT_EQ(caption(), "2 layers");
}

TEST_F(PropertyFormTest, FollowsWhatItShows) {
    Show(FirstPicture);
    Type("SourceFileName", "no.png", Qt::Key_unknown);
    Show(SecondPicture);
    EXPECT_EQ(TheCanvas().Graphic(1)->SourceFileName(), "no.png")
        << "typing ends when another thing is shown";
    EXPECT_EQ(In<QLineEdit>("SourceFileName").text(), "");
    EXPECT_EQ(Remark("SourceFileName"), "");
    Type("SourceFileName", "no.png");
    EXPECT_EQ(Remark("SourceFileName"), "There is no such file.");
    TheCanvas().Graphic(2)->SetSourceType(Graphic::PlainBlock);
    Q_EMIT workspace->Pulse();
    In<QToolButton>("BackgroundColor").click();
    auto& chooser = *form->findChild<QColorDialog*>();
    chooser.setCurrentColor(QColor(1, 2, 3));
    EXPECT_EQ(TheCanvas().Graphic(2)->BackgroundColor(), 0x030201) << "shown live";
    Show(FirstPicture);
    EXPECT_FALSE(chooser.isVisible());
    EXPECT_NE(TheCanvas().Graphic(1)->BackgroundColor(), 0x030201);
    Show(SecondPicture);
    TheCanvas().RemoveGraphic(2);
    Q_EMIT workspace->Pulse();
    EXPECT_TRUE(form->findChild<QLabel*>("gone")->isVisible());
    EXPECT_FALSE(form->EditorOf("Opacity")->isEnabled());
    Show(FirstPicture);
    auto& reset = *form->findChild<QToolButton*>("resetSourceType");
    EXPECT_TRUE(reset.isVisible());
    form->findChild<QLineEdit*>("search")->setText("shadow edge");
    Q_EMIT workspace->Pulse();
    EXPECT_FALSE(reset.isVisible());
    EXPECT_TRUE(form->EditorOf("ShadowSize")->isVisible());
    EXPECT_FALSE(form->EditorOf("Shadow")->isVisible());
    EXPECT_FALSE(form->EditorOf("Opacity")->isVisible());
    form->Show(nullptr, "Nothing");
    EXPECT_EQ(form->EditorOf("Opacity"), nullptr);
}

TEST_F(PropertyFormTest, SaysWhatIsNotInItsLists) {
    Portfolio& portfolio = Open();
    form->Show(PropertySets::Motion(portfolio, 0));
    PropertySet& motion = *form->Set();
    for (const auto& [value, shown] : {
             std::pair("30", "30 sec"), {"-3", "3 frames"},
               {"5",  "5 sec"   }
    }) {
        motion.Set(*motion.Find("MotionTriggerRestInterval"), value);
        Q_EMIT workspace->Pulse();
        EXPECT_EQ(In<QComboBox>("MotionTriggerRestInterval").currentText(), shown);
    }
    form->Show(PropertySets::FTPUpload(portfolio, 1));
    TheCanvas().VideoStreaming().FTPPush().SetServerName("");
    Q_EMIT workspace->Pulse();
    const PropertySet& upload = *form->Set();
    const std::string_view fallback = upload.Properties()[*upload.Find("ServerName")].fallback;
    EXPECT_EQ(In<QLineEdit>("ServerName").placeholderText().toStdString(), fallback);
}

TEST_F(PropertyFormTest, NeverShowsAPassword) {
    FTPPush& upload = TheCanvas().VideoStreaming().FTPPush();
    upload.SetPassword("secret");
    form->Show(PropertySets::FTPUpload(Open(), 1));
    EXPECT_EQ(In<QLineEdit>("Password").text(), "");
    Type("Password", "new", Qt::Key_Tab);
    EXPECT_EQ(upload.Password(), "new");
    EXPECT_EQ(In<QLineEdit>("Password").text(), "");
}

TEST_F(PropertyFormTest, ListsLayersAndChangesThem) {
    LayerPanel panel(*workspace);
    panel.resize(300, 500);
    Activate(panel);
    auto& tree = *panel.findChild<LayerTree*>();
    tree.setFocus();
    workspace->Select({SecondPicture});
    EXPECT_THAT(tree.Selection(), ElementsAre(SecondPicture));

    const auto place = [&](LayerId at) {  // the item's row in the list; -1 when it is not there
        const auto found = tree.findItems("", Qt::MatchContains | Qt::MatchRecursive);
        for (QTreeWidgetItem* item : found) {
            tree.setCurrentItem(item);
            if (tree.Current() == at) return tree.visualItemRect(item);
        }
        return QRect();
    };
    const QRect text = place(FirstText), upper = place(SecondPicture), lower = place(FirstPicture);
    EXPECT_LT(text.top(), upper.top());
    EXPECT_LT(upper.top(), lower.top());
    EXPECT_EQ(tree.PlaceAt(text.center(), FirstPicture).below, SecondPicture) << "pictures lie beneath texts";
    EXPECT_EQ(tree.PlaceAt(lower.bottomLeft(), SecondPicture).below.slot, 0);
    EXPECT_EQ(tree.PlaceAt({5, 2}, FirstText).pass, 3);

    EXPECT_THAT(workspace->Selection(), ElementsAre(FirstPicture)) << "the list was walked through last";
    QTest::keyClick(&tree, Qt::Key_Space);
    EXPECT_FALSE(TheCanvas().Graphic(1)->Enabled());
    Q_EMIT tree.Dropped(FirstPicture, 3, {Kind::Graphic, 0});
    EXPECT_EQ(TheCanvas().Graphic(workspace->Selection().at(0).slot)->Layer(), 3);
    EXPECT_EQ(workspace->HistoryOf(1)->UndoName(), "Reorder");
    QTest::keyClick(&tree, Qt::Key_Delete);
    EXPECT_EQ(Layers::InDrawingOrder(TheCanvas()).size(), 2u);
    workspace->HistoryOf(1)->Undo();
    workspace->HistoryOf(1)->Undo();
    workspace->HistoryOf(1)->Undo();
    EXPECT_FALSE(workspace->HistoryOf(1)->CanUndo());
    EXPECT_EQ(Layers::InDrawingOrder(TheCanvas()).size(), 3u);
    EXPECT_TRUE(TheCanvas().Graphic(1)->Enabled());
}

}  // namespace
}  // namespace tessaloom::testing
