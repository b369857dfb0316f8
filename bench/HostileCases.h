#pragma once

#include <functional>
#include <string>
#include <vector>

// The hostile inputs of bench_hostile, each beside an ordinary input on the
// same path. prepare() puts the input where the library will find it (an
// engine record, a server route) outside the timed part; run() hands it to
// the library and returns once the user sees the result.
namespace HostileCases {

struct Case
{
    std::string name;
    std::function<void(bool hostile)> prepare;
    std::function<void(bool hostile)> run;
};

void setUp();
void tearDown();
std::vector<Case> all();

// Runs posted events, deferred deletions and finished pool work until the
// application is quiet.
void settle();

// Resident memory of this process now and at its peak since the last reset, in kB.
long residentKb();
long peakResidentKb();
void resetPeakResident();

} // namespace HostileCases
