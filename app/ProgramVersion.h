#pragma once

/// As the user is told it.
constexpr char programVersion[] = "1.0.0.10";
