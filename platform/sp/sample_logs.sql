-- The logs of the sample server: two years of events of its sensors, and what the service processor noted of itself.

INSERT INTO configuration_variable (id, name, width, value) VALUES
    (0x0007, 'ConfSELBufferMode', 1, 1), -- 0: the oldest entries are overwritten, 1: never
    (0x0009, 'ConfIELBufferMode', 1, 0),
    (0x000B, 'ConfIELShowHiddenEntries', 1, 1),
    (0x000E, 'ConfCIMRecordLogLanguage', 2, 1033),
    (0x0211, 'ConfHelpdesk', 256, 'Hall 1 operations, extension 4711'),
    (0x1121, 'ConfSELDisplayFlags', 1, 0x07), -- 1 critical, 2 major, 4 minor, 8 informational
    (0x1123, 'ConfIELDisplayFlags', 1, 0x0F);
INSERT INTO supported_language (Language) VALUES (1033), (1031);
INSERT INTO sel_state (id, Capacity, LastAddition, LastErase) VALUES (1, 4096, 0, 1703980800);
INSERT INTO iel_state VALUES (1, 512, 1703980800);

-- Kinds of events. Severities: 0x00 informational, 0x10 minor, 0x20 major, 0x30 critical.
INSERT INTO sel_event (ErrorCode, Flags, AlertGroup) VALUES
    (0x010107, 0x10, 2),  -- temperature: upper non-critical, going high
    (0x010109, 0x30, 2),  -- temperature: upper critical, going high
    (0x018107, 0x00, 2),  -- temperature: the same as the first, deasserted
    (0x020102, 0x20, 5),  -- voltage: lower critical, going low
    (0x028102, 0x00, 5),
    (0x040100, 0x90, 1),  -- fan: lower non-critical, going low
    (0x040102, 0xA0, 1),  -- fan: lower critical, going low
    (0x048102, 0x80, 1),
    (0x056F00, 0x10, 9),  -- chassis intrusion
    (0x05EF00, 0x00, 9),
    (0x076F00, 0x30, 6),  -- processor: internal error
    (0x086F00, 0x80, 4),  -- power supply: presence
    (0x086F01, 0xA0, 4),  -- power supply: failure
    (0x086F02, 0x90, 4),  -- power supply: predictive failure
    (0x086F03, 0x20, 4),  -- power supply: input lost
    (0x088F03, 0x00, 4),
    (0x0C6F00, 0x90, 7),  -- memory: correctable error
    (0x0C6F01, 0xB0, 7),  -- memory: uncorrectable error
    (0x0D6F01, 0xA0, 8),  -- drive: fault
    (0x1D6F00, 0x00, 10), -- boot: started by power-up
    (0x216F00, 0x20, 12), -- slot or connector: fault
    (0x226F05, 0x00, 10), -- ACPI: soft off
    (0x236F01, 0x20, 10), -- watchdog: hard reset
    (0x2B6F01, 0x00, 11); -- version change

