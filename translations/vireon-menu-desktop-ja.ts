<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>AdvicePopUp</name>
    <message>
        <source>Auto calibration depends on the type of your screen and ambient lighting conditions. If you do not see accurate performance post auto calibration, perform a manual calibration again which is robust for all scenarios.</source>
        <translation>自動キャリブレーションの結果は、スクリーンの種類や周囲の明るさに左右されます。実行後の精度が十分でない場合は、どのような環境でも確実な手動キャリブレーションをやり直してください。</translation>
    </message>
    <message>
        <source>Auto Calibration</source>
        <translation>自動キャリブレーション</translation>
    </message>
</context>
<context>
    <name>AspectRatioWarningView</name>
    <message>
        <source>This Screen is not set to a widescreen (16:9) resolution.&lt;br&gt;&lt;br&gt;                   If the touch accuracy is not satisfactory, &lt;b&gt;choose one of the following options or ignore:&lt;/b&gt;</source>
        <translation>この画面はワイド画面（16:9）の解像度に設定されていません。&lt;br&gt;&lt;br&gt;                   タッチの精度が十分でない場合は、&lt;b&gt;次のいずれかを選ぶか、無視してください。&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>無視する</translation>
    </message>
    <message>
        <source>Correct Offset</source>
        <translation>位置ずれを補正</translation>
    </message>
    <message>
        <source>Change graphics settings</source>
        <translation>グラフィックス設定を変更</translation>
    </message>
    <message>
        <source>Apply one of the following changes to achieve better touch accuracy:</source>
        <translation>タッチの精度を上げるには、次のいずれかの変更を行ってください。</translation>
    </message>
    <message>
        <source>Change your graphics scaling to &quot;Scale Fullscreen&quot; or &quot;Maintain Display Scaling&quot;                      inside the Graphics Control Panel of you graphics card.</source>
        <translation>グラフィックスカードのコントロールパネルで、スケーリングを「全画面のスケーリング」か「ディスプレイのスケーリングを維持」に変更する。</translation>
    </message>
    <message>
        <source>Set a 16:9 resolution such as 1360x768, 1600x900 or 1920x1080.</source>
        <translation>1360x768、1600x900、1920x1080などの16:9の解像度に設定する。</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Close this dialog</source>
        <translation>このダイアログを閉じる</translation>
    </message>
    <message>
        <source>Aspect Ratio</source>
        <translation>画面の縦横比</translation>
    </message>
</context>
<context>
    <name>DataDirectoryCheck</name>
    <message>
        <source>Vireon needs the directory &quot;%1&quot;, which does not exist. Create it and start Vireon again.</source>
        <translation>Vireonに必要なフォルダー「%1」がありません。作成してから、Vireonをもう一度起動してください。</translation>
    </message>
    <message>
        <source>Vireon cannot write into the directory &quot;%1&quot;. Change its owner or its permissions and start Vireon again.</source>
        <translation>Vireonはフォルダー「%1」に書き込めません。所有者またはアクセス権を変更してから、Vireonをもう一度起動してください。</translation>
    </message>
