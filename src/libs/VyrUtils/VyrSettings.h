#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <map>
#include <memory>

// Settings of the restricted mode for young users. The values are the
// client's own.
enum TeenModeConfig
{
    TeenModeTimeLimit = 1,
    TeenModeFriendPassword = 2, // adding a friend needs the separate password
    TeenModeContentFilter = 3,
    TeenModeEnabled = 4,        // the restricted mode itself
};

// The client's settings: named stores of key and value, each an INI file
// written through QSettings.
//
// `instance(name)` gives the store called `name`, created on first use; the
// empty name is the client's general store. A value set is kept in memory and
// written to the store's file at once. When the file can't be written the
// failure is logged as a warning and the value stays in memory, so this run
// still sees it.
//
// Host side:
//   setFolder(path)        the folder of the INI files (created when missing);
//                          forgets what the stores hold in memory, since that
//                          belongs to the files of the old folder
//   folder()               the folder now in use (by default the
//                          application's writable configuration folder)
//   fileName()             the INI file of one store: "<folder>/<name>.ini",
//                          "<folder>/VyrSettings.ini" for the empty name
//   lastWriteFailed()      whether the store's last write failed
//   setTeenModeConfig(config, on)
//                          switches one restricted-mode (teen mode) setting
//                          of the store; kept under "TeenModeConfig/<value>"
// All on the GUI thread.
class VyrSettings
{
public:
    static VyrSettings* instance(const QString& name);

    // Stores `value` under `key` and writes it to the file.
    void setSetting(const QString& key, const QVariant& value);
    // The value of `key`: from memory, else from the file, else `defaultValue`.
    QVariant getSetting(const QString& key, const QVariant& defaultValue = QVariant()) const;
    // Whether that restricted-mode setting is on; off unless set.
    bool isEnabledTeenModeConfig(TeenModeConfig config) const;
    void setTeenModeConfig(TeenModeConfig config, bool on);

    // Host side.
    static void setFolder(const QString& path);
    static QString folder();
    QString fileName() const;
    bool lastWriteFailed() const { return m_lastWriteFailed; }

private:
    explicit VyrSettings(const QString& name);
    bool write(const QString& key, const QVariant& value) const;

    static std::map<QString, std::unique_ptr<VyrSettings>>& instances();
    static QString& folderPath();

    QString m_name;
    QHash<QString, QVariant> m_values;
    bool m_lastWriteFailed = false;
};
