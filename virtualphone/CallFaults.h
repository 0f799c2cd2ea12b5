#pragma once

#include <cstdint>
#include <map>
#include <set>

namespace virtualphone {

/// What the plug-in calls the platform for, as far as one call of it can fail, and how such a call ends.
enum class Call : std::uint8_t {
    PropertyAsked,  ///< as if the property were not set
    PropertySet,    ///< refused
    EepromRead,     ///< nothing is read
    AutofocusRead,  ///< refused
    TagStored,      ///< refused with -5; nothing is stored
    Asked,       ///< a question for an object: null; for a number: 0, an id or index: -1; for a list or text:
                 ///< empty
    FileOpened,  ///< a file or folder under the phone's root: EIO
    FileRead,    ///< from one of them, or the listing of a folder: EIO
    FileWritten,  ///< to one of them: EIO
};

/// Calls that fail: of each kind these, of a kind of files at most 64, counted from 0 as a boot makes them.
/// But for those of files, which have no events, a call's number is that of its event among its kind's.
using FailingCalls = std::map<Call, std::set<std::uint64_t>>;

}  // namespace virtualphone
