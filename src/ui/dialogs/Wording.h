#pragma once

#include <QString>
#include <cstdint>
#include <string>
#include <string_view>

namespace tessaloom {

class FileSystem;
class Schedule;

/// Facts of the engine in words.
namespace Wording {

QString Words(std::string_view text);

/// "14:05:30", with its date when that is not the one of `now`. Both are moments.
QString Moment(double moment, double now);

/// "14:05:30 (in 12 s)"; "Now" for what is due.
QString Due(double next, double now);

/// When an output runs next, or why it does not: it is switched off, has no rate, or its schedule forbids it.
///
/// rate: seconds; next, now: moments
QString Next(bool enabled, double rate, double next, const Schedule& schedule, double now);

/// Where `path` really lies, with "/" between its parts.
QString FullPath(const FileSystem& files, std::string_view path);

/// The same with places at which a label may break it.
QString Breakable(QString path);

/// "12.4 kB"
QString Size(std::uint64_t bytes);

/// "canvas 2 (Harbour)"
QString CanvasTitle(int slot, std::string_view name);

}  // namespace Wording
}  // namespace tessaloom
