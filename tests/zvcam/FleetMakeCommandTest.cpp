#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/zvcam/FleetCommand.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST_F(FleetCommand, MadeFleetIsTheSameEverywhere) {
    make("made", 30, "lsc=0.1,duplicate=0.2");
    // The numbers of the generator, and no other library's.
    EXPECT_EQ(ReadText(file("made/troubled.csv")),
              "path,trouble,place\n"
              "phones/000/000000.json,lsc,back main\n"
              "phones/000/000010.json,duplicate,back ultra\n"
              "phones/000/000013.json,duplicate,back tele\n"
              "phones/000/000016.json,lsc,back ultra\n"
              "phones/000/000021.json,duplicate,back ultra\n"
              "phones/000/000024.json,duplicate,back ultra\n"
              "phones/000/000026.json,duplicate,back ultra\n"
              "phones/000/000029.json,duplicate,back ultra\n");
    EXPECT_THAT(
        ReadText(file("made/phones/000/000029.json")),
        AllOf(HasSubstr(R"("16":"3F9BE01E4A5261250000001D")"), HasSubstr(R"("16":"154091792A76000000001D")"),
              HasSubstr(R"("16":"6175C3FEFA737355CB9FCFB80000001D")"),
              // The ultra's is that of the phone before.
              HasSubstr(R"("16":"87793527E3F58C9B890420850000001C")")));
}

/// Whatever ends it, there is no half a fleet in the way of the next one.
TEST_F(FleetCommand, InterruptedMakeLeavesNothing) {
    const std::string make = "{ " + program() + "fleet make --count 100000 -o ";
    for (const char* const folder : {"new", "empty"}) {
        std::filesystem::create_directory(file("empty"));
        const std::string wait = " & for i in $(seq 2000); do test -s '" + file(folder).string() +
                                 "'/phones/000/000100.json && break; sleep 0.01; done";
        EXPECT_EQ(StatusOf(make + folder + " 2>interrupted" + wait + "; kill -TERM $!; wait $!; }"),
                  128 + SIGTERM);
        EXPECT_THAT(ReadText(file("interrupted")), HasSubstr("zvcam: interrupted; nothing of "));
        EXPECT_FALSE(std::filesystem::exists(file("new")));
        EXPECT_TRUE(std::filesystem::is_empty(file("empty")));
    }
}

}  // namespace