</context>
<context>
    <name>FirmwarePrompt</name>
    <message>
        <source>Camera unit firmware is old version. Please click &apos;File&apos; in the task bar to update it.</source>
        <translation>カメラユニットのファームウェアが古いバージョンです。更新するには、メニューバーの「ファイル」をクリックしてください。</translation>
    </message>
    <message>
        <source>A new firmware (Ver. %1) is available (you have Ver. %2).&lt;br&gt;&lt;br&gt;It supports to store the calibration data onto %3. If you want to update it, If you want to update it, please prepare the Windows computer and see the Firmware Update Manual in the website link below.&lt;br&gt;&lt;br&gt;Manual: </source>
        <translation>新しいファームウェア（Ver. %1）が利用できます（現在はVer. %2）。&lt;br&gt;&lt;br&gt;キャリブレーションデータを%3に保存できるようになります。更新する場合は、Windowsコンピューターを用意し、下記のウェブサイトのリンクからファームウェア更新マニュアルをご覧ください。&lt;br&gt;&lt;br&gt;マニュアル: </translation>
    </message>
    <message>
        <source>Download here.</source>
        <translation>こちらからダウンロード</translation>
    </message>
    <message>
        <source>A new firmware (Ver. %1) is available (you have Ver. %2).&lt;br&gt;&lt;br&gt;It supports to store the calibration data onto %3. If you want to update it, please see the Firmware Update Manual in the website link below and click &apos;Start&apos; button below. This will open the firmware updater. Select the file &apos;firmware.iic&apos; from your installation folder.&lt;br&gt;&lt;br&gt;&lt;br&gt;&lt;br&gt;Manual: &lt;a href=&apos;%4&apos;&gt;Download here.&lt;/a&gt;</source>
        <translation>新しいファームウェア（Ver. %1）が利用できます（現在はVer. %2）。&lt;br&gt;&lt;br&gt;キャリブレーションデータを%3に保存できるようになります。更新する場合は、下記のウェブサイトのリンクからファームウェア更新マニュアルをご覧になり、下の「開始」ボタンをクリックしてください。ファームウェア更新ツールが開きます。インストールフォルダーから「firmware.iic」ファイルを選択してください。&lt;br&gt;&lt;br&gt;&lt;br&gt;&lt;br&gt;マニュアル: &lt;a href=&apos;%4&apos;&gt;こちらからダウンロード&lt;/a&gt;</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>ファームウェアの更新</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>開始</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>FreqWarning</name>
    <message>
        <source>Slow writing
speed at 30Hz</source>
        <translation>30Hzでは筆記が
遅れます</translation>
    </message>
    <message>
        <source>Fast writing
speed at 60Hz</source>
        <translation>60Hzでは筆記が
滑らかです</translation>
    </message>
    <message>
        <source>To get real-time writing experience, please make
sure that your external display is running
at 60Hz refresh rate or more.</source>
        <translation>遅れのない書き心地のために、外部ディスプレイが
60Hz以上のリフレッシュレートで動作していることを
確認してください。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Refresh Rate</source>
        <translation>リフレッシュレート</translation>
    </message>
</context>
<context>
    <name>InputSelection</name>
    <message>
        <source>Select Input</source>
        <translation>入力方法の選択</translation>
    </message>
    <message>
        <source>Finger</source>
        <translation>指</translation>
    </message>
    <message>
        <source>Stylus</source>
        <translation>ペン</translation>
    </message>
</context>
<context>
    <name>LogView</name>
    <message>
        <source>Not found</source>
        <translation>見つかりません</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>コピーしました</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>%1 に保存しました</translation>
    </message>
    <message>
        <source>Cannot be saved</source>
        <translation>保存できません</translation>
    </message>
