#pragma once

/// Makes all font families that the program names one: where the desktop lacks "Helvetica Neue",
/// "Poppins" or "Tahoma", what it shows for "Helvetica" takes their place, so that nothing mixes
/// fonts by accident. Letters that it lacks, such as Japanese ones, are the desktop's font's. To be
/// called once the application object exists, and before the application's font is set.
void unifyFonts();
