#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

/**
 * The restricted mode's separate password, kept in the general settings store
 * under "TeenModePasswordHash" as
 *   "pbkdf2-sha256$<iterations>$<salt, hex>$<key, hex>"
 * with a random 16-byte salt drawn each time a password is set, and compared
 * in constant time. The older form, the plain SHA-256 of the password in hex
 * (either case), is still accepted once and then rewritten in the new form;
 * so is a key of fewer iterations than Iterations. A stored form that is
 * neither (or asks for more than MaxIterations) accepts no password.
 *
 * Wrong passwords in a row are counted in the same store
 * ("TeenModePasswordFailures", "<count>,<time of the last, ms>"), so a restart
 * doesn't clear them. From the FreeAttempts-th on, each failure closes checking
 * for a delay that doubles, from FirstDelayMs up to MaxDelayMs; while it runs,
 * check() refuses without hashing. A right password clears the count.
 *
 * Host side:
 *   set(password)          a new salt and key; clears the failures
 *   setClock(now)          the clock of the delays, in ms since the epoch
 *                          (an empty function restores the system clock)
 *   derivationCount()      how many keys have been derived in this process,
 *                          so a test sees that a refused check hashed nothing
 *   storedForm()           what the store holds
 * All on the GUI thread.
 */
class TeenModePassword
{
public:
    enum Result
    {
        Accepted,
        Wrong,
        Delayed, // refused unchecked: the delay after too many failures runs
    };

    /**
     * About 3 ms a check (Qt's PBKDF2 takes some 1.5 us an iteration on a
     * 2020s desktop core), well inside one 60 Hz frame on the GUI thread.
     */
    static constexpr int Iterations = 2000;
    static constexpr int MaxIterations = 100000;
    static constexpr int FreeAttempts = 5;
    static constexpr qint64 FirstDelayMs = 30 * 1000;
    static constexpr qint64 MaxDelayMs = 60 * 60 * 1000;

    static Result check(const QString& password);
    /** Milliseconds until the next check may run; 0 when it may run now. */
    static qint64 remainingDelayMs();
    static int failureCount();

    // Host side.
    static void set(const QString& password);
    static void setClock(std::function<qint64()> now);
    static int derivationCount();
    static QString storedForm();

private:
    static qint64 now();
    static void recordFailure();
    static void clearFailures();
    static bool matches(const QString& password, const QString& stored, bool* upgrade);
};
