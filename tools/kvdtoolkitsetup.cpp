#include "kvdtoolkitsetup.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QtGlobal>

#include <climits>
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace {

QtMessageHandler previousHandler = nullptr;
char freshDirectory[PATH_MAX] = "";

// The toolkit takes a runtime directory without a word when it is a directory (a link to
// one will do) owned by this user with mode 0700.
bool isPrivateDirectory(const char* path)
{
    struct stat info;
    return path && *path && stat(path, &info) == 0 && S_ISDIR(info.st_mode) &&
           info.st_uid == geteuid() && (info.st_mode & 0777) == 0700;
}

void removeFreshDirectory()
{
    // Only when empty: whatever the process left there is not ours to delete.
    rmdir(freshDirectory);
}

void setRuntimeDirectory()
{
    if (isPrivateDirectory(std::getenv("XDG_RUNTIME_DIR")))
        return;
    const QByteArray kept =
        QFile::encodeName(QDir::tempPath()) + "/runtime-" + QByteArray::number(geteuid());
    // chmod: the umask may have taken bits from a directory made here.
    if (mkdir(kept.constData(), 0700) == 0)
        chmod(kept.constData(), 0700);
    if (isPrivateDirectory(kept.constData())) {
        qputenv("XDG_RUNTIME_DIR", kept);
        return;
    }
    const QByteArray pattern = kept + "-XXXXXX";
    if (size_t(pattern.size()) >= sizeof freshDirectory)
        return;
    std::memcpy(freshDirectory, pattern.constData(), size_t(pattern.size()) + 1);
    if (!mkdtemp(freshDirectory)) {
        freshDirectory[0] = '\0';
        return; // the toolkit says what it makes of the variable then
    }
    chmod(freshDirectory, 0700);
    std::atexit(removeFreshDirectory);
    qputenv("XDG_RUNTIME_DIR", freshDirectory);
}

// A window without a window system has no size hints to pass on; the headless platform
// says so for every window whose size limits change.
void dropSetUpNotices(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtWarningMsg && message == QLatin1String("This plugin does not support "
                                                         "propagateSizeHints()"))
        return;
    if (previousHandler)
        previousHandler(type, context, message);
}

QString besideProgram(const char* installed, const char* built)
{
    const QString program = QCoreApplication::applicationDirPath() + QLatin1Char('/');
    const QString path = QDir::cleanPath(program + QLatin1String(installed));
    const QString buildTree = QDir::cleanPath(program + QLatin1String(built));
    return !QFileInfo::exists(path) && QFileInfo::exists(buildTree) ? buildTree : path;
}

} // namespace

namespace KvdToolkitSetup {

void prepare()
{
    setRuntimeDirectory();
    previousHandler = qInstallMessageHandler(dropSetUpNotices);
}

QString libraryDirectory()
{
    return besideProgram(KVD_LIBDIR_FROM_BINDIR, "../lib");
}

QString dataDirectory()
{
    return besideProgram(KVD_DATADIR_FROM_BINDIR, "../share/kavendi");
}

} // namespace KvdToolkitSetup
