#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/IMetadata.h"
#include "platforminfo/CamCalAllData.h"
#include "platforminfo/CameraRoleTables.h"
#include "platforminfo/NamedTable.h"

struct DualCameraCalDataInfo;

namespace NSCam {
class IMetadataProvider;
}  // namespace NSCam

#define ZELVAN_API __attribute__((visibility("default")))

/// What this phone's camera modules are, published once at camera start-up: system properties, calibration
/// dump files, and additional static metadata for every camera device.
///
/// Every operation logs under its own name, and what fails says why in the log unless its comment says that
/// it fails silently. Where nothing else is said, an `int` result is 0 after success and -1 after a failure.
/// No operation stops another, none throws unless its comment says so, and none waits for another process to
/// open a file. Paths are the phone's; a null path is a file that can't be opened, and so are a calibration
/// file that is no regular file and one above 16 MiB. Other pointers must be valid where nothing else is
/// said. Nothing here is locked: the caller runs the operations on one thread.
///
/// Role ids, device ids, sensor indices and the other numberings are those of the glossary in
/// docs/architecture.md; any `int` may be passed for one.
///
/// Updaters take the metadata set that is being filled and the instance id of its device: the index of a
/// logical device, or the sensor id of a physical sensor inside one. A tag that the platform refuses is
/// logged and left out, and the updater goes on. "Its role" is what the device table says of the instance id;
/// "its resolved role" asks the platform first: the device table's for a multi-sensor device, which must be a
/// logical role, and else that of the sensor with this index.
class ZELVAN_API CameraPlatformInfoZelvan {
  public:
    CameraPlatformInfoZelvan(const CameraPlatformInfoZelvan&) = delete;
    CameraPlatformInfoZelvan& operator=(const CameraPlatformInfoZelvan&) = delete;

    /// The one instance, made by the first call; it lives until the process exits or the library is unloaded.
    static CameraPlatformInfoZelvan* CreateInstance();

    /// Publishes everything, in nine steps of fixed order whose results gate nothing. A second run publishes
    /// everything again, from the module memories that the first one read.
    void ExposureModuleInfo();

    // The device walk.

    /// Updates every logical device and the physical sensors of the multi-sensor ones. Needs the logical
    /// device list.
    void MetadataUpdate();
    /// Fills a fresh metadata set for one device by sixteen updaters and hands it to the device's provider,
    /// which must be valid.
    void MetadataUpdate(NSCam::IMetadataProvider* provider, int instanceId);

    // Sensors, roles and devices.

    /// Role of the sensor with this index; -1 without a sensor list, or where the device table does not know
    /// the device id of the index's lowest device bit.
    int GetRoleIdBySensorIdx(int sensorIdx);
    /// Lowest device id with this role, or -1, which is not logged as an error.
    int GetDevIdByRoleId(int roleId);
    /// Index of the first sensor of the role's device; -1 without a sensor list or such a device, and,
    /// silently, where no sensor is fitted for it.
    int GetSensorIdxByRoleId(int roleId);
    /// Whether two driver names name the same part: their last two components ("_imx707_eeprom") are equal.
    /// A name with fewer than two underscores, or null, raises std::out_of_range.
    bool matchDrvNameToPlatformDrvName(const char* drvName, const char* platDrvName);

    // Module memory.

    /// The module's EEPROM image, read on first use and kept; null for a role without a fitted sensor and
    /// after a failed read, which is not repeated. Without a sensor list a new image has no valid byte. The
    /// object owns it.
    CamCalAllData* GetCamCalAllData(int roleId);
    /// Copies `size` bytes from `offset` of the module's image to `dst`, which holds as many. Fails, with
    /// nothing copied, for a null `dst` (silently), a role without an image, and a range that is negative or
    /// beyond the image's valid bytes.
    int MemCpyCamCalData(int roleId, void* dst, int offset, int size);
    /// The module's identity bytes: maker id, lens id and sensor id.
    /// @return 0 to 255; 255 also when the byte can't be read.
    int GetVendorId(int roleId);
    int GetLensId(int roleId);
    int GetSensorId(int roleId);
    /// Writes every image as text to a file in /data/vendor/camera, when property
    /// "vendor.debug.camera.eeprom_dump" is not 0. A module without an image, or whose file can't be opened,
    /// is passed over silently, and so are all without a sensor list.
    /// @return 0; -1 at the first sensor whose role has no name, with nothing dumped from there on.
    int DumpEepromRawData();

