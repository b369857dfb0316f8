#include "VyrSettings.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace {
const QString kTeenModePrefix = QStringLiteral("TeenMode");

QString teenModeKey(TeenModeConfig config)
{
    return QStringLiteral("TeenModeConfig/%1").arg(int(config));
}

// Invalid sequences come back as replacement characters, so the bytes differ.
bool isUtf8(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes).toUtf8() == bytes;
}

// What QSettings writes: sections, "key=value" lines, comments and blank lines.
// QSettings reads nearly anything, random bytes included, as some store, and
// its status alone misses some of it.
bool looksLikeIni(const QByteArray& bytes)
{
    if (bytes.contains('\0') || !isUtf8(bytes))
        return false;
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray& raw : lines) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(';') || line.contains('='))
            continue;
        if (line.startsWith('[') && line.endsWith(']'))
            continue;
        return false;
    }
    return true;
}
}

bool VyrSettings::FileStamp::operator==(const FileStamp& other) const
{
    return exists == other.exists && size == other.size && modified == other.modified && changed == other.changed;
}

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
    refresh();
    if (m_fileUnreadable) {
        // Writing would replace what we couldn't read, restricted mode included.
        m_lastWriteFailed = true;
        qInfo() << "VyrSettings: not writing" << key << "to" << fileName() << "- the file can't be read";
        return;
    }
    m_lastWriteFailed = !write(key, value);
    if (m_lastWriteFailed)
        qWarning() << "VyrSettings: cannot write" << key << "to" << fileName() << "- kept in memory only";
}

QVariant VyrSettings::getSetting(const QString& key, const QVariant& defaultValue) const
{
    auto found = m_values.constFind(key);
    if (found != m_values.constEnd())
        return *found;
    refresh();
    return m_fileValues.value(key, defaultValue);
}

bool VyrSettings::write(const QString& key, const QVariant& value) const
{
    if (!QDir().mkpath(folder()))
        return false;
    QSettings file(fileName(), QSettings::IniFormat);
    file.setValue(key, value);
    file.sync();
    // Read again on the next look: the file now holds what others wrote too.
    m_fileRead = false;
    return file.status() == QSettings::NoError;
}

void VyrSettings::refresh() const
{
    const QFileInfo info(fileName());
    FileStamp stamp;
    stamp.exists = info.exists();
    if (stamp.exists) {
        stamp.size = info.size();
        stamp.modified = info.lastModified();
        stamp.changed = info.metadataChangeTime();
    }
    if (m_fileRead && stamp == m_stamp)
        return;
    m_stamp = stamp;
    m_fileRead = true;
    readFile();
}

void VyrSettings::readFile() const
{
    m_fileValues.clear();
    m_fileUnreadable = false;
    if (!m_stamp.exists)
        return;
    ++m_parseCount;
    const QString problem = problemWithFile();
    if (!problem.isEmpty()) {
        m_fileUnreadable = true;
        qInfo() << "VyrSettings: cannot read" << fileName() << "-" << problem
                << "- restricted mode stays on until the host resets it";
        return;
    }
    QSettings file(fileName(), QSettings::IniFormat);
    const QStringList keys = file.allKeys();
    for (const QString& key : keys)
        m_fileValues.insert(key, file.value(key));
}

QString VyrSettings::problemWithFile() const
{
    const QFileInfo info(fileName());
    if (!info.isFile())
        return QStringLiteral("not a regular file");
    if (info.size() > MaxFileSize)
        return QStringLiteral("larger than %1 bytes").arg(MaxFileSize);
    QFile file(fileName());
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot be opened");
    if (!looksLikeIni(file.read(MaxFileSize + 1)))
        return QStringLiteral("not a settings file");
    QSettings settings(fileName(), QSettings::IniFormat);
    settings.allKeys();
    if (settings.status() != QSettings::NoError)
        return QStringLiteral("not a settings file");
    return QString();
}

bool VyrSettings::isFileUnreadable() const
{
    refresh();
    return m_fileUnreadable;
}

bool VyrSettings::isEnabledTeenModeConfig(TeenModeConfig config) const
{
    // Fail closed: a file we can't read may hold the mode switched on.
    if (isFileUnreadable())
        return true;
    return getSetting(teenModeKey(config), false).toBool();
}

void VyrSettings::setTeenModeConfig(TeenModeConfig config, bool on)
{
    setSetting(teenModeKey(config), on);
}

bool VyrSettings::moveUnreadableFileAside()
{
    const QString from = fileName();
    QString to = from + QStringLiteral(".unreadable");
    for (int n = 1; QFileInfo::exists(to) || QFileInfo(to).isSymLink(); ++n)
        to = from + QStringLiteral(".unreadable-%1").arg(n);
    if (!QDir().rename(from, to)) {
        qInfo() << "VyrSettings: cannot move" << from << "aside - restricted mode stays on";
        return false;
    }
    qInfo() << "VyrSettings: moved the unreadable" << from << "to" << to;
    return true;
}

void VyrSettings::resetRestrictedMode()
{
    refresh();
    if (m_fileUnreadable && !moveUnreadableFileAside())
        return;
    for (auto it = m_values.begin(); it != m_values.end();) {
        if (it.key().startsWith(kTeenModePrefix))
            it = m_values.erase(it);
        else
            ++it;
    }
    if (QFileInfo::exists(fileName())) {
        QSettings file(fileName(), QSettings::IniFormat);
        const QStringList keys = file.allKeys();
        for (const QString& key : keys) {
            if (key.startsWith(kTeenModePrefix))
                file.remove(key);
        }
        file.sync();
        if (file.status() != QSettings::NoError)
            qInfo() << "VyrSettings: cannot remove the restricted mode from" << fileName();
    }
    forgetFile();
    qInfo() << "VyrSettings: restricted mode reset in" << fileName();
}

void VyrSettings::forgetFile()
{
    m_fileRead = false;
    m_fileValues.clear();
    m_fileUnreadable = false;
}

void VyrSettings::setFolder(const QString& path)
{
    folderPath() = path;
    for (const auto& named : instances()) {
        named.second->m_values.clear();
        named.second->m_lastWriteFailed = false;
        named.second->forgetFile();
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
