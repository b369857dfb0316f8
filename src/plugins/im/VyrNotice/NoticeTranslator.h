#pragma once

#include "VyrNoticeExport.h"

#include <QLocale>

/**
 * The library's translations, for a host.
 *
 * Every text that the library shows is an id-based key ("ID_...") looked up
 * with qtTrId(). The compiled translations (English and Simplified Chinese)
 * are embedded in the library, and the English one is installed on the
 * application by itself as soon as the QCoreApplication exists: a host that
 * loads no translation still shows English, never keys.
 *
 * A host that shows another language calls install() once after creating its
 * application, e.g. `NoticeTranslator::install(QLocale::system())`. The
 * windows also read their own QLocale for the form of quoted names, so a host
 * that changes language should set QLocale::setDefault() too, before it
 * creates the windows.
 *
 * GUI thread only.
 */
class VYRNOTICE_EXPORT NoticeTranslator
{
public:
    /**
     * Installs the library's translator for @p locale on the application,
     * replacing the one that an earlier call installed. English stays
     * installed underneath, so a key missing from a translation reads in
     * English.
     *
     * @return true if the library has a translation for the locale's
     * language; false, with one log line, if it hasn't: the texts then stay
     * in English. Also false when no QCoreApplication exists yet.
     */
    static bool install(const QLocale& locale);

    /**
     * The locale of the translation in use: the one that install() last
     * found, or English.
     */
    static QLocale installedLocale();

    /**
     * The resource folder that holds the embedded .qm files
     * (":/VyrNotice/translations").
     */
    static QString resourceDirectory();
};
