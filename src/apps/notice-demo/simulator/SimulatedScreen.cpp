#include "SimulatedScreen.h"

#include "ScreenCornerOverride_p.h"

#include <QMargins>
#include <QRegularExpression>
#include <QStringList>
#include <QWidget>

namespace {

const int kTaskbarThickness = 40;

// The work area of the applied screen; null while the real screen is used.
QRect s_workArea;

QStringList edgeNames()
{
    // In the order of TaskbarEdge's values.
    return {QStringLiteral("left"), QStringLiteral("top"), QStringLiteral("right"), QStringLiteral("bottom")};
}

QRegularExpressionMatch matchSize(const QString& size)
{
    return QRegularExpression(QStringLiteral("^([1-9]\\d{0,4})x([1-9]\\d{0,4})$")).match(size);
}

} // namespace

bool SimulatedScreen::isValid(const QString& size, const QString& edge)
{
    return matchSize(size).hasMatch() && edgeNames().contains(edge);
}

bool SimulatedScreen::apply(const QString& size, const QString& edge)
{
    if (!isValid(size, edge))
        return false;
    const QRegularExpressionMatch match = matchSize(size);
    const int edgeCode = edgeNames().indexOf(edge);
    ScreenCorner::Screen screen;
    screen.taskbarEdge = static_cast<TaskbarEdge>(edgeCode);
    screen.geometry = QRect(0, 0, match.captured(1).toInt(), match.captured(2).toInt());
    const int bar = kTaskbarThickness;
    const QMargins taken[] = {{bar, 0, 0, 0}, {0, bar, 0, 0}, {0, 0, bar, 0}, {0, 0, 0, bar}};
    screen.availableGeometry = screen.geometry.marginsRemoved(taken[edgeCode]);
    ScreenCornerOverride::set(screen);
    s_workArea = screen.availableGeometry;
    return true;
}

void SimulatedScreen::fitWindow(QWidget* window)
{
    if (s_workArea.isNull())
        return;
    const QSize frameSize = window->frameGeometry().size() - window->geometry().size();
    window->resize(window->size().boundedTo(s_workArea.size() - frameSize));
    window->move(s_workArea.topLeft());
}
