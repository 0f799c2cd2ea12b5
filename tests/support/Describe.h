#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "platform/IMetadata.h"
#include "record/TagValues.h"

/// A metadata entry as text: "int32 [60, 62]", "float [0.6]", "byte [3]", "memory [4104 bytes]", or "none"
/// while it is empty.
std::string Describe(const record::TagValues& values);
std::string Describe(const NSCam::IMetadata::IEntry& entry);

/// Descriptions by tag, such as {"0x91010021", "int32 [60]"}.
using Tags = std::map<std::string, std::string>;

Tags DescribeAll(const NSCam::IMetadata& metadata);
Tags DescribeAll(const record::TagSet& metadata);

/// The bytes of an entry's first item of type "memory"; none where it has no such item.
record::Blob BlobOf(const NSCam::IMetadata::IEntry& entry);

/// A tag as `DescribeAll` names it.
std::string TagText(std::uint32_t tag);

/// Bytes as upper-case hexadecimal digits.
std::string HexText(std::span<const std::uint8_t> bytes);
