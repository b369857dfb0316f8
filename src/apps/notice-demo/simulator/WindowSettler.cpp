#include "WindowSettler.h"

#include <QAbstractAnimation>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>

int WindowSettler::waitForStillWindows(int timeoutMs)
{
    QElapsedTimer waited;
    waited.start();
    while (anyWindowMoving()) {
        if (waited.elapsed() >= timeoutMs)
            return -1;
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return int(waited.elapsed());
}

bool WindowSettler::anyWindowMoving()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (!window->isVisible())
            continue;
        if (window->windowOpacity() < 1.0)
            return true;
        const QList<QAbstractAnimation*> animations = window->findChildren<QAbstractAnimation*>();
        for (QAbstractAnimation* animation : animations) {
            if (animation->state() == QAbstractAnimation::Running)
                return true;
        }
    }
    return false;
}
