#pragma once

#include "platforminfo/CameraPlatformInfoZelvan.h"

/// The plug-in afresh: the instance of a process would keep the first images.
class FreshPlugin : public CameraPlatformInfoZelvan {};
