#pragma once

/// Puts the light or the dark scheme on the whole application: tokens, palette, cached symbols. May be called at any
/// time and any number of times; the windows that are open repaint themselves. Texts with a colour written into them
/// must be set again on QEvent::PaletteChange. VelgorStyle is installed apart from this, before the first call.
void applyLook(bool dark);
