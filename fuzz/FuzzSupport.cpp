#include "FuzzSupport.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void dropLogLines(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "fatal: %s\n", qPrintable(message));
        std::abort();
    }
}

// Qt keeps the references to argc and argv: they must outlive the application.
int g_argc = 1;
char* g_argv[] = {nullptr, nullptr};

void installTranslation(const QString& locale)
{
    auto* translator = new QTranslator(QCoreApplication::instance());
    const QString file = QStringLiteral("VyrNotice_%1.qm").arg(locale);
    if (!translator->load(file, QStringLiteral(VYR_FUZZ_TRANSLATIONS_DIR))) {
        std::fprintf(stderr, "cannot load %s from %s\n", qPrintable(file), VYR_FUZZ_TRANSLATIONS_DIR);
        std::abort();
    }
    QCoreApplication::installTranslator(translator);
}

} // namespace

namespace VyrFuzz {

void initGui(int* argc, char*** argv, const char* locale)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    g_argv[0] = *argc > 0 ? (*argv)[0] : const_cast<char*>("fuzz");
    new QGuiApplication(g_argc, g_argv);
    qInstallMessageHandler(dropLogLines);
    installTranslation(QStringLiteral("en"));
    if (qstrcmp(locale, "en") != 0)
        installTranslation(QString::fromLatin1(locale));
}

void initCore(int* argc, char*** argv)
{
    g_argv[0] = *argc > 0 ? (*argv)[0] : const_cast<char*>("fuzz");
    new QCoreApplication(g_argc, g_argv);
    qInstallMessageHandler(dropLogLines);
}

QString text(const uint8_t* data, size_t size)
{
    if (size > 0 && data[0] == 0x01) {
        // Copied, not cast: the bytes after the marker need not be aligned.
        QString units(int((size - 1) / 2), Qt::Uninitialized);
        std::memcpy(units.data(), data + 1, size_t(units.size()) * sizeof(QChar));
        return units;
    }
    return QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
}

void require(bool holds, const char* what, const QString& input)
{
    if (holds)
        return;
    std::fprintf(stderr, "invariant broken: %s\ninput: %s\n", what, input.toUtf8().constData());
    std::abort();
}

} // namespace VyrFuzz
