#pragma once

#include "Utilities/PH_OEM_Common.h"

// A fan's tachometer.
struct FanSensorRecord {
    NumericSensorRecord sensor;
    std::uint16_t CriticalBehavior;
    std::uint16_t FailDelay;
    std::uint16_t Quality; // per cent
};

DECLARE_OWNING_CLASS(FanSensor);
DECLARE_MODIFY(FanSensor);

// A fan's two SDRs: the speed, and the state; all zero where there is no compact one.
struct FanSensorRow {
    FullSdrRow full;
    CompactSdrRow compact;
};
static_assert(sizeof(FanSensorRow) == 2312);

// The SDRs of the fans that are there, first those of the system, then those of the power supplies that are
// plugged, for the caller to free. 0, or -1 on failure.
EXPORTED int PH_OEM_GetFanSensorInfo(FanSensorRow **rows, int *count);
