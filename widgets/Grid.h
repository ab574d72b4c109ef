#pragma once

/// The step, in pixels, of which margins, gaps and sizes on the window and its pages are multiples.
inline constexpr int gridPx = 8;
