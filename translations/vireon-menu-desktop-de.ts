<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AdvicePopUp</name>
    <message>
        <source>Auto calibration depends on the type of your screen and ambient lighting conditions. If you do not see accurate performance post auto calibration, perform a manual calibration again which is robust for all scenarios.</source>
        <translation>Die automatische Kalibrierung hängt von der Art Ihrer Projektionsfläche und vom Umgebungslicht ab. Wenn danach die Genauigkeit nicht ausreicht, führen Sie bitte eine manuelle Kalibrierung durch: Sie ist unter allen Bedingungen zuverlässig.</translation>
    </message>
    <message>
        <source>Auto Calibration</source>
        <translation>Automatische Kalibrierung</translation>
    </message>
</context>
<context>
    <name>AspectRatioWarningView</name>
    <message>
        <source>This Screen is not set to a widescreen (16:9) resolution.&lt;br&gt;&lt;br&gt;                   If the touch accuracy is not satisfactory, &lt;b&gt;choose one of the following options or ignore:&lt;/b&gt;</source>
        <translation>Dieser Bildschirm ist nicht auf eine Breitbildauflösung (16:9) eingestellt.&lt;br&gt;&lt;br&gt;                   Wenn die Touch-Genauigkeit nicht ausreicht, &lt;b&gt;wählen Sie eine der folgenden Möglichkeiten oder ignorieren Sie den Hinweis:&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorieren</translation>
    </message>
    <message>
        <source>Correct Offset</source>
        <translation>Versatz korrigieren</translation>
    </message>
    <message>
        <source>Change graphics settings</source>
        <translation>Grafikeinstellungen ändern</translation>
    </message>
    <message>
        <source>Apply one of the following changes to achieve better touch accuracy:</source>
        <translation>Eine der folgenden Änderungen verbessert die Touch-Genauigkeit:</translation>
    </message>
    <message>
        <source>Change your graphics scaling to &quot;Scale Fullscreen&quot; or &quot;Maintain Display Scaling&quot;                      inside the Graphics Control Panel of you graphics card.</source>
        <translation>Stellen Sie die Skalierung in der Systemsteuerung Ihrer Grafikkarte auf „Vollbild skalieren“ oder „Anzeigeskalierung beibehalten“.</translation>
    </message>
    <message>
        <source>Set a 16:9 resolution such as 1360x768, 1600x900 or 1920x1080.</source>
        <translation>Stellen Sie eine 16:9-Auflösung ein, zum Beispiel 1360x768, 1600x900 oder 1920x1080.</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Close this dialog</source>
        <translation>Dialog schließen</translation>
    </message>
    <message>
        <source>Aspect Ratio</source>
        <translation>Seitenverhältnis</translation>
    </message>
</context>
<context>
    <name>DataDirectoryCheck</name>
    <message>
        <source>Vireon needs the directory &quot;%1&quot;, which does not exist. Create it and start Vireon again.</source>
        <translation>Vireon braucht den Ordner „%1“, den es nicht gibt. Legen Sie ihn an und starten Sie Vireon neu.</translation>
    </message>
    <message>
        <source>Vireon cannot write into the directory &quot;%1&quot;. Change its owner or its permissions and start Vireon again.</source>
        <translation>Vireon kann nicht in den Ordner „%1“ schreiben. Ändern Sie seinen Besitzer oder seine Zugriffsrechte und starten Sie Vireon neu.</translation>
    </message>
</context>
<context>
    <name>FirmwarePrompt</name>
    <message>
        <source>Camera unit firmware is old version. Please click &apos;File&apos; in the task bar to update it.</source>
        <translation>Die Firmware der Kameraeinheit ist veraltet. Bitte klicken Sie in der Menüleiste auf „Datei“, um sie zu aktualisieren.</translation>
    </message>
    <message>
        <source>A new firmware (Ver. %1) is available (you have Ver. %2).&lt;br&gt;&lt;br&gt;It supports to store the calibration data onto %3. If you want to update it, If you want to update it, please prepare the Windows computer and see the Firmware Update Manual in the website link below.&lt;br&gt;&lt;br&gt;Manual: </source>
        <translation>Eine neue Firmware (Ver. %1) ist verfügbar (Sie haben Ver. %2).&lt;br&gt;&lt;br&gt;Mit ihr lassen sich die Kalibrierungsdaten auf %3 speichern. Wenn Sie sie aktualisieren möchten, halten Sie bitte einen Windows-Computer bereit und lesen Sie die Anleitung zur Firmware-Aktualisierung unter dem folgenden Link.&lt;br&gt;&lt;br&gt;Anleitung: </translation>
    </message>
    <message>
        <source>Download here.</source>
        <translation>Hier herunterladen.</translation>
    </message>
    <message>
        <source>A new firmware (Ver. %1) is available (you have Ver. %2).&lt;br&gt;&lt;br&gt;It supports to store the calibration data onto %3. If you want to update it, please see the Firmware Update Manual in the website link below and click &apos;Start&apos; button below. This will open the firmware updater. Select the file &apos;firmware.iic&apos; from your installation folder.&lt;br&gt;&lt;br&gt;&lt;br&gt;&lt;br&gt;Manual: &lt;a href=&apos;%4&apos;&gt;Download here.&lt;/a&gt;</source>
        <translation>Eine neue Firmware (Ver. %1) ist verfügbar (Sie haben Ver. %2).&lt;br&gt;&lt;br&gt;Mit ihr lassen sich die Kalibrierungsdaten auf %3 speichern. Wenn Sie sie aktualisieren möchten, lesen Sie bitte die Anleitung zur Firmware-Aktualisierung unter dem folgenden Link und klicken Sie unten auf „Start“. Damit öffnet sich das Aktualisierungsprogramm. Wählen Sie die Datei „firmware.iic“ aus Ihrem Installationsordner.&lt;br&gt;&lt;br&gt;&lt;br&gt;&lt;br&gt;Anleitung: &lt;a href=&apos;%4&apos;&gt;Hier herunterladen.&lt;/a&gt;</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>Firmware aktualisieren</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>FreqWarning</name>
    <message>
        <source>Slow writing
