<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>MainWindow</name>
    <message>
        <source>The main view cannot be loaded. Please install Vireon again.</source>
        <translation>メイン画面を読み込めません。Vireonを再インストールしてください。</translation>
    </message>
    <message>
        <source>&amp;Exit</source>
        <translation>終了(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>隠す(&amp;H)</translation>
    </message>
    <message>
        <source>File</source>
        <translation>ファイル</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Open</source>
        <translation>開く</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>終了</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Loading...</source>
        <translation>読み込み中...</translation>
    </message>
    <message>
        <source>Manual Calibration</source>
        <translation>手動調整</translation>
    </message>
    <message>
        <source>Touch Calibration</source>
        <translation>タッチ調整</translation>
    </message>
    <message>
        <source>Auto Calibration</source>
        <translation>自動調整</translation>
    </message>
</context>
<context>
    <name>status</name>
    <message>
        <source>Starting up...</source>
        <translation>起動しています...</translation>
    </message>
    <message>
        <source>Last action failed please try again.</source>
        <translation>操作に失敗しました。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Not connected to %1.&lt;br&gt;Please connect the USB cable.</source>
        <translation>%1に接続されていません。&lt;br&gt;USBケーブルを接続してください。</translation>
    </message>
    <message>
        <source>Light disturbance detected.</source>
        <translation>光の干渉を検出しました。</translation>
    </message>
    <message>
        <source>Calibration aborted.</source>
        <translation>調整が中止されました。</translation>
    </message>
    <message>
        <source>Calibration failed, please try again.</source>
        <translation>調整に失敗しました。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Started, %1 not calibrated.</source>
        <translation>起動しました。%1は調整されていません。</translation>
    </message>
    <message>
        <source>A problem occured, please restart %1.</source>
        <translation>問題が発生しました。%1を再起動してください。</translation>
    </message>
    <message>
        <source>Started and ready</source>
        <translation>起動完了、使用できます</translation>
    </message>
    <message>
        <source>A problem occured, please wait...</source>
        <translation>問題が発生しました。お待ちください...</translation>
    </message>
    <message>
        <source>%1 not connected! &lt;br&gt;Please connect the USB cable and check the box&lt;br&gt; to enable the setting for Remote Pen</source>
        <translation>%1が接続されていません！ &lt;br&gt;USBケーブルを接続し、&lt;br&gt;リモートペンの設定を有効にしてください</translation>
    </message>
</context>
</TS>
