#pragma once

class DemoHost;
class ScenarioPlayer;

// Plays the server's side of tests and homework: a notice arriving for the
// host to pop ("examNotice", "homeworkNotice"), a person the contacts engine
// learns ("knowUser"), and the chat engine withdrawing a test's or a
// homework's notices ("withdrawExam", "withdrawHomework").
class CourseWorkFeeder
{
public:
    static void registerActions(ScenarioPlayer* player, DemoHost* host);
};
