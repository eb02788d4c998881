-- The sample server: a rack server with two processors and two power supplies. Maker, models and numbers are
-- invented.

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

-- Sensors. Exponents 0xD0 is a result exponent of -3, 0xE0 of -2.
INSERT INTO full_sdr (SensorNumber, SensorType, EntityId, EntityInstance, SensorName, UnitModifier, M, B,
                      Exponents, UpperThresholdNonRecoverable, UpperThresholdCritical,
                      UpperThresholdNonCritical, LowerThresholdCritical) VALUES
    (0x01, 1, 55, 0, 'Ambient', 0, 1, 0, 0x00, 50, 45, 40, 1),
    (0x02, 1, 7, 0, 'Systemboard', 0, 1, 0, 0x00, 80, 75, 70, 1),
    (0x03, 1, 3, 0, 'CPU1', 0, 1, 0, 0x00, 100, 95, 88, 1),
    (0x04, 1, 3, 1, 'CPU2', 0, 1, 0, 0x00, 100, 95, 88, 1),
    (0x05, 1, 32, 0, 'DIMM 1A', 0, 1, -128, 0x00, 218, 213, 206, 128),
    (0x10, 2, 7, 0, 'BATT 3.0V', -2, 17, 0, 0xD0, 0, 212, 0, 118),
    (0x11, 2, 7, 1, 'STBY 12V', -2, 63, 0, 0xD0, 0, 209, 0, 171),
    (0x12, 2, 7, 2, 'STBY 5V', -2, 26, 0, 0xD0, 0, 208, 0, 177),
    (0x13, 2, 7, 3, 'STBY 3.3V', -2, 17, 0, 0xD0, 0, 210, 0, 179),
    (0x20, 4, 29, 0, 'FAN1 SYS', 0, 60, 0, 0x00, 0, 0, 0, 14),
    (0x21, 4, 29, 1, 'FAN2 SYS', 0, 60, 0, 0x00, 0, 0, 0, 14),
    (0x22, 4, 29, 2, 'FAN3 SYS', 0, 60, 0, 0x00, 0, 0, 0, 14),
    (0x23, 4, 29, 3, 'FAN4 SYS', 0, 60, 0, 0x00, 0, 0, 0, 14),
    (0x24, 4, 10, 0, 'FAN PSU1', 0, 80, 0, 0x00, 0, 0, 0, 10),
    (0x25, 4, 10, 1, 'FAN PSU2', 0, 80, 0, 0x00, 0, 0, 0, 10),
    (0x30, 11, 10, 0, 'PSU1 Power', 0, 4, 0, 0x00, 220, 212, 200, 0),
    (0x31, 11, 10, 1, 'PSU2 Power', 0, 4, 0, 0x00, 220, 212, 200, 0),
    (0x32, 11, 7, 0, 'Total Power', 0, 8, 0, 0x00, 220, 212, 200, 0);

INSERT INTO compact_sdr (SensorNumber, SensorType, EntityId, EntityInstance, SensorName, BaseUnits) VALUES
    (0x80, 230, 29, 0, 'FAN1 SYS', 0),
    (0x81, 230, 29, 1, 'FAN2 SYS', 0),
    (0x82, 230, 29, 2, 'FAN3 SYS', 0),
    (0x83, 230, 29, 3, 'FAN4 SYS', 0),
    (0x84, 230, 10, 0, 'FAN PSU1', 0),
    (0x85, 230, 10, 1, 'FAN PSU2', 0),
    (0x90, 8, 10, 0, 'PSU1', 0),
    (0x91, 8, 10, 1, 'PSU2', 0),
    (0xA0, 7, 3, 0, 'CPU1', 0),
    (0xA1, 7, 3, 1, 'CPU2', 0),
    (0xB0, 12, 32, 0, 'DIMM-1A', 0),
    (0xC0, 5, 23, 0, 'Housing Open', 0),
    (0xD0, 221, 7, 0, 'Power Level', 7);

