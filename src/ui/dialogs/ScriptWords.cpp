#include "ui/dialogs/ScriptWords.h"

#include <QRegularExpression>
#include <QSet>
#include <QString>
#include <algorithm>

#include "vbscript/Builtins.h"
#include "vbscript/Token.h"

namespace tessaloom::ScriptWords {

namespace {

constexpr std::size_t Kinds = static_cast<std::size_t>(SCKind::Schedule) + 1;

QString Text(std::u16string_view name) {
    return QString::fromUtf16(name.data(), static_cast<qsizetype>(name.size()));
}

QSet<QString> LowerKeywords() {
    QSet<QString> words;
    for (const std::u16string_view keyword : vbscript::Keywords) words.insert(Text(keyword).toLower());
    return words;
}

QSet<QString> LowerRootNames() {
    QSet<QString> words{"tessaloom"};
    for (const SCMember& member : ClassOf(SCKind::Main).members) words.insert(Text(member.name).toLower());
    return words;
}

}  // namespace

Kind Of(QStringView word) {
    static const QSet<QString> keywords = LowerKeywords(), rootNames = LowerRootNames();
    const QString lower = word.toString().toLower();
    if (keywords.contains(lower)) return Kind::Keyword;
    const std::u16string_view name(word.utf16(), static_cast<std::size_t>(word.size()));
    const bool known =
        rootNames.contains(lower) || vbscript::FindBuiltin(name) >= 0 || vbscript::FindConstant(name);
    return known ? Kind::BuiltIn : Kind::Name;
}

// A part is read-only and bears the name of its class ("SC" left out), schedules with their purpose before
// it.
std::optional<SCKind> Part(const SCMember& member) {
    if (!member.get || member.let || member.set) return std::nullopt;
    for (std::size_t i = 0; i < Kinds; ++i) {
        const auto kind = static_cast<SCKind>(i);
        const std::u16string_view name = ClassOf(kind).name.substr(2);
        if (member.name == name || (kind == SCKind::Schedule && member.name.ends_with(name))) return kind;
    }
    return std::nullopt;
}

std::optional<Place> FaultIn(std::string_view status) {
    static const QRegularExpression Fault(
        "(?:^|\r\n)Line (\\d+), Column (\\d+)\r\nCode Fragment \\(without white space\\):\r\n");
    std::optional<Place> place;
    const QString text = QString::fromUtf8(status.data(), static_cast<qsizetype>(status.size()));
    for (auto found = Fault.globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        place = {std::max(1, match.captured(1).toInt()), std::max(1, match.captured(2).toInt())};
    }
    return place;
}

QString Example() {
    return QStringLiteral(
        R"(' A script takes part when something happens: each procedure below is called by its event
' while the event's switch is on. Delete what is not needed. What stands outside of the
' procedures runs once, when the script is loaded.
Option Explicit

Dim Requests
Requests = 0

' Every few seconds, at the rate that is set.
Sub Interval()
    ' Portfolio.Canvas(1).Text(1).Text = "Sunset at " & vbFormat(Sunset, "hh:nn")
End Sub

' A text layer that asks the script is due: what it shows can be replaced.
Sub TextUpdate(Canvas, Index)
    ' Portfolio.Canvas(Canvas).Text(Index).ProcessedString = "It is " & Time & "."
End Sub

' A picture layer that asks the script is due: it can be changed before it is drawn.
Sub GraphicUpdate(Canvas, Index)
    ' Portfolio.Canvas(Canvas).Graphic(Index).Opacity = 80
End Sub

' The portfolio has been loaded.
Sub Startup()
End Sub

' The program or the portfolio is about to close.
Sub Shutdown()
    ' CancelShutdown = True
End Sub

' A video feed, counted from 1, has seen motion.
Sub MotionDetected(VideoFeed)
    ' BeepMe
End Sub

' A new weather record has been taken.
Sub NewCSVData()
End Sub

' Somebody asks the web server for a page or a picture.
Sub WebRequest(IPAddress, Path)
    Requests = Requests + 1
End Sub
)");
}

}  // namespace tessaloom::ScriptWords