speed at 30Hz</source>
        <translation>Langsames Schreiben
bei 30 Hz</translation>
    </message>
    <message>
        <source>Fast writing
speed at 60Hz</source>
        <translation>Schnelles Schreiben
bei 60 Hz</translation>
    </message>
    <message>
        <source>To get real-time writing experience, please make
sure that your external display is running
at 60Hz refresh rate or more.</source>
        <translation>Damit Sie ohne Verzögerung schreiben können, stellen
Sie bitte sicher, dass Ihr externer Bildschirm mit einer
Bildwiederholfrequenz von mindestens 60 Hz läuft.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Refresh Rate</source>
        <translation>Bildwiederholfrequenz</translation>
    </message>
</context>
<context>
    <name>InputSelection</name>
    <message>
        <source>Select Input</source>
        <translation>Eingabe wählen</translation>
    </message>
    <message>
        <source>Finger</source>
        <translation>Finger</translation>
    </message>
    <message>
        <source>Stylus</source>
        <translation>Stift</translation>
    </message>
</context>
<context>
    <name>LogView</name>
    <message>
        <source>Not found</source>
        <translation>Nicht gefunden</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>Gespeichert als %1</translation>
    </message>
    <message>
        <source>Cannot be saved</source>
        <translation>Kann nicht gespeichert werden</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>The main view cannot be loaded. Please install Vireon again.</source>
        <translation>Die Hauptansicht kann nicht geladen werden. Bitte installieren Sie Vireon neu.</translation>
    </message>
    <message>
        <source>&amp;Exit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>&amp;Ausblenden</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>&amp;Reload Ccf</source>
        <translation>CCF &amp;neu laden</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>Firmware aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Reset</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>&amp;Single Input</source>
        <translation>&amp;Einzeleingabe</translation>
    </message>
    <message>
        <source>&amp;Multi Input</source>
        <translation>&amp;Mehrfacheingabe</translation>
    </message>
    <message>
        <source>Troubleshoot</source>
        <translation>Problembehebung</translation>
    </message>
    <message>
        <source>Video Tutorial</source>
        <translation>Video-Anleitung</translation>
    </message>
    <message>
        <source>Get Help</source>
        <translation>Hilfe anfordern</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>Kalibrierung</translation>
    </message>
    <message>
        <source>Input</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Running in background, you can open and quit the window from the </source>
        <translation>Läuft im Hintergrund. Sie öffnen und beenden es über das </translation>
    </message>
    <message>
        <source>icon-tray.</source>
        <translation>Symbol in der Taskleiste.</translation>
    </message>
    <message>
        <source>Running in background. Start Vireon again to open the window.</source>
        <translation>Läuft im Hintergrund. Starten Sie Vireon erneut, um das Fenster zu öffnen.</translation>
    </message>
    <message>
        <source>Vireon not calibrated. Please Calibrate!</source>
        <translation>Vireon ist nicht kalibriert. Bitte kalibrieren!</translation>
    </message>
    <message>
        <source>Calibration is paused! Mouse/Touch will not work</source>
        <translation>Die Kalibrierung ist angehalten! Maus und Touch funktionieren nicht</translation>
    </message>
    <message>
        <source>Calibration resumed</source>
        <translation>Kalibrierung fortgesetzt</translation>
    </message>
    <message>
        <source>Single Input(Mouse) mode is active</source>
        <translation>Einzeleingabe (Maus) ist aktiv</translation>
    </message>
    <message>
        <source>Multi Input (Touch) mode is active</source>
        <translation>Mehrfacheingabe (Touch) ist aktiv</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Beenden</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
</context>
<context>
    <name>SelectionView</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Autostart</source>
        <translation>Autostart</translation>
    </message>
    <message>
        <source>Optimize USB bandwidth</source>
        <translation>USB-Bandbreite optimieren</translation>
    </message>
    <message>
        <source>Keeps a processor awake so that no picture of the sensor is lost. Uses more power.</source>
        <translation>Hält einen Prozessor wach, damit kein Bild des Sensors verloren geht. Verbraucht mehr Strom.</translation>
    </message>
    <message>
        <source>Sensor Viewer</source>
        <translation>Sensoransicht</translation>
    </message>
    <message>
        <source>Correct Offset</source>
        <translation>Versatz korrigieren</translation>
    </message>
