// One moment as an OLE Automation date, with a status.
#pragma once

#include "../winapi.h"

// A plain record. `m_dt` counts days from 30 December 1899; below zero its fraction still runs
// forward through the day. A fresh record is a real moment: day 0, valid.
struct COleDateTime {
    enum DateTimeStatus : int { valid = 0, invalid = 1, null = 2 };

    DATE m_dt = 0.0;
    DateTimeStatus m_status = valid;
};
