#include <sstream>

#include <gmock/gmock.h>

#include "zvcam/views/Html.h"

namespace zvcam {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string kHostile = "</td><script>alert('1')</script>\" onclick=\"x & \x1B[1m\xE2\x80\xAE\xFF";

TEST(Html, TextStaysTextInElementsAndAttributes) {
    EXPECT_EQ(
        Element("td", {{"title", kHostile}, {"class", ""}}, "<" + kHostile).html(),
        R"(<td title="&lt;/td&gt;&lt;script&gt;alert(&#39;1&#39;)&lt;/script&gt;&quot; onclick=&quot;x &amp; )"
        R"(\x1B[1m\u202E\xFF">&lt;&lt;/td&gt;&lt;script&gt;alert(&#39;1&#39;)&lt;/script&gt;&quot; )"
        R"(onclick=&quot;x &amp; \x1B[1m\u202E\xFF</td>)");
}

TEST(Html, TableHasHeadingsForItsColumnsAndRows) {
    HtmlTable table("Properties", {{"name"}, {"size", HtmlTable::Column::Kind::Number}});
    table.searchable("property").row({"a", "1"}, {{"class", "error"}});
    EXPECT_EQ(table.markup().html(),
              R"(<div class="wide" role="region" tabindex="0" aria-label="Properties">)"
              R"(<table data-kind="property"><caption>Properties</caption>)"
              R"(<thead><tr><th scope="col">name</th><th scope="col" class="number">size</th></tr>)"
              "\n</thead>"
              R"(<tbody><tr class="error"><th scope="row">a</th><td class="number">1</td></tr>)"
              "\n</tbody></table></div>");
}

TEST(Html, AStackedTableSaysItsHeadingsInItsCells) {
    HtmlTable table("Modules", {{"module"}, {"chip"}, {"modules", HtmlTable::Column::Kind::Number}});
    table.stacked().row({"back main", "imx707", "7"});
    EXPECT_THAT(table.markup().html(),
                HasSubstr(R"(<th scope="row">back main</th><td data-heading="chip">imx707</td>)"
                          R"(<td class="number" data-heading="modules">7</td>)"));
    EXPECT_THAT(table.markup().html(), HasSubstr(R"(<table class="stacked">)"));
}

TEST(Html, TargetsSurviveAnAddress) {
    EXPECT_EQ(SearchTarget("a b&in=#<%\xC3\xA4"), "#q=a%20b%26in%3D%23%3C%25%C3%A4");
    EXPECT_EQ(IdOf("back main/4 <"), "back-main-4--");
}

TEST(Html, PageNamesItsPartsAndHoldsNothingHostile) {
    const Page page = {.title = kHostile,
                       .about = kHostile,
                       .lead = {},
                       .sections = {{"log", kHostile, kHostile}},
                       .kinds = {{"line", kHostile}}};
    std::ostringstream out;
    WritePage(out, page);
    EXPECT_THAT(out.str(), testing::StartsWith("<!DOCTYPE html>\n<html lang=\"en\">"));
    EXPECT_THAT(out.str(), HasSubstr(R"(<a href="#log">&lt;/td&gt;)"));
    EXPECT_THAT(out.str(), HasSubstr(R"(<section id="log" aria-labelledby="log-heading">)"));
    EXPECT_THAT(out.str(), Not(HasSubstr("alert('")));
    EXPECT_THAT(out.str(), Not(HasSubstr("\" onclick")));
}

}  // namespace
}  // namespace zvcam
