#include "platform/qt/VectorPicture.h"

#include <QGuiApplication>
#include <QXmlStreamReader>

namespace tessaloom {

bool IsDrawableVectorPicture(const QByteArray& file) {
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) return false;
    QXmlStreamReader reader(file);
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        // Embedded pictures are refused, too: one could be a vector picture that names a file in its turn.
        if (token == QXmlStreamReader::StartElement && reader.name() == u"image") return false;
        if (token == QXmlStreamReader::ProcessingInstruction &&
            reader.processingInstructionTarget() == u"xml-stylesheet")
            return false;
    }
    return !reader.hasError();
}

}  // namespace tessaloom
