"""What each view offers: its controls in the order of the Tab key."""

import dataclasses

# Below this a finger misses, in px at the scale factor 1.
FINGER = 35


@dataclasses.dataclass(frozen=True)
class Control:
    """A control with its role, what it is called in each language, and its state at first."""

    role: str
    english: str
    japanese: str
    german: str
    checked: bool = False
    explained: bool = False  # whether there is more to say than its name

    def called(self, language):
        return getattr(self, language)


def _button(*names):
    return Control("push button", *names)


def _entry(*names):
    return Control("menu item", *names)


MAIN = (
    _button("Manual Calibration", "手動キャリブレーション", "Manuelle Kalibrierung"),
    _button("Touch Calibration", "タッチキャリブレーション", "Touch-Kalibrierung"),
    _button("Auto Calibration", "自動キャリブレーション", "Automatische Kalibrierung"),
    _button("Stylus", "ペン", "Stift"),
    _button("Settings", "設定", "Einstellungen"),
)
ADVICE = (
    Control("check box", "Don't show this message again.", "今後このメッセージを表示しない",
            "Diese Meldung nicht mehr anzeigen.", checked=True),
    _button("Cancel", "キャンセル", "Abbrechen"),
    _button("Continue", "続行", "Fortfahren"),
)
SETTINGS = (
    _button("Back", "戻る", "Zurück"),
    Control("check box", "Autostart", "自動起動", "Autostart", checked=True),
    Control("check box", "Optimize USB bandwidth", "USB帯域幅を最適化",
            "USB-Bandbreite optimieren", explained=True),
    _button("Sensor Viewer", "センサービューア", "Sensoransicht"),
    _button("Correct Offset", "位置ずれを補正", "Versatz korrigieren"),
)
INPUT = (
    _button("Back", "戻る", "Zurück"),
    Control("radio button", "Finger", "指", "Finger"),
    Control("radio button", "Stylus", "ペン", "Stift", checked=True),
)
RATE_WARNING = (
    _button("OK", "OK", "OK"),
)
RATIO_WARNING = (
    _button("Ignore", "無視する", "Ignorieren"),
    _button("Correct Offset", "位置ずれを補正", "Versatz korrigieren"),
    _button("Change graphics settings", "グラフィックス設定を変更", "Grafikeinstellungen ändern"),
)
RATIO_ADVICE = (
    _button("Go back", "戻る", "Zurück"),
    _button("Close this dialog", "このダイアログを閉じる", "Dialog schließen"),
)

FIRMWARE = _entry("Update Firmware", "ファームウェアの更新", "Firmware aktualisieren")
# The menus with their entries, in their order.
MENUS = {
    _entry("File", "ファイル", "Datei"): (
        _entry("Hide", "隠す(H)", "Ausblenden"),
        FIRMWARE,
        _entry("Exit", "終了(E)", "Beenden"),
    ),
    _entry("Calibration", "キャリブレーション", "Kalibrierung"): (
        _entry("Reset", "リセット(R)", "Zurücksetzen"),
    ),
    _entry("Help", "ヘルプ", "Hilfe"): (
        _entry("Troubleshoot", "トラブルシューティング", "Problembehebung"),
        _entry("Video Tutorial", "ビデオチュートリアル", "Video-Anleitung"),
        _entry("Get Help", "サポートを受ける", "Hilfe anfordern"),
    ),
}

# What the main view says, and a control that is disabled.
READY = {"english": "Started and ready", "japanese": "起動完了、使用できます",
         "german": "Gestartet und bereit"}
NOT_AVAILABLE = {"english": "Not available now.", "japanese": "現在は使用できません。",
                 "german": "Zurzeit nicht verfügbar."}
