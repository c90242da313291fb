#pragma once

/// Makes all font families that the views name one: where the desktop lacks "Helvetica Neue",
/// "Poppins" or "Tahoma", what it shows for "Helvetica" takes their place, so that no view mixes
/// fonts by accident. To be called once the application object exists.
void unifyFonts();
