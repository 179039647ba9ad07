<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ABooleanItemDelegate</name>
    <message>
        <source>True</source>
        <translation>Wahr</translation>
    </message>
    <message>
        <source>False</source>
        <translation>Falsch</translation>
    </message>
</context>
<context>
    <name>ACalibrationObjectModel</name>
    <message>
        <source>Preamplifier</source>
        <translation>Vorverstärker</translation>
    </message>
    <message>
        <source>Antenna</source>
        <translation>Antenne</translation>
    </message>
    <message>
        <source>Cable</source>
        <translation>Kabel</translation>
    </message>
    <message>
        <source>Attenuator</source>
        <translation>Dämpfungsglied</translation>
    </message>
    <message>
        <source>Frequency</source>
        <translation>Frequenz</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>Verstärkung</translation>
    </message>
</context>
<context>
    <name>AChannelInfoModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Qualified name</source>
        <translation>Vollständiger Name</translation>
    </message>
    <message>
        <source>Start Freq</source>
        <translation>Startfrequenz</translation>
    </message>
    <message>
        <source>Stop Freq</source>
        <translation>Stoppfrequenz</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Selectable</source>
        <translation>Auswählbar</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Profile ID</source>
        <translation>Profil-ID</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Auto Channel Definition</source>
        <translation>Automatische Kanaldefinition</translation>
    </message>
    <message>
        <source>Mirror Entry Freq</source>
        <translation>Anfangsfrequenz der Spiegelung</translation>
    </message>
</context>
<context>
    <name>ACheckBoxItemDelegate</name>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
</context>
<context>
    <name>ADataManager</name>
    <message>
        <source>Could not read calibration data from file &apos;%1&apos;</source>
        <translation>Kalibrierdaten konnten nicht aus der Datei &apos;%1&apos; gelesen werden</translation>
    </message>
    <message>
        <source>Could not create profile from file &apos;%1&apos;</source>
        <translation>Aus der Datei &apos;%1&apos; konnte kein Profil erzeugt werden</translation>
    </message>
</context>
<context>
    <name>ADeviceListModel</name>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>VendorID</source>
        <translation>Hersteller-ID</translation>
    </message>
    <message>
        <source>ProductID</source>
        <translation>Produkt-ID</translation>
    </message>
</context>
<context>
    <name>ALimit</name>
    <message>
        <source>File &apos;%1&apos; does not exist</source>
        <translation>Die Datei &apos;%1&apos; existiert nicht</translation>
    </message>
    <message>
        <source>Could not read file &apos;%1&apos;: %2</source>
        <translation>Die Datei &apos;%1&apos; konnte nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>Could not parse file &apos;%1&apos;: %2 (line %3, col %4)</source>
        <translation>Die Datei &apos;%1&apos; ist fehlerhaft: %2 (Zeile %3, Spalte %4)</translation>
    </message>
    <message>
        <source>File &apos;%1&apos; holds no limits</source>
        <translation>Die Datei &apos;%1&apos; enthält keine Grenzwerte</translation>
    </message>
</context>
<context>
    <name>ALimitModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Begin</source>
        <translation>Anfang</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Begin Frequency</source>
        <translation>Anfangsfrequenz</translation>
    </message>
    <message>
        <source>End Frequency</source>
        <translation>Endfrequenz</translation>
    </message>
    <message>
        <source>Begin Value</source>
        <translation>Anfangswert</translation>
    </message>
    <message>
        <source>End Value</source>
        <translation>Endwert</translation>
    </message>
    <message>
        <source>Interpolation</source>
        <translation>Interpolation</translation>
    </message>
    <message>
        <source>File &apos;%1&apos; does not exist</source>
        <translation>Die Datei &apos;%1&apos; existiert nicht</translation>
    </message>
    <message>
        <source>Could not read file &apos;%1&apos;: %2</source>
        <translation>Die Datei &apos;%1&apos; konnte nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>Could not parse file &apos;%1&apos;: %2 (line %3, col %4)</source>
        <translation>Die Datei &apos;%1&apos; ist fehlerhaft: %2 (Zeile %3, Spalte %4)</translation>
    </message>
    <message>
        <source>Could not open file &apos;%1&apos;: %2</source>
        <translation>Die Datei &apos;%1&apos; konnte nicht geöffnet werden: %2</translation>
    </message>
