# Android's liblog, as Debian's android-liblog-dev installs it: the target AndroidLog::AndroidLog.
find_path(AndroidLog_INCLUDE_DIR android/log.h PATH_SUFFIXES android)
find_library(AndroidLog_LIBRARY log PATH_SUFFIXES android)
mark_as_advanced(AndroidLog_INCLUDE_DIR AndroidLog_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(AndroidLog REQUIRED_VARS AndroidLog_LIBRARY AndroidLog_INCLUDE_DIR)

if(AndroidLog_FOUND AND NOT TARGET AndroidLog::AndroidLog)
    add_library(AndroidLog::AndroidLog UNKNOWN IMPORTED)
    set_target_properties(AndroidLog::AndroidLog PROPERTIES
        IMPORTED_LOCATION ${AndroidLog_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${AndroidLog_INCLUDE_DIR})
endif()
