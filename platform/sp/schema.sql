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

-- What the service processor knows of the system that it is in.
CREATE TABLE system_info (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    GUID TEXT NOT NULL
);

-- A slot for a power supply; `position` is the slot's number, from 1. Whether there is a unit in it is in the
-- states of its sensors: see `power_supply_slot`.
CREATE TABLE power_supply (
    position INTEGER PRIMARY KEY,
    PresenceSensor INTEGER NOT NULL,
    StatusSensor INTEGER NOT NULL,
    PowerSensor INTEGER NOT NULL,
    FruDeviceId INTEGER NOT NULL,
    EntityInstance INTEGER NOT NULL, -- of entity 10, in which the SDRs of the unit's sensors are
    Designation TEXT NOT NULL
);

CREATE TABLE fan (
    position INTEGER PRIMARY KEY,
    StatusSensor INTEGER NOT NULL,
    SpeedSensor INTEGER NOT NULL,
    PsuPresenceSensor INTEGER NOT NULL DEFAULT 0, -- of the power supply that holds the fan; 0: none does
    EntityId INTEGER NOT NULL,                    -- 29 a fan, 10 a fan in a power supply
    Name TEXT NOT NULL,
    Attributes INTEGER NOT NULL DEFAULT 0 -- bits 4 and 5: kind of cooling device, 0 fan, 1 centrifugal blower
);

