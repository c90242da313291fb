import QtQuick 2.15

// A text of the views. What is painted of it ends where its letters end at the base size, and the
// view is then scaled as a whole: letters that were fitted to the px of the base size would lose
// their lowest row by that.
Text {
    font.hintingPreference: factor === 1 ? Font.PreferDefaultHinting : Font.PreferNoHinting
}
