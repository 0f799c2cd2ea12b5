// The smallest phone that the plug-in can be linked against: no camera, no calibration driver, and properties
// that are printed.
#include <cstdio>
#include <utility>

#include "platform/CamCalDrv.h"
#include "platform/DevicePath.h"
#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"
#include "platform/IMetadata.h"
#include "platform/IMetadataProvider.h"
#include "platform/ImgSensorDrv.h"
#include "platform/Properties.h"
#include "platform/ThirdCalibration.h"

namespace NSCam {

IMetadata::Memory::Memory(const void* bytes, std::size_t size)
    : mBytes(static_cast<const std::uint8_t*>(bytes), static_cast<const std::uint8_t*>(bytes) + size) {}

std::uint8_t* IMetadata::Memory::editArray() {
    return mBytes.data();
}

void IMetadata::Memory::resize(std::size_t size) {
    mBytes.resize(size);
}

void IMetadata::Memory::append(const Memory& other) {
    mBytes.insert(mBytes.end(), other.mBytes.begin(), other.mBytes.end());
}

IMetadata::IEntry::IEntry(Tag_t tag) : mTag(tag) {}

IMetadata::Tag_t IMetadata::IEntry::tag() const {
    return mTag;
}

std::size_t IMetadata::IEntry::count() const {
    return 0;
}

bool IMetadata::IEntry::isEmpty() const {
    return true;
}

template <typename Item>
void IMetadata::IEntry::append(const Item&) {}

template <typename Item>
Item IMetadata::IEntry::itemAt(std::size_t) const {
    return {};
}

#define ITEM_TYPE(Item)                                         \
    template void IMetadata::IEntry::append<Item>(const Item&); \
    template Item IMetadata::IEntry::itemAt<Item>(std::size_t) const;
ITEM_TYPE(std::int32_t)
ITEM_TYPE(std::int64_t)
ITEM_TYPE(float)
ITEM_TYPE(unsigned char)
ITEM_TYPE(IMetadata::Memory)

int IMetadata::update(Tag_t, const IEntry&) {
    return -1;
}

IMetadata::IEntry IMetadata::entryFor(Tag_t tag) const {
    return IEntry(tag);
}

IMetadataProvider* NSMetadataProviderManager::valueForByDeviceId(std::uint32_t) {
    return nullptr;
}

IHalSensorList* IHalSensorList::get() {
    return nullptr;
}

CamCalHelper* CamCalHelper::getInstance() {
    return nullptr;
}

}  // namespace NSCam

LogicalDeviceListFactory getMtkcamModuleFactory(std::uint32_t) {
    return nullptr;
}

CamCalDrvBase* CamCalDrvBase::createInstance() {
    return nullptr;
}

ImgSensorDrv* ImgSensorDrv::getInstance(IMGSENSOR_SENSOR_IDX) {
    return nullptr;
}

void ThirdCalibration::set3rdCalibration(unsigned char*, int) {}

std::string DevicePath(const char* path) {
    return path;
}

int property_get(const char*, char* value, const char* otherwise) {
    return std::snprintf(value, PROPERTY_VALUE_MAX, "%s", otherwise == nullptr ? "" : otherwise);
}

std::int32_t property_get_int32(const char*, std::int32_t otherwise) {
    return otherwise;
}

int property_set(const char* key, const char* value) {
    return std::printf("%s=%s\n", key, value) < 0 ? -1 : 0;
}
