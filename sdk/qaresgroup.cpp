#include "qaresgroup.h"
#include "qaresboolean.h"
#include "qaresint.h"
#include "qaresrgb.h"
#include "qaresstring.h"

#include <QTextStream>

#include <vector>

QAResGroup::QAResGroup(const QString& name, QARes* parent) : QARes(Group, name)
{
    if (QAResGroup* group = parent ? parent->toResGroup() : nullptr)
        group->appendChild(this);
}

QAResGroup::~QAResGroup()
{
    // Children are freed along the chain rather than recursively through next links, so
    // a group with very many children cannot exhaust the stack.
    QARes* child = m_first;
    while (child) {
        QARes* following = child->next();
        delete child;
        child = following;
    }
}

void QAResGroup::addChild(QARes* child)
{
    child->setNext(m_first);
    m_first = child;
}

void QAResGroup::appendChild(QARes* child)
{
    if (!m_first) {
        m_first = child;
        return;
    }
    QARes* last = m_first;
    while (last->next())
        last = last->next();
    last->setNext(child);
}

namespace {

// Escapes text for an attribute or element. Line breaks and tabs become character
// references so that every written line is markup and a line prefix cannot reach into
// a value; characters XML cannot carry at all become '?'.
QString escaped(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '&': out += QLatin1String("&amp;"); break;
        case '<': out += QLatin1String("&lt;"); break;
        case '>': out += QLatin1String("&gt;"); break;
        case '"': out += QLatin1String("&quot;"); break;
        case '\n': out += QLatin1String("&#10;"); break;
        case '\r': out += QLatin1String("&#13;"); break;
        case '\t': out += QLatin1String("&#9;"); break;
        default:
            if (c.unicode() < 0x20 || c.unicode() == 0xfffe || c.unicode() == 0xffff)
                out += QLatin1Char('?');
            else
                out += c;
        }
    }
    return out;
}

QString opening(const char* tag, const QARes* node)
{
    return QLatin1Char('<') + QLatin1String(tag) + QLatin1String(" name=\"") + escaped(node->name()) +
           QLatin1Char('"');
}

QString valueLine(QARes* node)
{
    if (QAResString* s = node->toResString())
        return opening("string", node) + QLatin1Char('>') + escaped(s->value()) + QLatin1String("</string>");
    if (QAResInt* i = node->toResInt())
        return opening("int", node) + QLatin1Char('>') + QString::number(i->value()) + QLatin1String("</int>");
    if (QAResBoolean* b = node->toResBoolean())
        return opening("bool", node) + QLatin1Char('>') + QLatin1String(b->value() ? "true" : "false") +
               QLatin1String("</bool>");
    QAResRGB* c = node->toResRGB();
    return opening("rgb", node) + QStringLiteral(" r=\"%1\" g=\"%2\" b=\"%3\"/>")
                                      .arg(c->red())
                                      .arg(c->green())
                                      .arg(c->blue());
}

} // namespace

bool QAResGroup::write(QTextStream& stream, const QString& prefix) const
{
    stream.setEncoding(QStringConverter::Utf8);
    stream << prefix << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    stream << prefix << opening("group", this) << (m_first ? ">\n" : "/>\n");
    if (!m_first)
        return stream.status() == QTextStream::Ok;

    // Explicit stack of the groups whose children are being written and the child to
    // write next in each.
    std::vector<std::pair<const QAResGroup*, QARes*>> stack{{this, m_first}};
    while (!stack.empty()) {
        QARes* node = stack.back().second;
        const QString indent = prefix + QString(2 * int(stack.size()), QLatin1Char(' '));
        if (!node) {
            stack.pop_back();
            stream << prefix << QString(2 * int(stack.size()), QLatin1Char(' ')) << "</group>\n";
            continue;
        }
        stack.back().second = node->next();
        if (QAResGroup* group = node->toResGroup()) {
            stream << indent << opening("group", group) << (group->firstChild() ? ">\n" : "/>\n");
            if (group->firstChild())
                stack.push_back({group, group->firstChild()});
        } else {
            stream << indent << valueLine(node) << '\n';
        }
    }
    stream.flush();
    return stream.status() == QTextStream::Ok;
}
