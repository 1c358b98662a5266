#include "Host/Desktop/FormCheck.h"

#include <QString>
#include <QXmlStreamReader>
#include <array>
#include <stdexcept>

namespace zelui::qt {

namespace {

[[noreturn]] void Refuse(const QXmlStreamReader& reader, const QString& cause) {
    throw std::runtime_error(QString("line %1: %2").arg(reader.lineNumber()).arg(cause).toStdString());
}

// Forms are read without regard to the case of their elements.
bool IsElement(const QXmlStreamReader& reader, QStringView name) {
    return reader.name().compare(name, Qt::CaseInsensitive) == 0;
}

void RefuseTooManyCells(const QXmlStreamReader& reader, const QString& name, QStringView count) {
    bool isNumber = false;
    const int number = count.toInt(&isNumber);
    if (!isNumber || number < -1 || number > kMostFormCells) {  // -1: a span up to the edge
        Refuse(reader, QString("%1 is \"%2\", not a number up to %3").arg(name, count.left(32)).arg(kMostFormCells));
    }
}

// The place of an item in its layout or table.
void CheckPlace(const QXmlStreamReader& reader) {
    constexpr std::array<QStringView, 4> kPlaces = {u"row", u"column", u"rowspan", u"colspan"};
    for (const QStringView place : kPlaces) {
        if (reader.attributes().hasAttribute(place.toString())) {
            RefuseTooManyCells(reader, place.toString(), reader.attributes().value(place.toString()));
        }
    }
}

void CheckWidget(const QXmlStreamReader& reader) {
    if (IsElement(reader, u"widget") && reader.attributes().value("class") == u"QTextBrowser") {
        Refuse(reader, "a form has no QTextBrowser, which reads other files");
    }
}

// Follows which property is being given, and looks at those that are a number of cells.
class Properties {
public:
    void Enter(const QXmlStreamReader& reader) {
        if (IsElement(reader, u"property")) {
            mName = reader.attributes().value("name").toString();
            mValue.clear();
        }
    }
    void Read(const QXmlStreamReader& reader) {
        if (CountsCells()) {
            mValue += reader.text();
        }
    }
    void Leave(const QXmlStreamReader& reader) {
        if (!IsElement(reader, u"property")) {
            return;
        }
        if (CountsCells()) {
            RefuseTooManyCells(reader, mName, QStringView(mValue).trimmed());
        }
        mName.clear();
    }

private:
    [[nodiscard]] bool CountsCells() const { return mName == u"rowCount" || mName == u"columnCount"; }

    QString mName;
    QString mValue;
};

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
    Properties properties;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
            case QXmlStreamReader::StartElement:
                nesting.Enter(reader);
                CheckPlace(reader);
                CheckWidget(reader);
                properties.Enter(reader);
                break;
            case QXmlStreamReader::EndElement:
                nesting.Leave();
                properties.Leave(reader);
                break;
            case QXmlStreamReader::Characters:
                properties.Read(reader);
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
