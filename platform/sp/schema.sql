-- Tables of the simulated service processor: one for each kind of thing, columns with the names of the fields
-- that they fill. Rows are handed out in the order of `position` where a table has one.
--
-- Texts may be as long as anybody wants: what doesn't fit into a row's field fills it to the last byte.

-- OEM DB

-- What the service processor hands to its own software for logging in; the numbers are texts in any base.
CREATE TABLE session_information (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    Target TEXT NOT NULL,
    Port INTEGER NOT NULL,
    UserName TEXT NOT NULL,
    Password TEXT NOT NULL,
    AuthenticationAlgorithm TEXT NOT NULL,
    IntegrityAlgorithm TEXT NOT NULL,
    AuthenticationType TEXT NOT NULL,
    ConfidentialityAlgorithm TEXT NOT NULL,
    PrivilegeLevel TEXT NOT NULL
);

CREATE TABLE registered_profile (
    position INTEGER PRIMARY KEY,
    InstanceID TEXT NOT NULL,
    RegisteredOrganization INTEGER NOT NULL, -- 1 other, 2 DMTF
    RegisteredName TEXT NOT NULL,
    RegisteredVersion TEXT NOT NULL,
    AdvertiseTypes TEXT NOT NULL, -- comma text: 2 not advertised, 3 SLP
    OtherRegisteredOrganization TEXT NOT NULL DEFAULT ''
);

CREATE TABLE full_sdr (
    position INTEGER PRIMARY KEY,
    SensorNumber INTEGER NOT NULL UNIQUE,
    SensorType INTEGER NOT NULL,
    EntityId INTEGER NOT NULL,
    EntityInstance INTEGER NOT NULL,
    SensorName TEXT NOT NULL,
    UnitModifier INTEGER NOT NULL DEFAULT 0,
    Linear INTEGER NOT NULL DEFAULT 1,
    M INTEGER NOT NULL,
    B INTEGER NOT NULL DEFAULT 0,
    Exponents INTEGER NOT NULL DEFAULT 0, -- high nibble of the result, low nibble of B
    UpperThresholdNonRecoverable INTEGER NOT NULL DEFAULT 0,
    UpperThresholdCritical INTEGER NOT NULL DEFAULT 0,
    UpperThresholdNonCritical INTEGER NOT NULL DEFAULT 0,
    LowerThresholdCritical INTEGER NOT NULL DEFAULT 0
);

CREATE TABLE compact_sdr (
    position INTEGER PRIMARY KEY,
    SensorNumber INTEGER NOT NULL UNIQUE,
    SensorType INTEGER NOT NULL,
    EntityId INTEGER NOT NULL,
    EntityInstance INTEGER NOT NULL,
    SensorName TEXT NOT NULL,
    BaseUnits INTEGER NOT NULL DEFAULT 0,
    UnitModifier INTEGER NOT NULL DEFAULT 0,
    RateUnits INTEGER NOT NULL DEFAULT 0
);

-- Core DB

CREATE TABLE capabilities (
    RowName TEXT PRIMARY KEY,
    InstanceID TEXT NOT NULL,
    RequestedStatesSupported TEXT NOT NULL, -- comma text
    ElementNameEditSupported INTEGER NOT NULL,
    ElementName TEXT NOT NULL,
    MaxElementNameLen INTEGER NOT NULL
);

CREATE TABLE protocol_service (
    RowName TEXT PRIMARY KEY,
    Name TEXT NOT NULL,
    ElementName TEXT NOT NULL,
    OtherProtocol TEXT NOT NULL DEFAULT '',
    OperationalStatus TEXT NOT NULL, -- comma text
    Protocol INTEGER NOT NULL,       -- 1 other, 2 SSH, 3 Telnet
    MaxConnections INTEGER NOT NULL,
    RequestedState INTEGER NOT NULL,
    EnabledState INTEGER NOT NULL,
    HealthState INTEGER NOT NULL
);

