-- The delivered database of version 0.1.0: schema and contents. The program itself creates no table.
-- Yes/no fields hold 1 or 0. The lists of the interface page hold the lists' own texts.

pragma application_id = 1263293007;  -- "KLVO"
pragma user_version = 1;

create table "Makro" (
  "typ" text,            -- 'Makro', 'MatrixTab', 'ATTab', 'Grafik' or 'Symbol'
  "lfdnr" integer,
  "Bezeichnung" text,
  "ausgang" text,
  "eingang" text,
  "nr_im_display" integer,
  "wert" text            -- wire text, byte b as code point b
);

create table "DOVU" (
  "Adresse" integer,
  "Bezeichnung" text,
  "Checksum" integer,    -- yes/no: the Terminal can compute a checksum
  "aktiv" integer        -- yes/no
);

create table "Optionen" (
  "FensterMitZoomen" integer,
  "sofortsenden" integer,
  "rs485wait" integer,              -- milliseconds
  "BMPSchwarzschwelle" integer,     -- colour value
  "FirstRun" integer,
  "EEPromelegantlöschenabVer" real,
  "ChecksumabVer" real,
  "BMPinPixelabVer" real
);

create table "Default" (
  "displayx" integer,     -- pixels
  "displayy" integer,     -- pixels
  "schnittstelle" integer -- satznr
);

create table "Schnittstelle" (
  "satznr" integer,
  "ComNr" text,
  "Baud1" text, "Bits1" text, "StopBit1" text, "Parity1" text, "Shake1" text, "Puffer1" text,
  "RecCom2" text,
  "Baud2" text, "Bits2" text, "Stopbit2" text, "Shake2" text, "Parity2" text, "Puffer2" text
);

-- The device behind each port name: a path, a Windows name, or a path relative to the folder
-- that the database lies in.
create table "Anschluss" (
  "ComNr" integer,  -- 1..6
  "Geraet" text
);

-- What makes work pleasant: the windows' places, and the drawings used last, the newest first.
create table "Fenster" (
  "Name" text,
  "Lage" text       -- the toolkit's own description, base64
);

create table "Zuletzt" (
  "Datei" text      -- a path; the records behind those in use are empty
);

insert into "Zuletzt" values (''), (''), (''), (''), (''), (''), (''), ('');

insert into "Optionen" values (0, 0, 20, 8388608, 1, 2.0, 2.0, 2.0);
insert into "Default" values (240, 128, 1);

-- The first record reaches the simulated Terminal, so that a first start needs no hardware.
insert into "Schnittstelle" values
  (1, 'Com 6', '19200', '8', '1', 'None', 'XOn / XOff', '16 k', 'aus',
   '9600', '8', '1', 'XOn / XOff', 'None', '16 k'),
  (2, 'Com 1', '19200', '8', '1', 'None', 'XOn / XOff', '16 k', 'aus',
   '9600', '8', '1', 'XOn / XOff', 'None', '16 k'),
  (3, 'Com 2', '9600', '8', '1', 'None', 'XOn / XOff', '16 k', 'aus',
   '9600', '8', '1', 'XOn / XOff', 'None', '16 k'),
  (4, 'Com 3', '19200', '8', '1', 'None', 'RTS / CTS', '16 k', 'aus',
   '9600', '8', '1', 'XOn / XOff', 'None', '16 k');

insert into "Anschluss" values
  (1, '/dev/ttyUSB0'), (2, '/dev/ttyUSB1'), (3, '/dev/ttyS0'), (4, '/dev/ttyS1'),
  (5, '/dev/ttyACM0'), (6, 'simulator.tty');

insert into "Makro" ("typ", "lfdnr", "Bezeichnung", "nr_im_display", "wert") values
  ('Makro', 0, 'Begrüßung', 1,
   char(27) || 'GC' || char(27) || 'GP8,40;' || char(27) || 'GF3;' || char(27) || 'GZ2,2;' ||
   char(27) || 'GA0;' || char(27) || 'GTHallo Terminal' || char(4)),
  ('Makro', 1, 'Rahmen', 2,
   char(27) || 'GP0,0;' || char(27) || 'GR239,127;'),
  ('Makro', 2, 'Display löschen', 3, char(27) || 'GC');