-- Which FRU device is reached where.
CREATE TABLE frudevice_sdr (
    position INTEGER PRIMARY KEY,
    DeviceAddress INTEGER NOT NULL, -- 0x20: the service processor
    FruDeviceId INTEGER NOT NULL,
    DeviceType INTEGER NOT NULL
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
    -- Raw readings; 0: there is none.
    UpperThresholdNonRecoverable INTEGER NOT NULL DEFAULT 0,
    UpperThresholdCritical INTEGER NOT NULL DEFAULT 0,
    UpperThresholdNonCritical INTEGER NOT NULL DEFAULT 0,
    LowerThresholdCritical INTEGER NOT NULL DEFAULT 0,
    VariableIndex INTEGER -- entry of the sensor's variables in the configuration space; NULL: it has none
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

-- A server is made a blade by    UPDATE service_processor SET Blade = 1
-- The agent goes by              UPDATE service_processor SET AgentConnected = 0
CREATE TABLE service_processor (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    SystemName TEXT NOT NULL,
    BIOSRecoveryFlash INTEGER NOT NULL DEFAULT 0,
    ErrorLED INTEGER NOT NULL DEFAULT 1, -- 0 nobody knows, 1 off, 2 on, 3 blinking
    Blade INTEGER NOT NULL DEFAULT 0,
    AgentConnected INTEGER NOT NULL DEFAULT 0,
    FanTests INTEGER NOT NULL DEFAULT 0 -- that were started
);

-- What the agent in the host's operating system tells.
CREATE TABLE agent_parameter (
    ParameterGroup TEXT NOT NULL,
    Name TEXT NOT NULL,
    Status INTEGER NOT NULL DEFAULT 0, -- 0 and 1 are good
    Value,                             -- text, blob or number; NULL: none
    PRIMARY KEY (ParameterGroup, Name)
);

CREATE TABLE misc_control (
    Control INTEGER PRIMARY KEY,
    Value INTEGER NOT NULL
);

-- A blade's weekly schedule, in minutes since midnight; 65535: no time.
CREATE TABLE blade_schedule (
    Day INTEGER PRIMARY KEY CHECK (Day BETWEEN 0 AND 6), -- 0 is Sunday
    OnTime INTEGER NOT NULL,
    OffTime INTEGER NOT NULL
);

CREATE TABLE lan_channel (
    Channel INTEGER PRIMARY KEY,
    MACAddress BLOB NOT NULL CHECK (length(MACAddress) = 6),
    IPv4Address TEXT NOT NULL DEFAULT '0.0.0.0'
);

-- Live values by sensor number. A sensor without a row can't be read.
CREATE TABLE sensor_reading (
    SensorNumber INTEGER PRIMARY KEY,
    Reading INTEGER NOT NULL DEFAULT 0,   -- raw, of a threshold sensor
    Status INTEGER NOT NULL DEFAULT 0xC0, -- with bit 5 set the sensor can't be read
    State INTEGER NOT NULL DEFAULT 0,     -- bits; a threshold sensor's reading adds those of its thresholds

    -- A threshold sensor's reading moves around the stored one, by at most so much and within these bounds.
    -- Sensors of the same seed move together.
    Amplitude INTEGER NOT NULL DEFAULT 0,
    Seed INTEGER NOT NULL DEFAULT 0,
    Minimum INTEGER NOT NULL DEFAULT 0,
    Maximum INTEGER NOT NULL DEFAULT 255
);

-- With `Walk` 0 readings stand still, and with a `StoppedAt` (seconds since 1970) the clock does.
CREATE TABLE simulation (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    Walk INTEGER NOT NULL,
    StoppedAt INTEGER
);
CREATE VIEW clock AS SELECT coalesce(StoppedAt, unixepoch()) AS Now FROM simulation;

-- Fans' speeds at their maximum, by the number of the speed sensor: at the last fan test, and when they were
-- new.
CREATE TABLE maximum_speed (
    SensorNumber INTEGER PRIMARY KEY,
    Measured INTEGER NOT NULL,
    Reference INTEGER NOT NULL
);

-- Whether there is a power supply in a slot. A unit is pulled from slot 2 by
--     UPDATE power_supply_slot SET Present = 0 WHERE Slot = 2
-- and put back by the same with 1, which lets it be without a fault. The sensors in a unit that is out can't
-- be read.
CREATE VIEW power_supply_slot AS
    SELECT position AS Slot, Designation, State & 1 AS Present
    FROM power_supply JOIN sensor_reading ON SensorNumber = PresenceSensor;

CREATE TRIGGER plug_power_supply INSTEAD OF UPDATE OF Present ON power_supply_slot
    WHEN (NEW.Present != 0) != OLD.Present
BEGIN
    UPDATE sensor_reading SET State = NEW.Present != 0
        WHERE SensorNumber = (SELECT PresenceSensor FROM power_supply WHERE position = OLD.Slot);
    UPDATE sensor_reading SET State = iif(NEW.Present, 2, 1) -- OK, not present
        WHERE SensorNumber = (SELECT StatusSensor FROM power_supply WHERE position = OLD.Slot);
    UPDATE sensor_reading SET State = iif(NEW.Present, 1, 0x40) -- the fans' OK, not present
        WHERE SensorNumber IN (
            SELECT StatusSensor FROM fan
            WHERE PsuPresenceSensor = (SELECT PresenceSensor FROM power_supply WHERE position = OLD.Slot));
    UPDATE sensor_reading SET Status = iif(NEW.Present, Status & ~0x20, Status | 0x20)
        WHERE SensorNumber IN (
            SELECT SensorNumber FROM full_sdr JOIN power_supply USING (EntityInstance)
            WHERE EntityId = 10 AND power_supply.position = OLD.Slot);
END;

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
    CurrentPowerState INTEGER NOT NULL, -- bit 0 power on; bits 5 and 6 restore policy: off, as before, on
    LastPowerEvent INTEGER NOT NULL,
    MiscellaneousState INTEGER NOT NULL,
    FrontPanelButtons INTEGER NOT NULL,
    RequestedState INTEGER NOT NULL,     -- the state of CIM that was asked for last
    LastBootTime INTEGER NOT NULL,       -- seconds since 1970
    LastPowerOnReason INTEGER NOT NULL,  -- 0 unknown, 1 requested, 2 button, 3 schedule, 4 restore policy
    LastPowerOffReason INTEGER NOT NULL  -- 0 unknown, 1 requested, 2 button, 3 schedule, 4 power lost
);

CREATE TABLE power_on_hours (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    MinutesPerCount INTEGER NOT NULL,
    Counter INTEGER NOT NULL
);

-- Component status library

-- What it calls a node, where that isn't the node's display name. Without a name for the system, which is node
-- 0x01000000, there is no tree.
CREATE TABLE health_name (
    NodeId INTEGER PRIMARY KEY,
    Name TEXT NOT NULL
);

-- How components are that have no sensor of their own: parameters of the LCM store, by the names that the health
-- tables give. A component with instances has a row for each of them. What the agent tells can't be read while it
-- is away.
CREATE TABLE component_parameter (
    ParameterGroup TEXT NOT NULL,
    Name TEXT NOT NULL,
    Instance INTEGER NOT NULL DEFAULT 0, -- from 0
    Value,                               -- a state as a number, anything else as a text; NULL: none
    PRIMARY KEY (ParameterGroup, Name, Instance)
);

-- The service processor warns of an agent that is away.
CREATE TRIGGER watch_agent AFTER UPDATE OF AgentConnected ON service_processor
BEGIN
    UPDATE component_parameter SET Value = iif(NEW.AgentConnected, 1, 2)
        WHERE ParameterGroup = 'TqAgent' AND Name = 'ComponentSignalStatus';
