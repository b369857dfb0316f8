#include "TeenModePassword.h"

#include "VyrSettings.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QPasswordDigestor>
#include <QRandomGenerator>
#include <QStringList>

namespace {
const QString kPasswordKey = QStringLiteral("TeenModePasswordHash");
const QString kFailuresKey = QStringLiteral("TeenModePasswordFailures");
const QString kScheme = QStringLiteral("pbkdf2-sha256");
const int kSaltBytes = 16;
const int kKeyBytes = 32;

std::function<qint64()>& injectedClock()
{
    static std::function<qint64()> now;
    return now;
}

int& derivations()
{
    static int count = 0;
    return count;
}

VyrSettings* store()
{
    return VyrSettings::instance(QString());
}

// Every byte is looked at whatever the first difference, so the time taken
// says nothing about how much of a guess was right.
bool sameBytes(const QByteArray& a, const QByteArray& b)
{
    if (a.size() != b.size())
        return false;
    unsigned char difference = 0;
    for (int i = 0; i < a.size(); ++i)
        difference |= static_cast<unsigned char>(a.at(i) ^ b.at(i));
    return difference == 0;
}

bool isHex(const QString& text, int length)
{
    if (text.size() != length)
        return false;
    for (const QChar c : text) {
        if (!(c.isDigit() || (c >= QLatin1Char('a') && c <= QLatin1Char('f'))
              || (c >= QLatin1Char('A') && c <= QLatin1Char('F'))))
            return false;
    }
    return true;
}

QByteArray derive(const QString& password, const QByteArray& salt, int iterations)
{
    ++derivations();
    return QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, password.toUtf8(), salt, iterations,
                                              kKeyBytes);
}

QString newForm(const QString& password)
{
    QByteArray salt(kSaltBytes, Qt::Uninitialized);
    QRandomGenerator::system()->fillRange(reinterpret_cast<quint32*>(salt.data()), kSaltBytes / 4);
    const QByteArray key = derive(password, salt, TeenModePassword::Iterations);
    return QStringLiteral("%1$%2$%3$%4")
        .arg(kScheme)
        .arg(TeenModePassword::Iterations)
        .arg(QString::fromLatin1(salt.toHex()), QString::fromLatin1(key.toHex()));
}

qint64 delayAfter(int failures)
{
    if (failures < TeenModePassword::FreeAttempts)
        return 0;
    qint64 delay = TeenModePassword::FirstDelayMs;
    for (int i = TeenModePassword::FreeAttempts; i < failures && delay < TeenModePassword::MaxDelayMs; ++i)
        delay *= 2;
    return qMin(delay, TeenModePassword::MaxDelayMs);
}

struct Failures
{
    int count = 0;
    qint64 lastMs = 0;
};

Failures readFailures()
{
    Failures failures;
    const QStringList parts = store()->getSetting(kFailuresKey).toString().split(QLatin1Char(','));
    if (parts.size() != 2)
        return failures;
    failures.count = qBound(0, parts.at(0).toInt(), 1000);
    failures.lastMs = parts.at(1).toLongLong();
    return failures;
}
}

void TeenModePassword::setClock(std::function<qint64()> now)
{
    injectedClock() = std::move(now);
}

qint64 TeenModePassword::now()
{
    return injectedClock() ? injectedClock()() : QDateTime::currentMSecsSinceEpoch();
}

int TeenModePassword::derivationCount()
{
    return derivations();
}

QString TeenModePassword::storedForm()
{
    return store()->getSetting(kPasswordKey).toString();
}

int TeenModePassword::failureCount()
{
    return readFailures().count;
}

qint64 TeenModePassword::remainingDelayMs()
{
    const Failures failures = readFailures();
    const qint64 delay = delayAfter(failures.count);
    if (delay == 0)
        return 0;
    const qint64 at = now();
    if (at < failures.lastMs) {
        // A clock set back restarts the delay, rather than ending it or stretching it.
        store()->setSetting(kFailuresKey, QStringLiteral("%1,%2").arg(failures.count).arg(at));
        return delay;
    }
    return qMax<qint64>(0, delay - (at - failures.lastMs));
}

void TeenModePassword::set(const QString& password)
{
    store()->setSetting(kPasswordKey, newForm(password));
    clearFailures();
}

TeenModePassword::Result TeenModePassword::check(const QString& password)
{
    const qint64 waitMs = remainingDelayMs();
    if (waitMs > 0) {
        qInfo() << "TeenModePassword: check refused, too many wrong passwords; wait ms:" << waitMs;
        return Delayed;
    }
    bool upgrade = false;
    if (!matches(password, storedForm(), &upgrade)) {
        recordFailure();
        return Wrong;
    }
    if (upgrade) {
        qInfo() << "TeenModePassword: stored password rewritten in the salted form";
        store()->setSetting(kPasswordKey, newForm(password));
    }
    clearFailures();
    return Accepted;
}

bool TeenModePassword::matches(const QString& password, const QString& stored, bool* upgrade)
{
    if (isHex(stored, 64)) {
        *upgrade = true;
        const QByteArray plain = QCryptographicHash::hash(password.toUtf8(), QCryptographicHash::Sha256);
        return sameBytes(plain, QByteArray::fromHex(stored.toLatin1()));
    }
    const QStringList parts = stored.split(QLatin1Char('$'));
    bool numeric = false;
    const int iterations = parts.size() == 4 ? parts.at(1).toInt(&numeric) : 0;
    if (parts.size() != 4 || parts.at(0) != kScheme || !numeric || iterations < 1 || iterations > MaxIterations
        || !isHex(parts.at(2), 2 * kSaltBytes) || !isHex(parts.at(3), 2 * kKeyBytes)) {
        if (!stored.isEmpty())
            qInfo() << "TeenModePassword: stored password has an unknown form, no password matches";
        return false;
    }
    *upgrade = iterations < Iterations;
    const QByteArray key = derive(password, QByteArray::fromHex(parts.at(2).toLatin1()), iterations);
    return sameBytes(key, QByteArray::fromHex(parts.at(3).toLatin1()));
}

void TeenModePassword::recordFailure()
{
    const Failures failures = readFailures();
    const int count = qMin(failures.count + 1, 1000);
    store()->setSetting(kFailuresKey, QStringLiteral("%1,%2").arg(count).arg(now()));
    qInfo() << "TeenModePassword: wrong password; failures in a row:" << count;
}

void TeenModePassword::clearFailures()
{
    if (readFailures().count != 0)
        store()->setSetting(kFailuresKey, QStringLiteral("0,0"));
}
