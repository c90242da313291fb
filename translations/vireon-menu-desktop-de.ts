<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
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
</context>
<context>
    <name>status</name>
    <message>
        <source>Starting up...</source>
        <translation>Wird gestartet...</translation>
    </message>
    <message>
        <source>Last action failed please try again.</source>
        <translation>Die letzte Aktion ist fehlgeschlagen, bitte versuchen Sie es erneut.</translation>
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
        <translation>Kalibrierung fehlgeschlagen, bitte versuchen Sie es erneut.</translation>
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
</TS>
