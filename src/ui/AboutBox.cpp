#include "ui/AboutBox.h"

#include <QMessageBox>

#include "core/Version.h"
#include "ui/ProgramIcon.h"

namespace tessaloom {

void ShowAboutBox(QWidget* parent) {
    auto* box = new QMessageBox(parent);
    box->setObjectName("About");
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle("About Tessaloom");
    box->setIconPixmap(ProgramIcon().pixmap(4 * box->fontMetrics().height()));
    box->setTextFormat(Qt::PlainText);
    box->setText("Tessaloom " + QString::fromUtf8(Version.data(), Version.size()));
    box->setInformativeText(
        "Composes live pictures from cameras, files, web pictures and text, "
        "and publishes them on a timetable.");
    box->setModal(false);
    box->show();
}

}  // namespace tessaloom
