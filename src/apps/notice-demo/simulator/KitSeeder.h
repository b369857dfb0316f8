#pragma once

#include <QJsonObject>
#include <QString>

class ScenarioPlayer;

// Plays the client's back end through the kit's host side: puts the
// scenario's clock, user, clusters, courses and lessons in place, and moves
// the clock on at "advanceClock" steps.
class KitSeeder
{
public:
    // Returns a one-line summary of what was put in.
    static QString seed(const QJsonObject& scenario);
    static void registerActions(ScenarioPlayer* player);
};
