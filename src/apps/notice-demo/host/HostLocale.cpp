#include "HostLocale.h"

#include "NoticeTranslator.h"

QLocale HostLocale::apply(const QString& name)
{
    const QLocale wanted(name);
    // The library logs the one line for a locale it has no translations for.
    const QLocale inUse = NoticeTranslator::install(wanted) ? wanted : QLocale(QLocale::English, QLocale::UnitedStates);
    QLocale::setDefault(inUse);
    return inUse;
}
