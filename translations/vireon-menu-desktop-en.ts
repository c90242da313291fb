<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>MainWindow</name>
    <message>
        <source>The main view cannot be loaded. Please install Vireon again.</source>
        <translation>The main view cannot be loaded. Please install Vireon again.</translation>
    </message>
    <message>
        <source>&amp;Exit</source>
        <translation>&amp;Exit</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>&amp;Hide</translation>
    </message>
    <message>
        <source>File</source>
        <translation>File</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Open</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Exit</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Loading...</source>
        <translation>Loading...</translation>
    </message>
    <message>
        <source>Manual Calibration</source>
        <translation>Manual Calibration</translation>
    </message>
    <message>
        <source>Touch Calibration</source>
        <translation>Touch Calibration</translation>
    </message>
    <message>
        <source>Auto Calibration</source>
        <translation>Auto Calibration</translation>
    </message>
</context>
<context>
    <name>status</name>
    <message>
        <source>Starting up...</source>
        <translation>Starting up...</translation>
    </message>
    <message>
        <source>Last action failed please try again.</source>
        <translation>Last action failed please try again.</translation>
    </message>
    <message>
        <source>Not connected to %1.&lt;br&gt;Please connect the USB cable.</source>
        <translation>Not connected to %1.&lt;br&gt;Please connect the USB cable.</translation>
    </message>
    <message>
        <source>Light disturbance detected.</source>
        <translation>Light disturbance detected.</translation>
    </message>
    <message>
        <source>Calibration aborted.</source>
        <translation>Calibration aborted.</translation>
    </message>
    <message>
        <source>Calibration failed, please try again.</source>
        <translation>Calibration failed, please try again.</translation>
    </message>
    <message>
        <source>Started, %1 not calibrated.</source>
        <translation>Started, %1 not calibrated.</translation>
    </message>
    <message>
        <source>A problem occured, please restart %1.</source>
        <translation>A problem occured, please restart %1.</translation>
    </message>
    <message>
        <source>Started and ready</source>
        <translation>Started and ready</translation>
    </message>
    <message>
        <source>A problem occured, please wait...</source>
        <translation>A problem occured, please wait...</translation>
    </message>
    <message>
        <source>%1 not connected! &lt;br&gt;Please connect the USB cable and check the box&lt;br&gt; to enable the setting for Remote Pen</source>
        <translation>%1 not connected! &lt;br&gt;Please connect the USB cable and check the box&lt;br&gt; to enable the setting for Remote Pen</translation>
    </message>
</context>
</TS>