CREATE TABLE fru (
    position INTEGER PRIMARY KEY,
    DeviceId INTEGER NOT NULL UNIQUE,
    EntityId INTEGER NOT NULL, -- 7 system board, 10 power supply, 23 chassis
    ChassisType TEXT NOT NULL DEFAULT '',
    ChassisPartNumber TEXT NOT NULL DEFAULT '',
    ProductName TEXT NOT NULL DEFAULT '',
    ProductVersion TEXT NOT NULL DEFAULT '',
    ProductAssetTag TEXT NOT NULL DEFAULT '',
    ProductSerialNumber TEXT NOT NULL DEFAULT '',
    ProductPartNumber TEXT NOT NULL DEFAULT '',
    ProductManufacturer TEXT NOT NULL DEFAULT '',
    BoardManufacturingDate INTEGER NOT NULL DEFAULT 0, -- seconds since 1970
    BoardProductName TEXT NOT NULL DEFAULT '',
    BoardSerialNumber TEXT NOT NULL DEFAULT '',
    BoardPartNumber TEXT NOT NULL DEFAULT '',
    BoardManufacturer TEXT NOT NULL DEFAULT '',
    BoardCustomFields TEXT NOT NULL DEFAULT '' -- comma text
);

-- Access to the service processor

-- Logins that it accepts.
CREATE TABLE login (
    Target TEXT NOT NULL,
    Port INTEGER NOT NULL,
    UserName TEXT NOT NULL,
    Password TEXT NOT NULL,
    PrivilegeLimit INTEGER NOT NULL, -- 2 user, 3 operator, 4 administrator
    PRIMARY KEY (Target, Port, UserName)
);

-- Clients for whom software of the service processor may act.
CREATE TABLE principal (
    Name TEXT PRIMARY KEY
);

-- Configuration space

-- A number (value INTEGER) has `width` bytes, a text (value TEXT) at most so many. A list has a row for each
-- of its entries, from index 0; other variables have the one row of index 0.
CREATE TABLE configuration_variable (
    id INTEGER NOT NULL,
    list_index INTEGER NOT NULL DEFAULT 0,
    name TEXT NOT NULL,
    width INTEGER NOT NULL,
    value NOT NULL CHECK (typeof(value) IN ('text', 'blob') OR width IN (1, 2, 4, 8)),
    PRIMARY KEY (id, list_index)
);

-- The server and its controller

CREATE TABLE service_processor (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    SystemName TEXT NOT NULL,
    BIOSRecoveryFlash INTEGER NOT NULL DEFAULT 0
);

CREATE TABLE lan_channel (
    Channel INTEGER PRIMARY KEY,
    MACAddress BLOB NOT NULL CHECK (length(MACAddress) = 6)
);

-- Live values by sensor number: raw reading of a threshold sensor, state bits of a discrete one.
CREATE TABLE sensor_reading (
    SensorNumber INTEGER PRIMARY KEY,
    Reading INTEGER NOT NULL DEFAULT 0,
    Status INTEGER NOT NULL DEFAULT 0xC0,
    State INTEGER NOT NULL DEFAULT 0
);

CREATE TABLE device_id (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    DeviceId INTEGER NOT NULL,
    DeviceRevision INTEGER NOT NULL,
    FirmwareMajor INTEGER NOT NULL,
    FirmwareMinor INTEGER NOT NULL, -- two decimal digits in BCD
    IpmiVersion INTEGER NOT NULL,   -- two decimal digits in BCD, the lower first
    AdditionalDeviceSupport INTEGER NOT NULL,
    ManufacturerId INTEGER NOT NULL,
    ProductId INTEGER NOT NULL,
    AuxiliaryFirmware INTEGER NOT NULL
);

CREATE TABLE chassis_status (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    CurrentPowerState INTEGER NOT NULL,
    LastPowerEvent INTEGER NOT NULL,
    MiscellaneousState INTEGER NOT NULL,
    FrontPanelButtons INTEGER NOT NULL
);

CREATE TABLE power_on_hours (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    MinutesPerCount INTEGER NOT NULL,
    Counter INTEGER NOT NULL
);