END;

-- Record logs

-- An entry of the system event log. Its error code is the kind of event: the IPMI sensor type, the event type
-- with the direction in bit 7, and the offset, each a byte. A kind that isn't in `sel_event` and `sel_text` is
-- shown as unknown.
CREATE TABLE sel (
    RecordId INTEGER PRIMARY KEY,
    TimeStamp INTEGER NOT NULL, -- seconds since 1970
    ErrorCode INTEGER NOT NULL,
    Device TEXT NOT NULL        -- where it happened
);
CREATE INDEX sel_by_ipmi_record_id ON sel (RecordId & 0xFFFF);

CREATE TABLE sel_event (
    ErrorCode INTEGER PRIMARY KEY,
    Flags INTEGER NOT NULL, -- 0x80 the customer can replace the part; severity 0x00, 0x10, 0x20, 0x30 critical
    AlertGroup INTEGER NOT NULL
);

-- Texts of a kind of event. Causes and resolutions are lists with a text on each line.
CREATE TABLE sel_text (
    ErrorCode INTEGER NOT NULL,
    Language INTEGER NOT NULL, -- locale identifier: 1033 English, 1031 German
    Message TEXT NOT NULL,     -- %s stands for the device
    Summary TEXT NOT NULL,
    Causes TEXT NOT NULL,
    Resolutions TEXT NOT NULL,
    PRIMARY KEY (ErrorCode, Language)
) WITHOUT ROWID;

-- The entries as the OEM DB hands them out.
CREATE VIEW sel_row AS
    SELECT RecordId, TimeStamp, sel.ErrorCode, coalesce(Flags, 0) AS Flags, coalesce(AlertGroup, 0) AS AlertGroup,
        coalesce(replace(Message, '%s', Device), printf('%s: unknown event 0x%06X', Device, sel.ErrorCode)) AS Message,
        Summary, replace(Causes, char(10), char(0)) AS Causes, replace(Resolutions, char(10), char(0)) AS Resolutions
    FROM sel LEFT JOIN sel_event ON sel_event.ErrorCode = sel.ErrorCode
        LEFT JOIN sel_text ON sel_text.ErrorCode = sel.ErrorCode AND Language = 1033;

CREATE TABLE sel_state (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    Capacity INTEGER NOT NULL,                  -- entries of 16 bytes
    LastAddition INTEGER NOT NULL,              -- seconds since 1970, as the other times
    LastErase INTEGER NOT NULL,
    EraseSeconds INTEGER NOT NULL DEFAULT 0,    -- how long erasing takes
    EraseEnd INTEGER NOT NULL DEFAULT 0,
    HasReservations INTEGER NOT NULL DEFAULT 1, -- 0: it doesn't know them, and needs none
    Reservation INTEGER NOT NULL DEFAULT 0,     -- that was given last
    IsReserved INTEGER NOT NULL DEFAULT 0       -- it isn't cancelled yet
);

-- A new entry cancels the reservation.
CREATE TRIGGER add_sel_entry AFTER INSERT ON sel
BEGIN
    UPDATE sel_state SET LastAddition = NEW.TimeStamp, IsReserved = 0;
END;

-- The log is erased by    UPDATE sel_state SET LastErase = unixepoch()
CREATE TRIGGER erase_sel AFTER UPDATE OF LastErase ON sel_state
BEGIN
    DELETE FROM sel;
    UPDATE sel_state SET IsReserved = 0, EraseEnd = NEW.LastErase + EraseSeconds;
END;

-- The languages that the system event log can be had in.
CREATE TABLE supported_language (
    position INTEGER PRIMARY KEY,
    Language INTEGER NOT NULL
);

-- An entry of the internal event log: what the service processor notes of itself and its users.
CREATE TABLE iel (
    RecordId INTEGER PRIMARY KEY,
    TimeStamp INTEGER NOT NULL,
    Flags INTEGER NOT NULL DEFAULT 0, -- as in `sel_event`
    ErrorCode INTEGER NOT NULL DEFAULT 0,
    AlertGroup INTEGER NOT NULL DEFAULT 0,
    LanguageCode INTEGER NOT NULL DEFAULT 1033,
    Message TEXT NOT NULL
);

CREATE TABLE iel_state (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    Capacity INTEGER NOT NULL,
    LastErase INTEGER NOT NULL
);

-- It is erased in the same way.
CREATE TRIGGER erase_iel AFTER UPDATE OF LastErase ON iel_state
BEGIN
    DELETE FROM iel;
END;
