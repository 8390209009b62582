#include "kvdoutput.h"
#include "kvdchart.h"
#include "kvdcsvexport.h"
#include "kvdview.h"

#include <QFileDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>

KVDOutput::KVDOutput(KVDView& view, QWidget* window) : m_view(view), m_window(window) {}

QSize KVDOutput::print()
{
    QPrinter printer(QPrinter::ScreenResolution);
    QPrintDialog dialog(&printer, m_window);
    if (dialog.exec() != QDialog::Accepted)
        return QSize();
    return printChart(&printer);
}

QSize KVDOutput::printChart(QPrinter* printer)
{
    QPainter painter;
    if (!painter.begin(printer))
        return QSize();
    const QRect viewport = painter.viewport();
    KVDChart chart = m_view.chart();
    chart.paintPrinted(&painter, viewport.width(), viewport.height());
    m_view.firstScale = chart.leftScale;
    m_view.secondScale = chart.rightScale;
    painter.end();
    return viewport.size();
}

void KVDOutput::exportCsv()
{
    if (m_view.curves.isEmpty())
        return;
    const QString path =
        QFileDialog::getSaveFileName(m_window, QString(), QString(), QStringLiteral("*.csv"));
    if (path.isNull())
        return;
    KVDCsvExport::write(path, m_view.curves, m_view.start, m_view.end);
}
