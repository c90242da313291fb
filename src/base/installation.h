#pragma once

// The program as the desktop knows it: other programs find it and its pictures under these names.
// packaging/ uses the same ones.

/// Its name on the session bus, and its desktop entry's without the ending.
constexpr char applicationId[] = "com.corvanthel.Vireon";

/// Pictures that other programs show, which cannot read this program's resources.
constexpr char installedPicture[] = "/usr/local/bin/Vireon/Corvanthel.png";
constexpr char installedSmallPicture[] = "/usr/local/bin/Vireon/CorvanthelSmall.png";
