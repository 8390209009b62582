#include "kvdchecklist.h"
#include "kvdstore.h"
#include "kvdshell.h"

#include <QFile>
#include <QObject>

#include <cstdio>
#include <vector>

KVDCheckList::KVDCheckList(const QString& dir, QTreeWidget* parent, const QStringList& texts,
                           int type)
    : QTreeWidgetItem(parent, type), directory(dir)
{
    setFlags(flags() | Qt::ItemIsUserCheckable);
    setCheckState(0, Qt::Unchecked);
    for (int i = 0; i < texts.size(); ++i)
        setText(i, texts[i]);
}

bool KVDCheckList::MustBeChecked(unsigned int key) const
{
    const QString path = directory + QLatin1String("/Custom") + measureKey;
    std::FILE* file = std::fopen(QFile::encodeName(path).constData(), "r+b");
    if (!file) {
        KVDShell::warningBox(QObject::tr("Kavendi Request has failed\n"));
        return false;
    }
    const int words = 2 * fieldCount + 2;
    std::vector<uint32_t> record(size_t(words > 0 ? words : 2));
    bool found = false;
    while (!found && !std::feof(file) && !std::ferror(file)) {
        if (Endian_Read(record.data(), words, file) != words)
            continue;
        found = record[0] == key;
    }
    std::fclose(file);
    return found;
}
