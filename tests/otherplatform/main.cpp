#include "platforminfo/CameraPlatformInfoZelvan.h"

int main() {
    CameraPlatformInfoZelvan::CreateInstance()->ExposureModuleInfo();
}
