#include "kvdcustomcurves.h"
#include "kvdchecklist.h"
#include "kvdcustomselect.h"
#include "kvdmeasurefile.h"
#include "kvdstore.h"
#include "kvdview.h"
#include "qakvd.h"
#include "qalistview.h"

#include <QFile>

#include <cstdio>
#include <vector>

KVDCustomCurves::KVDCustomCurves(KVDView& view, QWidget* window) : m_view(view), m_window(window) {}

// The selection is the set of checked rows: rows listed but none ticked select nothing, and
// must not truncate the custom file the user already has.
static bool anyChecked(QTreeWidget* list)
{
    for (int r = 0; r < list->topLevelItemCount(); ++r)
        if (list->topLevelItem(r)->checkState(0) == Qt::Checked)
            return true;
    return false;
}

bool KVDCustomCurves::choose(const QString& user)
{
    KVDCustomSelect dialog(m_view.root, m_window, nullptr, 0, false);
    if (dialog.exec() != QDialog::Accepted || !anyChecked(dialog.recordList()))
        return false;
    if (QFile::exists(m_view.configPath()))
        m_view.storeView();
    CreateCustomFile(dialog.recordList(), user);
    return true;
}

void KVDCustomCurves::CreateCustomFile(QTreeWidget* list, const QString& user)
{
    const int rows = list->topLevelItemCount();
    auto* last = rows ? dynamic_cast<KVDCheckList*>(list->topLevelItem(rows - 1)) : nullptr;
    if (!last)
        return;
    const QString measure = last->text(0);
    const int fields = last->fieldCount;
    const QString target = m_view.root + QLatin1String("/Custom") + measure + QLatin1Char('.') +
                           user + QLatin1Char('.') + QString::number(fields) +
                           QLatin1String(".kvd");
    QString error;
    if (!KVDMeasureFile::checkFieldCount(fields, &error)) {
        QAKVD::warningBox(error);
        return;
    }
    std::FILE* custom = std::fopen(QFile::encodeName(target).constData(), "w+b");
    if (!custom) {
        QAKVD::warningBox(QAKVD::tr("Kavendi Request has failed\n"));
        return;
    }
    const int words = KVDMeasureFile::recordWords(fields);
    std::vector<uint32_t> record(static_cast<size_t>(words));
    for (int r = rows - 1; r >= 0; --r) {
        auto* row = dynamic_cast<KVDCheckList*>(list->topLevelItem(r));
        if (!row || row->checkState(0) != Qt::Checked)
            continue;
        const QString source = m_view.root + QLatin1Char('/') + row->secondText;
        std::FILE* in = std::fopen(QFile::encodeName(source).constData(), "r+b");
        if (!in)
            continue;
        if (fseeko(in, row->position, SEEK_SET) == 0 &&
            Endian_Read(record.data(), words, in) == words)
            Endian_Write(record.data(), words, custom);
        std::fclose(in);
    }
    std::fclose(custom);
}
