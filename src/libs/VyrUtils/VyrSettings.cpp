#include "VyrSettings.h"

#include <QDebug>
#include <QDir>
#include <QSettings>
#include <QStandardPaths>

VyrSettings* VyrSettings::instance(const QString& name)
{
    std::unique_ptr<VyrSettings>& settings = instances()[name];
    if (!settings)
        settings.reset(new VyrSettings(name));
    return settings.get();
}

VyrSettings::VyrSettings(const QString& name)
    : m_name(name)
{
}

std::map<QString, std::unique_ptr<VyrSettings>>& VyrSettings::instances()
{
    // Stores live as long as the process, like the client's, and go with it.
    static std::map<QString, std::unique_ptr<VyrSettings>> all;
    return all;
}

QString& VyrSettings::folderPath()
{
    static QString path = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    return path;
}

void VyrSettings::setSetting(const QString& key, const QVariant& value)
{
    m_values.insert(key, value);
    m_lastWriteFailed = !write(key, value);
    if (m_lastWriteFailed)
        qWarning() << "VyrSettings: cannot write" << key << "to" << fileName() << "- kept in memory only";
}

QVariant VyrSettings::getSetting(const QString& key, const QVariant& defaultValue) const
{
    auto found = m_values.constFind(key);
    if (found != m_values.constEnd())
        return *found;
    QSettings file(fileName(), QSettings::IniFormat);
    return file.value(key, defaultValue);
}

bool VyrSettings::write(const QString& key, const QVariant& value) const
{
    if (!QDir().mkpath(folder()))
        return false;
    QSettings file(fileName(), QSettings::IniFormat);
    file.setValue(key, value);
    file.sync();
    return file.status() == QSettings::NoError;
}

void VyrSettings::setFolder(const QString& path)
{
    folderPath() = path;
    for (const auto& named : instances()) {
        named.second->m_values.clear();
        named.second->m_lastWriteFailed = false;
    }
}

QString VyrSettings::folder()
{
    return folderPath();
}

QString VyrSettings::fileName() const
{
    const QString base = m_name.isEmpty() ? QStringLiteral("VyrSettings") : m_name;
    return QDir(folder()).filePath(base + QStringLiteral(".ini"));
}

namespace {
QString teenModeKey(TeenModeConfig config)
{
    return QStringLiteral("TeenModeConfig/%1").arg(int(config));
}
}

bool VyrSettings::isEnabledTeenModeConfig(TeenModeConfig config) const
{
    return getSetting(teenModeKey(config), false).toBool();
}

void VyrSettings::setTeenModeConfig(TeenModeConfig config, bool on)
{
    setSetting(teenModeKey(config), on);
}
