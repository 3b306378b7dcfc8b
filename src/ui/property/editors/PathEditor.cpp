#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QToolButton>
#include <QUrl>

#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "ui/property/editors/Parts.h"
#include "ui/property/editors/TypedEditor.h"
#include "ui/shared/Workspace.h"

namespace tessaloom::Editors {

namespace {

/// A file or a folder, typed, dropped or browsed for.
class PathEditor final : public TypedEditor {
public:
    explicit PathEditor(const Subject& subject) : TypedEditor(subject) {
        auto* line = new QLineEdit;
        SetLine(line);
        auto* browse = OpenButton("...", "browse", "Browse");
        LayParts(this, line)->addWidget(browse);
        connect(browse, &QToolButton::clicked, this, [this] { Browse(); });
    }

protected:
    QString Placeholder(const std::string&) const override { return Fallback(); }

    void ValueShown(const std::string& text) override {
        // It is often longer than the line, where its end matters most.
        setToolTip(Mixed() ? QString() : QString::fromStdString(text));
        if (!Line()->hasFocus()) Line()->end(false);
        Q_EMIT Wrong(Mixed() ? QString() : Objection(text));
    }

    /// Files dragged from a file manager arrive as addresses.
    Reading Read(const QString& typed) const override {
        const QString text = typed.trimmed();
        return {(text.startsWith("file://") ? QUrl(text).toLocalFile() : text).toStdString(), {}};
    }

private:
    PropertyKind Kind() const { return subject_.Description().kind; }

    QString Objection(const std::string& path) const {
        if (path.empty() || Kind() != PropertyKind::OpenFile) return {};
        return subject_.workspace.Services().fileSystem.FileExists(path) ? "" : "There is no such file.";
    }

    /// "Pictures|*.jpg *.png" as file dialogs want it.
    QStringList Filters() const {
        const QStringList parts = Words(subject_.Description().filter).split('|');
        QStringList filters;
        for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
            filters << parts[i] + " (" + QString(parts[i + 1]).replace(';', ' ') + ')';
        return filters << "All files (*)";
    }

    void Browse() {
        const QFileInfo now(QString::fromStdString(Stored()).replace('\\', '/'));
        auto* dialog = new QFileDialog(this, Words(subject_.Description().label).remove('&'));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        if (Kind() == PropertyKind::Folder) {
            dialog->setFileMode(QFileDialog::Directory);
            dialog->setOption(QFileDialog::ShowDirsOnly);
        } else {
            dialog->setFileMode(Kind() == PropertyKind::OpenFile ? QFileDialog::ExistingFile
                                                                 : QFileDialog::AnyFile);
            dialog->setNameFilters(Filters());
        }
        if (Kind() == PropertyKind::SaveFile) {
            dialog->setAcceptMode(QFileDialog::AcceptSave);
            dialog->setOption(QFileDialog::DontConfirmOverwrite);  // it is written again and again
        }
        if (now.dir().exists()) dialog->setDirectory(now.dir());
        connect(dialog, &QFileDialog::fileSelected, this,
                [this](const QString& path) { Take(path.toStdString()); });
        dialog->open();
    }
};

}  // namespace

PropertyEditor* MakePath(const Subject& subject) { return new PathEditor(subject); }

}  // namespace tessaloom::Editors
