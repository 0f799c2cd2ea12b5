#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "zvcam/commands/Commands.h"
#include "zvcam/pages/CommandLine.h"
#include "zvcam/pages/Completion.h"
#include "zvcam/pages/Roff.h"

namespace {

namespace fs = std::filesystem;

/// What a line of a template that reads "@NAME@" stands for.
using Part = std::function<void(std::ostream&)>;

std::string ReadText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return text;
}

void FillIn(const fs::path& source, const fs::path& target, const std::map<std::string, Part>& parts) {
    std::ifstream in(source);
    std::ofstream out(target, std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        const auto part = parts.find(line);
        if (part != parts.end()) {
            part->second(out);
        } else {
            out << line << '\n';
        }
    }
    out.close();
    if (!in.eof() || !out) {
        throw std::runtime_error("cannot write " + target.string() + " from " + source.string());
    }
}

}  // namespace

/// zvcam_pages TEMPLATES DOCS OUT: writes the manual pages of zvcam, and what completes its command line in
/// bash and zsh, from the commands of the program and the pages of the documentation.
int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "zvcam_pages TEMPLATES DOCS OUT\n";
        return 2;
    }
    try {
        const fs::path templates = argv[1];
        const fs::path docs = argv[2];
        const fs::path out = argv[3];
        CLI::App app;
        std::function<int()> chosen;
        zvcam::AddCommands(app, chosen);
        const std::vector<zvcam::Command> commands = zvcam::CommandsOf(app);
        zvcam::CheckEveryChoiceHasItsArgument(commands);
        const auto page = [&](const char* name) -> Part {
            return [text = ReadText(docs / name)](std::ostream& stream) {
                zvcam::PrintMarkdownAsMdoc(stream, text);
            };
        };
        const std::map<std::string, Part> parts = {
            {"@COMMANDS@", [&](std::ostream& stream) { zvcam::PrintCommandsAsMdoc(stream, commands); }},
            {"@PHONE_FILE@", page("phone-file.md")},
            {"@REPORT@", page("report.md")},
            {"@BASH_TABLES@", [&](std::ostream& stream) { zvcam::PrintBashTables(stream, commands); }},
            {"@ZSH_FUNCTIONS@", [&](std::ostream& stream) { zvcam::PrintZshFunctions(stream, commands); }},
        };
        for (const char* const name :
             {"zvcam.1", "zvcam-phone.5", "zvcam-report.5", "zvcam.bash", "_zvcam"}) {
            FillIn(templates / (std::string(name) + ".in"), out / name, parts);
        }
    } catch (const std::exception& error) {
        std::cerr << "zvcam_pages: " << error.what() << '\n';
        return 1;
    }
}
