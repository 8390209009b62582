#ifndef QARESGROUP_H
#define QARESGROUP_H

#include "qares.h"

class QTextStream;

// A named node with an ordered list of children, which it owns.
class QAResGroup : public QARes
{
public:
    // When parent is a group the new group is appended to its children.
    QAResGroup(const QString& name, QARes* parent);
    ~QAResGroup() override;

    QARes* firstChild() const { return m_first; }
    // Inserts child in front of the existing children and takes ownership of it.
    void addChild(QARes* child);
    // Appends child after the last child and takes ownership of it.
    void appendChild(QARes* child);

    // Writes the tree below and including this group as a resource document; every line
    // starts with prefix. Answers false when the stream reports an error.
    bool write(QTextStream& stream, const QString& prefix) const;

private:
    QARes* m_first = nullptr;
};

#endif
