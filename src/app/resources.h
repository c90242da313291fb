#pragma once

/// Registers the compiled views, the font, the translations and the pictures, which live in a
/// static library and would be left out by the linker otherwise. To be called before the first of
/// them is used.
void initResources();
