#pragma once

#include <QApplication>

namespace tessaloom {

/// The application object of a program with windows. What a slot or an event handler throws goes to the
/// common error report, and the program goes on.
class DesktopApplication final : public QApplication {
    Q_OBJECT

public:
    /// argc and argv must live as long as this object.
    DesktopApplication(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;

    /// Where windows can be shown: the user's choice, or whatever display this session has.
    ///
    /// To be called before the application object is made: it settles on which kind of display that tries
    /// first. False when there is none.
    static bool PrepareDisplay();

    /// The display that was promised could be reached.
    static bool HasDisplay();
};

}  // namespace tessaloom
