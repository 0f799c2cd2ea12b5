#include "zvcam/views/DiffView.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "zvcam/views/MetadataView.h"

namespace zvcam {

namespace {

/// Lines of the log that are shown without being asked for.
constexpr std::size_t kShownLogLines = 40;

/// Prints the two sides of differences.
class Sides {
  public:
    Sides(std::ostream& out, const Style& style) : mOut(out), mStyle(style) {}

    void heading(const char* title, std::size_t count) {
        mOut << mStyle.bold(std::string(title) + " (" + std::to_string(count) + ")") << '\n';
    }
    void item(std::string_view text) { mOut << "  " << Printable(text) << '\n'; }
    void left(std::string_view text) { mOut << "  " << mStyle.bad("- " + Printable(text)) << '\n'; }
    void right(std::string_view text) { mOut << "  " << mStyle.good("+ " + Printable(text)) << '\n'; }

    void both(const analysis::Difference& difference) {
        item(difference.item);
        if (difference.left) {
            left(*difference.left);
        }
        if (difference.right) {
            right(*difference.right);
        }
    }

  private:
    std::ostream& mOut;
    const Style& mStyle;
};

void Print(Sides& sides, const char* title, const std::vector<analysis::Difference>& differences) {
    if (!differences.empty()) {
        sides.heading(title, differences.size());
    }
    for (const analysis::Difference& difference : differences) {
        sides.both(difference);
    }
}

std::string FileText(const record::ChangedFile& file, const record::ChangedFile* other) {
    std::string text = ModeText(file.mode) + ", " + BlobText(file.bytes);
    if (other != nullptr) {
        const auto at =
            std::mismatch(file.bytes.begin(), file.bytes.end(), other->bytes.begin(), other->bytes.end());
        if (at.first != file.bytes.end()) {
            text += ", at " + HexNumber(static_cast<std::uint32_t>(at.first - file.bytes.begin())) + " " +
                    HexNumber(*at.first);
        }
    }
    return text;
}

/// The lines of `from` that `without` lacks, counted by value.
std::vector<std::string> Surplus(const std::vector<std::string>& from,
                                 const std::vector<std::string>& without) {
    std::map<std::string_view, std::ptrdiff_t> left;
    for (const std::string& line : without) {
        ++left[line];
    }
    std::vector<std::string> surplus;
    for (const std::string& line : from) {
        if (--left[line] < 0) {
            surplus.push_back(line);
        }
    }
    return surplus;
}

std::vector<std::string> Lines(std::uint32_t tag, const record::TagValues* values) {
    return values == nullptr ? std::vector<std::string>() : ValueLines({.tag = tag, .values = *values});
}

/// "device 4", "devices 4, 4/0 and 7".
std::string Devices(const std::vector<std::string>& numbers) {
    return (numbers.size() == 1 ? "device " : "devices ") + Listed(numbers);
}

void PrintTagDifference(Sides& sides, const analysis::TagDifference& difference) {
    const std::vector<std::string> left = Lines(difference.tag, difference.left);
    const std::vector<std::string> right = Lines(difference.tag, difference.right);
    const auto counted = [](const record::TagValues& values) {
        return std::string(tables::NameOf(values.type())) + "[" + std::to_string(values.count()) + "]";
    };
    sides.item(Devices(difference.devices) + ": " + TagName(difference.tag) + " (" +
               HexNumber(difference.tag) + ")");
    if (difference.left == nullptr) {
        sides.right(counted(*difference.right));
        return;
    }
    if (difference.right == nullptr) {
        sides.left(counted(*difference.left));
        return;
    }
    const std::vector<std::string> gone = Surplus(left, right);
    const std::vector<std::string> come = Surplus(right, left);
    for (const std::string& line : gone) {
        sides.left(line);
    }
    for (const std::string& line : come) {
        sides.right(line);
    }
    if (gone.empty() && come.empty()) {
        sides.item(left == right ? "  (the same at a glance, other bytes)"
                                 : "  (the same rows in another order)");
    }
}

/// Each text once, with how often it stands.
std::vector<std::string> CountedLines(const std::vector<std::string>& lines) {
    std::vector<std::pair<std::string, std::size_t>> counts;
    for (const std::string& line : lines) {
        const auto known = std::find_if(counts.begin(), counts.end(),
                                        [&](const auto& entry) { return entry.first == line; });
        if (known == counts.end()) {
            counts.emplace_back(line, 1);
        } else {
            ++known->second;
        }
    }
    std::vector<std::string> texts;
    texts.reserve(counts.size());
    for (const auto& [line, count] : counts) {
        texts.push_back(count == 1 ? line : line + "   (" + std::to_string(count) + " times)");
    }
    return texts;
}

void PrintLog(Sides& sides, const std::vector<analysis::LogDifference>& log, bool everyLine) {
    if (log.empty()) {
        return;
    }
    sides.heading("Log, by step", log.size());
    std::size_t lines = 0;
    for (const analysis::LogDifference& difference : log) {
        lines += difference.left.size() + difference.right.size();
    }
    everyLine = everyLine || lines <= kShownLogLines;
    for (const analysis::LogDifference& difference : log) {
        std::string name =
            difference.step + (difference.devices.empty() ? "" : " of " + Devices(difference.devices));
        if (difference.reordered) {
            sides.item(name + ": the same lines in another order");
        } else if (!everyLine) {
            sides.item(name + ": -" + std::to_string(difference.left.size()) + " +" +
                       Counted(difference.right.size(), "line"));
        } else {
            sides.item(name);
            for (const std::string& line : CountedLines(difference.left)) {
                sides.left(line);
            }
            for (const std::string& line : CountedLines(difference.right)) {
                sides.right(line);
            }
        }
    }
    if (!everyLine) {
        sides.item("(the lines: zvcam diff --log)");
    }
}

}  // namespace

void PrintDifferences(std::ostream& out, const analysis::Differences& differences, bool everyLine,
                      const Style& style) {
    Sides sides(out, style);
    Print(sides, "Ending", differences.endings);
    Print(sides, "Properties", differences.properties);
    if (!differences.files.empty()) {
        sides.heading("Files", differences.files.size());
    }
    for (const analysis::FileDifference& difference : differences.files) {
        sides.item(difference.path);
        if (difference.left != nullptr) {
            sides.left(FileText(*difference.left, difference.right));
        }
        if (difference.right != nullptr) {
            sides.right(FileText(*difference.right, difference.left));
        }
    }
    Print(sides, "Devices", differences.devices);
    if (!differences.tags.empty()) {
        sides.heading("Tags", differences.tags.size());
    }
    for (const analysis::TagDifference& difference : differences.tags) {
        PrintTagDifference(sides, difference);
    }
    Print(sides, "Third calibration hand-overs", differences.handOvers);
    PrintLog(sides, differences.log, everyLine);
}

}  // namespace zvcam