    // Module properties. Each needs the sensor list: -1 without one.

    /// Publishes which sensor is fitted at which role, in "persist.vendor.camera.zv.module.info" and
    /// ".infoext".
    /// @return -1 also, with nothing published, for a sensor whose role has no name.
    int SetModuleInfoProp();
    /// Publishes maker, fuse id and QR code of each module, under a short and a long property name of its
    /// role. A module of an unknown maker is passed over silently.
    /// @return -1 also at the first sensor whose role has no fuse id; those before it are published.
    int SetFuseIdProp();
    /// The fuse id part of the role's fuse id property, upper-case hex; empty for a role without one.
    /// A value shorter than 8 characters raises std::out_of_range; a length field that is no number raises
    /// std::invalid_argument.
    std::string getPropertyFuseid(int roleId);
    /// Publishes the identity bytes of each module, "FF" for what can't be read.
    /// @return -1 also at the first sensor whose role has no property; those before it are published.
    int SetSensorInfoProp();
    /// Publishes two focus points of each module with autofocus. A module that can't be read, that has none
    /// or whose role has no property is passed over.
    int SetAFInfoProp();
    /// Publishes which calibration data exist, as the two steps below have found them.
    void setDataBinGroupProperty();

    // Dual-camera calibration. The operations change no pair that they are given. A pair with a negative
    // length has no block: each source answers false and dumps nothing.

    /// Gives every camera pair a dump file from the first source that has its block: EEPROM, persist, golden.
    /// Publishes in "persist.vendor.camera.zv.dualcal.state" and ".detail" where the blocks came from.
    void OverriderDualCamCalData();
    /// @return whether the block was found good and the dump file could be opened; here and below.
    bool DualCameraDataFromEeprom(DualCameraCalDataInfo& info);
    /// Takes the first calibration file of the persist folder that belongs to the pair.
    bool DualCameraDataFromPersist(DualCameraCalDataInfo& info);
    /// Takes the golden file's first bytes; false, silently, for a file that is shorter than the block or
    /// can't be opened.
    bool DualCameraDataFromGolden(DualCameraCalDataInfo& info);
    /// Names of the calibration files in a folder, in directory order; none, silently, for a folder that
    /// can't be opened.
    std::vector<std::string> GetDualCameraPersistFiles(const char* dir);
    /// Whether the file belongs to the pair's fitted sensors; if so its block is dumped, filled up with zeros
    /// where it is shorter than the pair's.
    bool MatchDualCameraPersistFile(const std::string& path, DualCameraCalDataInfo& info);
    /// Role of the fitted sensor with this fuse id (upper-case hex), or -1. Needs the properties of
    /// `SetFuseIdProp`: the first sensor without one ends the search, silently.
    int GetRoleIdByFuseId(const std::string& fuseIdHex);
    /// Writes `count` bytes of `buf` over the start of `path`; a longer file keeps its tail. A new file gets
    /// mode 0600. A negative `count` writes nothing.
    /// @return whether the file could be opened; a failed write is not seen.
    bool DualCameraDataDumpFile(const char* path, unsigned char* buf, int count);
    /// Reads up to `count` bytes of `path` into `buf`, which holds `count` bytes. What a shorter file leaves
    /// keeps its value. A negative `count` reads nothing. `buf` and `count` stay as they are.
    /// @return whether the file could be opened; a failed read is not seen.
    bool GetCalibDataFromDumpFile(const char* path, unsigned char*& buf, int& count);

    // Calibration of the optical image stabiliser of the back main camera.

