#pragma once

/// The grid step in logical pixels; margins, gaps and sizes in the window are multiples of it.
inline constexpr int gridPx = 8;
