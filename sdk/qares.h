#ifndef QARES_H
#define QARES_H

#include <QString>

class QAResGroup;
class QAResString;
class QAResInt;
class QAResRGB;
class QAResBoolean;

// A node of a host resource tree: a name, a kind, and a link to the next sibling.
// Groups own their children (the whole sibling chain from the first child); deleting
// the root deletes the whole tree. A node outside any group owns nothing but itself.
class QARes
{
public:
    enum Kind { Group, String, Int, RGB, Boolean };

    virtual ~QARes();
    QARes(const QARes&) = delete;
    QARes& operator=(const QARes&) = delete;

    Kind kind() const { return m_kind; }
    QString name() const { return m_name; }
    QARes* next() const { return m_next; }
    // Makes node the next sibling of this one; whatever followed this node now follows
    // nothing and is no longer owned through this chain.
    void setNext(QARes* node) { m_next = node; }

    // Each answers this node as that kind, or null for a node of another kind.
    QAResGroup* toResGroup();
    QAResString* toResString();
    QAResInt* toResInt();
    QAResRGB* toResRGB();
    QAResBoolean* toResBoolean();

    // Parses a resource file and answers its root, owned by the caller; null for a
    // missing or unreadable file, one that is not a regular file, not well formed, or
    // nested deeper than 20000 groups, or one holding an unknown element or value. verbose
    // reports the reason on standard error.
    static QARes* read(const QString& path, bool verbose);
    // The same on text already in memory.
    static QARes* parse(const QByteArray& document, bool verbose = false);

protected:
    QARes(Kind kind, const QString& name);

private:
    Kind m_kind;
    QString m_name;
    QARes* m_next = nullptr;
};

#endif