    /// Publishes gains, parameters and sensitivities in four properties. The gains are those of the persist
    /// file where it is good, else the module's; what can't be read counts as 0.
    void OverriderOisCamCalData();
    /// Fills `param`, an array of at least six, from the role's EEPROM:
    ///
    ///     0, 1  gain X and Y, 0 to 65535, in the stabiliser's own unit (a persist file's: 4000 to 17000)
    ///     2, 3  third and fourth parameter of the algorithm, 0 to 255
    ///     4, 5  sensitivity X and Y, 200 to 555 (300 to 555 for maker semco, else to 455), in 1/4096
    ///
    /// @return the result of the last copy; the other results are lost.
    int readOTPOisParam(int roleId, int* param);
    /// Takes gains, 4000 to 17000, from the persist file; leaves them as they are unless the state is "0".
    /// @return the file's state: "0" (gains taken), "2" (unusable) or "3" (another format version).
    const char* GetOisParamFromPersist(int& gainX, int& gainY);

    // Calibration tags.

    /// Fills `info` with the pair that the first two chips of a device make; leaves it as it is without one.
    /// @return 0 in any case.
    int GetDualCameraCalDataInfo(RoleIdDesc& desc, DualCameraCalDataInfo& info);
    /// Publishes the calibration block of a SAT or bokeh device from its dump file. Needs the logical device
    /// list and a device name that the device table matches.
    /// @return 0 also, with nothing published, for a single sensor and for a role without a block; -1 also
    /// when the platform refuses the tag.
    int MetedataUpdateCalibData(NSCam::IMetadata& meta, int instanceId);
    /// Publishes for a bokeh device which file its recalibration writes, and its two members' output sizes.
    /// @return -1 silently for any other role, and for a device that has not two members, after the tags
    /// that need none.
    int MetadataUpdateCalibrationToolTag(NSCam::IMetadata& meta, int instanceId);

    // Stream configuration. Sizes are in pixels, durations in nanoseconds; `allow8k` is 1 for a sensor with
    // an 8K mode, else 0.

    /// Publishes all streams of a device by the operations below. Needs both device lists, the sensor's
    /// static information and driver, and a row of the device table: -1, with nothing published, without
    /// one of them.
    int MetadataUpdateScaler(NSCam::IMetadata& meta, int instanceId);
    /// Publishes how many pixels of the sensor make one of a picture.
    void updateBinningFactorConfiguration(NSCam::IMetadata& meta, int factor);
    /// Publishes the platform's list of streams with their durations, for a sensor of this full size.
    void updateStreamConfigurationWithDuration(NSCam::IMetadata& meta, int maxWidth, int maxHeight,
                                               int allow8k);
    /// Publishes Android's three stream lists from the list above. Refused tags are left out silently.
    void updateStreamConfiguration(NSCam::IMetadata& meta);
    /// Publishes the streams of super resolution; nothing, silently, for a width or height of 0.
    void updateSuperResolutionStreamConfiguration(NSCam::IMetadata& meta, int roleId, int width, int height);
    /// Publishes the largest JPEG in bytes, for pictures of this size; the number wraps at 32 bits.
    void updateMaxJpegSizeConfiguration(NSCam::IMetadata& meta, int width, int height);
    /// Publishes the vendor's list of streams, for a sensor of this full size.
    void updateStreamConfigurationZelvan(NSCam::IMetadata& meta, int roleId, int width, int height,
                                         int allow8k);
    /// Appends a stream configuration tuple, narrowed to int32.
    void pushAvailableStream(NSCam::IMetadata::IEntry& entry, std::int64_t format, std::int64_t width,
                             std::int64_t height, std::int64_t direction);
    /// Appends a tuple of int64.
    void pushAvailableStreamWithDuration(NSCam::IMetadata::IEntry& entry, std::int64_t format,
                                         std::int64_t width, std::int64_t height, std::int64_t direction,
                                         std::int64_t minFrameDuration, std::int64_t stallDuration);
    /// Duplicates the four-item tuples of one format as another, for lists of int (int32) or long (int64).
    template <typename Item>
    struct converter {
        /// `src` must differ from `dst`: the walk visits what it appends, and would not end.
        static void copy(const Item& src, const Item& dst, NSCam::IMetadata::IEntry& entry);
    };

    // Feature tags.