</context>
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
    <message>
        <source>&amp;Reload Ccf</source>
        <translation>CCFを再読み込み(&amp;R)</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>ファームウェアの更新</translation>
    </message>
    <message>
        <source>&amp;Reset</source>
        <translation>リセット(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Single Input</source>
        <translation>シングル入力(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Multi Input</source>
        <translation>マルチ入力(&amp;M)</translation>
    </message>
    <message>
        <source>Troubleshoot</source>
        <translation>トラブルシューティング</translation>
    </message>
    <message>
        <source>Video Tutorial</source>
        <translation>ビデオチュートリアル</translation>
    </message>
    <message>
        <source>Get Help</source>
        <translation>サポートを受ける</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>キャリブレーション</translation>
    </message>
    <message>
        <source>Input</source>
        <translation>入力</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>Running in background, you can open and quit the window from the </source>
        <translation>バックグラウンドで動作しています。ウィンドウを開く、または終了するには次を使用してください: </translation>
    </message>
    <message>
        <source>icon-tray.</source>
        <translation>通知領域のアイコン。</translation>
    </message>
    <message>
        <source>Running in background. Start Vireon again to open the window.</source>
        <translation>バックグラウンドで動作しています。ウィンドウを開くには、もう一度Vireonを起動してください。</translation>
    </message>
    <message>
        <source>Vireon not calibrated. Please Calibrate!</source>
        <translation>Vireonはキャリブレーションされていません。キャリブレーションしてください！</translation>
    </message>
    <message>
        <source>Calibration is paused! Mouse/Touch will not work</source>
        <translation>キャリブレーションを一時停止しました。マウス／タッチは動作しません</translation>
    </message>
    <message>
        <source>Calibration resumed</source>
        <translation>キャリブレーションを再開しました</translation>
    </message>
    <message>
        <source>Single Input(Mouse) mode is active</source>
        <translation>シングル入力（マウス）モードが有効です</translation>
    </message>
    <message>
        <source>Multi Input (Touch) mode is active</source>
        <translation>マルチ入力（タッチ）モードが有効です</translation>
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
        <translation>戻る</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Autostart</source>
        <translation>自動起動</translation>
    </message>
    <message>
        <source>Optimize USB bandwidth</source>
        <translation>USB帯域幅を最適化</translation>
    </message>
    <message>
        <source>Keeps a processor awake so that no picture of the sensor is lost. Uses more power.</source>
        <translation>センサーの画像を取りこぼさないように、プロセッサを休止させません。消費電力が増えます。</translation>
    </message>
    <message>
        <source>Sensor Viewer</source>
        <translation>センサービューア</translation>
    </message>
    <message>
        <source>Correct Offset</source>
        <translation>位置ずれを補正</translation>
    </message>
</context>
<context>
    <name>UpdaterWatch</name>
    <message>
        <source>Vireon is being updated and quits now.</source>
        <translation>Vireonを更新するため、終了します。</translation>
    </message>
</context>
<context>
    <name>controls</name>
    <message>
        <source>Not available now.</source>
        <translation>現在は使用できません。</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Loading...</source>
        <translation>処理中...</translation>
    </message>
    <message>
        <source>Manual Calibration</source>
        <translation>手動キャリブレーション</translation>
    </message>
    <message>
        <source>Touch Calibration</source>
        <translation>タッチキャリブレーション</translation>
    </message>
    <message>
        <source>Auto Calibration</source>
        <translation>自動キャリブレーション</translation>
    </message>
    <message>
        <source>&lt;b&gt;&lt;font color=&quot;white&quot; family= &quot;Poppins&quot;&gt;Don&apos;t show this message again.&lt;/font&gt;&lt;/b&gt;</source>
        <translation>&lt;b&gt;&lt;font color=&quot;white&quot; family= &quot;Poppins&quot;&gt;今後このメッセージを表示しない&lt;/font&gt;&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>    Continue    </source>
        <translation>    続行    </translation>
    </message>
    <message>
        <source>Finger</source>
        <translation>指</translation>
    </message>
    <message>
        <source>Stylus</source>
        <translation>ペン</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
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
        <translation>外光の影響を検出しました。</translation>
    </message>
    <message>
        <source>Calibration aborted.</source>
        <translation>キャリブレーションが中止されました。</translation>
    </message>
    <message>
        <source>Calibration failed, please try again.</source>
        <translation>キャリブレーションに失敗しました。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Started, %1 not calibrated.</source>
        <translation>起動しました。%1はキャリブレーションされていません。</translation>
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
        <translation>%1が接続されていません！ &lt;br&gt;USBケーブルを接続し、チェックボックスをオンにして&lt;br&gt; リモートペンの設定を有効にしてください</translation>
    </message>
</context>
<context>
    <name>vireonctl</name>
    <message>
        <source>Vireon is not running.</source>
        <translation>Vireonは起動していません。</translation>
    </message>
    <message>
        <source>Vireon is running for another user.</source>
        <translation>Vireon は別のユーザーが実行しています。</translation>
    </message>
    <message>
        <source>log</source>
        <translation>ログ</translation>
    </message>
    <message>
        <source>versions of program, Qt and system</source>
        <translation>プログラム、Qt、システムのバージョン</translation>
    </message>
    <message>
        <source>desktop, window manager, screens and their rates</source>
        <translation>デスクトップ、ウィンドウマネージャー、画面とリフレッシュレート</translation>
    </message>
    <message>
        <source>settings of the program</source>
        <translation>プログラムの設定</translation>
    </message>
    <message>
        <source>what is switched on</source>
        <translation>有効になっている機能</translation>
    </message>
    <message>
        <source>settings of the user</source>
        <translation>ユーザーの設定</translation>
    </message>
    <message>
        <source>state, and its last changes</source>
        <translation>状態と最近の変化</translation>
    </message>
    <message>
        <source>names of the files in the data directory</source>
        <translation>データディレクトリ内のファイル名</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 バイト</translation>
    </message>
    <message>
        <source>not there</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>The report holds:</source>
        <translation>レポートの内容:</translation>
    </message>
</context>
</TS>
