#include <map>
#include <regex>
#include <sstream>
#include <vector>

#include "tests/zvcam/Zvcam.h"

namespace {

const std::string kIndent = "    ";

/// What the page shows of a command's output: indented, every thread with the id 1234.
std::string Shown(const std::string& output) {
    const std::regex thread("\\( *[0-9]+\\): \\([0-9]+\\)\\[");
    std::istringstream lines(std::regex_replace(output, thread, "( 1234): (1234)["));
    std::string shown;
    for (std::string line; std::getline(lines, line);) {
        shown += (line.empty() ? "" : kIndent + line) + "\n";
    }
    return shown;
}

TEST_F(Zvcam, ToolPageShowsWhatTheProgramPrints) {
    const std::string page = SOURCE "/docs/tool.md";
    const std::string text = ReadText(page);
    const std::string prompt = kIndent + "$ zvcam ";
    std::istringstream lines(text);
    std::string renewed;
    bool inSample = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(prompt)) {
            const Result result = zvcam(line.substr(prompt.size()), SOURCE);
            // What takes a minute on a slow machine says how far it is.
            static const std::regex kProgress("[^\n]* left\n");
            EXPECT_EQ(std::regex_replace(result.error, kProgress, ""), "") << line;
            renewed += (inSample ? "\n" : "") + line + "\n" + Shown(result.out);
            inSample = true;
        } else if (!inSample || !(line.starts_with(kIndent) || line.empty())) {
            renewed += (inSample ? "\n" : "") + line + "\n";
            inSample = false;
        }
    }
    if (std::getenv("ZELVAN_RENEW_GOLDEN") != nullptr) {
        std::ofstream(page) << renewed;
    }
    EXPECT_EQ(renewed, text) << "scripts/renew-golden writes the page anew.";
}

TEST_F(Zvcam, ReadmeShowsHowOutputsBegin) {
    const std::string prompt = kIndent + "$ zvcam ";
    std::map<std::string, std::string> samples;  // by command
    std::string* sample = nullptr;
    std::istringstream lines(ReadText(SOURCE "/README.md"));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(prompt)) {
            sample = &samples[line.substr(prompt.size())];
        } else if (!line.starts_with(kIndent) || line.ends_with(" ...")) {
            sample = nullptr;
        } else if (sample != nullptr) {
            *sample += line + "\n";
        }
    }
    EXPECT_EQ(samples.size(), 2U);
    for (const auto& [command, beginning] : samples) {
        EXPECT_THAT(Shown(zvcam(command, SOURCE).out), testing::StartsWith(beginning));
    }
}

}  // namespace
