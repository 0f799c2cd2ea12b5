#pragma once

#include "record/Events.h"
#include "record/internal/ReportNode.h"

/// The events of a report, from JSON. Each raises ReportError for a value that is no such event.
namespace record {

PropertySet ReadPropertySet(const ReportNode& node);
ProviderMerge ReadProviderMerge(const ReportNode& node);
HandOver ReadHandOver(const ReportNode& node);
EepromRead ReadEepromRead(const ReportNode& node);
LogLine ReadLogLine(const ReportNode& node);

/// An event that stands in no list of its own.
Event ReadInlineEvent(const ReportNode& node);

}  // namespace record
