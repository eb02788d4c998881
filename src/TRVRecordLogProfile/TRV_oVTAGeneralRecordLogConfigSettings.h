#pragma once

#include "Utilities/ClassFrame.h"

// Settings of both logs.
struct GeneralRecordLogConfigSettingsRecord {
    char Caption[256];
    char CurrentLogEntryTranslation[256];
    char Description[256];
    char ElementName[256];
    char Helpdesk[64];
    char InstanceID[256];
};

DECLARE_CLASS(GeneralRecordLogConfigSettings);
DECLARE_MODIFY(GeneralRecordLogConfigSettings);
DECLARE_METHODS(GeneralRecordLogConfigSettings);

// The two methods, whatever the path and the method's name. The return value is 0, or 2 on failure.
DECLARE_METHOD(PH_OEM_Set_Language);
DECLARE_METHOD(PH_OEM_AddServiceNote);
