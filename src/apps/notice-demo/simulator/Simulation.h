#pragma once

#include "DemoHttpServer.h"
#include "ScenarioPlayer.h"
#include "ScreenshotTaker.h"

#include <QJsonObject>
#include <QObject>
#include <memory>

class DemoHost;
class FriendRequestActions;
class UserSimulator;

// Everything around the host: plays the checked scenario against it, with the
// kit seeded first, the server's notices, the user's hands, screenshots and
// the end of the run ("quit", "quitWhenHidden", or the last step).
class Simulation : public QObject
{
    Q_OBJECT
public:
    Simulation(DemoHost* host, const QJsonObject& scenario, const QString& screenshotFolder, double speed,
               QObject* parent = nullptr);
    ~Simulation() override;

    // Seeds the kit and plays the first step on the next turn of the event loop;
    // false, with a line said, when an action of the format has no handler.
    bool start();

private:
    void registerRunActions();
    void announceStep(int index, const QJsonObject& step);
    void screenshot(const QJsonObject& step);
    QList<ScreenshotTaker::NamedWindow> windowsToShoot() const;
    static QList<ScreenshotTaker::NamedWindow> withoutRepeats(const QList<ScreenshotTaker::NamedWindow>& windows);
    void quitWhenHidden(const QJsonObject& step);
    void onFinished();

    DemoHost* m_host;
    // The client's servers: the covers and the cluster notice details. Before
    // the player: its actions hold a pointer to the server.
    DemoHttpServer m_server;
    ScenarioPlayer m_player;
    ScreenshotTaker m_screenshots;
    UserSimulator* m_user;
    FriendRequestActions* m_friendRequests;
    bool m_waitingToQuit = false;
};
