#include "kvdtoolkitsetup.h"
#include "qatranslation.h"
#include "studiowindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QTimer>

#include <cstdio>

namespace {

// QGuiApplication claims "-plugin" for its own plug-ins; take ours out of argv before
// it sees them.
QString takePluginOption(int& argc, char** argv)
{
    QString path;
    int kept = 1;
    for (int k = 1; k < argc; ++k) {
        const QByteArray arg(argv[k]);
        if ((arg == "--plugin" || arg == "-plugin") && k + 1 < argc) {
            path = QString::fromLocal8Bit(argv[++k]);
        } else if (arg.startsWith("--plugin=")) {
            path = QString::fromLocal8Bit(arg.mid(9));
        } else {
            argv[kept++] = argv[k];
        }
    }
    argc = kept;
    argv[argc] = nullptr;
    return path;
}

} // namespace

int main(int argc, char** argv)
{
    const QString pluginPath = takePluginOption(argc, argv);
    KvdToolkitSetup::prepare();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kavendi-studio"));
    // Before the first text: the plug-in finds its catalogue installed and keeps to it.
    QATranslation::install(QStringLiteral("kavendi"), QStringLiteral(":/i18n"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("kavendi-studio", "A small host for viewer plug-ins."));
    parser.addHelpOption();
    QCommandLineOption plugin(
        QStringLiteral("plugin"),
        QCoreApplication::translate("kavendi-studio", "Viewer plug-in library to load."),
        QCoreApplication::translate("kavendi-studio", "PATH", "value of an option"),
        KvdToolkitSetup::libraryDirectory() + QStringLiteral("/libkavendi.so"));
    QCommandLineOption project(
        QStringLiteral("project"),
        QCoreApplication::translate("kavendi-studio", "Open a project directory."),
        QCoreApplication::translate("kavendi-studio", "DIR", "value of an option"));
    QCommandLineOption data(
        QStringLiteral("data"),
        QCoreApplication::translate("kavendi-studio", "Host data directory."),
        QCoreApplication::translate("kavendi-studio", "DIR", "value of an option"),
        KvdToolkitSetup::dataDirectory());
    QCommandLineOption open(
        QStringLiteral("open"),
        QCoreApplication::translate("kavendi-studio", "Open a viewer at start."));
    QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QCoreApplication::translate("kavendi-studio",
                                    "Save the main window after start-up and exit."),
        QCoreApplication::translate("kavendi-studio", "FILE", "value of an option"));
    parser.addOptions({plugin, project, data, open, screenshot});
    parser.process(app);

    StudioWindow window(QDir::cleanPath(parser.value(data)));
    if (parser.isSet(project))
        window.host().project().setDirectory(QDir(parser.value(project)).absolutePath());
    window.show();
    const QString path = pluginPath.isEmpty() ? parser.value(plugin) : pluginPath;
    const bool loaded = window.loadPlugin(QDir::cleanPath(path));
    if (loaded && parser.isSet(open))
        window.openViewer();

    if (parser.isSet(screenshot)) {
        const QString file = parser.value(screenshot);
        QTimer::singleShot(1500, &window, [&window, file] {
            const bool saved = window.grab().save(file);
            const QString said =
                saved ? QCoreApplication::translate("kavendi-studio", "screenshot %1").arg(file)
                      : QCoreApplication::translate("kavendi-studio", "cannot write %1").arg(file);
            std::fprintf(saved ? stdout : stderr, "%s\n", qPrintable(said));
            QCoreApplication::exit(saved ? 0 : 1);
        });
    }
    return app.exec();
}
