-- The sample server: a rack server with two processors and four slots for power supplies, one of them empty
-- and one with a unit that will fail. Maker, models and numbers are invented.

INSERT INTO session_information VALUES
    (1, '127.0.0.1', 623, 'cimprovider', 'k7-Vaterite-42', '0x01', '01', '6', '0x1', '4');
INSERT INTO login (Target, Port, UserName, Password, PrivilegeLimit) VALUES
    ('127.0.0.1', 623, 'cimprovider', 'k7-Vaterite-42', 4),
    ('127.0.0.1', 623, 'watcher', 'n3-Calcite-17', 2);
INSERT INTO principal (Name) VALUES ('admin'), ('operator'), ('auditor');

INSERT INTO registered_profile (InstanceID, RegisteredOrganization, RegisteredName, RegisteredVersion,
                                AdvertiseTypes, OtherRegisteredOrganization) VALUES
    ('MARLOVEN:Profile:DSP1033:1.0.0', 2, 'Profile Registration', '1.0.0', '3', ''),
    ('MARLOVEN:Profile:DSP1004:1.0.0', 2, 'Base Server', '1.0.0', '3', ''),
    ('MARLOVEN:Profile:DSP1018:1.1.0', 2, 'Service Processor', '1.1.0', '3', ''),
    ('MARLOVEN:Profile:DSP1108:1.0.0', 2, 'Physical Computer System View', '1.0.0', '2,3', ''),
    ('MARLOVEN:Profile:DSP1015:1.1.0', 2, 'Power Supply', '1.1.0', '2', ''),
    ('MARLOVEN:Profile:DSP1027:1.0.1', 2, 'Power State Management', '1.0.1', '2', ''),
    ('MARLOVEN:Profile:DSP1009:1.0.0', 2, 'Sensors', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:DSP1013:1.0.1', 2, 'Fan', '1.0.1', '2', ''),
    ('MARLOVEN:Profile:DSP1010:1.0.0', 2, 'Record Log', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:DSP1011:1.0.2', 2, 'Physical Asset', '1.0.2', '2', ''),
    ('MARLOVEN:Profile:DSP1012:1.0.0', 2, 'Boot Control', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:DSP1022:1.0.0', 2, 'CPU', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:DSP1026:1.0.1', 2, 'System Memory', '1.0.1', '2', ''),
    ('MARLOVEN:Profile:DSP1075:1.0.0', 2, 'PCI Device', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:DSP1014:1.0.1', 2, 'Ethernet Port', '1.0.1', '2', ''),
    ('MARLOVEN:Profile:DSP1036:1.0.0', 2, 'IP Interface', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:DSP1038:1.0.0', 2, 'DNS Client', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:DSP1016:1.0.1', 2, 'Telnet Service', '1.0.1', '2', ''),
    ('MARLOVEN:Profile:DSP1017:1.0.1', 2, 'SSH Service', '1.0.1', '2', ''),
    ('MARLOVEN:Profile:DSP1005:1.0.1', 2, 'CLP Service', '1.0.1', '2', ''),
    ('MARLOVEN:Profile:DSP1023:1.0.0', 2, 'Software Inventory', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:DSP1025:1.0.0', 2, 'Software Update', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:DSP1040:1.0.0', 2, 'Platform Watchdog', '1.0.0', '2', ''),
    ('MARLOVEN:Profile:HealthTree:2.1.0', 1, 'Health Tree', '2.1.0', '2', 'MARLOVEN');

INSERT INTO system_info VALUES (1, '7f3a5c1e-2d84-4b60-9a17-0263a70a0b0c');

-- Sensors. Exponents have the result's in the high nibble: 0xD0 is a result exponent of -3, 0xF0 of -1, 0x01 an
-- exponent of 1 for B. The temperature of the SFP module isn't linear.
INSERT INTO full_sdr (SensorNumber, SensorType, EntityId, EntityInstance, SensorName, UnitModifier, Linear, M, B,
                      Exponents, UpperThresholdNonRecoverable, UpperThresholdCritical,
                      UpperThresholdNonCritical, LowerThresholdCritical, VariableIndex) VALUES
    (0x01, 1, 55, 0, 'Ambient', 0, 1, 5, 0, 0xF0, 100, 90, 80, 2, NULL),
    (0x02, 1, 7, 0, 'Systemboard 1', 0, 1, 1, 0, 0x00, 80, 75, 70, 1, NULL),
    (0x03, 1, 7, 1, 'Systemboard 2', 0, 1, 1, 0, 0x00, 80, 75, 70, 1, NULL),
    (0x04, 1, 3, 0, 'CPU1', 0, 1, 1, 0, 0x00, 100, 95, 88, 1, NULL),
    (0x05, 1, 3, 1, 'CPU2', 0, 1, 1, 0, 0x00, 100, 95, 88, 1, NULL),
    (0x06, 1, 7, 2, 'PCH', 0, 1, 1, 0, 0x00, 110, 105, 95, 1, NULL),
    (0x07, 1, 32, 0, 'MEM A', 0, 1, 1, -128, 0x00, 218, 213, 206, 129, NULL),
    (0x08, 1, 32, 1, 'MEM B', 0, 1, 1, -128, 0x00, 218, 213, 206, 129, NULL),
    (0x09, 1, 10, 0, 'PSU1 Inlet', 0, 1, 1, -4, 0x01, 115, 110, 100, 41, NULL),
    (0x0A, 1, 10, 1, 'PSU2 Inlet', 0, 1, 1, -4, 0x01, 115, 110, 100, 41, NULL),
    (0x0B, 1, 10, 2, 'PSU3 Inlet', 0, 1, 1, -4, 0x01, 115, 110, 100, 41, NULL),
    (0x0C, 1, 10, 3, 'PSU4 Inlet', 0, 1, 1, -4, 0x01, 115, 110, 100, 41, NULL),
    (0x0D, 1, 15, 0, 'HDD Backplane', 0, 1, 1, 0, 0x00, 70, 65, 60, 1, NULL),
    (0x0E, 1, 31, 0, 'SFP Module', 0, 0, 1, 0, 0x00, 0, 0, 0, 0, NULL),
    (0x10, 2, 40, 0, 'BATT 3.0V', -2, 1, 17, 0, 0xD0, 0, 212, 0, 118, NULL),
    (0x11, 2, 7, 0, 'STBY 12V', -2, 1, 63, 0, 0xD0, 0, 209, 0, 171, NULL),
    (0x12, 2, 7, 1, 'STBY 5V', -2, 1, 26, 0, 0xD0, 0, 208, 0, 177, NULL),
    (0x13, 2, 7, 2, 'STBY 3.3V', -2, 1, 17, 0, 0xD0, 0, 210, 0, 179, NULL),
    (0x14, 2, 7, 3, 'MAIN 12V', -2, 1, 63, 0, 0xD0, 0, 209, 0, 171, NULL),
    (0x15, 2, 7, 4, 'MAIN 5V', -2, 1, 26, 0, 0xD0, 0, 208, 0, 177, NULL),
    (0x16, 2, 7, 5, 'MAIN 3.3V', -2, 1, 17, 0, 0xD0, 0, 210, 0, 179, NULL),
    (0x17, 2, 7, 6, 'MEM 1.2V', -2, 1, 5, 0, 0xD0, 0, 252, 0, 228, NULL),
    (0x18, 2, 7, 7, 'CPU1 1.8V', -2, 1, 8, 2, 0xD2, 0, 220, 0, 190, NULL),
    (0x19, 2, 7, 8, 'CPU2 1.8V', -2, 1, 8, 2, 0xD2, 0, 220, 0, 190, NULL),
    (0x20, 4, 29, 0, 'FAN1 SYS', 0, 1, 60, 0, 0x00, 0, 0, 0, 14, 0),
    (0x21, 4, 29, 1, 'FAN2 SYS', 0, 1, 60, 0, 0x00, 0, 0, 0, 14, 1),
    (0x22, 4, 29, 2, 'FAN3 SYS', 0, 1, 60, 0, 0x00, 0, 0, 0, 14, 2),
    (0x23, 4, 29, 3, 'FAN4 SYS', 0, 1, 60, 0, 0x00, 0, 0, 0, 14, 3),
    (0x24, 4, 10, 0, 'FAN PSU1', 0, 1, 128, 0, 0x00, 0, 0, 0, 10, 4),
    (0x25, 4, 10, 1, 'FAN PSU2', 0, 1, 128, 0, 0x00, 0, 0, 0, 10, 5),
    (0x26, 4, 10, 2, 'FAN PSU3', 0, 1, 128, 0, 0x00, 0, 0, 0, 10, 6),
    (0x27, 4, 10, 3, 'FAN PSU4', 0, 1, 128, 0, 0x00, 0, 0, 0, 10, 7),
    (0x30, 11, 10, 0, 'PSU1 Power', 0, 1, 4, 0, 0x00, 220, 212, 200, 0, NULL),
    (0x31, 11, 10, 1, 'PSU2 Power', 0, 1, 4, 0, 0x00, 220, 212, 200, 0, NULL),
    (0x32, 11, 10, 2, 'PSU3 Power', 0, 1, 4, 0, 0x00, 220, 212, 200, 0, NULL),
    (0x33, 11, 10, 3, 'PSU4 Power', 0, 1, 4, 0, 0x00, 220, 212, 200, 0, NULL),
    (0x34, 11, 7, 0, 'Total Power', 0, 1, 8, 0, 0x00, 220, 212, 200, 0, NULL),
    (0x35, 11, 3, 0, 'CPU1 Power', 0, 1, 2, 0, 0x00, 0, 120, 105, 0, NULL),
    (0x36, 11, 3, 1, 'CPU2 Power', 0, 1, 2, 0, 0x00, 0, 120, 105, 0, NULL);

INSERT INTO compact_sdr (SensorNumber, SensorType, EntityId, EntityInstance, SensorName, BaseUnits) VALUES
    (0x80, 230, 29, 0, 'FAN1 SYS', 0),
    (0x81, 230, 29, 1, 'FAN2 SYS', 0),
    (0x82, 230, 29, 2, 'FAN3 SYS', 0),
    (0x83, 230, 29, 3, 'FAN4 SYS', 0),
    (0x84, 230, 10, 0, 'FAN PSU1', 0),
    (0x85, 230, 10, 1, 'FAN PSU2', 0),
    (0x86, 230, 10, 2, 'FAN PSU3', 0),
    (0x87, 230, 10, 3, 'FAN PSU4', 0),
    (0x90, 8, 10, 0, 'PSU1', 0),
    (0x91, 8, 10, 1, 'PSU2', 0),
    (0x92, 8, 10, 2, 'PSU3', 0),
    (0x93, 8, 10, 3, 'PSU4', 0),
    (0x94, 232, 10, 0, 'PSU1 Status', 0),
    (0x95, 232, 10, 1, 'PSU2 Status', 0),
    (0x96, 232, 10, 2, 'PSU3 Status', 0),
    (0x97, 232, 10, 3, 'PSU4 Status', 0),
    (0xA0, 7, 3, 0, 'CPU1', 0),
    (0xA1, 7, 3, 1, 'CPU2', 0),
    (0xB0, 12, 32, 0, 'DIMM-1A', 0),
    (0xC0, 5, 23, 0, 'Housing Open', 0),
    (0xD0, 221, 7, 0, 'Power Level', 7),
    (0xE0, 234, 6, 0, 'BMC Communication', 0),
    (0xE1, 236, 6, 0, 'BMC Flash', 0),
    (0xE2, 220, 3, 0, 'CPU Config', 0),
    (0xE3, 239, 23, 0, 'Chassis IDPROM', 0),
    (0xE4, 192, 7, 0, 'I2C1 Systemboard', 0),
    (0xE5, 192, 7, 1, 'I2C2 Memory', 0),
    (0xE6, 192, 10, 0, 'I2C3 PSU', 0),
    (0xE7, 192, 15, 0, 'I2C4 Backplane', 0),
    (0xE8, 192, 6, 0, 'I2C5 BMC', 0);

-- The drive backplane, bus 5 and what would be in the empty slot can't be read. Two requests are pending, and two
-- faults hold on bus 4.
INSERT INTO sensor_reading (SensorNumber, Reading, Status, Amplitude) VALUES
    (0x01, 47, 0xC0, 2), (0x02, 38, 0xC0, 2), (0x03, 41, 0xC0, 2), (0x04, 52, 0xC0, 4), (0x05, 49, 0xC0, 4),
    (0x06, 55, 0xC0, 2), (0x07, 162, 0xC0, 2), (0x08, 160, 0xC0, 2), (0x09, 69, 0xC0, 2), (0x0A, 76, 0xC0, 2),
    (0x0B, 65, 0xE0, 2), (0x0C, 70, 0xC0, 2), (0x0D, 31, 0xE0, 2), (0x0E, 120, 0xC0, 2),
    (0x10, 181, 0xC0, 0), (0x11, 190, 0xC0, 1), (0x12, 194, 0xC0, 1), (0x13, 195, 0xC0, 1),
    (0x14, 191, 0xC0, 1), (0x15, 193, 0xC0, 1), (0x16, 194, 0xC0, 1), (0x17, 241, 0xC0, 1),
    (0x18, 210, 0xC0, 1), (0x19, 209, 0xC0, 1),
    (0x20, 71, 0xC0, 2), (0x21, 72, 0xC0, 2), (0x22, 70, 0xC0, 2), (0x23, 71, 0xC0, 2),
    (0x24, 71, 0xC0, 2), (0x25, 84, 0xC0, 2), (0x26, 70, 0xE0, 2), (0x27, 72, 0xC0, 2),
    (0x30, 31, 0xC0, 2), (0x31, 29, 0xC0, 2), (0x32, 28, 0xE0, 2), (0x33, 30, 0xC0, 2),
    (0x34, 45, 0xC0, 3), (0x35, 43, 0xC0, 4), (0x36, 40, 0xC0, 4);
UPDATE sensor_reading SET Seed = SensorNumber;
INSERT INTO sensor_reading (SensorNumber, State) VALUES
    (0x80, 1), (0x81, 1), (0x82, 1), (0x83, 1), (0x84, 1), (0x85, 2), (0x86, 0x40), (0x87, 1),
    (0x90, 1), (0x91, 1), (0x92, 0), (0x93, 1), (0x94, 2), (0x95, 4), (0x96, 1), (0x97, 2),
    (0xA0, 0x80), (0xA1, 0x80), (0xB0, 0x40), (0xC0, 0), (0xD0, 1),
    (0xE0, 0x0012), (0xE1, 0), (0xE2, 0), (0xE3, 1), (0xE4, 0), (0xE5, 0), (0xE6, 0), (0xE7, 0x0003);
INSERT INTO simulation (id, Walk) VALUES (1, 1);

INSERT INTO power_supply (PresenceSensor, StatusSensor, PowerSensor, FruDeviceId, EntityInstance, Designation)
VALUES
    (0x90, 0x94, 0x30, 3, 0, 'PSU1'),
    (0x91, 0x95, 0x31, 4, 1, 'PSU2'),
    (0x92, 0x96, 0x32, 5, 2, 'PSU3'),
    (0x93, 0x97, 0x33, 6, 3, 'PSU4');

INSERT INTO fan (StatusSensor, SpeedSensor, PsuPresenceSensor, EntityId, Name, Attributes) VALUES
    (0x80, 0x20, 0, 29, 'FAN1 SYS', 0x00),
    (0x81, 0x21, 0, 29, 'FAN2 SYS', 0x00),
    (0x82, 0x22, 0, 29, 'FAN3 SYS', 0x00),
    (0x83, 0x23, 0, 29, 'FAN4 SYS', 0x00),
    (0x84, 0x24, 0x90, 10, 'FAN PSU1', 0x10),
    (0x85, 0x25, 0x91, 10, 'FAN PSU2', 0x10),
    (0x86, 0x26, 0x92, 10, 'FAN PSU3', 0x10),
    (0x87, 0x27, 0x93, 10, 'FAN PSU4', 0x10);
INSERT INTO maximum_speed VALUES
    (0x20, 14400, 15000), (0x21, 14700, 15000), (0x22, 15000, 15000), (0x23, 13800, 15000),
    (0x24, 26000, 26500), (0x25, 21200, 26500), (0x26, 26500, 26500), (0x27, 26300, 26500);

INSERT INTO capabilities (RowName, InstanceID, RequestedStatesSupported, ElementNameEditSupported, ElementName,
                          MaxElementNameLen) VALUES
    ('PowerSupplyCapabilities1', 'MARLOVEN:PowerSupplyCapabilities1', '', 0, 'Power Supply Capabilities', 0),
    ('HostSystemCapabilities1', 'MARLOVEN:HostSystemCapabilities1', '2,3,4,10,11', 1, 'Host System Capabilities', 64),
    ('ServiceProcessorCapabilities1', 'MARLOVEN:ServiceProcessorCapabilities1', '11', 0,
     'Service Processor Capabilities', 0),
    ('FanCapabilities1', 'MARLOVEN:FanCapabilities1', '', 0, 'Fan Capabilities', 0),
    ('IPProtocolEndpointCapabilities1', 'MARLOVEN:IPProtocolEndpointCapabilities1', '2,3', 0,
     'IP Protocol Endpoint Capabilities', 0),
    ('AccountCapabilities1', 'MARLOVEN:AccountCapabilities1', '2,3', 1, 'Account Capabilities', 32),
    ('DNSCapabilities1', 'MARLOVEN:DNSCapabilities1', '', 0, 'DNS Capabilities', 0),
    ('TextRedirectionSAPCapabilities1', 'MARLOVEN:TextRedirectionSAPCapabilities1', '2,3', 0,
     'Text Redirection SAP Capabilities', 0),
    ('TextRedirectionServiceCapabilities1', 'MARLOVEN:TextRedirectionServiceCapabilities1', '2,3', 0,
     'Text Redirection Service Capabilities', 0);

INSERT INTO protocol_service (RowName, Name, ElementName, OtherProtocol, OperationalStatus, Protocol,
                              MaxConnections, RequestedState, EnabledState, HealthState) VALUES
    ('SSHProtocolService', 'SSH', 'SSH Protocol Service', '', '2', 2, 4, 12, 2, 5),
    ('TelnetProtocolService', 'Telnet', 'Telnet Protocol Service', '', '2', 3, 4, 12, 3, 5),
    ('CLPProtocolService', 'CLP', 'CLP Protocol Service', 'SM CLP', '2', 1, 4, 12, 2, 5);

INSERT INTO fru (DeviceId, EntityId, ChassisType, ChassisPartNumber, ProductName, ProductVersion,
                 ProductAssetTag, ProductSerialNumber, ProductPartNumber, ProductManufacturer,
                 BoardManufacturingDate, BoardProductName, BoardSerialNumber, BoardPartNumber,
                 BoardManufacturer, BoardCustomFields) VALUES
    (0, 7, '', '', '', '', '', '', '', '', 1651363200, 'MB-7420', 'MVB2218004711', 'A26-M7420-X1', 'MARLOVEN',
     'WGS02 GS04,A1'),
    (2, 23, 'Rack Mount Chassis', 'RC2-7420', 'TORVEN RX7420', 'GS02', 'DC1-R07-U21', 'MVR7420220815',
     'RX7420-2S', 'MARLOVEN', 0, '', '', '', '', ''),
    (3, 10, '', '', '', '', '', '', '', '', 1640995200, 'PSU-800P', 'MVP2150000815', 'A26-P0800-X2',
     'MARLOVEN', 'R3,HW02'),
    (4, 10, '', '', '', '', '', '', '', '', 1640995200, 'PSU-800P', 'MVP2150000816', 'A26-P0800-X2',
     'MARLOVEN', 'R3,HW02'),
    (6, 10, '', '', '', '', '', '', '', '', 1656633600, 'PSU-800P', 'MVP2226001203', 'A26-P0800-X2',
     'MARLOVEN', 'R4,HW02');
INSERT INTO frudevice_sdr (DeviceAddress, FruDeviceId, DeviceType) VALUES
    (0x20, 0, 0x80), (0x20, 2, 0x80), (0xA0, 3, 0x10), (0xA2, 4, 0x10), (0xA4, 5, 0x10), (0xA6, 6, 0x10);

INSERT INTO configuration_variable (id, name, width, value) VALUES
    (0x0030, 'ConfRebootRetryCounter', 1, 3),
    (0x0032, 'ConfErrorOffRestartTime', 2, 300),
    (0x0033, 'ConfRetryCounterMax', 1, 3),
    (0x0077, 'ConfTempCriticalPowerOff', 1, 1),
    (0x0080, 'ConfFanDailyTestTime', 2, 1380),
    (0x0084, 'ConfDisableFanTest', 1, 0),
    (0x00A2, 'ConfPowerCycleDelay', 1, 5),
    (0x00A3, 'ConfPowerOnTrapPremonitionTime', 1, 5),
    (0x00A4, 'ConfPowerOffTrapPremonitionTime', 1, 15),
    (0x0200, 'ConfCabinetLocation', 256, 'Hall 1, row 7, unit 21'),
    (0x0201, 'ConfSystemName', 64, 'db-node-21'),
    (0x0204, 'ConfSystemContact', 256, 'operations@example.net'),
    (0x0206, 'ConfServerChassisModel', 256, 'TORVEN RX7420'),
    (0x0210, 'ConfBMCAssetTag', 256, 'DC1-R07-U21'),
    (0x1130, 'ConfPowerDisplayUnit', 1, 0),
    (0x1420, 'ConfBMCHttpPort', 2, 80),
    (0x1421, 'ConfBMCHttpsPort', 2, 443),
    (0x1425, 'ConfBMCForceHttps', 1, 0),
    (0x1430, 'ConfBMCNetworkName', 256, 'sp-rx7420'),
    (0x1431, 'ConfBMCUseNetworkName', 1, 1),
    (0x1432, 'ConfBMCNameExtension', 256, '-sp'),
    (0x1433, 'ConfBMCAddSerialNumber', 1, 0),
    (0x1434, 'ConfBMCAddExtension', 1, 0),
    (0x144D, 'ConfBMCDNSDomain', 48, 'dc1.example.net'),
    (0x1A00, 'ConfPowerControlMode', 1, 5),
    (0x1A01, 'ConfPowerMonitoringEnable', 1, 1),
    (0x1A06, 'ConfPowerLimitModeValue', 2, 650),
    (0x1A08, 'ConfDynPowerLimitEnable', 1, 1),
    (0x1A09, 'ConfPowerLimitModeThreshold', 2, 90),
    (0x1A0A, 'ConfPowerLimitModePeriod', 2, 5),
    (0x1A0B, 'ConfPowerLimitModeAction', 1, 1),
    (0x1A0C, 'ConfPSRedundancyMode', 1, 2),
    (0x1A0D, 'ConfPSRedundancyUnits', 1, 0x21), -- two needed, one spare
    (0x1A22, 'ConfBmcIpv6Enabled', 1, 1),
    (0x7E00, 'TraceMask', 2, 256);

-- Lists. The service processor has a link-local, a global and a unique local address.
INSERT INTO configuration_variable (id, name, width, list_index, value) VALUES
    (0x1A24, 'ConfBmcIpv6AddressType', 1, 0, 1),
    (0x1A24, 'ConfBmcIpv6AddressType', 1, 1, 2),
    (0x1A24, 'ConfBmcIpv6AddressType', 1, 2, 9),
    (0x1A25, 'ConfBmcIpv6Addr', 16, 0, x'FE800000000000000063A7FFFE0A0B0C'),
    (0x1A25, 'ConfBmcIpv6Addr', 16, 1, x'20010DB8004200000000000000000021'),
    (0x1A25, 'ConfBmcIpv6Addr', 16, 2, x'FD7A0042000100000000000000000021');

-- What happens when a fan fails, by the fans' indexes, and when one of the temperatures is critical, by their
-- places among the temperature sensors.
WITH RECURSIVE entry(i) AS (VALUES (0) UNION ALL SELECT i + 1 FROM entry WHERE i < 7)
INSERT INTO configuration_variable (id, name, width, list_index, value)
    SELECT 0x0071, 'ConfFanFailBehavior', 1, i, i < 4 FROM entry
    UNION ALL SELECT 0x0072, 'ConfFanFailShutdownDelay', 2, i, iif(i < 4, 90, 300) FROM entry;
WITH RECURSIVE entry(i) AS (VALUES (0) UNION ALL SELECT i + 1 FROM entry WHERE i < 13)
INSERT INTO configuration_variable (id, name, width, list_index, value)
    SELECT 0x0073, 'ConfTempCriticalBehavior', 1, i, i < 6 FROM entry;

-- The week, Sunday first, in minutes since midnight: power on and off, then the two schedules of the power
-- control, each with the mode that begins at its time.
WITH week(day, on_time, off_time, mode1, time1, mode2, time2) AS (VALUES
    (0, 65535, 65535, 2, 65535, 2, 65535),
    (1, 420, 1320, 3, 360, 2, 1200),
    (2, 420, 1320, 3, 360, 2, 1200),
    (3, 420, 1320, 3, 360, 2, 1200),
    (4, 420, 1320, 3, 360, 2, 1200),
    (5, 420, 1080, 3, 360, 2, 1080),
    (6, 65535, 65535, 2, 65535, 2, 65535))
INSERT INTO configuration_variable (id, name, width, list_index, value)
    SELECT 0x00A0, 'ConfServerOnTime', 2, day, on_time FROM week
    UNION ALL SELECT 0x00A1, 'ConfServerOffTime', 2, day, off_time FROM week
    UNION ALL SELECT 0x1A04, 'ConfPowerControlScheduleMode1', 1, day, mode1 FROM week
    UNION ALL SELECT 0x1A05, 'ConfPowerControlScheduleMode2', 1, day, mode2 FROM week
    UNION ALL SELECT 0x1A02, 'ConfPowerControlScheduleTime1', 2, day, time1 FROM week
    UNION ALL SELECT 0x1A03, 'ConfPowerControlScheduleTime2', 2, day, time2 FROM week;

-- The schedule that it has as a blade: Monday to Friday.
INSERT INTO blade_schedule VALUES
    (0, 65535, 65535), (1, 480, 1080), (2, 480, 1080), (3, 480, 1080), (4, 480, 1080), (5, 480, 960),
    (6, 65535, 65535);

INSERT INTO service_processor (id, SystemName, AgentConnected) VALUES (1, 'MVR7420220815-SP', 1);
INSERT INTO agent_parameter (ParameterGroup, Name, Value) VALUES
    ('System Information', 'ServerHostNameShort', 'db-node-21'),
    ('System Information', 'UMServerStatus', 2);
INSERT INTO misc_control VALUES (15, 1);
INSERT INTO lan_channel VALUES
    (1, x'0263A70A0B0B', '192.0.2.20'),
    (2, x'0263A70A0B0C', '192.0.2.21');
INSERT INTO device_id VALUES (1, 0x20, 0x01, 2, 0x45, 0x02, 0xBF, 0x002880, 0x7420, 0x00000001);
INSERT INTO chassis_status VALUES (1, 0x21, 0x00, 0x40, 0x00, 2, 1751702400, 1, 1);
INSERT INTO power_on_hours VALUES (1, 60, 10417);

-- Health. Power supplies, fans, temperatures and voltages are as their sensors say; of the other components one has an
-- error, of which only the agent knows.
INSERT INTO health_name VALUES (0x01000000, 'System');
WITH part(component, number, status_name, status, designation_name, designation, css) AS (VALUES
    ('TqFanConfig', 0, 'ComponentSignalStatus', 1, 'Designation', 'Fan Redundancy', 'FALSE'),
    ('TqPowerLevel', 0, 'SensorReadingStatus', 0, 'Designation', 'Power Level', 'FALSE'),
    ('TqPowerRedundancy', 0, 'ComponentSignalStatus', 1, 'Designation', 'Power Unit', 'FALSE'),
    ('TqPowerConfig', 0, 'ComponentSignalStatus', 1, 'Designation', 'Power Configuration', 'FALSE'),
    ('TqMemModules', 0, 'MemModuleStatus', 1, 'Designation', 'DIMM-1A', 'TRUE'),
    ('TqMemModules', 1, 'MemModuleStatus', 1, 'Designation', 'DIMM-1B', 'TRUE'),
    ('TqMemModules', 2, 'MemModuleStatus', 1, 'Designation', 'DIMM-1C', 'TRUE'),
    ('TqMemModules', 3, 'MemModuleStatus', 0, 'Designation', 'DIMM-1D', 'TRUE'),
    ('TqMemModules', 4, 'MemModuleStatus', 1, 'Designation', 'DIMM-2A', 'TRUE'),
    ('TqMemModules', 5, 'MemModuleStatus', 1, 'Designation', 'DIMM-2B', 'TRUE'),
    ('TqMemModules', 6, 'MemModuleStatus', 1, 'Designation', 'DIMM-2C', 'TRUE'),
    ('TqMemModules', 7, 'MemModuleStatus', 0, 'Designation', 'DIMM-2D', 'TRUE'),
    ('TqCPUs', 0, 'CPUStatus', 1, 'Designation', 'CPU1', 'FALSE'),
    ('TqCPUs', 1, 'CPUStatus', 1, 'Designation', 'CPU2', 'FALSE'),
    ('TqBIOS', 0, 'ComponentSignalStatus', 1, 'Designation', 'BIOS', NULL),
    ('TqPCISlots', 0, 'ComponentSignalStatus', 1, 'Designation', 'PCI Slot 1', 'TRUE'),
    ('TqPCISlots', 1, 'ComponentSignalStatus', 1, 'Designation', 'PCI Slot 2', 'TRUE'),
    ('TqPCISlots', 2, 'ComponentSignalStatus', 1, 'Designation', 'PCI Slot 3', 'TRUE'),
    ('TqPCISlots', 3, 'ComponentSignalStatus', 1, 'Designation', 'PCI Slot 4', 'TRUE'),
    ('TqAgent', 0, 'ComponentSignalStatus', 1, 'Designation', 'Agent', NULL),
    ('Driver Monitoring', 0, 'DrvMonComponentStatus', 1, 'DrvMonComponentName', 'Chipset', NULL),
    ('Driver Monitoring', 1, 'DrvMonComponentStatus', 1, 'DrvMonComponentName', 'Graphics', NULL),
    ('Driver Monitoring', 2, 'DrvMonComponentStatus', 3, 'DrvMonComponentName', 'Fibre Channel 1-2', NULL))
INSERT INTO component_parameter (ParameterGroup, Name, Instance, Value)
    SELECT component, status_name, number, status FROM part
    UNION ALL SELECT component, designation_name, number, designation FROM part
    UNION ALL SELECT component, 'CSS_LED', number, css FROM part WHERE css IS NOT NULL;
INSERT INTO component_parameter (ParameterGroup, Name, Value) VALUES
    ('TqFanConfig', 'NrFanConfigInstances', 1),
    ('TqPowerLevel', 'NrPowerLevelInstances', 1),
    ('TqPowerRedundancy', 'NrPowerRedundancyInstances', 1),
    ('TqPowerConfig', 'NrPowerConfigInstances', 1),
    ('TqMemModules', 'NrMemModuleInstances', 8),
    ('TqCPUs', 'NrCPUInstances', 2),
    ('TqBIOS', 'NrBIOSInstances', 1),
    ('TqPCISlots', 'NrPCISlotInstances', 4),
    ('TqAgent', 'NrAgentInstances', 1),
    ('TqTPM', 'TPMHardwareAvailable', 1),
    ('Driver Monitoring', 'DrvMonNumberComponents', 3),
    ('Mass Storage', 'DrvMonStorageSummaryStatus', 1),
    ('Mass Storage', 'TQRaidOverallStatus', 1),
    ('Mass Storage', 'TQRaidAdapterOverallStatus', 1),
    ('Mass Storage', 'TQRaidLogicalDrivesOverallStatus', 1),
    ('Mass Storage', 'TQRaidPhysicalDrivesOverallStatus', 1),
    ('Mass Storage', 'TQRaidOverallSmartStatus', 0),
    ('Mass Storage', 'TQRaidStatusCss', 'TRUE'),
    ('Network', 'DrvMonNetworkSummaryStatus', 1);