    /// Publishes the instance's resolved role (-1 for a single sensor without one) and that role's members.
    /// @return -1 where the role cannot be resolved.
    int MetadataUpdateRoleId(NSCam::IMetadata& meta, int instanceId);
    /// Publishes whether the checksums of the module's memory are good, as those of an unknown layout are.
    /// @return -1 where the role cannot be resolved; 0 also, with nothing published, for one without an
    /// image.
    int MetadataUpdateCheckSumResult(NSCam::IMetadata& meta, int instanceId);
    /// Publishes the sizes for the zoom switch of a SAT device or the back main camera whose sensor zooms
    /// inside. Needs a resolved role and the sensor object of the instance's first sensor id.
    int MetadataUpdateFakeSatSizes(NSCam::IMetadata& meta, int instanceId);
    /// Publishes that a sensor zooms inside. @return 0 in any case.
    int MetadataUpdateInSensorZoomModes(NSCam::IMetadata& meta, int instanceId);
    /// Publishes the zoom ratios of a front camera or the second SAT device, with the needs of
    /// `MetadataUpdateFakeSatSizes`. A refused tag is left out silently.
    int MetadataUpdateSmartFOVZoomRatio(NSCam::IMetadata& meta, int instanceId);
    /// Publishes the zoom scale of a SAT device by its role. A refused tag is left out silently. An instance
    /// id that the device table lacks gains a row there, with role 0.
    /// @return 0 in any case.
    int MetedataUpdateSatInfo(NSCam::IMetadata& meta, int instanceId);
    /// Publishes pair and picture sizes of a bokeh device by its role, and the super-night mask of every
    /// device. Needs the logical device list and a row of the device table; the members' ids gain rows there
    /// where it lacks them.
    /// @return -1 without one of the two, else the platform's result for the super-night tag.
    int UpdateBokehOptimalSizeInfo(NSCam::IMetadata& meta, int instanceId);
    /// Publishes that the device offers HD HDR. @return 1 in any case.
    int MetadataUpdateHDHDR(NSCam::IMetadata& meta, int instanceId);
    /// Publish a capability list by the instance's role, where the set holds none; -1 for an instance without
    /// a row of the device table, 0 else.
    int MetedataUpdateVideoStabilizationData(NSCam::IMetadata& meta, int instanceId);
    int MetedataUpdateVNQualityData(NSCam::IMetadata& meta, int instanceId);
    int MetedataUpdateVideoTrackAFQualityData(NSCam::IMetadata& meta, int instanceId);
    /// Publishes version and options of the beauty feature. @return 0 in any case.
    int MetadataUpdateBeautyData(NSCam::IMetadata& meta, int instanceId);
    /// Publishes the 35 mm-equivalent focal length in millimetres that the provider holds, or 0.
    /// @param provider of the device; must be valid.
    /// @return 0 in any case.
    int MetadataUpdateFocalLength35mm(NSCam::IMetadata& meta, int instanceId,
                                      NSCam::IMetadataProvider* provider);
    /// Publishes the photo styles.
    /// @return the platform's result for the last tag.
    int UpdatePhotoStyleInfo(NSCam::IMetadata& meta, int instanceId);
    /// Reads a whole file into a zero-filled buffer of the file's size plus `extra` bytes, which is what
    /// `size` tells. The caller frees it with std::free. Fails, with the outputs left as they are, for a
    /// negative `extra`, and where an int can't hold the sum.
    int allocBufAndReadFromFile(const char* path, unsigned char** buf, int* size, int extra);

  protected:
    CameraPlatformInfoZelvan();
    ~CameraPlatformInfoZelvan();

    /// The phone's camera devices by device id.
    static NamedTable<RoleIdDesc> DeviceId2RoleId;
    static const RoleIdDescMap PhysicalDeviceId2RoleId;
    static const MemberRolesMap RoleId2MemberRoleIds;

    NameMap mMakerNames;
    NamedTable<FuseIdDescriptor> mRoleId2FuseIdDescriptorsMap{"mRoleId2FuseIdDescriptorsMap"};
    NamedTable<const char*> mRoleId2ModuleName{"mRoleId2ModuleName"};
    NamedTable<const char*> mZVSensorInfoProp{"mZVSensorInfoProp"};
    NameMap mAFInfoProp;
    std::map<int, CamCalAllDataPtr> mCamCalData;  ///< by role; null after a failed read
    NameMap mReserved;
    std::string mModuleInfo;
    unsigned long mDataBinExistMask = 0;  ///< bits of platforminfo/DataBins.h
    QRCodeMap mQRCodes;
};
