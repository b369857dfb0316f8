#pragma once

class DemoHost;
class ScenarioPlayer;

// Plays the server's side: turns the scenario's notice steps ("lessonNotice",
// "contactorAdd", "studyReport", "studyActivity", "clusterNotice") into
// notices arriving at the host.
class NoticeFeeder
{
public:
    static void registerActions(ScenarioPlayer* player, DemoHost* host);
};