</context>
<context>
    <name>AMdrDocument</name>
    <message>
        <source>Not a recording</source>
        <translation>Keine Aufzeichnung</translation>
    </message>
    <message>
        <source>A recording of the unknown version %1</source>
        <translation>Eine Aufzeichnung der unbekannten Version %1</translation>
    </message>
    <message>
        <source>The recording breaks off or is damaged at byte %1</source>
        <translation>Die Aufzeichnung bricht bei Byte %1 ab oder ist dort beschädigt</translation>
    </message>
    <message>
        <source>The recording is damaged in the part that begins at byte %1</source>
        <translation>Die Aufzeichnung ist in dem Teil beschädigt, der bei Byte %1 beginnt</translation>
    </message>
    <message>
        <source>The recording ends at byte %1, but the file goes on</source>
        <translation>Die Aufzeichnung endet bei Byte %1, die Datei geht aber weiter</translation>
    </message>
    <message>
        <source>The file of the recording was changed</source>
        <translation>Die Datei der Aufzeichnung wurde verändert</translation>
    </message>
    <message>
        <source>The recording has no such sweep</source>
        <translation>Diesen Sweep gibt es in der Aufzeichnung nicht</translation>
    </message>
    <message>
        <source>The recording has no such position record</source>
        <translation>Diesen Positionsdatensatz gibt es in der Aufzeichnung nicht</translation>
    </message>
    <message>
        <source>A record is too large for a recording</source>
        <translation>Ein Datensatz ist zu groß für eine Aufzeichnung</translation>
    </message>
    <message>
        <source>Not a regular file</source>
        <translation>Keine reguläre Datei</translation>
    </message>
    <message>
        <source>The file is being recorded</source>
        <translation>In diese Datei wird gerade aufgezeichnet</translation>
    </message>
    <message>
        <source>Nothing is being recorded</source>
        <translation>Es wird nichts aufgezeichnet</translation>
    </message>
    <message>
        <source>The file of the recording was deleted or replaced</source>
        <translation>Die Datei der Aufzeichnung wurde gelöscht oder ersetzt</translation>
    </message>
</context>
<context>
    <name>AProfile</name>
    <message>
        <source>Line %1, column %2: %3</source>
        <translation>Zeile %1, Spalte %2: %3</translation>
    </message>
    <message>
        <source>The root element is &apos;%1&apos;, expected &apos;profile&apos;</source>
        <translation>Das Wurzelelement ist &apos;%1&apos;, erwartet wird &apos;profile&apos;</translation>
    </message>
    <message>
        <source>The profile has no id</source>
        <translation>Das Profil hat keine ID (id)</translation>
    </message>
    <message>
        <source>The end lies below the begin</source>
        <translation>Das Ende liegt unter dem Anfang</translation>
    </message>
</context>
<context>
    <name>ATriggerAction</name>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Show Message</source>
        <translation>Meldung zeigen</translation>
    </message>
    <message>
        <source>Run Command</source>
        <translation>Befehl ausführen</translation>
    </message>
    <message>
        <source>Play Audio File</source>
        <translation>Audiodatei abspielen</translation>
    </message>
    <message>
        <source>Take Screenshot</source>
        <translation>Bildschirmfoto aufnehmen</translation>
    </message>
</context>
<context>
    <name>ATriggerActionListModel</name>
    <message>
        <source>Action Type</source>
        <translation>Aktionstyp</translation>
    </message>
    <message>
        <source>Message Text, Command Line, Audio File or Screenshot target</source>
        <translation>Meldungstext, Befehlszeile, Audiodatei oder Ziel des Bildschirmfotos</translation>
    </message>
</context>
<context>
    <name>AVeldoranVariableDelegate</name>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