INSERT INTO sel_text (ErrorCode, Language, Message, Summary, Causes, Resolutions) VALUES
    (0x010107, 1033, 'Temperature warning: %s', 'A temperature is higher than it should be',
     'Air inlets are blocked
The room is too warm
A fan is slow', 'Clear the air inlets
Check the cooling of the room'),
    (0x010107, 1031, 'Temperaturwarnung: %s', 'Eine Temperatur ist höher als vorgesehen',
     'Lufteinlässe sind verdeckt
Der Raum ist zu warm
Ein Lüfter ist zu langsam', 'Lufteinlässe freimachen
Kühlung des Raums prüfen'),
    (0x010109, 1033, 'Temperature critical: %s', 'A temperature is critical; the server may switch itself off',
     'Air inlets are blocked
A fan has failed', 'Clear the air inlets
Replace failed fans
Reduce the load'),
    (0x010109, 1031, 'Temperatur kritisch: %s', 'Eine Temperatur ist kritisch; der Server kann sich abschalten',
     'Lufteinlässe sind verdeckt
Ein Lüfter ist ausgefallen', 'Lufteinlässe freimachen
Ausgefallene Lüfter tauschen
Last verringern'),
    (0x018107, 1033, 'Temperature OK again: %s', 'A temperature is normal again', '', ''),
    (0x018107, 1031, 'Temperatur wieder normal: %s', 'Eine Temperatur ist wieder normal', '', ''),
    (0x020102, 1033, 'Voltage too low: %s', 'A voltage is below its critical limit',
     'The power supply or the battery is worn', 'Replace the part that delivers the voltage'),
    (0x020102, 1031, 'Spannung zu niedrig: %s', 'Eine Spannung liegt unter ihrer kritischen Grenze',
     'Netzteil oder Batterie ist verbraucht', 'Das Teil tauschen, das die Spannung liefert'),
    (0x028102, 1033, 'Voltage OK again: %s', 'A voltage is within its limits again', '', ''),
    (0x028102, 1031, 'Spannung wieder normal: %s', 'Eine Spannung liegt wieder in ihren Grenzen', '', ''),
    (0x040100, 1033, 'Fan slow: %s', 'A fan turns more slowly than it should', 'Dust', 'Clean the fan'),
    (0x040100, 1031, 'Lüfter langsam: %s', 'Ein Lüfter dreht langsamer als vorgesehen', 'Staub', 'Lüfter reinigen'),
    (0x040102, 1033, 'Fan speed critical: %s', 'A fan turns too slowly', 'Dust
Worn bearings
A cable is in the way', 'Clean the fan
Replace the fan'),
    (0x040102, 1031, 'Lüfterdrehzahl kritisch: %s', 'Ein Lüfter dreht zu langsam', 'Staub
Verschlissene Lager
Ein Kabel ist im Weg', 'Lüfter reinigen
Lüfter tauschen'),
    (0x048102, 1033, 'Fan OK again: %s', 'A fan turns as it should again', '', ''),
    (0x048102, 1031, 'Lüfter wieder normal: %s', 'Ein Lüfter dreht wieder wie vorgesehen', '', ''),
    (0x056F00, 1033, 'Housing opened: %s', 'The cover was taken off', 'Service work', 'Close the cover'),
    (0x056F00, 1031, 'Gehäuse geöffnet: %s', 'Die Abdeckung wurde entfernt', 'Wartungsarbeiten', 'Abdeckung schließen'),
    (0x05EF00, 1033, 'Housing closed: %s', 'The cover is on again', '', ''),
    (0x05EF00, 1031, 'Gehäuse geschlossen: %s', 'Die Abdeckung ist wieder geschlossen', '', ''),
    (0x076F00, 1033, 'Processor error: %s', 'A processor reported an internal error', 'The processor is defective
The processor is not seated well', 'Restart the server
Call service when it comes back'),
    (0x076F00, 1031, 'Prozessorfehler: %s', 'Ein Prozessor hat einen internen Fehler gemeldet', 'Der Prozessor ist defekt
Der Prozessor sitzt nicht richtig', 'Server neu starten
Service rufen, wenn der Fehler wiederkehrt'),
    (0x086F00, 1033, 'Power supply inserted: %s', 'A power supply was plugged', '', ''),
    (0x086F00, 1031, 'Netzteil eingesteckt: %s', 'Ein Netzteil wurde eingesteckt', '', ''),
    (0x086F01, 1033, 'Power supply failed: %s', 'A power supply delivers no power', 'The unit is defective
Its fan has failed', 'Replace the power supply'),
    (0x086F01, 1031, 'Netzteil ausgefallen: %s', 'Ein Netzteil liefert keinen Strom', 'Das Netzteil ist defekt
Sein Lüfter ist ausgefallen', 'Netzteil tauschen'),
    (0x086F02, 1033, 'Power supply will fail: %s', 'A power supply expects to fail', 'The unit is wearing out',
     'Replace the power supply while the others carry the load'),
    (0x086F02, 1031, 'Netzteil fällt bald aus: %s', 'Ein Netzteil erwartet seinen Ausfall', 'Das Netzteil verschleißt',
     'Netzteil tauschen, solange die anderen die Last tragen'),
    (0x086F03, 1033, 'Power supply without input: %s', 'A power supply gets no mains voltage', 'The power cord is loose
The circuit is off', 'Check the power cord
Check the circuit'),
    (0x086F03, 1031, 'Netzteil ohne Eingang: %s', 'Ein Netzteil bekommt keine Netzspannung', 'Das Netzkabel ist lose
Der Stromkreis ist abgeschaltet', 'Netzkabel prüfen
Stromkreis prüfen'),
    (0x088F03, 1033, 'Power supply input OK again: %s', 'A power supply gets mains voltage again', '', ''),
    (0x088F03, 1031, 'Netzteileingang wieder normal: %s', 'Ein Netzteil bekommt wieder Netzspannung', '', ''),
    (0x0C6F00, 1033, 'Memory error corrected: %s', 'A memory module had an error that was corrected',
     'The module is wearing out', 'Watch the module
Replace it when the errors become frequent'),
    (0x0C6F00, 1031, 'Speicherfehler korrigiert: %s', 'Ein Speichermodul hatte einen korrigierten Fehler',
     'Das Modul verschleißt', 'Modul beobachten
Bei häufigen Fehlern tauschen'),
    (0x0C6F01, 1033, 'Memory error not correctable: %s', 'A memory module had an error that could not be corrected',
     'The module is defective', 'Replace the memory module'),
    (0x0C6F01, 1031, 'Speicherfehler nicht korrigierbar: %s', 'Ein Speichermodul hatte einen nicht korrigierbaren Fehler',
     'Das Modul ist defekt', 'Speichermodul tauschen'),
    (0x0D6F01, 1033, 'Drive failed: %s', 'A drive reported a fault', 'The drive is worn out', 'Replace the drive'),
    (0x0D6F01, 1031, 'Laufwerk ausgefallen: %s', 'Ein Laufwerk hat einen Fehler gemeldet',
     'Das Laufwerk ist verschlissen', 'Laufwerk tauschen'),
    (0x1D6F00, 1033, 'Boot started: %s', 'The server was powered up', '', ''),
    (0x1D6F00, 1031, 'Start begonnen: %s', 'Der Server wurde eingeschaltet', '', ''),
    (0x216F00, 1033, 'Adapter fault: %s', 'An adapter reported a fault', 'The adapter is defective
Its driver does not match its firmware', 'Update driver and firmware
Replace the adapter'),
    (0x216F00, 1031, 'Adapterfehler: %s', 'Ein Adapter hat einen Fehler gemeldet', 'Der Adapter ist defekt
Treiber und Firmware passen nicht zusammen', 'Treiber und Firmware aktualisieren
Adapter tauschen'),
    (0x226F05, 1033, 'Powered off: %s', 'The operating system has shut down', '', ''),
    (0x226F05, 1031, 'Ausgeschaltet: %s', 'Das Betriebssystem wurde heruntergefahren', '', ''),
    (0x236F01, 1033, 'Watchdog reset: %s', 'The server was reset because it did not answer',
     'The operating system hangs', 'Look at the logs of the operating system'),
    (0x236F01, 1031, 'Neustart durch Watchdog: %s', 'Der Server wurde neu gestartet, weil er nicht antwortete',
     'Das Betriebssystem hängt', 'Protokolle des Betriebssystems ansehen'),
    (0x2B6F01, 1033, 'Version changed: %s', 'The firmware of a part is another one', 'A firmware update', ''),
    (0x2B6F01, 1031, 'Version geändert: %s', 'Ein Teil hat eine andere Firmware', 'Eine Firmwareaktualisierung', '');

-- Each month brings the events of the devices, so many seconds after each other; a rare event comes only every
-- so many months, with another month for each device.
WITH RECURSIVE
    month(n) AS (VALUES (0) UNION ALL SELECT n + 1 FROM month WHERE n < 23),
    device(number, class, name) AS (VALUES
        (1, 'temperature', 'Ambient'), (2, 'temperature', 'CPU1'), (3, 'temperature', 'CPU2'),
        (4, 'temperature', 'MEM A'), (5, 'temperature', 'PSU2 Inlet'), (6, 'voltage', 'BATT 3.0V'),
        (7, 'voltage', 'MAIN 12V'), (8, 'fan', 'FAN1 SYS'), (9, 'fan', 'FAN2 SYS'), (10, 'fan', 'FAN3 SYS'),
        (11, 'fan', 'FAN4 SYS'), (12, 'fan', 'FAN PSU2'), (13, 'housing', 'Housing Open'),
        (14, 'processor', 'CPU1'), (15, 'processor', 'CPU2'), (16, 'supply', 'PSU1'), (17, 'supply', 'PSU2'),
        (18, 'supply', 'PSU4'), (19, 'memory', 'DIMM-1A'), (20, 'memory', 'DIMM-2C'), (21, 'drive', 'HDD3'),
        (22, 'system', 'Server'), (23, 'watchdog', 'OS Watchdog'), (24, 'firmware', 'BMC'), (25, 'firmware', 'BIOS')),
    event(class, ErrorCode, delay, every) AS (VALUES
        ('temperature', 0x010107, 0, 2), ('temperature', 0x010109, 660, 12), ('temperature', 0x018107, 2700, 2),
        ('voltage', 0x020102, 0, 8), ('voltage', 0x028102, 95, 8), ('fan', 0x040102, 0, 4), ('fan', 0x048102, 40, 4),
        ('housing', 0x056F00, 0, 3), ('housing', 0x05EF00, 5400, 3), ('processor', 0x076F00, 0, 24),
        ('supply', 0x086F01, 0, 12), ('supply', 0x086F00, 86400, 12), ('supply', 0x086F03, 180000, 6),
        ('supply', 0x088F03, 183600, 6), ('memory', 0x0C6F00, 0, 2), ('memory', 0x0C6F01, 7200, 12),
        ('drive', 0x0D6F01, 0, 12), ('system', 0x226F05, 0, 1), ('system', 0x1D6F00, 240, 1),
        ('watchdog', 0x236F01, 0, 6), ('firmware', 0x2B6F01, 600, 6))
INSERT INTO sel (TimeStamp, ErrorCode, Device)
    SELECT 1704067200 + n * 2629746 + number * 99991 + delay AS time, ErrorCode, name
    FROM month, device JOIN event USING (class)
    WHERE (n + number) % every = 0
    ORDER BY time;

-- What isn't well now, and has no end yet.
INSERT INTO sel (TimeStamp, ErrorCode, Device) VALUES
    (1767068052, 0x086F02, 'PSU2'),
    (1767068115, 0x040100, 'FAN PSU2'),
    (1767173406, 0x216F00, 'Fibre Channel 1-2');

-- What users do has the language that they work in.
WITH RECURSIVE
    month(n) AS (VALUES (0) UNION ALL SELECT n + 1 FROM month WHERE n < 23),
    note(delay, every, Flags, ErrorCode, AlertGroup, LanguageCode, Message) AS (VALUES
        (3600, 1, 0x00, 0x2010, 20, 1033, 'User admin logged in from 192.0.2.7'),
        (4200, 3, 0x00, 0x2021, 21, 1033, 'Configuration changed by admin'),
        (90000, 6, 0x00, 0x2030, 22, 0, 'Firmware update started'),
        (90900, 6, 0x00, 0x2031, 22, 0, 'Firmware update finished; the service processor restarts'),
        (500000, 4, 0x10, 0x2011, 20, 1031, 'Anmeldung von operator abgelehnt'),
        (700000, 12, 0x20, 0x2040, 23, 1033, 'Time server 192.0.2.123 does not answer'))
INSERT INTO iel (TimeStamp, Flags, ErrorCode, AlertGroup, LanguageCode, Message)
    SELECT 1704067200 + n * 2629746 + delay AS time, Flags, ErrorCode, AlertGroup, LanguageCode, Message
    FROM month, note
    WHERE n % every = 0
    ORDER BY time;
