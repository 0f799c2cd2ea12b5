#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/IMetadata.h"
#include "platforminfo/CamCalAllData.h"
#include "platforminfo/CameraRoleTables.h"

struct DualCameraCalDataInfo;

namespace NSCam {
class IHalSensor;
class ILogicalDeviceList;
class IMetadataProvider;
}  // namespace NSCam

#define ZELVAN_API __attribute__((visibility("default")))

/// What this phone's camera modules are, published once at camera start-up: system properties, calibration
/// dump files, and additional static metadata for every camera device.
///
/// Every operation logs under its own name. A result of -1 (null for a pointer, 255 for an identity byte)
/// means that the operation failed and said why in the log; no operation stops another. Nothing here is
/// locked: the caller runs the operations on one thread.
///
/// Updaters take the metadata set that is being filled and the instance id of its device: the index of a
/// logical device, or the sensor id of a physical sensor inside one.
class ZELVAN_API CameraPlatformInfoZelvan {
  public:
    CameraPlatformInfoZelvan(const CameraPlatformInfoZelvan&) = delete;
    CameraPlatformInfoZelvan& operator=(const CameraPlatformInfoZelvan&) = delete;

    /// The one instance of the process, made by the first call; it lives until the process exits.
    static CameraPlatformInfoZelvan* CreateInstance();

    /// Publishes everything, in nine steps of fixed order whose results gate nothing.
    void ExposureModuleInfo();

    // The device walk.

    /// Updates every logical device and the physical sensors of the multi-sensor ones.
    void MetadataUpdate();
    /// Fills a fresh metadata set for one device and hands it to the device's provider.
    void MetadataUpdate(NSCam::IMetadataProvider* provider, int instanceId);

    // Sensors, roles and devices.

    int GetRoleIdBySensorIdx(int sensorIdx);
    int GetDevIdByRoleId(int roleId);
    int GetSensorIdxByRoleId(int roleId);
    /// Whether two driver names name the same part: their last two components ("_imx707_eeprom") are equal.
    /// A name with fewer than two underscores raises std::out_of_range.
    bool matchDrvNameToPlatformDrvName(const char* drvName, const char* platDrvName);

    // Module memory.

    /// The module's EEPROM image, read on first use and kept; null after a failed read, which is not
    /// repeated.
    CamCalAllData* GetCamCalAllData(int roleId);
    /// Copies `size` bytes from `offset` of the module's image.
    int MemCpyCamCalData(int roleId, void* dst, int offset, int size);
    int GetVendorId(int roleId);
    int GetLensId(int roleId);
    int GetSensorId(int roleId);
    /// Writes every image as text to a file, when property "vendor.debug.camera.eeprom_dump" is not 0.
    int DumpEepromRawData();

    // Module properties.

    int SetModuleInfoProp();
    int SetFuseIdProp();
    /// The fuse id part of the role's fuse id property, upper-case hex; empty for a role without one.
    /// A value shorter than 8 characters raises std::out_of_range, a non-numeric length field
    /// std::invalid_argument.
    std::string getPropertyFuseid(int roleId);
    int SetSensorInfoProp();
    int SetAFInfoProp();
    void setDataBinGroupProperty();

    // Dual-camera calibration.

    /// Gives every camera pair a dump file from the first source that has its block: EEPROM, persist, golden.
    void OverriderDualCamCalData();
    bool DualCameraDataFromEeprom(DualCameraCalDataInfo& info);
    bool DualCameraDataFromPersist(DualCameraCalDataInfo& info);
    bool DualCameraDataFromGolden(DualCameraCalDataInfo& info);
    /// Names of the calibration files in a folder, in directory order.
    std::vector<std::string> GetDualCameraPersistFiles(const char* dir);
    /// Whether the file belongs to the pair's fitted sensors; if so its block is dumped.
    bool MatchDualCameraPersistFile(const std::string& path, DualCameraCalDataInfo& info);
    /// Role of the fitted sensor with this fuse id, or -1.
    int GetRoleIdByFuseId(const std::string& fuseIdHex);
    /// Writes `count` bytes over the start of `path`; a longer file keeps its tail.
    bool DualCameraDataDumpFile(const char* path, unsigned char* buf, int count);
    /// Reads up to `count` bytes of `path` into `buf`, which holds `count` bytes.
    bool GetCalibDataFromDumpFile(const char* path, unsigned char*& buf, int& count);

    // OIS calibration.

    void OverriderOisCamCalData();
    /// Fills param[0] to param[5] from the role's EEPROM.
    int readOTPOisParam(int roleId, int* param);
    /// State of the persist file: "0" (gains taken), "2" (unusable) or "3" (another format version).
    const char* GetOisParamFromPersist(int& gainX, int& gainY);

    // Calibration tags.

    /// Fills `info` with the pair that the first two chips of a device make; leaves it as it is without one.
    int GetDualCameraCalDataInfo(RoleIdDesc& desc, DualCameraCalDataInfo& info);
    int MetedataUpdateCalibData(NSCam::IMetadata& meta, int instanceId);
    int MetadataUpdateCalibrationToolTag(NSCam::IMetadata& meta, int instanceId);

    // Stream configuration.

