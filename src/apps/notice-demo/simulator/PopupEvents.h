#pragma once

class DemoHost;
class DemoHttpServer;
class ScenarioPlayer;

// Plays the single pop-ups of study activities, micro-lectures and study
// reports: the host is told to show one, the chat engine withdraws an
// activity, the file server's covers change how they answer.
class PopupEvents
{
public:
    static void registerActions(ScenarioPlayer* player, DemoHost* host, DemoHttpServer* server);
};
