#ifndef KVDCHECKLIST_H
#define KVDCHECKLIST_H

#include <QString>
#include <QStringList>
#include <QTreeWidgetItem>

class QTreeWidget;

// A checkable row of a record list: one record of a measure file. Its creator fills the
// measure key, the record's position, the field count and the second text.
class KVDCheckList : public QTreeWidgetItem
{
public:
    // Column i shows texts[i].
    KVDCheckList(const QString& directory, QTreeWidget* parent, const QStringList& texts,
                 int type = Type);

    // Whether the custom file of this row's measure already holds a record whose first
    // word is `key`. A custom file that cannot be opened is reported and answers false.
    bool MustBeChecked(unsigned int key) const;

    QString measureKey;
    qint64 position = 0;
    int fieldCount = 0;
    QString secondText;
    QString directory;
};

#endif