</context>
<context>
    <name>UpdaterWatch</name>
    <message>
        <source>Vireon is being updated and quits now.</source>
        <translation>Vireon wird aktualisiert und beendet sich jetzt.</translation>
    </message>
</context>
<context>
    <name>controls</name>
    <message>
        <source>Not available now.</source>
        <translation>Zurzeit nicht verfügbar.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Loading...</source>
        <translation>Wird geladen...</translation>
    </message>
    <message>
        <source>Manual Calibration</source>
        <translation>Manuelle Kalibrierung</translation>
    </message>
    <message>
        <source>Touch Calibration</source>
        <translation>Touch-Kalibrierung</translation>
    </message>
    <message>
        <source>Auto Calibration</source>
        <translation>Automatische Kalibrierung</translation>
    </message>
    <message>
        <source>&lt;b&gt;&lt;font color=&quot;white&quot; family= &quot;Poppins&quot;&gt;Don&apos;t show this message again.&lt;/font&gt;&lt;/b&gt;</source>
        <translation>&lt;b&gt;&lt;font color=&quot;white&quot; family= &quot;Poppins&quot;&gt;Diese Meldung nicht mehr anzeigen.&lt;/font&gt;&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>    Continue    </source>
        <translation>    Fortfahren    </translation>
    </message>
    <message>
        <source>Finger</source>
        <translation>Finger</translation>
    </message>
    <message>
        <source>Stylus</source>
        <translation>Stift</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>status</name>
    <message>
        <source>Starting up...</source>
        <translation>Wird gestartet...</translation>
    </message>
    <message>
        <source>Last action failed please try again.</source>
        <translation>Letzte Aktion fehlgeschlagen, bitte erneut versuchen.</translation>
    </message>
    <message>
        <source>Not connected to %1.&lt;br&gt;Please connect the USB cable.</source>
        <translation>Nicht mit %1 verbunden.&lt;br&gt;Bitte schließen Sie das USB-Kabel an.</translation>
    </message>
    <message>
        <source>Light disturbance detected.</source>
        <translation>Störendes Licht erkannt.</translation>
    </message>
    <message>
        <source>Calibration aborted.</source>
        <translation>Kalibrierung abgebrochen.</translation>
    </message>
    <message>
        <source>Calibration failed, please try again.</source>
        <translation>Kalibrierung fehlgeschlagen, bitte erneut versuchen.</translation>
    </message>
    <message>
        <source>Started, %1 not calibrated.</source>
        <translation>Gestartet, %1 ist nicht kalibriert.</translation>
    </message>
    <message>
        <source>A problem occured, please restart %1.</source>
        <translation>Ein Problem ist aufgetreten, bitte starten Sie %1 neu.</translation>
    </message>
    <message>
        <source>Started and ready</source>
        <translation>Gestartet und bereit</translation>
    </message>
    <message>
        <source>A problem occured, please wait...</source>
        <translation>Ein Problem ist aufgetreten, bitte warten...</translation>
    </message>
    <message>
        <source>%1 not connected! &lt;br&gt;Please connect the USB cable and check the box&lt;br&gt; to enable the setting for Remote Pen</source>
        <translation>%1 ist nicht verbunden! &lt;br&gt;Bitte schließen Sie das USB-Kabel an und aktivieren Sie&lt;br&gt; die Einstellung für den Remote Pen</translation>
    </message>
</context>
<context>
    <name>vireonctl</name>
    <message>
        <source>Vireon is not running.</source>
        <translation>Vireon läuft nicht.</translation>
    </message>
    <message>
        <source>Vireon is running for another user.</source>
        <translation>Vireon läuft für einen anderen Benutzer.</translation>
    </message>
    <message>
        <source>log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>versions of program, Qt and system</source>
        <translation>Versionen von Programm, Qt und System</translation>
    </message>
    <message>
        <source>desktop, window manager, screens and their rates</source>
        <translation>Desktop, Fensterverwaltung, Bildschirme und ihre Frequenzen</translation>
    </message>
    <message>
        <source>settings of the program</source>
        <translation>Einstellungen des Programms</translation>
    </message>
    <message>
        <source>what is switched on</source>
        <translation>was eingeschaltet ist</translation>
    </message>
    <message>
        <source>settings of the user</source>
        <translation>Einstellungen des Benutzers</translation>
    </message>
    <message>
        <source>state, and its last changes</source>
        <translation>Zustand und seine letzten Wechsel</translation>
    </message>
    <message>
        <source>names of the files in the data directory</source>
        <translation>Namen der Dateien im Datenverzeichnis</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 Bytes</translation>
    </message>
    <message>
        <source>not there</source>
        <translation>nicht da</translation>
    </message>
    <message>
        <source>The report holds:</source>
        <translation>Der Bericht enthält:</translation>
    </message>
</context>
</TS>
