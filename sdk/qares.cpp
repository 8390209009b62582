#include "qares.h"
#include "qaresboolean.h"
#include "qaresgroup.h"
#include "qaresint.h"
#include "qaresrgb.h"
#include "qaresstring.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <cstdio>
#include <memory>
#include <vector>

QARes::QARes(Kind kind, const QString& name) : m_kind(kind), m_name(name) {}

QARes::~QARes() = default;

QAResGroup* QARes::toResGroup()
{
    return m_kind == Group ? static_cast<QAResGroup*>(this) : nullptr;
}
QAResString* QARes::toResString()
{
    return m_kind == String ? static_cast<QAResString*>(this) : nullptr;
}
QAResInt* QARes::toResInt()
{
    return m_kind == Int ? static_cast<QAResInt*>(this) : nullptr;
}
QAResRGB* QARes::toResRGB()
{
    return m_kind == RGB ? static_cast<QAResRGB*>(this) : nullptr;
}
QAResBoolean* QARes::toResBoolean()
{
    return m_kind == Boolean ? static_cast<QAResBoolean*>(this) : nullptr;
}

QARes* QARes::read(const QString& path, bool verbose)
{
    // Opening a FIFO would wait for a writer that may never come, and a device may never
    // end: only regular files (through links) are read.
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) {
        if (verbose)
            std::fprintf(
                stderr, "%s\n",
                qPrintable(
                    QCoreApplication::translate("QARes", "%1: not a regular file").arg(path)));
        return nullptr;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (verbose)
            std::fprintf(stderr, "%s\n",
                         qPrintable(QCoreApplication::translate("QARes", "%1: %2", "file, error")
                                        .arg(path, file.errorString())));
        return nullptr;
    }
    return parse(file.readAll(), verbose);
}

namespace {

// Deeper documents are refused: nothing written by this system nests beyond a few
// levels, and a tree is freed and written recursively, so an endless nesting would
// exhaust the stack.
constexpr size_t MaxDepth = 20000;

struct Frame
{
    QAResGroup* group;
    QARes* last;
};

bool parseInt(const QString& text, int* value)
{
    bool ok = false;
    *value = text.trimmed().toInt(&ok, 10);
    return ok;
}

bool parseComponent(const QXmlStreamAttributes& attributes, const char* key, int* value)
{
    const QString key16 = QString::fromLatin1(key);
    return attributes.hasAttribute(key16) && parseInt(attributes.value(key16).toString(), value) &&
           *value >= 0 && *value <= 255;
}

// Reads the element the reader stands on (its start tag just read) into a new node, or
// answers null with *why set.
QARes* readNode(QXmlStreamReader& xml, QString* why)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    if (!attributes.hasAttribute(QStringLiteral("name"))) {
        *why = QCoreApplication::translate("QARes", "element without a name");
        return nullptr;
    }
    const QString name = attributes.value(QStringLiteral("name")).toString();
    const QStringView tag = xml.name();
    if (tag == u"group")
        return new QAResGroup(name, nullptr);
    if (tag == u"rgb") {
        int red = 0, green = 0, blue = 0;
        if (!parseComponent(attributes, "r", &red) || !parseComponent(attributes, "g", &green) ||
            !parseComponent(attributes, "b", &blue)) {
            *why = QCoreApplication::translate("QARes",
                                               "colour without three components from 0 to 255");
            return nullptr;
        }
        xml.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement);
        return xml.hasError() ? nullptr : new QAResRGB(name, red, green, blue);
    }
    if (tag != u"string" && tag != u"int" && tag != u"bool") {
        *why = QCoreApplication::translate("QARes", "unknown element %1").arg(tag);
        return nullptr;
    }
    const QString text = xml.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement);
    if (xml.hasError())
        return nullptr;
    if (tag == u"string")
        return new QAResString(name, text);
    if (tag == u"int") {
        int value = 0;
        if (!parseInt(text, &value)) {
            *why = QCoreApplication::translate("QARes", "integer expected");
            return nullptr;
        }
        return new QAResInt(name, value);
    }
    const QString flag = text.trimmed();
    if (flag != u"true" && flag != u"false") {
        *why = QCoreApplication::translate("QARes", "true or false expected");
        return nullptr;
    }
    return new QAResBoolean(name, flag == u"true");
}

} // namespace

QARes* QARes::parse(const QByteArray& document, bool verbose)
{
    QXmlStreamReader xml(document);
    std::unique_ptr<QARes> root;
    std::vector<Frame> stack;
    QString why;
    bool failed = false;

    while (!failed && !xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement: {
            if (root && stack.empty()) {
                failed = true;
                break;
            }
            QARes* node = readNode(xml, &why);
            if (!node) {
                failed = true;
                break;
            }
            if (stack.empty()) {
                root.reset(node);
            } else {
                Frame& frame = stack.back();
                if (frame.last)
                    frame.last->setNext(node);
                else
                    frame.group->addChild(node);
                frame.last = node;
            }
            if (QAResGroup* group = node->toResGroup()) {
                if (stack.size() >= MaxDepth) {
                    why = QCoreApplication::translate("QARes", "groups nested deeper than %1")
                              .arg(MaxDepth);
                    failed = true;
                    break;
                }
                stack.push_back({group, nullptr});
            }
            break;
        }
        case QXmlStreamReader::EndElement:
            if (!stack.empty())
                stack.pop_back();
            break;
        case QXmlStreamReader::Characters:
            if (!xml.isWhitespace()) {
                why = QCoreApplication::translate("QARes", "text outside a value");
                failed = true;
            }
            break;
        case QXmlStreamReader::DTD:
        case QXmlStreamReader::EntityReference:
            why =
                QCoreApplication::translate("QARes", "document type declarations are not allowed");
            failed = true;
            break;
        default:
            break;
        }
    }
    if (xml.hasError()) {
        why = xml.errorString();
        failed = true;
    }
    if (!failed && !root)
        why = QCoreApplication::translate("QARes", "empty document");
    if (failed || !root) {
        if (verbose)
            std::fprintf(
                stderr, "%s\n",
                qPrintable(QCoreApplication::translate("QARes", "resource file: %1 (line %2)")
                               .arg(why)
                               .arg(xml.lineNumber())));
        return nullptr;
    }
    return root.release();
}
