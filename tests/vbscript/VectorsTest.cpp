#include <cstdio>
#include <regex>
#include <sstream>

#include "support/TemporaryFolder.h"
#include "support/Tsv.h"

namespace tessaloom::testing {
namespace {

const std::filesystem::path Vectors = std::filesystem::path(TEST_DATA) / "vbscript";

std::string ReadText(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    std::erase(text, '\r');
    return text;
}

/// What vbrun prints; a report at the end becomes "ERROR number|description|line|column".
std::string OutputOf(const std::filesystem::path& script) {
    const std::string command = "'" VBRUN_PROGRAM "' '" + script.string() + "' 2>&1";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(::popen(command.c_str(), "r"), ::pclose);
    std::string text;
    std::array<char, 4096> buffer;
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), output.get()))
        text.append(buffer.data(), count);
    static const std::regex report(
        R"((^|\n)[^\n]*\((\d+), (\d+)\) ERROR (-?\d+): ([^\n]*?)(: '[^\n]*')?\n$)");
    return std::regex_replace(text, report, "$1ERROR $4|$5|$2|$3\n");
}

TEST(Vectors, ProgramsPrintWhatTheyShould) {
    int programs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(Vectors)) {
        if (entry.path().extension() != ".vbs") continue;
        SCOPED_TRACE(entry.path().filename().string());
        EXPECT_EQ(OutputOf(entry.path()),
                  ReadText(std::filesystem::path(entry.path()).replace_extension(".out")));
        ++programs;
    }
    EXPECT_GE(programs, 36);
}

TEST(Vectors, ExpressionsHaveTheValuesThatTheyShould) {
    const TemporaryFolder folder;
    const auto rows = ReadTsv((Vectors / "expressions.tsv").string());
    std::string program = "On Error Resume Next\n";
    for (const TsvRow& row : rows)
        program += row[0] + "\nresult = " + row[1] + "\nIf Err.Number = 0 Then WScript.Echo result Else " +
                   "WScript.Echo \"error \" & Err.Number : Err.Clear\n";
    std::ofstream(folder / "all.vbs", std::ios::binary) << program;
    std::istringstream printed(OutputOf(folder / "all.vbs"));
    for (const TsvRow& row : rows) {
        std::string line;
        std::getline(printed, line);
        EXPECT_EQ(line, row[2]) << row[1];
    }
}

TEST(Vectors, TextsThatAreNoProgramsAreRefused) {
    const TemporaryFolder folder;
    const std::filesystem::path script = std::filesystem::path(folder.Path()) / "wrong.vbs";
    for (const auto& row : ReadTsv((Vectors / "compile_errors.tsv").string())) {
        SCOPED_TRACE("line " + std::to_string(row.line));
        std::ofstream(script, std::ios::binary) << row[0];
        const std::string expected = "ERROR " + row[1] + "|" + row[2] + "|" +
                                     (row[3] == "-" ? "\\d+" : row[3]) + "|" +
                                     (row[4] == "-" ? "\\d+" : row[4]) + "\n";
        const std::string pattern = std::regex_replace(expected, std::regex(R"([|()])"), "\\$&");
        const std::string output = OutputOf(script);
        EXPECT_TRUE(std::regex_match(output, std::regex(pattern))) << output << expected;
    }
}

}  // namespace
}  // namespace tessaloom::testing