</context>
<context>
    <name>CoreText</name>
    <message>
        <source>Not a regular file</source>
        <translation>Keine reguläre Datei</translation>
    </message>
    <message>
        <source>Elements are nested more than %1 deep</source>
        <translation>Elemente sind mehr als %1-fach geschachtelt</translation>
    </message>
    <message>
        <source>A tag, comment or text is longer than %1 bytes</source>
        <translation>Ein Tag, Kommentar oder Text ist länger als %1 Byte</translation>
    </message>
    <message>
        <source>A tag has more than %1 attributes</source>
        <translation>Ein Tag hat mehr als %1 Attribute</translation>
    </message>
    <message>
        <source>The internal subset of a document type is not read</source>
        <translation>Die interne Teilmenge eines Dokumenttyps wird nicht gelesen</translation>
    </message>
    <message>
        <source>The texts of the file are longer than %1 characters</source>
        <translation>Die Texte der Datei sind länger als %1 Zeichen</translation>
    </message>
    <message>
        <source>The encoding &apos;%1&apos; is not read</source>
        <translation>Die Kodierung &apos;%1&apos; wird nicht gelesen</translation>
    </message>
    <message>
        <source>expected a text file</source>
        <translation>erwartet wird eine Textdatei</translation>
    </message>
    <message>
        <source>expected calibration objects</source>
        <translation>erwartet werden Kalibrierobjekte</translation>
    </message>
    <message>
        <source>Could not read file &apos;%1&apos;: %2</source>
        <translation>Die Datei &apos;%1&apos; konnte nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>Could not read calibration file &apos;%1&apos;: line %2: %3</source>
        <translation>Die Kalibrierdatei &apos;%1&apos; konnte nicht gelesen werden: Zeile %2: %3</translation>
    </message>
    <message>
        <source>Could not read calibration file &apos;%1&apos;: %2</source>
        <translation>Die Kalibrierdatei &apos;%1&apos; konnte nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>expected a known type in brackets and a label</source>
        <translation>erwartet werden ein bekannter Typ in Klammern und eine Bezeichnung (label)</translation>
    </message>
    <message>
        <source>expected &apos;[type] label&apos; before the first entry</source>
        <translation>vor dem ersten Eintrag wird &apos;[Typ] Bezeichnung&apos; erwartet</translation>
    </message>
    <message>
        <source>expected a frequency and a gain</source>
        <translation>erwartet werden eine Frequenz und eine Verstärkung</translation>
    </message>
    <message>
        <source>expected nothing beyond the named columns</source>
        <translation>hinter den benannten Spalten wird nichts erwartet</translation>
    </message>
    <message>
        <source>expected both a frequency and a gain, or none</source>
        <translation>erwartet werden Frequenz und Verstärkung oder keine von beiden</translation>
    </message>
    <message>
        <source>expected a label and a known type, the same in all rows of an object</source>
        <translation>erwartet werden eine Bezeichnung (label) und ein bekannter Typ, in allen Zeilen eines Objekts dieselben</translation>
    </message>
    <message>
        <source>expected &apos;&lt;&apos;, &apos;caldata 1&apos;, &apos;[type] label&apos;, or the names of columns with &apos;frequency&apos; and &apos;gain&apos; among them</source>
        <translation>erwartet wird &apos;&lt;&apos;, &apos;caldata 1&apos;, &apos;[Typ] Bezeichnung&apos; oder die Namen von Spalten, darunter &apos;frequency&apos; und &apos;gain&apos;</translation>
    </message>
    <message>
        <source>expected a row with each quote closed</source>
        <translation>erwartet wird eine Zeile, in der jedes Anführungszeichen geschlossen ist</translation>
    </message>
    <message>
        <source>expected &lt;calibrations&gt; without attributes</source>
        <translation>erwartet wird &lt;calibrations&gt; ohne Attribute</translation>
    </message>
    <message>
        <source>expected &lt;calibration&gt; with a label and a known type</source>
        <translation>erwartet wird &lt;calibration&gt; mit einer Bezeichnung (label) und einem bekannten Typ</translation>
    </message>
    <message>
        <source>expected &lt;level&gt; with a frequency and a gain</source>
        <translation>erwartet wird &lt;level&gt; mit einer Frequenz und einer Verstärkung</translation>
    </message>
    <message>
        <source>expected no element inside &lt;level&gt;</source>
        <translation>in &lt;level&gt; wird kein Element erwartet</translation>
    </message>
    <message>
        <source>expected no text between the elements</source>
        <translation>zwischen den Elementen wird kein Text erwartet</translation>
    </message>
    <message>
        <source>Line %1: expected a begin, an end and decibels, separated by &quot;;&quot;</source>
        <translation>Zeile %1: erwartet werden Anfang, Ende und Dezibel, durch &quot;;&quot; getrennt</translation>
    </message>
    <message>
        <source>Not a text file</source>
        <translation>Keine Textdatei</translation>
    </message>
    <message>
        <source>Two ranges overlap</source>
        <translation>Zwei Bereiche überlappen sich</translation>
    </message>
    <message>
        <source>Invalid name of a processing instruction</source>
        <translation>Ungültiger Name einer Verarbeitungsanweisung</translation>
    </message>
