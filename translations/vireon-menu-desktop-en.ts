<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>AdvicePopUp</name>
    <message>
        <source>Auto calibration depends on the type of your screen and ambient lighting conditions. If you do not see accurate performance post auto calibration, perform a manual calibration again which is robust for all scenarios.</source>
        <translation>Auto calibration depends on the type of your screen and ambient lighting conditions. If you do not see accurate performance post auto calibration, perform a manual calibration again which is robust for all scenarios.</translation>
    </message>
    <message>
        <source>Auto Calibration</source>
        <translation>Auto Calibration</translation>
    </message>
</context>
<context>
    <name>AspectRatioWarningView</name>
    <message>
        <source>This Screen is not set to a widescreen (16:9) resolution.&lt;br&gt;&lt;br&gt;                   If the touch accuracy is not satisfactory, &lt;b&gt;choose one of the following options or ignore:&lt;/b&gt;</source>
        <translation>This Screen is not set to a widescreen (16:9) resolution.&lt;br&gt;&lt;br&gt;                   If the touch accuracy is not satisfactory, &lt;b&gt;choose one of the following options or ignore:&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignore</translation>
    </message>
    <message>
        <source>Correct Offset</source>
        <translation>Correct Offset</translation>
    </message>
    <message>
        <source>Change graphics settings</source>
        <translation>Change graphics settings</translation>
    </message>
    <message>
        <source>Apply one of the following changes to achieve better touch accuracy:</source>
        <translation>Apply one of the following changes to achieve better touch accuracy:</translation>
    </message>
    <message>
        <source>Change your graphics scaling to &quot;Scale Fullscreen&quot; or &quot;Maintain Display Scaling&quot;                      inside the Graphics Control Panel of you graphics card.</source>
        <translation>Change your graphics scaling to &quot;Scale Fullscreen&quot; or &quot;Maintain Display Scaling&quot;                      inside the Graphics Control Panel of you graphics card.</translation>
    </message>
    <message>
        <source>Set a 16:9 resolution such as 1360x768, 1600x900 or 1920x1080.</source>
        <translation>Set a 16:9 resolution such as 1360x768, 1600x900 or 1920x1080.</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Go back</translation>
    </message>
    <message>
        <source>Close this dialog</source>
        <translation>Close this dialog</translation>
    </message>
    <message>
        <source>Aspect Ratio</source>
        <translation>Aspect Ratio</translation>
    </message>
</context>
<context>
    <name>DataDirectoryCheck</name>
    <message>
        <source>Vireon needs the directory &quot;%1&quot;, which does not exist. Create it and start Vireon again.</source>
        <translation>Vireon needs the directory &quot;%1&quot;, which does not exist. Create it and start Vireon again.</translation>
    </message>
    <message>
        <source>Vireon cannot write into the directory &quot;%1&quot;. Change its owner or its permissions and start Vireon again.</source>
        <translation>Vireon cannot write into the directory &quot;%1&quot;. Change its owner or its permissions and start Vireon again.</translation>
    </message>
</context>
<context>
    <name>FirmwarePrompt</name>
    <message>
        <source>Camera unit firmware is old version. Please click &apos;File&apos; in the task bar to update it.</source>
        <translation>Camera unit firmware is old version. Please click &apos;File&apos; in the task bar to update it.</translation>
    </message>
    <message>
        <source>A new firmware (Ver. %1) is available (you have Ver. %2).&lt;br&gt;&lt;br&gt;It supports to store the calibration data onto %3. If you want to update it, If you want to update it, please prepare the Windows computer and see the Firmware Update Manual in the website link below.&lt;br&gt;&lt;br&gt;Manual: </source>
        <translation>A new firmware (Ver. %1) is available (you have Ver. %2).&lt;br&gt;&lt;br&gt;It supports to store the calibration data onto %3. If you want to update it, If you want to update it, please prepare the Windows computer and see the Firmware Update Manual in the website link below.&lt;br&gt;&lt;br&gt;Manual: </translation>
    </message>
    <message>
        <source>Download here.</source>
        <translation>Download here.</translation>
    </message>
    <message>
        <source>A new firmware (Ver. %1) is available (you have Ver. %2).&lt;br&gt;&lt;br&gt;It supports to store the calibration data onto %3. If you want to update it, please see the Firmware Update Manual in the website link below and click &apos;Start&apos; button below. This will open the firmware updater. Select the file &apos;firmware.iic&apos; from your installation folder.&lt;br&gt;&lt;br&gt;&lt;br&gt;&lt;br&gt;Manual: &lt;a href=&apos;%4&apos;&gt;Download here.&lt;/a&gt;</source>
        <translation>A new firmware (Ver. %1) is available (you have Ver. %2).&lt;br&gt;&lt;br&gt;It supports to store the calibration data onto %3. If you want to update it, please see the Firmware Update Manual in the website link below and click &apos;Start&apos; button below. This will open the firmware updater. Select the file &apos;firmware.iic&apos; from your installation folder.&lt;br&gt;&lt;br&gt;&lt;br&gt;&lt;br&gt;Manual: &lt;a href=&apos;%4&apos;&gt;Download here.&lt;/a&gt;</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>Update Firmware</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Exit</translation>
    </message>
</context>
<context>
    <name>FreqWarning</name>
    <message>
        <source>Slow writing
speed at 30Hz</source>
        <translation>Slow writing
speed at 30Hz</translation>
    </message>
    <message>
        <source>Fast writing
speed at 60Hz</source>
        <translation>Fast writing
speed at 60Hz</translation>
    </message>
    <message>
        <source>To get real-time writing experience, please make
sure that your external display is running
at 60Hz refresh rate or more.</source>
        <translation>To get real-time writing experience, please make
