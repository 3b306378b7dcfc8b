#include "platform/FtpClient.h"
#include "publish/CanvasSaves.h"
#include "publish/WebServer.h"
#include "text/VWS.h"
#include "ui/Desk.h"
#include "ui/dialogs/Setups.h"
#include "ui/shared/SetupWindow.h"

namespace tessaloom::testing {
namespace {

/// A server on which every step succeeds, but for those that a test forbids. Answers come with `Poll`.
class WillingFtpServer final : public FtpClients {
public:
    std::string refusal;  ///< Of the log-in; "": it is let in.
    bool mute = false;

    std::unique_ptr<FtpClient> MakeClient(FtpListener& listener) override {
        return std::make_unique<Client>(*this, listener);
    }
    void Poll() override {
        if (const auto answer = std::exchange(answer_, {}); answer && !mute) answer();
    }
    std::string ProcessMark() const override { return "1"; }

private:
    struct Client final : FtpClient {
        Client(WillingFtpServer& at, FtpListener& of) : server(at), listener(of) {}
        ~Client() override { server.answer_ = {}; }
        void Answer() {
            server.answer_ = [this] { listener.FtpComplete(); };
        }
        void LogIn(const FtpAccount&) override {
            if (server.refusal.empty()) return Answer();
            server.answer_ = [this] { listener.FtpError(530, server.refusal); };
        }
        void StoreFile(Bytes, std::string_view) override { Answer(); }
        void DeleteFile(std::string_view) override { Answer(); }
        void RenameFile(std::string_view, std::string_view) override { Answer(); }
        void NoOp() override { Answer(); }
        void LogOut() override { Answer(); }
        void Disconnect() override { server.answer_ = {}; }
        bool Connected() const override { return true; }
        WillingFtpServer& server;
        FtpListener& listener;
    };
    std::function<void()> answer_;
};

class SetupDialogsTest : public Desk {
protected:
    SetupDialogsTest() {
        it.platform.ftpClients = &server;
        Start(
            {
                {"p.por", "[Canvas01]\r\nFileName=c.can\r\n[Canvas02]\r\nFileName=d.can\r\n"},
                {"c.can",
                 "[General]\r\nName=Harbour\r\nWidth=64\r\nHeight=48\r\n"
                 "[Capture]\r\nFixedEnabled=True\r\nFixedFileName=new\\a.jpg\r\n"           },
                {"d.can",
                 "[General]\r\nName=Garden\r\n[Capture]\r\nFixedEnabled=True\r\n"
                 "FixedFileName=new/a.jpg\r\nFixedRate=0\r\n"                               }
        },
            "StationLatitude=48\r\nStationLongitude=11\r\n");
        Tick();
    }

    static void Type(const char* window, const char* property, const char* text) {
        auto* line = Find<QWidget>(window, property)->findChild<QLineEdit*>();
        ASSERT_TRUE(line) << property;
        line->setFocus();
        line->selectAll();
        QTest::keyClicks(line, text);
        QTest::keyClick(line, Qt::Key_Tab);
    }
    static std::string Fact(const char* window, const char* name) {
        const auto* fact = Find<QLabel>(window, name);
        return fact ? fact->text().remove(QChar(0x200B)).toStdString() : "";
    }
    static std::string Hints(const char* window) {
        const auto* hints = Find<QWidget>(window, "hint");
        if (!hints) return {};
        std::string text;
        for (const auto* label : hints->findChildren<QLabel*>()) text += label->text().toStdString();
        return text;
    }

