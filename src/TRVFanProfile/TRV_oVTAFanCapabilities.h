#pragma once

#include "Utilities/CapabilitiesClass.h"

DECLARE_CAPABILITIES_CLASS(FanCapabilities);
