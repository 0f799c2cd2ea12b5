#include <regex>

#include "tests/zvcam/Zvcam.h"

namespace {

using testing::IsEmpty;
using testing::StartsWith;

const std::string kFakeBoot = "run phone.json --library '" FAKE_PLUGIN "' ";

TEST_F(Zvcam, PageHoldsEverythingThatWasPublished) {
    const Result result = zvcam(kFakeBoot + "--html page.html");
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_THAT(result.out, StartsWith("Phone small: 1 error line\n"));
    const std::string page = ReadText(file("page.html"));
    EXPECT_THAT(page, StartsWith("<!DOCTYPE html>\n"));
    const std::string kRows[] = {
        R"(<th scope="row" class="code">test.ending</th><td class="values">return</td>)",
        R"(<tr class="error"><th scope="row" class="code">refused</th><td class="values">\x1B[1m\xFF</td>)",
        R"(<th scope="row" class="values">/data/vendor/camera/made</th><td class="number">4</td>)"
        R"(<td class="code">0644</td><td class="values">4 bytes: 6D 61 64 65</td>)",
        R"(</th><td>provider 0x40007</td><td class="code">float[3]</td><td class="values">0.6 24 -inf</td>)",
        R"(<td class="code">memory[2]</td><td class="values"><details><summary>2 lines: 2 bytes: 01 AB ...</summary>)"
        "<pre tabindex=\"0\">2 bytes: 01 AB\n0 bytes\n</pre>",
        R"(<td class="code">none[0]</td><td class="values">none</td>)",
        R"(<th scope="row">hand-over</th><td class="number">3</td><td class="values">3 bytes: 01 02 FF</td>)",
        R"(<td class="number">3</td><td class="values"><span class="bad"><span aria-hidden="true">)"
        "\u2717</span>\u00A00 came back</span></td>",
        R"(<tr class="error" data-kind="error"><th scope="row" class="number">16</th>)"};
    for (const std::string& row : kRows) {
        EXPECT_NE(page.find(row), std::string::npos) << row;
    }
}

TEST_F(Zvcam, PageHasFilesThatWereWrittenAsTheyWere) {
    for (const char* const result : {"created or changed", "as before the boot"}) {
        ASSERT_EQ(zvcam(kFakeBoot + "--html page.html --root kept").exitCode, 0);
        EXPECT_THAT(ReadText(file("page.html")),
                    testing::ContainsRegex(">/data/vendor/camera/made</th>.*6D 61 64 65</td><td>" +
                                           std::string(result) + "</td>"));
    }
}

TEST_F(Zvcam, PageOfABootThatThrewSaysSoFirst) {
    const Result result = zvcam(kFakeBoot + "--html - --set 'test.ending=throw'");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "zvcam: the plug-in threw: off the end\n");
    EXPECT_NE(result.out.find(R"(<h1>small</h1><p class="ending" role="alert"><span class="bad">)"),
              std::string::npos);
}

/// From the line that announces a device to the last one before the next.
TEST_F(Zvcam, PageSaysWhichDeviceALogLineIsOf) {
    const std::string page = zvcam("run '" PHONES "/halcyrion.json' --html -").out;
    const std::regex row(
        "<td>I</td><td>([^<]*)</td><td>([A-Za-z0-9]+)</td><td class=\"values\">([^<]*)</td></tr>");
    std::string devices;
    std::string before;
    for (std::sregex_iterator line(page.begin(), page.end(), row); line != std::sregex_iterator(); ++line) {
        const std::string text = (*line)[3];
        if ((*line)[2] != "MetadataUpdate") {
            // A step of a device.
        } else if (text.starts_with("instanceId = ") || text.starts_with("physicalUniqueId = ")) {
            devices += before + " | " + (*line)[1].str() + " ";
        } else if (text == "exit") {
            devices += before + " |" + (*line)[1].str();
        }
        before = (*line)[1];
    }
    EXPECT_EQ(
        devices,
        " | 0 0 | 0/0 0/0 | 0/3 0/3 | 1 1 | 2 2 | 3 3 | 4 4 | 4/0 4/0 | 4/3 4/3 | 4/2 4/2 | 5 5 | 5/2 5/2 "
        "| 5/0 5/0 | 6 6 | 6/0 6/0 | 6/3 6/3 | 7 7 |");
}

TEST_F(Zvcam, PageIsRefusedWhereItWouldTakeThePlaceOfAnother) {
    const std::string phone = ReadText(file("phone.json"));
    for (const std::string outputs :
         {"--html phone.json", "--html '" FAKE_PLUGIN "'", "--html same --json ./same", "--html - --json -",
          "--html /dev/full", "--html none/page"}) {
        const Result result = zvcam(kFakeBoot + outputs);
        EXPECT_EQ(result.exitCode, 2) << outputs;
        EXPECT_THAT(result.error, StartsWith("zvcam: cannot write ")) << outputs;
        EXPECT_THAT(result.out, IsEmpty()) << outputs;
    }
    EXPECT_EQ(ReadText(file("phone.json")), phone);
    EXPECT_FALSE(std::filesystem::exists(file("same")));
}

}  // namespace
