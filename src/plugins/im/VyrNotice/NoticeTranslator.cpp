#include "NoticeLog_p.h"
#include "NoticeTranslator.h"

#include <QCoreApplication>
#include <QDebug>
#include <QPointer>
#include <QTranslator>

namespace {

const char* const kFilePrefix = "VyrNotice_";

// Both are children of the application: they go when it goes.
QPointer<QTranslator> s_english;
QPointer<QTranslator> s_localized;
QLocale s_installedLocale(QLocale::English);

QTranslator* loadTranslator(const QString& fileName)
{
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(fileName, NoticeTranslator::resourceDirectory()))
        return translator;
    delete translator;
    return nullptr;
}

// The English texts underneath everything else, installed once per application.
void ensureEnglish()
{
    if (s_english || !QCoreApplication::instance())
        return;
    s_english = loadTranslator(QLatin1String(kFilePrefix) + QStringLiteral("en"));
    if (s_english)
        QCoreApplication::installTranslator(s_english);
}

void removeLocalized()
{
    if (!s_localized)
        return;
    QCoreApplication::removeTranslator(s_localized);
    delete s_localized;
}

} // namespace

// Runs when the application is constructed (or at once, if it already is).
Q_COREAPP_STARTUP_FUNCTION(ensureEnglish)

bool NoticeTranslator::install(const QLocale& locale)
{
    if (!QCoreApplication::instance()) {
        qCInfo(lcVyrNotice) << "no application yet, notice translation not installed for locale" << locale.name();
        return false;
    }
    ensureEnglish();
    removeLocalized();
    s_installedLocale = QLocale(QLocale::English);

    auto* translator = new QTranslator(QCoreApplication::instance());
    // Tries the locale's UI languages in turn: zh_CN, then zh, and so on.
    if (!translator->load(locale, QLatin1String("VyrNotice"), QStringLiteral("_"), resourceDirectory())) {
        delete translator;
        qCInfo(lcVyrNotice) << "no notice translations, texts stay in English, locale:" << locale.name();
        return false;
    }
    if (translator->language().startsWith(QLatin1String("en"))) {
        // English is installed already.
        delete translator;
    } else {
        s_localized = translator;
        QCoreApplication::installTranslator(translator);
        s_installedLocale = QLocale(translator->language());
    }
    return true;
}

QLocale NoticeTranslator::installedLocale()
{
    return s_installedLocale;
}

QString NoticeTranslator::resourceDirectory()
{
    return QStringLiteral(":/VyrNotice/translations");
}
