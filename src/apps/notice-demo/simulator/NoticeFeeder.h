#pragma once

class DemoHost;
class ScenarioPlayer;

// Plays the server's side and the rest of the client: turns the scenario's
// notice steps ("lessonNotice", "contactorAdd", "studyReport",
// "studyActivity", "clusterNotice") into notices arriving at the host, and
// hands it the lessons that need a class notice ("classNotice",
// "turnClassNotice") and the client's announcements ("classroomStart", "logOut").
class NoticeFeeder
{
public:
    static void registerActions(ScenarioPlayer* player, DemoHost* host);
};
