#pragma once

/// What becomes of a listed device when a new one has its MAC.
enum class DuplicateAnswer {
    Keep,
    Replace,
    KeepAll,   ///< also for all that follow
    ReplaceAll ///< also for all that follow
};
