#include "kvdcli.h"
#include "kvdcsvexport.h"
#include "kvdselection.h"
#include "kvdview.h"

#include <QSaveFile>

namespace {

const char Usage[] = QT_TRANSLATE_NOOP(
    "kvd",
    "Usage: kvd export --root R [--view] [--curve KEY:USER:FIELD]... [--from T] [--to T]\n"
    "                  [--builtin FILE] -o OUT.csv\n"
    "\n"
    "Writes the curves the viewer would show as the viewer's CSV export: one row an instant,\n"
    "a date formula, then one column a curve. Nothing in the repository is written.\n"
    "\n"
    "Exit status: 0 when OUT.csv was written; 1 when no file was written, because no curve\n"
    "was selected (the viewer exports nothing from an empty chart either; kvd says so),\n"
    "something named cannot be shown or OUT.csv cannot be written; 2 for bad arguments.\n"
    "\n");

const char OutputHelp[] = QT_TRANSLATE_NOOP("kvd", "  -o OUT.csv             the file to write\n");

} // namespace

int kvdExport(const QStringList& args)
{
    QCommandLineParser parser;
    KVDSelection selection;
    selection.addOptions(parser);
    const QCommandLineOption output(QStringLiteral("o"), QString(), QStringLiteral("OUT.csv"));
    parser.addOption(output);
    const QString usage = KvdCli::tr(Usage) + KVDSelection::optionsHelp() + KvdCli::tr(OutputHelp);
    if (const int status = KvdCli::parse(parser, "export", args, usage); status >= 0)
        return status;
    if (!parser.positionalArguments().isEmpty())
        return KvdCli::fail(
            "export",
            KvdCli::tr("unexpected argument %1").arg(parser.positionalArguments().constFirst()), 2);
    if (!parser.isSet(output))
        return KvdCli::fail("export", KvdCli::tr("-o OUT.csv is required"), 2);
    QString error;
    if (!selection.read(parser, &error))
        return KvdCli::fail("export", error, 2);

    KVDView view;
    if (!selection.apply(&view, &error))
        return KvdCli::fail("export", error);
    // The viewer exports nothing from an empty chart either.
    if (view.curves.isEmpty())
        return KvdCli::fail("export", KvdCli::tr("no curve to export; nothing written"));

    const QString path = parser.value(output);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(KVDCsvExport::rows(view.curves, view.start, view.end)) < 0 || !file.commit())
        return KvdCli::fail("export", KvdCli::tr("%1: %2").arg(path, file.errorString()));
    return 0;
}
