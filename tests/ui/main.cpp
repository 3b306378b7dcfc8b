#include <gmock/gmock.h>

#include "ui/DesktopApplication.h"

/// All tests share one application object, which draws into memory unless a display is asked for.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleMock(&argc, argv);
    const tessaloom::DesktopApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
