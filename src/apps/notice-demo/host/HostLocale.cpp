#include "HostLocale.h"

#include <QCoreApplication>
#include <QDebug>
#include <QTranslator>

QLocale HostLocale::apply(const QString& name)
{
    const QLocale wanted(name);
    const QLocale inUse = installNoticeTranslator(wanted) ? wanted : QLocale(QLocale::English, QLocale::UnitedStates);
    QLocale::setDefault(inUse);
    return inUse;
}

bool HostLocale::installNoticeTranslator(const QLocale& locale)
{
    auto* translator = new QTranslator(QCoreApplication::instance());
    const QStringList folders = {QStringLiteral(VYR_TRANSLATIONS_DIR),
                                 QCoreApplication::applicationDirPath() + QStringLiteral("/translations")};
    auto load = [translator, &folders](const QLocale& which) {
        for (const QString& folder : folders) {
            if (translator->load(which, QStringLiteral("VyrNotice"), QStringLiteral("_"), folder))
                return true;
        }
        return false;
    };
    const bool found = load(locale);
    if (!found) {
        qInfo().noquote() << "no notice translations for locale" << locale.name() << "- using English";
        load(QLocale(QLocale::English, QLocale::UnitedStates));
    }
    QCoreApplication::installTranslator(translator);
    return found;
}
