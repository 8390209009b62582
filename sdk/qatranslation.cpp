#include "qatranslation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

bool load(const QLocale& locale, const QString& catalogue, const QString& directory)
{
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(locale, catalogue, QStringLiteral("_"), directory) &&
        QCoreApplication::installTranslator(translator))
        return true;
    delete translator;
    return false;
}

} // namespace

bool QATranslation::install(const QString& catalogue, const QString& directory)
{
    if (!QCoreApplication::instance())
        return false;
    const QLocale locale = QLocale::system();
    load(locale, QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    return load(locale, catalogue, directory);
}
