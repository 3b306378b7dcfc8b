#include <signal.h>

#include <cstdio>

#include "app/ChildProgram.h"
#include "support/TemporaryFolder.h"
#include "support/WebClient.h"

namespace tessaloom::testing {
namespace {

std::string Told(const std::string& command) {
    std::string text;
    std::FILE* const output = ::popen(command.c_str(), "r");
    for (int c = 0; (c = std::fgetc(output)) != EOF;) text += static_cast<char>(c);
    ::pclose(output);
    return text;
}

TEST(LivePage, ShowsEveryPublishedCanvasInABrowser) {
    const TemporaryFolder home, browser;
    const auto write = [&](const char* name, const std::string& text) { std::ofstream(home / name) << text; };
    const std::string port = std::to_string(FreePort());
    std::filesystem::copy(WEB_FOLDER, home / "web");
    write("p.por",
          "[Canvas01]\r\nFileName=a.can\r\n[Canvas02]\r\nFileName=b.can\r\n[WebServer]\r\nEnabled=True\r\n"
          "AllowNonCanvasServes=True\r\nPort=" +
              port + "\r\n");
    write("a.can",
          "[General]\r\nName=Pier <1> & more\r\nWidth=64\r\nHeight=48\r\n[WebServer]\r\nEnabled=True\r\n"
          "FileName=pier/a b?.jpg\r\nInterval=0\r\n");
    write("b.can", "[General]\r\nName=Hidden\r\nWidth=64\r\nHeight=48\r\n");
    ChildProgram program(home.Path(), {"--headless", "--portfolio", "p.por"});
    ASSERT_TRUE(Becomes([&] { return WebClient(std::stoi(port)).Connected(); })) << program.Log();

    const std::string look =
        "timeout 60 chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
        "--disable-background-networking --disable-component-update --disable-sync --user-data-dir=" +
        browser.Path() + " --virtual-time-budget=10000 --dump-dom http://localhost:" + port + "/ 2>/dev/null";
    std::string page;  // a browser on a busy machine may end before its pictures are decoded
    EXPECT_TRUE(Becomes([&] { return (page = Told(look)).find("src=\"blob:") != page.npos; })) << page;
    EXPECT_THAT(page, HasSubstr("aria-label=\"Enlarge Pier &lt;1&gt; &amp; more\""));
    EXPECT_THAT(page, ContainsRegex("<img alt=\"Pier <1> &amp; more\" src=\"blob:|<img alt=\"Pier &lt;1&gt; "
                                    "&amp; more\" src=\"blob:"));
    EXPECT_THAT(page, HasSubstr("style=\"aspect-ratio: 64 / 48;\""));
    EXPECT_THAT(page, HasSubstr("class=\"live\">Live</div>"));
    EXPECT_THAT(page, Not(HasSubstr("Hidden")));
    program.Send(SIGTERM);
    EXPECT_EQ(program.Status(), 0) << program.Log();
}

}  // namespace
}  // namespace tessaloom::testing
