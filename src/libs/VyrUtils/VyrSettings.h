#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QVariant>
#include <map>
#include <memory>

/** Settings of the restricted mode for young users. The values are the client's own. */
enum TeenModeConfig
{
    TeenModeTimeLimit = 1,
    TeenModeFriendPassword = 2, // adding a friend needs the separate password
    TeenModeContentFilter = 3,
    TeenModeEnabled = 4,        // the restricted mode itself
};

/**
 * The client's settings: named stores of key and value, each an INI file
 * written through QSettings.
 *
 * `instance(name)` gives the store called `name`, created on first use; the
 * empty name is the client's general store. A value set is kept in memory and
 * written to the store's file at once. When the file can't be written the
 * failure is logged as a warning and the value stays in memory, so this run
 * still sees it.
 *
 * The file is read into memory and read again only when its size or times
 * change, so a read of an unchanged file costs a stat. A file that exists but
 * can't be read as settings (not a regular file, unreadable, over
 * MaxFileSize, or not INI text, such as random bytes) gives one info line,
 * "VyrSettings: cannot read ...", and is neither trusted nor overwritten: its
 * values read as absent, every restricted-mode setting reads as on (fail
 * closed) and writes stay in memory until the host resets the store with
 * resetRestrictedMode(). A missing file is an empty store.
 *
 * Host side:
 *   setFolder(path)        the folder of the INI files (created when missing);
 *                          forgets what the stores hold in memory, since that
 *                          belongs to the files of the old folder
 *   folder()               the folder now in use (by default the
 *                          application's writable configuration folder)
 *   fileName()             the INI file of one store: "<folder>/<name>.ini",
 *                          "<folder>/VyrSettings.ini" for the empty name
 *   lastWriteFailed()      whether the store's last write failed
 *   setTeenModeConfig(config, on)
 *                          switches one restricted-mode (teen mode) setting
 *                          of the store; kept under "TeenModeConfig/<value>"
 *   isFileUnreadable()     whether the file is there but can't be read
 *   resetRestrictedMode()  the host's way out of restricted mode: moves a file
 *                          that can't be read aside to "<file>.unreadable"
 *                          (or "<file>.unreadable-<n>"), then removes every
 *                          key beginning with "TeenMode" (the settings, the
 *                          separate password and its failures) from memory
 *                          and file; restricted mode then reads as off
 *   parseCount()           how often the file has been read since the store
 *                          was made
 * All on the GUI thread.
 */
class VyrSettings
{
public:
    /** Larger files are not settings this client wrote. */
    static constexpr qint64 MaxFileSize = 1024 * 1024;

    static VyrSettings* instance(const QString& name);

    /** Stores @p value under @p key and writes it to the file. */
    void setSetting(const QString& key, const QVariant& value);
    /** The value of @p key: from memory, else from the file, else @p defaultValue. */
    QVariant getSetting(const QString& key, const QVariant& defaultValue = QVariant()) const;
    /** Whether that restricted-mode setting is on; off unless set, on while the file can't be read. */
    bool isEnabledTeenModeConfig(TeenModeConfig config) const;
    void setTeenModeConfig(TeenModeConfig config, bool on);

    // Host side.
    static void setFolder(const QString& path);
    static QString folder();
    QString fileName() const;
    bool lastWriteFailed() const { return m_lastWriteFailed; }
    bool isFileUnreadable() const;
    void resetRestrictedMode();
    int parseCount() const { return m_parseCount; }

private:
    struct FileStamp
    {
        bool exists = false;
        qint64 size = -1;
        QDateTime modified;
        QDateTime changed;
        bool operator==(const FileStamp& other) const;
    };

    explicit VyrSettings(const QString& name);
    bool write(const QString& key, const QVariant& value) const;
    void refresh() const;
    void readFile() const;
    QString problemWithFile() const;
    bool moveUnreadableFileAside();
    void forgetFile();

    static std::map<QString, std::unique_ptr<VyrSettings>>& instances();
    static QString& folderPath();

    QString m_name;
    QHash<QString, QVariant> m_values;
    bool m_lastWriteFailed = false;
    /** The file as last read, and what it looked like then. */
    mutable QHash<QString, QVariant> m_fileValues;
    mutable FileStamp m_stamp;
    mutable bool m_fileRead = false;
    mutable bool m_fileUnreadable = false;
    mutable int m_parseCount = 0;
};
