# The virtual phone and what boots it: zelvan::supervisor; the plug-in: zelvan::cameraplatforminfozelvan, to be
# loaded, not linked; for another platform: zelvan::platform.
include(CMakeFindDependencyMacro)
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})
find_dependency(AndroidLog)
include(${CMAKE_CURRENT_LIST_DIR}/targets.cmake)