sure that your external display is running
at 60Hz refresh rate or more.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Refresh Rate</source>
        <translation>Refresh Rate</translation>
    </message>
</context>
<context>
    <name>InputSelection</name>
    <message>
        <source>Select Input</source>
        <translation>Select Input</translation>
    </message>
    <message>
        <source>Finger</source>
        <translation>Finger</translation>
    </message>
    <message>
        <source>Stylus</source>
        <translation>Stylus</translation>
    </message>
</context>
<context>
    <name>LogView</name>
    <message>
        <source>Not found</source>
        <translation>Not found</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Copied</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>Saved as %1</translation>
    </message>
    <message>
        <source>Cannot be saved</source>
        <translation>Cannot be saved</translation>
    </message>
</context>
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
    <message>
        <source>&amp;Reload Ccf</source>
        <translation>&amp;Reload Ccf</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>Update Firmware</translation>
    </message>
    <message>
        <source>&amp;Reset</source>
        <translation>&amp;Reset</translation>
    </message>
    <message>
        <source>&amp;Single Input</source>
        <translation>&amp;Single Input</translation>
    </message>
    <message>
        <source>&amp;Multi Input</source>
        <translation>&amp;Multi Input</translation>
    </message>
    <message>
        <source>Troubleshoot</source>
        <translation>Troubleshoot</translation>
    </message>
    <message>
        <source>Video Tutorial</source>
        <translation>Video Tutorial</translation>
    </message>
    <message>
        <source>Get Help</source>
        <translation>Get Help</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>Calibration</translation>
    </message>
    <message>
        <source>Input</source>
        <translation>Input</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Running in background, you can open and quit the window from the </source>
        <translation>Running in background, you can open and quit the window from the </translation>
    </message>
    <message>
        <source>icon-tray.</source>
        <translation>icon-tray.</translation>
    </message>
    <message>
        <source>Running in background. Start Vireon again to open the window.</source>
        <translation>Running in background. Start Vireon again to open the window.</translation>
    </message>
    <message>
        <source>Vireon not calibrated. Please Calibrate!</source>
        <translation>Vireon not calibrated. Please Calibrate!</translation>
    </message>
    <message>
        <source>Calibration is paused! Mouse/Touch will not work</source>
        <translation>Calibration is paused! Mouse/Touch will not work</translation>
    </message>
    <message>
        <source>Calibration resumed</source>
        <translation>Calibration resumed</translation>
    </message>
    <message>
        <source>Single Input(Mouse) mode is active</source>
        <translation>Single Input(Mouse) mode is active</translation>
    </message>
    <message>
        <source>Multi Input (Touch) mode is active</source>
        <translation>Multi Input (Touch) mode is active</translation>
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
    <name>QShortcut</name>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
    </message>
</context>
<context>
    <name>SelectionView</name>
    <message>
        <source>Back</source>
        <translation>Back</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>Autostart</source>
        <translation>Autostart</translation>
    </message>
    <message>
        <source>Optimize USB bandwidth</source>
        <translation>Optimize USB bandwidth</translation>
    </message>
    <message>
        <source>Keeps a processor awake so that no picture of the sensor is lost. Uses more power.</source>
        <translation>Keeps a processor awake so that no picture of the sensor is lost. Uses more power.</translation>
    </message>
    <message>
        <source>Sensor Viewer</source>
        <translation>Sensor Viewer</translation>
    </message>
    <message>
        <source>Correct Offset</source>
        <translation>Correct Offset</translation>
    </message>
</context>
<context>
    <name>UpdaterWatch</name>
    <message>
        <source>Vireon is being updated and quits now.</source>
        <translation>Vireon is being updated and quits now.</translation>
    </message>
</context>
<context>
    <name>controls</name>
    <message>
        <source>Not available now.</source>
        <translation>Not available now.</translation>
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
    <message>
        <source>&lt;b&gt;&lt;font color=&quot;white&quot; family= &quot;Poppins&quot;&gt;Don&apos;t show this message again.&lt;/font&gt;&lt;/b&gt;</source>
        <translation>&lt;b&gt;&lt;font color=&quot;white&quot; family= &quot;Poppins&quot;&gt;Don&apos;t show this message again.&lt;/font&gt;&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>    Continue    </source>
        <translation>    Continue    </translation>
    </message>
    <message>
        <source>Finger</source>
        <translation>Finger</translation>
    </message>
    <message>
        <source>Stylus</source>
        <translation>Stylus</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
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
<context>
    <name>vireonctl</name>
    <message>
        <source>Vireon is not running.</source>
        <translation>Vireon is not running.</translation>
    </message>
    <message>
        <source>Vireon is running for another user.</source>
        <translation>Vireon is running for another user.</translation>
    </message>
    <message>
        <source>log</source>
        <translation>log</translation>
    </message>
    <message>
        <source>versions of program, Qt and system</source>
        <translation>versions of program, Qt and system</translation>
    </message>
    <message>
        <source>desktop, window manager, screens and their rates</source>
        <translation>desktop, window manager, screens and their rates</translation>
    </message>
    <message>
        <source>settings of the program</source>
        <translation>settings of the program</translation>
    </message>
    <message>
        <source>what is switched on</source>
        <translation>what is switched on</translation>
    </message>
    <message>
        <source>settings of the user</source>
        <translation>settings of the user</translation>
    </message>
    <message>
        <source>state, and its last changes</source>
        <translation>state, and its last changes</translation>
    </message>
    <message>
        <source>names of the files in the data directory</source>
        <translation>names of the files in the data directory</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 bytes</translation>
    </message>
    <message>
        <source>not there</source>
        <translation>not there</translation>
    </message>
    <message>
        <source>The report holds:</source>
        <translation>The report holds:</translation>
    </message>
</context>
</TS>
