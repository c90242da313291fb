#!/bin/sh
# Starts the program from its own directory, where its engine and its configuration are.
cd "$(dirname "$(readlink -f "$0")")" || exit 1

# tell_missing_engine: on standard error and, where there is a screen, in a box.
tell_missing_engine() {
    case ${LC_ALL:-${LC_MESSAGES:-$LANG}} in
    de*) text="Die Engine fehlt: In $PWD gibt es kein ausführbares Programm vireon-main.

Installieren Sie das Paket Ihrer Engine oder kopieren Sie ihre beiden Programme vireon-main und vireon-sdk dorthin, und starten Sie Vireon erneut. Zum Ausprobieren ohne Gerät gibt es das Paket vireon-simulator." ;;
    ja*) text="エンジンがありません: $PWD に実行可能なプログラム vireon-main がありません。

エンジンのパッケージをインストールするか、2つのプログラム vireon-main と vireon-sdk をそこにコピーしてから、Vireon をもう一度起動してください。機器なしで試すには、パッケージ vireon-simulator があります。" ;;
    *) text="The engine is missing: there is no executable program vireon-main in $PWD.

Install your engine's package, or copy its two programs, vireon-main and vireon-sdk, there, and start Vireon again. To try Vireon without the device there is the package vireon-simulator." ;;
    esac
    printf '%s\n' "$text" >&2
    [ -z "$DISPLAY$WAYLAND_DISPLAY" ] || ./vireon-box "$text"
}

# The program looks for the tray once, at its start. At log-in the panel may come later.
if [ -n "$DESKTOP_AUTOSTART_ID" ]; then
    gdbus wait --session --timeout 10 org.kde.StatusNotifierWatcher > /dev/null 2>&1
fi
# It names one client of the session, which the engine, that would inherit it, is not.
unset DESKTOP_AUTOSTART_ID

if ! [ -f vireon-main ] || ! [ -x vireon-main ]; then
    tell_missing_engine
    exit 1
fi
exec ./vireon "$@"