INSERT INTO sensor_reading (SensorNumber, Reading, State) VALUES
    (0x01, 23, 0), (0x02, 38, 0), (0x03, 52, 0), (0x04, 49, 0), (0x05, 162, 0),
    (0x10, 181, 0), (0x11, 190, 0), (0x12, 194, 0), (0x13, 195, 0),
    (0x20, 71, 0), (0x21, 72, 0), (0x22, 70, 0), (0x23, 71, 0), (0x24, 36, 0), (0x25, 37, 0),
    (0x30, 31, 0), (0x31, 29, 0), (0x32, 29, 0),
    (0x80, 0, 1), (0x81, 0, 1), (0x82, 0, 1), (0x83, 0, 1), (0x84, 0, 1), (0x85, 0, 1),
    (0x90, 0, 1), (0x91, 0, 1), (0xA0, 0, 0x80), (0xA1, 0, 0x80), (0xB0, 0, 0x40), (0xC0, 0, 0), (0xD0, 0, 1);

INSERT INTO capabilities (RowName, InstanceID, RequestedStatesSupported, ElementNameEditSupported, ElementName,
                          MaxElementNameLen) VALUES
    ('PowerSupplyCapabilities1', 'MARLOVEN:PowerSupplyCapabilities1', '', 0, 'Power Supply Capabilities', 0),
    ('HostSystemCapabilities1', 'MARLOVEN:HostSystemCapabilities1', '2,3,5,11', 1, 'Host System Capabilities', 64),
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
    (1, 23, 'Rack Mount Chassis', 'RC2-7420', 'TORVEN RX7420', 'GS02', 'DC1-R07-U21', 'MVR7420220815',
     'RX7420-2S', 'MARLOVEN', 0, '', '', '', '', ''),
    (2, 10, '', '', '', '', '', '', '', '', 1640995200, 'PSU-800P', 'MVP2150000815', 'A26-P0800-X2',
     'MARLOVEN', 'R3,HW02'),
    (3, 10, '', '', '', '', '', '', '', '', 1640995200, 'PSU-800P', 'MVP2150000816', 'A26-P0800-X2',
     'MARLOVEN', 'R3,HW02');

INSERT INTO configuration_variable (id, name, width, value) VALUES
    (0x0030, 'ConfRebootRetryCounter', 1, 3),
    (0x0032, 'ConfErrorOffRestartTime', 2, 300),
    (0x0033, 'ConfRetryCounterMax', 1, 3),
    (0x0077, 'ConfTempCriticalPowerOff', 1, 1),
    (0x0080, 'ConfFanDailyTestTime', 2, 1380),
    (0x0084, 'ConfDisableFanTest', 1, 0),
    (0x00A2, 'ConfPowerCycleDelay', 1, 5),
    (0x0201, 'SystemHostname', 64, 'db-node-21'),
    (0x1430, 'ConfBMCNetworkName', 256, 'sp-rx7420'),
    (0x1431, 'ConfBMCUseNetworkName', 1, 1),
    (0x1432, 'ConfBMCNameExtension', 256, '-sp'),
    (0x1433, 'ConfBMCAddSerialNumber', 1, 0),
    (0x1434, 'ConfBMCAddExtension', 1, 0),
    (0x7E00, 'TraceMask', 2, 256);

INSERT INTO service_processor (id, SystemName) VALUES (1, 'MVR7420220815-SP');
INSERT INTO lan_channel (Channel, MACAddress) VALUES (1, x'0263A70A0B0B'), (2, x'0263A70A0B0C');
INSERT INTO device_id VALUES (1, 0x20, 0x01, 2, 0x45, 0x02, 0xBF, 0x002880, 0x7420, 0x00000001);
INSERT INTO chassis_status VALUES (1, 0x01, 0x00, 0x40, 0x00);
INSERT INTO power_on_hours VALUES (1, 60, 10417);
