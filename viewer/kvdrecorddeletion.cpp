#include "kvdrecorddeletion.h"
#include "kvdchecklist.h"
#include "kvdcustomselect.h"
#include "kvdmeasurefile.h"
#include "kvdstore.h"
#include "kvdview.h"
#include "qakvd.h"
#include "qalistview.h"
#include "studiointerface.h"

#include <QDir>
#include <QFile>
#include <QTreeWidget>

#include <cstdio>
#include <vector>

namespace {

// The store appends under ZANTH_KVD_ROOT; while records are rewritten it must name the
// repository this viewer shows, whichever way that was found.
class RootForStore
{
public:
    explicit RootForStore(const QString& root)
        : m_previous(qgetenv("ZANTH_KVD_ROOT")), m_had(qEnvironmentVariableIsSet("ZANTH_KVD_ROOT"))
    {
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(root));
    }
    ~RootForStore()
    {
        if (m_had)
            qputenv("ZANTH_KVD_ROOT", m_previous);
        else
            qunsetenv("ZANTH_KVD_ROOT");
    }

private:
    QByteArray m_previous;
    bool m_had;
};

// Moves the data file aside to the temporary file, replacing an older one. Reopening the
// data file afterwards is what tells whether the move worked; a rename that failed also
// stops here, so that a temporary file left by an interrupted deletion is never taken
// for this file's records. Paths go to the system as they are, never through a shell.
bool moveAside(const QString& data, const QString& temporary)
{
    const QByteArray from = QFile::encodeName(data);
    if (std::rename(from.constData(), QFile::encodeName(temporary).constData()) != 0)
        return false;
    std::FILE* still = std::fopen(QFile::encodeName(data).constData(), "r+b");
    if (still) {
        std::fclose(still);
        return false;
    }
    return true;
}

void endProgress()
{
    if (StudioInterface* host = QAKVD::iface())
        host->progressEnd();
}

} // namespace

KVDRecordDeletion::KVDRecordDeletion(KVDView& view, QWidget* window)
    : m_view(view), m_window(window)
{
}

bool KVDRecordDeletion::range(const QString& user)
{
    KVDRangeSelect dialog(m_view.root, m_window, nullptr, 0);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const QString measure = dialog.measure;
    const int fields = dialog.fields;
    const QString data = KVDMeasureFile::path(m_view.root, measure, user, fields, ".kvd");
    const QString index = KVDMeasureFile::path(m_view.root, measure, user, fields, ".idx");
    const QString temporary = m_view.root + QDir::separator() + QLatin1String("KVD.tmp");

    QString error;
    if (!KVDMeasureFile::checkFieldCount(fields, &error)) {
        QAKVD::warningBox(error);
    } else {
        QFile::remove(index);
        if (!moveAside(data, temporary)) {
            QAKVD::warningBox(QAKVD::tr("Kavendi Request has failed\n"));
        } else {
            rewrite(temporary, measure, user, fields, QAKVD::tr("Stop Loading"),
                    QAKVD::tr("Kavendi Request has failed\n"), [&](const quint32* record) {
                        const QDateTime date =
                            QDateTime::fromSecsSinceEpoch(KVDMeasureFile::date(record));
                        return QDateTime(dialog.startDate, QTime(0, 0)) <= date &&
                               date <= QDateTime(dialog.endDate, QTime(0, 0));
                    });
        }
    }
    return true;
}

bool KVDRecordDeletion::custom()
{
    KVDCustomSelect dialog(m_view.root, m_window, nullptr, 0, true);
    if (dialog.exec() != QDialog::Accepted) {
        endProgress();
        m_window->unsetCursor();
        return false;
    }
    QTreeWidget* list = dialog.recordList();
    auto* first =
        list->topLevelItemCount() ? dynamic_cast<KVDCheckList*>(list->topLevelItem(0)) : nullptr;
    if (!first)
        return true;
    // The row names the file it came from, custom or not.
    const QString measure = first->text(0);
    const QString user = first->text(1);
    const int fields = first->fieldCount;
    const QString data = KVDMeasureFile::path(m_view.root, measure, user, fields, ".kvd");
    const QString index = KVDMeasureFile::path(m_view.root, measure, user, fields, ".idx");
    const QString temporary = m_view.root + QDir::separator() + QLatin1String("KVD.tmp");
    const QString failure = QAKVD::tr("%1 %2 Kavendi Request has failed\n").arg(data, temporary);
    QFile::remove(index);
    if (!moveAside(data, temporary)) {
        QAKVD::warningBox(failure);
        return true;
    }
    m_window->setCursor(Qt::WaitCursor);
    // Deliberately with the accelerator mark, unlike range deletion.
    rewrite(temporary, measure, user, fields, QAKVD::tr("&Stop Loading"), failure,
            [&](const quint32* record) { return InList(KVDMeasureFile::date(record), list); });
    return true;
}

bool KVDRecordDeletion::InList(unsigned int time, QTreeWidget* list)
{
    const QString text = QDateTime::fromSecsSinceEpoch(time).toString();
    for (QTreeWidgetItemIterator it(list); *it; ++it)
        if ((*it)->checkState(0) == Qt::Checked && (*it)->text(2) == text)
            return true;
    return false;
}

void KVDRecordDeletion::rewrite(const QString& temporary, const QString& measure,
                                const QString& user, int fields, const QString& cancelText,
                                const QString& failure,
                                const std::function<bool(const quint32*)>& deleted)
{
    KVDMeasureFile file;
    QString error;
    if (!file.open(temporary, fields, &error)) {
        QAKVD::warningBox(failure);
        return;
    }
    StudioInterface* host = QAKVD::iface();
    if (host)
        host->progressStart(int(file.recordCount()), QAKVD::tr("KVD Processing..."), cancelText,
                            m_window, 1);
    const RootForStore root(m_view.root);
    const QByteArray measureName = measure.toLocal8Bit();
    const QByteArray userName = user.toLocal8Bit();
    std::vector<uint32_t> values(size_t(qMax(fields, 1)));
    int done = 0;
    // The rewrite always runs to its end; the progress display's cancel is not asked.
    while (const quint32* record = file.next()) {
        if (!deleted(record)) {
            for (int k = 0; k < fields; ++k)
                values[size_t(k)] = KVDMeasureFile::value(record, k);
            // On this build the store appends only the first record of a new pair and
            // reports the others on standard error; the loop goes on regardless.
            Write_Measure(measureName.constData(), userName.constData(),
                          KVDMeasureFile::key(record), KVDMeasureFile::date(record), fields,
                          values.data());
        }
        if (host)
            host->progressStep(++done);
    }
    file.close();
    QFile::remove(temporary);
}
