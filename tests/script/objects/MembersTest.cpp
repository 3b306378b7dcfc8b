#include <sstream>

#include "script/objects/ScriptedProgram.h"
#include "support/Tsv.h"
#include "vbscript/String.h"

namespace tessaloom::testing {
namespace {

constexpr const char* NoSuchMember = "Object doesn't support this property or method";

/// One use of one member: see tests/data/script/members.tsv.
struct MemberRow {
    std::string object, className, member, use, value, shown, stored;

    std::string Path() const { return object + "." + member; }
};

std::vector<MemberRow> Rows() {
    std::vector<MemberRow> rows;
    for (const TsvRow& row : ReadTsv(TEST_DATA "/script/members.tsv"))
        rows.push_back({row[0], row[1], row[2], row[3], row[4], row[5], row[6]});
    return rows;
}

class MembersTest : public ScriptedProgram {
protected:
    void CheckShown(const MemberRow& row, const std::string& expression) {
        const std::string value = Value(expression);
        if (row.shown == "*")
            EXPECT_THAT(value, Not(HasSubstr("Object"))) << expression;
        else
            EXPECT_EQ(value, row.shown) << expression;
    }

    /// The same part each time; numbers that are not in use yield Nothing.
    void CheckPart(const MemberRow& row, const std::string& part) {
        EXPECT_EQ(Value("TypeName(" + part + ")"), row.shown);
        EXPECT_EQ(Value(part + " Is " + part), "True");
        if (row.use != "i") return;
        for (const char* none : {"0", "-1", "101", "2147483647"})
            EXPECT_EQ(Value(row.Path() + "(" + none + ") Is Nothing"), "True") << none;
    }

    void CheckPlain(const MemberRow& row) {
        const std::string assigned = Run(row.Path() + " = " + (row.value.empty() ? "1" : row.value));
        if (row.use == "r")
            EXPECT_THAT(assigned, HasSubstr(NoSuchMember));
        else
            EXPECT_EQ(assigned, "");
        if (row.use == "w")
            EXPECT_THAT(Value(row.Path()), HasSubstr(NoSuchMember));
        else
            CheckShown(row, row.Path());
    }

    void Check(const MemberRow& row) {
        const std::string path = row.Path();
        SCOPED_TRACE(path);
        const auto bar = row.value.find('|');
        const std::string element = path + "(" + row.value.substr(0, bar) + ")";
        if (row.use == "p" || row.use == "i") {
            CheckPart(row, row.use == "i" ? element : path);
        } else if (row.use == "m" && row.shown.empty()) {
            EXPECT_EQ(Run(path + " " + row.value), "");
        } else if (row.use == "m") {
            CheckShown(row, element);
        } else if (row.use == "ws") {
            EXPECT_EQ(Run("Set " + path + " = " + row.value), "");
        } else if (row.use == "rwi") {
            EXPECT_EQ(Run(element + " = " + row.value.substr(bar + 1)), "");
            CheckShown(row, element);
        } else {
            CheckPlain(row);
        }
    }
};

TEST_F(MembersTest, AreReadWrittenAndKeptAsTheDocumentsHaveThem) {
    Start();
    const auto rows = Rows();
    for (const MemberRow& row : rows) Check(row);
    ASSERT_EQ(Run("SaveAll"), "");
    EXPECT_EQ(it_.desktop.beeps, 1);
    for (const MemberRow& row : rows) {
        if (row.stored.empty()) continue;
        std::istringstream parts(row.stored);
        std::string file, section, key, text;
        for (std::string* part : {&file, &section, &key, &text}) std::getline(parts, *part, '|');
        EXPECT_EQ(it_.profile.Get(file, section, key), text) << row.Path();
    }
}

TEST_F(MembersTest, AreAllThereIsWithTheirSpelling) {
    std::map<std::string, std::set<std::string>> expected, present;
    for (const MemberRow& row : Rows()) expected[row.className].insert(row.member);
    for (int kind = 0; kind <= static_cast<int>(SCKind::Schedule); ++kind) {
        const SCClass& table = ClassOf(static_cast<SCKind>(kind));
        for (const auto& member : table.members)
            EXPECT_TRUE(present[vbscript::Utf8Of(table.name)].insert(vbscript::Utf8Of(member.name)).second);
    }
    EXPECT_EQ(present, expected);
}

TEST_F(MembersTest, OfWhatHasGoneAreErrorsUntilItIsBack) {
    Start();
    ASSERT_EQ(Run("Set Kept = Portfolio.Canvas(3).Text(7)\nSet Its = Kept.Schedule\nSet Page = "
                  "Portfolio.Canvas(3)"),
              "");
    Open().Canvas(3).RemoveText(7);
    EXPECT_THAT(Value("Kept.Text"), HasSubstr("Object variable not set"));
    EXPECT_THAT(Run("Its.StartMode = 1"), HasSubstr("Object variable not set"));
    Open().Canvas(3).AddText(7)->SetValue("again");
    EXPECT_EQ(Value("Kept.Text"), "again");
    Open().ResetCanvas(3);
    EXPECT_THAT(Run("Page.Save"), HasSubstr("Object variable not set"));
    EXPECT_EQ(Value("Page.Text(7) Is Nothing"), "True");
}

TEST_F(MembersTest, ConvertWhatTheyAreGivenOrSayWhyNot) {
    Start();
    const std::string text = "Portfolio.Canvas(3).Text(7).";
    const struct {
        std::string code, fault;
    } rows[] = {
  // clang-format off
        {text + "x = \"12.5\"", ""}, {text + "x = Empty", ""}, {text + "x = \"left\"", "Type mismatch"},
        {text + "x = 3000000000", "Overflow"}, {text + "Text = Null", "Invalid use of Null"},
        {text + "Shadow = Portfolio", NoSuchMember}, {"Portfolio.Canvas(3).SetWidthHeight 1", "Wrong number of arguments"},
        {"y = Portfolio.Canvas", "Wrong number of arguments"}, {"Portfolio.Canvas(99).Name = 1", "Object variable not set"},
        {"Portfolio.Nonsense = 1", NoSuchMember}, {"y = vbFormat(Array(1), \"0\")", "Type mismatch"},
        {"Set Portfolio.VWS.X = Nothing", NoSuchMember},
        {"Set Portfolio.Canvas(3).FTPPush.Schedule.ScheduleObject = Portfolio", "Type mismatch"},
  // clang-format on
    };
    for (const auto& row : rows) EXPECT_THAT(Run(row.code), HasSubstr(row.fault)) << row.code;
    EXPECT_EQ(Value("vbFormat(CSng(0.1), \"0.0000000000\")"), "0.1000000000");
    EXPECT_EQ(Value("vbFormat(#3/14/2026 3:09:00 PM#, \"yyyy-mm-dd hh:nn\")"), "2026-03-14 15:09");
    EXPECT_EQ(Value("vbFormat(True, \"Yes/No\") & vbFormat(Null, \"0\") & vbFormat(\"a\", \">@@\")"),
              "Yes A");
}

}  // namespace
}  // namespace tessaloom::testing