</context>
<context>
    <name>Gallery</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Frequency</source>
        <translation>Frequenz</translation>
    </message>
    <message>
        <source>Width (MHz)</source>
        <translation>Bandbreite (MHz)</translation>
    </message>
    <message>
        <source>Demodulation</source>
        <translation>Demodulation</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>Priority</source>
        <translation>Priorität</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Looking for devices ...</source>
        <translation>Geräte werden gesucht ...</translation>
    </message>
    <message>
        <source>Attached: %1</source>
        <translation>Angeschlossen: %1</translation>
    </message>
    <message>
        <source>Nothing is attached. Plug in an analyser, a generator or a GPS logger, and refresh.</source>
        <translation>Es ist nichts angeschlossen. Stecken Sie einen Analysator, einen Generator oder einen GPS-Logger an und aktualisieren Sie.</translation>
    </message>
    <message>
        <source>step</source>
        <translation>stufenförmig</translation>
    </message>
    <message>
        <source>linear</source>
        <translation>linear</translation>
    </message>
    <message>
        <source>logarithmic</source>
        <translation>logarithmisch</translation>
    </message>
    <message>
        <source>%1 dBm</source>
        <translation>%1 dBm</translation>
    </message>
    <message>
        <source>%1 MHz</source>
        <translation>%1 MHz</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>Kanäle</translation>
    </message>
    <message>
        <source>Limits</source>
        <translation>Grenzwerte</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>Kalibrierung</translation>
    </message>
    <message>
        <source>Markers</source>
        <translation>Marker</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Live</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Bookmarks</source>
        <translation>Lesezeichen</translation>
    </message>
    <message>
        <source>Triggers</source>
        <translation>Trigger</translation>
    </message>
    <message>
        <source>Devices</source>
        <translation>Geräte</translation>
    </message>
    <message>
        <source>Every model and delegate of the library, with live data.</source>
        <translation>Alle Modelle und Delegates der Bibliothek, mit Live-Daten.</translation>
    </message>
    <message>
        <source>The example data.</source>
        <translation>Die Beispieldaten.</translation>
    </message>
    <message>
        <source>Draw all tabs into a picture and end.</source>
        <translation>Zeichnet alle Reiter in ein Bild und endet.</translation>
    </message>
    <message>
        <source>Gallery</source>
        <translation>Galerie</translation>
    </message>
    <message>
        <source>Marker</source>
        <translation>Marker</translation>
    </message>
    <message>
        <source>Carrier on the emergency frequency</source>
        <translation>Träger auf der Notfrequenz</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Tower</source>
        <translation>Tower</translation>
    </message>
    <message>
        <source>Harbour</source>
        <translation>Hafen</translation>
    </message>
    <message>
        <source>Time signal</source>
        <translation>Zeitzeichen</translation>
    </message>
    <message>
        <source>%1: can&apos;t be copied</source>
        <translation>%1: kann nicht kopiert werden</translation>
    </message>
    <message>
        <source>range</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>direction</source>
        <translation>Richtung</translation>
    </message>
    <message>
        <source>provider</source>
        <translation>Betreiber</translation>
    </message>
    <message>
        <source>channel</source>
        <translation>Kanal</translation>
    </message>
    <message>
        <source>generated channel</source>
        <translation>erzeugter Kanal</translation>
    </message>
    <message>
        <source>%1 at %2</source>
        <translation>%1 bei %2</translation>
    </message>
    <message>
        <source>%1: no such argument is expected</source>
        <translation>%1: ein solches Argument wird nicht erwartet</translation>
    </message>
    <message>
        <source>%1: no example data, expected a directory with &quot;profiles&quot;</source>
        <translation>%1: keine Beispieldaten, erwartet wird ein Verzeichnis mit &quot;profiles&quot;</translation>
    </message>
    <message>
        <source>%1: can&apos;t be written</source>
        <translation>%1: kann nicht geschrieben werden</translation>
    </message>
</context>
</TS>
