#pragma once

/** Kind of classroom a lesson is held in. */
enum RoomType
{
    RoomTypeUnknown = 0,
    RoomTypeLive = 1,
    RoomTypeLocal = 2,
};
