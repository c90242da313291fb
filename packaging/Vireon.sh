#!/bin/sh
# Starts the program from its own directory, where its engine and its configuration are.
cd "$(dirname "$(readlink -f "$0")")" || exit 1

# The program looks for the tray once, at its start. At log-in the panel may come later.
if [ -n "$DESKTOP_AUTOSTART_ID" ]; then
    gdbus wait --session --timeout 10 org.kde.StatusNotifierWatcher > /dev/null 2>&1
fi

exec ./vireon "$@"
