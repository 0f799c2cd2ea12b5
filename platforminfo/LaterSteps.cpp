// Steps of the sequence and updaters of the device walk that are still to come. Each keeps its place in the
// order.

#include "platforminfo/CameraPlatformInfoZelvan.h"

int CameraPlatformInfoZelvan::MetadataUpdateFakeSatSizes(NSCam::IMetadata&, int) {
    return 0;
}
int CameraPlatformInfoZelvan::MetadataUpdateSmartFOVZoomRatio(NSCam::IMetadata&, int) {
    return 0;
}
int CameraPlatformInfoZelvan::MetedataUpdateSatInfo(NSCam::IMetadata&, int) {
    return 0;
}
int CameraPlatformInfoZelvan::UpdateBokehOptimalSizeInfo(NSCam::IMetadata&, int) {
    return 0;
}
int CameraPlatformInfoZelvan::MetadataUpdateHDHDR(NSCam::IMetadata&, int) {
    return 0;
}
int CameraPlatformInfoZelvan::MetedataUpdateVideoStabilizationData(NSCam::IMetadata&, int) {
    return 0;
}
int CameraPlatformInfoZelvan::MetedataUpdateVNQualityData(NSCam::IMetadata&, int) {
    return 0;
}
int CameraPlatformInfoZelvan::MetedataUpdateVideoTrackAFQualityData(NSCam::IMetadata&, int) {
    return 0;
}
int CameraPlatformInfoZelvan::MetadataUpdateBeautyData(NSCam::IMetadata&, int) {
    return 0;
}
int CameraPlatformInfoZelvan::MetadataUpdateFocalLength35mm(NSCam::IMetadata&, int,
                                                            NSCam::IMetadataProvider*) {
    return 0;
}
int CameraPlatformInfoZelvan::UpdatePhotoStyleInfo(NSCam::IMetadata&, int) {
    return 0;
}
