#pragma once

#include <span>

namespace tables {

/// An operation of the plug-in that stores something for others to read.
struct PublishingOperation {
    const char* name;        ///< as its log lines carry it
    const char* step;        ///< of the start-up sequence, or updater of the device walk, that runs it
    const char* sourceFile;  ///< from the top of the source tree
};

namespace operation {

#define OPERATION(name, step, sourceFile) inline constexpr PublishingOperation name{#name, #step, sourceFile};
#include "tables/PublishingOperations.inc"
#undef OPERATION

}  // namespace operation

/// All of them, in the order in which the sequence and the walk run them.
std::span<const PublishingOperation> PublishingOperations();

}  // namespace tables
