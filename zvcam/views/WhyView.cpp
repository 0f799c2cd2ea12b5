#include "zvcam/views/WhyView.h"

#include <ostream>
#include <string>
#include <utility>

#include "zvcam/views/DiagnosisWords.h"
#include "zvcam/views/LogView.h"
#include "zvcam/views/MetadataView.h"

namespace zvcam {

namespace {

using analysis::Item;
using analysis::Reason;

/// Lines of a value that are shown; `dumpsys` has them all.
constexpr std::size_t kShownLines = 4;

std::string NameOf(const Item& item) {
    return item.kind == Item::Kind::Tag ? HexNumber(item.tag) + " " + item.name : item.name;
}

std::string ForDevice(const Reason& reason) {
    return reason.device ? " for " + DeviceText(*reason.device) : "";
}

void PrintValue(std::ostream& out, const Reason& reason) {
    if (reason.property != nullptr) {
        out << "  " << Printable(reason.property->value) << '\n';
    }
    if (reason.file != nullptr) {
        out << "  " << ModeText(reason.file->mode) << "  " << BlobText(reason.file->bytes) << '\n';
    }
    if (reason.tag != nullptr) {
        const std::vector<std::string> lines = ValueLines(*reason.tag);
        for (std::size_t i = 0; i < lines.size() && i < kShownLines; ++i) {
            out << "  [" << lines[i] << "]\n";
        }
        if (lines.size() > kShownLines) {
            out << "  and " << lines.size() - kShownLines << " more: zvcam dumpsys --tag " << reason.item.name
                << '\n';
        }
    }
}

void PrintUnpublished(std::ostream& out, const Reason& reason, const Style& style) {
    if (reason.property != nullptr || reason.refused) {
        out << style.bad("The platform refused it: ")
            << (reason.property != nullptr ? Printable(reason.property->value)
                                           : std::to_string(*reason.refused))
            << '\n'
            << reason.item.operation.name << " asked it to store this.\n";
        return;
    }
    out << reason.item.operation.name;
    if (!reason.noDevices.empty()) {
        out << " would have stored it for a device, and none was updated: " << Printable(reason.noDevices)
            << ".\n";
    } else if (!reason.stepRan) {
        out << " would have stored it, and did not run or left no trace.\n";
    } else if (!reason.appliesToRole) {
        out << " stores it for devices of other roles.\n";
    } else if (!reason.noFuseId.empty()) {
        out << " would have stored it, but " << reason.noFuseId << ".\n";
    } else if (reason.gaveUp != nullptr) {
        out << " would have stored it and stopped here:\n  " << PriorityLetter(reason.gaveUp->priority) << ' '
            << style.bad(Printable(record::TextOf(*reason.gaveUp))) << '\n';
    } else if (reason.endedInIt) {
        out << " would have stored it, and the boot ended before it could.\n";
    } else {
        out << " would have stored it, and found no reason to.\n";
    }
}

void PrintLines(std::ostream& out, const Reason& reason) {
    const char* heading = "It logged:\n";
    for (const analysis::LineGroup& group : reason.lines) {
        // The line with which it gave up stands above.
        if (group.line == reason.gaveUp && group.alike == 0) {
            continue;
        }
        out << std::exchange(heading, "");
        const std::string_view operation = record::OperationOf(*group.line);
        out << "  " << PriorityLetter(group.line->priority) << ' ';
        if (operation != reason.item.operation.name) {
            out << '[' << (operation.empty() ? Printable(group.line->tag) : Printable(operation)) << "] ";
        }
        const std::string_view text = record::TextOf(*group.line);
        out << Printable(text.substr(0, text.find_last_not_of(" \n") + 1));
        if (group.alike > 0) {
            out << "   (and " << group.alike << " like it)";
        }
        out << '\n';
    }
}

void PrintQuestions(std::ostream& out, const Reason& reason, bool ordered) {
    if (!ordered) {
        out << "What it asked the platform for, the report does not say.\n";
        return;
    }
    if (!reason.questions.empty()) {
        out << "It asked the platform for:\n";
    }
    for (const analysis::Question& question : reason.questions) {
        out << "  " << Printable(question.words);
        if (question.times > 1) {
            out << "   (" << question.times << " times)";
        }
        out << '\n';
    }
}

}  // namespace

void PrintReason(std::ostream& out, const Reason& reason, const record::BootRecord& boot,
                 const Style& style) {
    const bool published = reason.published();
    out << style.bold(NameOf(reason.item))
        << (published         ? " was published"
            : reason.fileLaid ? " was laid before the boot, and not written"
                              : " was not published")
        << ForDevice(reason) << (published ? " by " + std::string(reason.item.operation.name) : "")
        << (reason.fileRewritten ? ", with the content that it had before the boot" : "") << ".\n";
    if (published) {
        PrintValue(out, reason);
    } else {
        PrintUnpublished(out, reason, style);
    }
    out << "It says: " << reason.item.about << ". Source: " << reason.item.operation.sourceFile << '\n';
    PrintLines(out, reason);
    if (reason.helperLines > 0) {
        out << "  (and " << Counted(reason.helperLines, "line")
            << " of beginnings, ends and shared helpers: zvcam logcat --step " << reason.item.operation.step
            << ")\n";
    }
    PrintQuestions(out, reason, boot.ordered);
    if (const std::string words = ForeignFilesText(boot); !words.empty()) {
        out << words << '\n';
    }
}

}  // namespace zvcam
