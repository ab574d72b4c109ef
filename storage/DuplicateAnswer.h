#pragma once

/// What becomes of a listed device when a new one has its MAC.
enum class DuplicateAnswer {
    Keep,
    Replace,
    KeepAll,   ///< and the same for all that follow
    ReplaceAll ///< and the same for all that follow
};
