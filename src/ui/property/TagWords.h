#pragma once

#include <QString>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

class Workspace;

/// The tags of texts as people read of them: under which subject, with what meaning.
namespace TagWords {

/// The headings of the list, in its order.
enum class Heading { Time, Date, Zone, Sun, Motion, Weather, Wind, Rain, Arrows };
std::span<const Heading> Headings();
QString Title(Heading heading);

struct Entry {
    Heading heading;
    QString tag;      ///< As it is put into a text, "<TIME>".
    QString meaning;  ///< A few words.
};

/// Every tag that the engine knows, and the words that are drawn as arrows; by heading.
const std::vector<Entry>& All();

/// `text`, with its brackets and in any case, is one of them.
bool Known(QStringView text);

/// `text` as it would be drawn now, arrows included; as it stands while no portfolio is open.
QString Expanded(const Workspace& workspace, const QString& text);

}  // namespace TagWords

}  // namespace tessaloom