    int MetadataUpdateScaler(NSCam::IMetadata& meta, int instanceId);
    void updateBinningFactorConfiguration(NSCam::IMetadata& meta, int factor);
    void updateStreamConfigurationWithDuration(NSCam::IMetadata& meta, int maxWidth, int maxHeight,
                                               int allow8k);
    void updateStreamConfiguration(NSCam::IMetadata& meta);
    void updateSuperResolutionStreamConfiguration(NSCam::IMetadata& meta, int roleId, int width, int height);
    void updateMaxJpegSizeConfiguration(NSCam::IMetadata& meta, int width, int height);
    void updateStreamConfigurationZelvan(NSCam::IMetadata& meta, int roleId, int width, int height,
                                         int allow8k);
    /// Appends a stream configuration tuple, narrowed to int32.
    void pushAvailableStream(NSCam::IMetadata::IEntry& entry, std::int64_t format, std::int64_t width,
                             std::int64_t height, std::int64_t direction);
    /// Appends a tuple of int64; durations in nanoseconds.
    void pushAvailableStreamWithDuration(NSCam::IMetadata::IEntry& entry, std::int64_t format,
                                         std::int64_t width, std::int64_t height, std::int64_t direction,
                                         std::int64_t minFrameDuration, std::int64_t stallDuration);
    /// Duplicates the four-item tuples of one format as another, for lists of int (int32) or long (int64).
    template <typename Item>
    struct converter {
        /// `src` must differ from `dst`: the walk visits what it appends.
        static void copy(const Item& src, const Item& dst, NSCam::IMetadata::IEntry& entry);
    };

    // Feature tags.

    int MetadataUpdateRoleId(NSCam::IMetadata& meta, int instanceId);
    int MetadataUpdateCheckSumResult(NSCam::IMetadata& meta, int instanceId);
    int MetadataUpdateFakeSatSizes(NSCam::IMetadata& meta, int instanceId);
    int MetadataUpdateInSensorZoomModes(NSCam::IMetadata& meta, int instanceId);
    int MetadataUpdateSmartFOVZoomRatio(NSCam::IMetadata& meta, int instanceId);
    int MetedataUpdateSatInfo(NSCam::IMetadata& meta, int instanceId);
    int UpdateBokehOptimalSizeInfo(NSCam::IMetadata& meta, int instanceId);
    int MetadataUpdateHDHDR(NSCam::IMetadata& meta, int instanceId);
    int MetedataUpdateVideoStabilizationData(NSCam::IMetadata& meta, int instanceId);
    int MetedataUpdateVNQualityData(NSCam::IMetadata& meta, int instanceId);
    int MetedataUpdateVideoTrackAFQualityData(NSCam::IMetadata& meta, int instanceId);
    int MetadataUpdateBeautyData(NSCam::IMetadata& meta, int instanceId);
    int MetadataUpdateFocalLength35mm(NSCam::IMetadata& meta, int instanceId,
                                      NSCam::IMetadataProvider* provider);
    int UpdatePhotoStyleInfo(NSCam::IMetadata& meta, int instanceId);
    /// Reads a whole file into a zero-filled buffer of the file's size plus `extra` bytes. The caller frees
    /// it with std::free. On failure the outputs stay as they are.
    int allocBufAndReadFromFile(const char* path, unsigned char** buf, int* size, int extra);

  protected:
    CameraPlatformInfoZelvan();
    ~CameraPlatformInfoZelvan();

    /// An instance and the list that knows it.
    struct ResolvedInstance {
        int roleId;
        const NSCam::ILogicalDeviceList& devices;
    };
    /// Role of an instance, logged in the name of `function`; no value when it cannot be resolved. A
    /// multi-sensor device must carry a logical role; the role of a single sensor is taken as it comes.
    std::optional<ResolvedInstance> ResolveRole(const char* function, int instanceId);
    /// The device table's row of an instance; null, and logged in the name of `function`, when there is none.
    const RoleIdDesc* FindDevice(const char* function, int instanceId);
    int ReadIdentityByte(int roleId, int offset);

    /// What the zoom updaters need of an instance.
    struct ZoomInstance {
        int roleId;
        NSCam::IHalSensor* sensor;  ///< of the instance's first sensor id
        int deviceIndex;            ///< of the same sensor
    };
    /// No value, logged in the name of `function`, when the role or the sensor object is missing.
    std::optional<ZoomInstance> ResolveZoomInstance(const char* function, int instanceId);
    /// Extends `mModuleInfo` for the sensor pair of a bokeh device.
    void UpdateModuleInfo(const char* function, int master, int slave);

    /// The phone's camera devices by device id. Subscripts with an unknown id add an empty row.
    static RoleIdDescMap DeviceId2RoleId;
    static const RoleIdDescMap PhysicalDeviceId2RoleId;
    static const MemberRolesMap RoleId2MemberRoleIds;

    NameMap mMakerNames;
    FuseIdDescriptorMap mRoleId2FuseIdDescriptorsMap;
    NameMap mRoleId2ModuleName;
    NameMap mZVSensorInfoProp;
    NameMap mAFInfoProp;
    std::map<int, CamCalAllDataPtr> mCamCalData;  ///< by role; null after a failed read
    NameMap mReserved;
    std::string mModuleInfo;
    unsigned long mDataBinExistMask = 0;  ///< bit 0: dual-camera blocks, bit 4: OIS
    QRCodeMap mQRCodes;
};
