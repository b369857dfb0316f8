#pragma once

class DemoHost;
class DemoHttpServer;
class ScenarioPlayer;

// The cluster notice reminder, the certification reminder and the
// friend-request pop-up: the server's notices that bring them, the answer
// the details server gives ("noticeServer"), and the user's clicks on them.
class SinglePopupFeeder
{
public:
    static void registerActions(ScenarioPlayer* player, DemoHost* host, DemoHttpServer* server);
};
