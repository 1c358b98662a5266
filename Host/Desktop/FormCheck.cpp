#include "Host/Desktop/FormCheck.h"

#include <QString>
#include <QXmlStreamReader>
#include <stdexcept>

namespace zelui::qt {

namespace {

[[noreturn]] void Refuse(const QXmlStreamReader& reader, const QString& cause) {
    throw std::runtime_error(QString("line %1: %2").arg(reader.lineNumber()).arg(cause).toStdString());
}

// Follows how deep the elements lie, and counts them.
class Nesting {
public:
    void Enter(const QXmlStreamReader& reader) {
        ++mElements;
        ++mDepth;
        if (mElements == 1 && reader.name() != u"ui") {
            Refuse(reader, QString("a form begins with <ui>, not with <%1>").arg(reader.name()));
        }
        if (mDepth > kDeepestFormElement) {
            Refuse(reader, QString("elements lie more than %1 deep").arg(kDeepestFormElement));
        }
        if (mElements > kMostFormElements) {
            Refuse(reader, QString("more than %1 elements").arg(kMostFormElements));
        }
    }
    void Leave() { --mDepth; }

private:
    int mElements = 0;
    int mDepth = 0;
};

}  // namespace

void CheckForm(const QByteArray& script) {
    if (script.size() > kLargestFormBytes) {
        throw std::runtime_error(QString("%1 bytes are more than the %2 a form may have")
                                     .arg(script.size())
                                     .arg(kLargestFormBytes)
                                     .toStdString());
    }
    QXmlStreamReader reader(script);
    Nesting nesting;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
            case QXmlStreamReader::StartElement:
                nesting.Enter(reader);
                break;
            case QXmlStreamReader::EndElement:
                nesting.Leave();
                break;
            case QXmlStreamReader::DTD:
                Refuse(reader, "a form has no document type");
            default:
                break;
        }
    }
    if (reader.hasError()) {
        Refuse(reader, reader.errorString());
    }
}

}  // namespace zelui::qt