    WillingFtpServer server;
};

TEST_F(SetupDialogsTest, CanvasPropertiesTakeEffectAtOnceAndCancelPutsThemBack) {
    for (const auto button : {QDialogButtonBox::Cancel, QDialogButtonBox::Ok}) {
        ShowCanvasSetup(*workspace, nullptr, 1);
        EXPECT_EQ(Window("CanvasSetup1")->windowTitle(), "Canvas Properties: Harbour");
        Type("CanvasSetup1", "Width", "500");
        EXPECT_EQ(TheCanvas().Width(), 500);
        Press("CanvasSetup1", "cmdTurnSize");
        EXPECT_EQ(TheCanvas().Height(), 500);
        EXPECT_EQ(Fact("CanvasSetup1", "factSize"), "48 × 500 px");
        Press("CanvasSetup1", button);
        EXPECT_FALSE(Window("CanvasSetup1"));
        EXPECT_EQ(TheCanvas().Height(), button == QDialogButtonBox::Cancel ? 48 : 500);
    }
    ShowCanvasSetup(*workspace, nullptr, 1);
    Open().ResetCanvas(1);
    Tick();
    EXPECT_FALSE(Window("CanvasSetup1"));
}

TEST_F(SetupDialogsTest, ASaveTellsWhereItsFileLiesAndWhatStandsInItsWay) {
    ShowCanvasSetup(*workspace, nullptr, 1, CanvasPage::FixedSave);
    EXPECT_EQ(Fact("CanvasSetup1", "factPath"), it.files.CurrentFolder() + "/new/a.jpg");
    EXPECT_THAT(Hints("CanvasSetup1"), HasSubstr("The same file is written by canvas 2 (Garden)"));
    EXPECT_EQ(Fact("CanvasSetup1", "factNext"), "00:01:00 (in 60 s)");
    it.files.DeleteFile("new/a.jpg", true);
    Tick();
    EXPECT_THAT(Hints("CanvasSetup1"), HasSubstr("does not exist"));
    Press("CanvasSetup1", "cmdMakeFolder");
    EXPECT_THAT(Hints("CanvasSetup1"), Not(HasSubstr("does not exist")));
    Press("CanvasSetup1", "cmdNow");
    Tick();
    EXPECT_TRUE(it.files.FileExists("new/a.jpg"));
    EXPECT_THAT(Fact("CanvasSetup1", "factLast"), HasSubstr("00:00:00, a.jpg, "));
    TheCanvas().Saves().SetFixedRate(0);
    Tick();
    EXPECT_EQ(Fact("CanvasSetup1", "factNext"), "Only when forced");
    EXPECT_FALSE(Find<QPushButton>("CanvasSetup1", "cmdNow")->isEnabled());
}

TEST_F(SetupDialogsTest, AnUploadIsTestedStepByStep) {
    ShowCanvasSetup(*workspace, nullptr, 1, CanvasPage::FTPUpload);
    Press("CanvasSetup1", "cmdTestNow");
    EXPECT_EQ(Fact("CanvasSetup1", "factResult"), "Uploading...");
    EXPECT_FALSE(Find<QPushButton>("CanvasSetup1", "cmdTestNow")->isEnabled());
    Tick(40);
    EXPECT_EQ(Fact("CanvasSetup1", "factResult"), "The picture is on the server");
    const auto* steps = Find<QTreeWidget>("CanvasSetup1", "steps");
    std::vector<std::string> stages;
    for (int row = 0; row < steps->topLevelItemCount(); ++row)
        stages.push_back(steps->topLevelItem(row)->text(1).toStdString());
    EXPECT_THAT(stages, ElementsAre("Not Initialized -- Send File", "Connecting", "Connect Complete",
                                    "Connected -- Send File", "Store Start", "Storing", "Store Complete",
                                    "Deleting", "Delete Complete", "Renaming", "Rename Complete",
                                    "File Send Complete", "Disconnecting", "Disconnected"));

    server.refusal = "Login incorrect";
    Press("CanvasSetup1", "cmdTestNow");
    Tick(40);
    EXPECT_EQ(Fact("CanvasSetup1", "factResult"),
              "The server could not be reached or did not let us in: Login incorrect");
    server.mute = true;
    Press("CanvasSetup1", "cmdTestNow");
    Tick(3);
    Press("CanvasSetup1", "cmdCancelTest");
    EXPECT_EQ(Fact("CanvasSetup1", "factResult"), "Cancelled");
}

TEST_F(SetupDialogsTest, TheWebServerSaysWhyItDoesNotListenAndGoesBackToItsPort) {
    Open().WebServer().SetPort(8080);
    Open().WebServer().SetEnabled(true);
    ShowWebServerSetup(*workspace, nullptr);
    EXPECT_EQ(Fact("WebServerSetup", "factState"), "Listening on port 8080");
    EXPECT_EQ(Fact("WebServerSetup", "factLocal"), "http://localhost:8080/");
    Type("WebServerSetup", "Port", "81");
    EXPECT_THAT(Hints("WebServerSetup"), HasSubstr("Port 81 is used when the server is started anew."));
    it.sockets.refusal = "Permission denied";
    Press("WebServerSetup", "cmdRestartServer");
    EXPECT_EQ(Fact("WebServerSetup", "factState"), "Could not start");
    EXPECT_THAT(Hints("WebServerSetup"), HasSubstr("Permission denied"));
    EXPECT_THAT(Hints("WebServerSetup"), HasSubstr("Port 81 needs administrator rights"));
    it.sockets.refusal.clear();
    Press("WebServerSetup", QDialogButtonBox::Cancel);
    EXPECT_EQ(it.sockets.listening, 8080);
}

TEST_F(SetupDialogsTest, WeatherReadingsAreShownAsTextsShowThem) {
    it.files["wx.csv"].bytes =
        "x,1,2026,1,14,23,59,58,3.4,7.2,225,45,78,21.3,9.6,1013.2,312.4,1.2,0.2,4,,,,,,,0.1,2.4,410,8.1,21.0,"
        "9.6,6.0,0.0,-1.2,0.1,0.06,,\n";
    Open().VWS().SetCSVFile("wx.csv");
    Open().VWS().SetCSVEnabled(true);
    ShowWeatherSetup(*workspace, nullptr);
    Tick();
    const auto* readings = Find<QTreeWidget>("WeatherSetup", "readings");
    const auto shown = [&](const char* tag) {
        const auto rows = readings->findItems(tag, Qt::MatchExactly | Qt::MatchRecursive, 4);
        return (rows[0]->text(1) + "|" + rows[0]->text(2) + "|" + rows[0]->text(3)).toStdString();
    };
    EXPECT_EQ(shown("<csvouttemp>"), "9.6|°C|Falling");
    EXPECT_EQ(shown("<csvdir>"), "225|°|SW");
    EXPECT_EQ(shown("<csvch1temp>"), "N/A||");
    EXPECT_THAT(Fact("WeatherSetup", "factRecord"), HasSubstr("23:59:58"));
    it.files.DeleteFile("wx.csv", true);
    Press("WeatherSetup", "cmdReadNow");
    Tick();
    EXPECT_EQ(shown("<csvouttemp>"), "N/A||");
    EXPECT_THAT(Hints("WeatherSetup"), HasSubstr("The file cannot be read"));
    EXPECT_EQ(Fact("WeatherSetup", "factFileState"), "There is no such file");
}

TEST_F(SetupDialogsTest, PreferencesTakeEffectAtOnce) {
    ShowPreferences(*workspace, nullptr);
    const std::string before = Fact("Preferences", "factSun");
    Type("Preferences", "StationLatitude", "-33.5");
    EXPECT_EQ(tessaloom::Setup().stationLatitude, -33.5);
    EXPECT_THAT(Fact("Preferences", "factPosition"), HasSubstr(" S, "));
    EXPECT_NE(Fact("Preferences", "factSun"), before);
    EXPECT_THAT(Hints("Preferences"), HasSubstr("from midnight on"));
    Type("Preferences", "ClearTypeContrast", "2200");
    EXPECT_EQ(it.fonts.ClearType().contrast, 2200);
    Type("Preferences", "StationLatitude", "70");
    EXPECT_THAT(Fact("Preferences", "factSun"), HasSubstr("Beyond 63°"));
    Press("Preferences", QDialogButtonBox::Cancel);
    EXPECT_EQ(tessaloom::Setup().stationLatitude, 48);
    EXPECT_EQ(it.fonts.ClearType().contrast, 1400);
}

}  // namespace
}  // namespace tessaloom::testing
