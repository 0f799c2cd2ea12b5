#include <cmath>
#include <cstring>
#include <limits>
#include <regex>

#include <gmock/gmock.h>

#include "analysis/Diagnosis.h"
#include "analysis/MemoryMap.h"
#include "tables/PublishedTags.h"
#include "virtualphone/PhoneFile.h"
#include "zvcam/views/EepromPicture.h"
#include "zvcam/views/StreamsPicture.h"
#include "zvcam/views/ZoomRulers.h"

namespace zvcam {
namespace {

/// Every match of a pattern, as the numbers of its groups.
std::vector<std::vector<int>> Numbers(const std::string& text, const std::regex& pattern) {
    std::vector<std::vector<int>> found;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
        std::vector<int>& numbers = found.emplace_back();
        for (std::size_t i = 1; i < match->size(); ++i) {
            numbers.push_back(std::stoi((*match)[i]));
        }
    }
    return found;
}

/// The cells that a path of "M", "H", "V", "v" and "z" encloses.
int Area(const std::string& path) {
    static const std::regex command("([MHVvz])(?:(\\d+)(?: (\\d+))?)?");
    int x = 0;
    int y = 0;
    std::pair<int, int> start;
    int doubled = 0;
    const auto to = [&](int toX, int toY) {
        doubled += x * toY - toX * y;
        x = toX;
        y = toY;
    };
    for (std::sregex_iterator match(path.begin(), path.end(), command), end; match != end; ++match) {
        const int number = (*match)[2].matched ? std::stoi((*match)[2]) : 0;
        switch ((*match)[1].str()[0]) {
            case 'M':
                start = {number, std::stoi((*match)[3])};
                std::tie(x, y) = start;
                break;
            case 'H':
                to(number, y);
                break;
            case 'V':
                to(x, number);
                break;
            case 'v':
                to(x, y + number);
                break;
            default:
                to(start.first, start.second);
        }
    }
    return doubled / 2;
}

TEST(EepromPicture, FillsEveryByteThatIsNotZeroOnceAndOutlinesAsManyCellsAsARangeHasBytes) {
    const virtualphone::PhoneDescription phone = virtualphone::ReadPhoneFile(PHONES "/halcyrion.json");
    std::vector<std::uint8_t> image = phone.sensors[0].eeprom->image;
    image[127] = image[128] = 0xFF;  // neighbours by number, not on the picture
    analysis::Module module;
    module.image = image;
    module.memory = analysis::MemoryOf(image, formats::FindEepromLayout(image), 0);
    const std::string picture = EepromPicture(module).html();

    std::vector<int> filled(image.size());
    for (const auto& run : Numbers(picture, std::regex("M(\\d+) (\\d+)h(\\d+)"))) {
        ASSERT_LE(run[0] + run[2], 128);
        for (int i = 0; i < run[2]; ++i) {
            ++filled[static_cast<std::size_t>(run[1] * 128 + run[0] + i)];
        }
    }
    for (std::size_t i = 0; i < image.size(); ++i) {
        ASSERT_EQ(filled[i], image[i] == 0 ? 0 : 1) << i;
    }

    const std::regex outline("<path d=\"([^\"]*z)\" class=\"mark");
    std::sregex_iterator drawn(picture.begin(), picture.end(), outline);
    for (const analysis::MarkedRange& range : analysis::MarkedRangesOf(image, module.memory->layout, 0)) {
        ASSERT_NE(drawn, std::sregex_iterator());
        EXPECT_EQ(Area((*drawn++)[1]), static_cast<int>(range.last - range.first + 1)) << range.name;
    }
    EXPECT_EQ(drawn, std::sregex_iterator());
}

TEST(ZoomRulers, MarkWhatLiesOnTheControlWhateverARecordHolds) {
    formats::ZoomScaleRecord record = {.type = 1, .count = 255};
    record.ratios[3] = std::numeric_limits<float>::max();
    record.positions = {0, NAN, INFINITY, std::numeric_limits<float>::max(), -5, -INFINITY, -0.0F};
    std::vector<std::uint8_t> blob(sizeof(record));
    std::memcpy(blob.data(), &record, sizeof(record));
    const record::Tag tag = {.tag = ZELVAN_CAMERA_SAT_ZOOM_INFO,
                             .values = record::TagValues(std::vector<record::Blob>{blob})};
    const std::string rulers = ZoomRulers(tag).html();
    EXPECT_EQ(Numbers(rulers, std::regex("<path d=\"M-?(\\d+) 22v16\"")),
              (std::vector<std::vector<int>>{{0}, {800}, {0}, {0}, {0}, {0}}));
    EXPECT_THAT(rulers, testing::HasSubstr(">340282346638528859811704183484516925440</text>"));
}

TEST(StreamsPicture, DrawsAnyNumbersToOneScale) {
    const auto stream = [](std::int64_t width, std::int64_t height) {
        return analysis::OfferedStream{.row = {.format = 33,
                                               .width = width,
                                               .height = height,
                                               .direction = {},
                                               .minDuration = {},
                                               .stall = {}}};
    };
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    const analysis::SharedStreams list = {
        .streams = {stream(kMost, kMost), stream(kMost / 2, kMost / 4), stream(-kMost, 0)}, .merges = {0}};
    const std::string picture = StreamsPicture(list, ScaleOf({list}), "all").html();
    EXPECT_EQ(Numbers(picture, std::regex("width=\"(\\d+)[.\\d]*\" height=\"(\\d+)[.\\d]*\" class=\"size\"")),
              (std::vector<std::vector<int>>{{170, 170}, {85, 42}, {0, 0}}));
}

}  // namespace
}  // namespace zvcam
