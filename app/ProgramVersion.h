#pragma once

/// The version that the user sees.
constexpr char programVersion[] = "1.0.0.10";
