#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "platform/CamCalDrv.h"
#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"
#include "platform/IMetadata.h"
#include "platform/IMetadataProvider.h"
#include "record/BootRecord.h"

/// What a boot used the platform for, to be done again with nothing computed between: the same calls with the
/// same arguments, and the same log lines. That is the least that the boot can cost on this platform.
///
/// A few reads of single tags, which leave no trace in a record, are left out.
class Replay {
  public:
    /// @param events of a boot, in their order.
    /// @param files what it wrote.
    Replay(std::span<const record::Event> events, std::span<const record::ChangedFile> files);

    void run() const;

  private:
    /// What one call leaves for the next.
    struct Desk {
        NSCam::IMetadata metadata;
        NSCam::ILogicalDeviceList* devices = nullptr;
        NSCam::IHalSensorList* sensors = nullptr;
        NSCam::IHalSensor* sensor = nullptr;
        CamCalDrvBase* driver = nullptr;
        NSCam::CamCalHelper* helper = nullptr;
        NSCam::IMetadataProvider* provider = nullptr;
    };
    using Step = std::function<void(Desk&)>;

    Step stepOf(const record::LogLine& line);
    Step stepOf(const record::PropertyAsked& property);
    Step stepOf(const record::PropertySet& property);
    Step stepOf(const record::EepromRead& read);
    Step stepOf(const record::AutofocusRead& read);
    Step stepOf(const record::PathOpened& opened);
    Step stepOf(const record::Asked& question);
    Step stepOf(const record::ProviderAsked& question);
    Step stepOf(const record::TagStored& stored);
    Step stepOf(const record::ProviderMerge& merge);
    Step stepOf(const record::HandOver& block);

    std::vector<Step> mSteps;
    // What making the steps needs to know of what comes later and what came before.
    std::map<std::string, std::vector<std::uint8_t>> mWritten;  ///< contents by path
    std::vector<const record::TagSet*> mSets;                   ///< as they are merged, the next one last
    std::map<std::uint32_t, std::uint32_t> mCounts;             ///< items by tag of the set at work
};
