#pragma once

class QWindow;

// What the window system and the window manager are asked for where Qt's own calls are not enough.
// GUI thread only; the windows exist in the window system.

/// Asks the window manager to bring @p window, which is shown, to the front with the keyboard,
/// because the user wants it. It does as a pager does: a plain request of a program that is not in
/// use only gets its window to demand attention. Where there is no X server, Qt asks.
void bringUpForUser(QWindow& window);

/// Hands the keyboard on from the window @p from to @p to, which lies in it, if @p from has it.
///
/// Who has it, the X server is asked, and waited for: what Qt knows is older, and right after a
/// hiding and a showing it would give the keyboard to a window that is not there yet, an error. One
/// that goes away at this very moment is no matter. Where there is no X server, Qt does it.
void handKeyboardOn(const QWindow& from, QWindow& to);

/// Whether @p event, an xcb_generic_event_t, tells that the window manager has changed its note on
/// @p window: that it manages it, has minimised it or has let it go.
bool tellsOfManager(const void* event, const QWindow& window);

/// Whether @p event, as above, tells that @p window is mapped when it is so no more. The
/// X server is asked, and waited for.
bool tellsOfPastShowing(const void* event, const QWindow& window);

/// Whether the window manager has let @p window go. The X server is asked, and waited for; where
/// there is none, false.
bool isWithdrawn(const QWindow& window);
