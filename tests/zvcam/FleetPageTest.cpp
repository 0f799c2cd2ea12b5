#include <cctype>
#include <filesystem>
#include <string>

#include "analysis/FleetRows.h"
#include "tests/zvcam/FleetCommand.h"
#include "zvcam/fleet/Database.h"
#include "zvcam/fleet/FleetDatabase.h"
#include "zvcam/fleet/Troubles.h"

namespace {

using testing::HasSubstr;

TEST(FleetPage, HasEveryTableAndTrouble) {
    const std::string page = ReadText(SOURCE "/docs/fleet.md");
    for (const analysis::FleetTable& table : analysis::FleetTables()) {
        std::string meaning = table.meaning;
        meaning[0] = static_cast<char>(std::toupper(meaning[0]));
        std::string section =
            "### " + std::string(table.name) + "\n\n" + meaning + ".\n\n| column | meaning |\n|---|---|\n";
        for (const analysis::FleetColumn& column : table.columns) {
            section += "| `" + std::string(column.name) + "` | " + column.meaning + " |\n";
        }
        EXPECT_THAT(page, HasSubstr(section + "\n"));
    }
    for (const std::string& name : zvcam::FleetTableNames()) {
        EXPECT_TRUE(page.find("### " + name) != std::string::npos ||
                    page.find("| `" + name + "` |") != std::string::npos)
            << name;
    }
    std::string troubles = "| trouble | what it is |\n|---|---|\n";
    for (const zvcam::Trouble& trouble : zvcam::Troubles()) {
        troubles += "| `" + std::string(trouble.name) + "` | " + trouble.meaning + " |\n";
    }
    EXPECT_THAT(page, HasSubstr(troubles));
}

TEST_F(FleetCommand, EachQueryOfThePageHasAnAnswer) {
    make("made", 200);
    write("list", ReadText(file("made/phones.txt")) + PHONES "/fieldtrouble.json\n");
    std::filesystem::rename(file("list"), file("made/list"));
    ASSERT_EQ(run("made/list", "fleet.sqlite").exitCode, 0);
    zvcam::Database database = zvcam::OpenFleet(file("fleet.sqlite"));
    const std::string page = ReadText(SOURCE "/docs/fleet.md");
    const std::string fence = "```sql\n";
    int queries = 0;
    for (std::size_t at = page.find(fence); at != std::string::npos; at = page.find(fence, at + 1)) {
        const std::size_t start = at + fence.size();
        const std::string query = page.substr(start, page.find("```", start) - start);
        EXPECT_TRUE(zvcam::Statement(database, query).step()) << query;
        ++queries;
    }
    EXPECT_EQ(queries, 10);
}

}  // namespace
