#ifndef QATRANSLATION_H
#define QATRANSLATION_H

#include <QString>

// Puts an application into the user's language. The language comes from the environment
// (LANGUAGE, then LC_ALL, LC_MESSAGES, LANG), never from QLocale::setDefault, which
// programs use for number and date formats.
class QATranslation
{
public:
    // Installs on the running application the toolkit's own catalogue for its standard
    // dialogs and the catalogue named catalogue (catalogue_fr.qm...) from directory, a
    // resource path such as ":/i18n" or a folder. Answers whether the named catalogue
    // was found; English, the source language, needs none. Translators already
    // installed stay, and a later one wins.
    static bool install(const QString& catalogue, const QString& directory);
};

#endif
