#include "app/Services.h"

#include "core/Log.h"
#include "platform/jpeg/JpegFrameDecoder.h"
#include "platform/qt/QtUserLocale.h"
#include "time/modTime.h"

namespace tessaloom {

Services::Services(Dialogs& dialogs, MainWindow& mainWindow)
    : profile_(fileSystem_, [](const std::string& message) { Log(LogLevel::Error, message); }),
      locale_(QtUserLocale()),
      cameras_([] { return std::make_unique<TurboJpegCodec>(); }),
      streams_([] { return std::make_unique<JpegFrameDecoder>(); }),
      captureDrivers_(cameras_, streams_, [](const std::string& message) { Log(LogLevel::Notice, message); }),
      platform_{fileSystem_, profile_, locale_,    systemTime_, fonts_,        pictureLoader_, jpegCodec_,
                dialogs,     desktop_, mainWindow, timer_,      urlTransfers_, sockets_},
      socketNotifier_(sockets_.Number(), QSocketNotifier::Read) {
    QObject::connect(&socketNotifier_, &QSocketNotifier::activated, [this] { sockets_.Dispatch(); });
    platform_.ftpClients = &ftpClients_;
    platform_.captureDrivers = &captureDrivers_;
    modTime::UseSystemTime(systemTime_);
}

Services::~Services() { modTime::ReleaseSystemTime(systemTime_); }

}  // namespace tessaloom
