#include "zvcam/pages/Completion.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string_view>

#include "analysis/TagContents.h"
#include "tables/EepromLayouts.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"
#include "tables/PublishedTags.h"
#include "tables/PublishingOperations.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

/// A value that is one of the plug-in's names.
struct NamedValue {
    std::string_view command;
    std::string_view argument;  ///< an option, or the word that stands for a positional
    std::string_view kind;
};

constexpr std::array kNamedValues = {
    NamedValue{"getprop", "NAME", "property"},
    NamedValue{"dumpsys", "--tag", "tag"},
    NamedValue{"why", "ITEM", "item"},
    NamedValue{"logcat", "--step", "operation"},
    NamedValue{"streams", "--format", "format"},
    NamedValue{"eeprom", "--layout", "layout"},
    NamedValue{"calibration", "SOURCES", "file"},
    NamedValue{"diff", "A", "file"},
    NamedValue{"diff", "B", "file"},
    NamedValue{"fleet run", "SOURCE", "file"},
};

bool Has(const Argument& argument, std::string_view name) {
    return argument.names.empty()
               ? argument.value == name
               : std::find(argument.names.begin(), argument.names.end(), name) != argument.names.end();
}

std::vector<std::string> Sorted(const std::set<std::string>& names) {
    return {names.begin(), names.end()};
}

std::vector<std::string> PropertyNames() {
    std::set<std::string> names;
    for (const tables::PublishedProperty& property : tables::PublishedProperties()) {
        names.insert(property.name);
    }
    return Sorted(names);
}

std::vector<std::string> TagNames() {
    std::set<std::string> names;
    for (const tables::PublishedTag& tag : tables::PublishedTags()) {
        names.insert(tag.name);
    }
    return Sorted(names);
}

std::vector<std::string> FileNames() {
    std::set<std::string> names;
    for (const tables::PublishedFile& file : tables::PublishedFiles()) {
        names.insert(file.path);
    }
    return Sorted(names);
}

std::vector<std::string> OperationNames() {
    std::set<std::string> names;
    for (const tables::PublishingOperation& operation : tables::PublishingOperations()) {
        names.insert(operation.name);
    }
    return Sorted(names);
}

std::vector<std::string> LayoutNames() {
    std::vector<std::string> names;
    names.reserve(tables::kEepromLayouts.size());
    for (const EepromCheckSumDesc& layout : tables::kEepromLayouts) {
        names.emplace_back(layout.eepromName);
    }
    return names;
}

std::vector<std::string> Joined(std::vector<std::string> left, const std::vector<std::string>& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// A text that a shell takes as it is.
std::string Words(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

void PrintRow(std::ostream& out, std::string_view key, std::string_view value) {
    out << "    [" << ShellQuoted(key.empty() ? "-" : key) << "]=" << ShellQuoted(value) << '\n';
}

/// A description inside an argument as zsh takes it, where brackets and colons part things.
std::string ZshText(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '[' || character == ']' || character == ':') {
            escaped += '\\';
        }
        escaped += character;
    }
    return escaped;
}

std::string ZshAction(const std::string& kind) {
    if (kind.empty()) {
        return " ";
    }
    return kind == "file" ? "_files" : kind == "folder" ? "_files -/" : "_zvcam_" + kind;
}

std::string ZshFunction(std::string_view path) {
    std::string name = "_zvcam_command_";
    for (const char character : path) {
        name += character == ' ' || character == '-' ? '_' : character;
    }
    return name;
}

void PrintZshFunction(std::ostream& out, const Command& command, std::span<const Command> commands) {
    out << ZshFunction(command.path) << "() {\n    _arguments -s -S -C";
    for (const Argument& option : command.options) {
        for (const std::string& name : option.names) {
            std::string others;
            if (!option.repeated && option.names.size() > 1) {
                others = "(" + Words(option.names) + ")";
            }
            std::string argument = (option.repeated ? "*" : others) + name;
            if (!option.value.empty() && name.starts_with("--")) {
                argument += "=";
            }
            argument += "[" + ZshText(option.description) + "]";
            if (!option.value.empty()) {
                argument += ":" + ZshText(option.value) + ":" + ZshAction(KindOf(command, option));
            }
            out << " \\\n        " << ShellQuoted(argument);
        }
    }
    if (!command.commands.empty()) {
        out << " \\\n        '1:command:->first' \\\n        '*::argument:->rest'";
    } else {
        for (const Argument& positional : command.positionals) {
            out << " \\\n        "
                << ShellQuoted((positional.repeated ? "*:" : ":") + ZshText(positional.value) + ":" +
                               ZshAction(KindOf(command, positional)));
        }
    }
    out << '\n';
    if (!command.commands.empty()) {
        out << "    case $state in\n        first)\n            local -a commands=(\n";
        for (const Command& below : commands) {
            const std::size_t space = below.path.rfind(' ');
            const std::string parent = space == std::string::npos ? "" : below.path.substr(0, space);
            if (!below.path.empty() && parent == command.path) {
                const std::string name =
                    space == std::string::npos ? below.path : below.path.substr(space + 1);
                out << "                " << ShellQuoted(name + ":" + ZshText(below.description)) << '\n';
            }
        }
        out << "            )\n            _describe -t commands command commands\n";
        for (const Argument& positional : command.positionals) {
            out << "            " << ZshAction(KindOf(command, positional)) << '\n';
        }
        out << "            ;;\n        rest)\n            case $words[1] in\n";
        for (const std::string& name : command.commands) {
            const std::string path = command.path.empty() ? name : command.path + " " + name;
            out << "                " << name << ") " << ZshFunction(path) << " ;;\n";
        }
        for (const Argument& positional : command.positionals) {
            if (positional.repeated) {
                out << "                *) " << ZshAction(KindOf(command, positional)) << " ;;\n";
            }
        }
        out << "            esac\n            ;;\n    esac\n";
    }
    out << "}\n\n";
}

}  // namespace

std::vector<Choice> Choices() {
    const std::vector<std::string> properties = PropertyNames();
    const std::vector<std::string> tags = TagNames();
    std::vector<std::string> settings = properties;
    settings.insert(settings.end(), {tables::kEepromDumpProperty, tables::kThemeProperty});
    for (std::string& setting : settings) {
        setting += "=";
    }
    return {{"property", properties},
            {"setting", settings},
            {"tag", tags},
            {"item", Joined(Joined(properties, tags), FileNames())},
            {"operation", OperationNames()},
            {"format", analysis::FormatNames()},
            {"layout", LayoutNames()}};
}

std::string KindOf(const Command& command, const Argument& argument) {
    for (const NamedValue& value : kNamedValues) {
        if (value.command == command.path && Has(argument, value.argument)) {
            return std::string(value.kind);
        }
    }
    if (argument.value == "NAME=VALUE") {
        return "setting";
    }
    // A positional may say by its name alone what it takes.
    if (argument.type == "DIR" || argument.value == "DIR" || argument.type == "FOLDER") {
        return "folder";
    }
    return argument.type == "FILE" || argument.type == "P" ? "file" : "";
}

void CheckEveryChoiceHasItsArgument(std::span<const Command> commands) {
    for (const NamedValue& value : kNamedValues) {
        const bool isThere = std::any_of(commands.begin(), commands.end(), [&](const Command& command) {
            const auto has = [&](const Argument& argument) { return Has(argument, value.argument); };
            return command.path == value.command &&
                   (std::any_of(command.options.begin(), command.options.end(), has) ||
                    std::any_of(command.positionals.begin(), command.positionals.end(), has));
        });
        if (!isThere) {
            throw std::logic_error("zvcam " + std::string(value.command) + " has no " +
                                   std::string(value.argument));
        }
    }
}

void PrintBashTables(std::ostream& out, std::span<const Command> commands) {
    out << "declare -gA _zvcam_commands=(\n";
    for (const Command& command : commands) {
        PrintRow(out, command.path, Words(command.commands));
    }
    out << ")\ndeclare -gA _zvcam_options=(\n";
    for (const Command& command : commands) {
        std::vector<std::string> names;
        for (const Argument& option : command.options) {
            names.insert(names.end(), option.names.begin(), option.names.end());
        }
        PrintRow(out, command.path, Words(names));
    }
    out << ")\n# What follows an option; \"none\": something, but nothing to choose from.\n"
           "declare -gA _zvcam_values=(\n";
    for (const Command& command : commands) {
        for (const Argument& option : command.options) {
            const std::string kind = KindOf(command, option);
            for (const std::string& name : option.names) {
                if (!option.value.empty()) {
                    PrintRow(out, command.path + " " + name, kind.empty() ? "none" : kind);
                }
            }
        }
    }
    out << ")\n# The last one of a command goes on where \"...\" follows.\ndeclare -gA "
           "_zvcam_positionals=(\n";
    for (const Command& command : commands) {
        std::vector<std::string> kinds;
        for (const Argument& positional : command.positionals) {
            const std::string kind = KindOf(command, positional);
            kinds.push_back(kind.empty() ? "none" : kind);
            if (positional.repeated) {
                kinds.emplace_back("...");
            }
        }
        PrintRow(out, command.path, Words(kinds));
    }
    out << ")\ndeclare -gA _zvcam_words=(\n";
    for (const Choice& choice : Choices()) {
        PrintRow(out, choice.kind, Words(choice.words));
    }
    out << ")\n";
}

void PrintZshFunctions(std::ostream& out, std::span<const Command> commands) {
    for (const Choice& choice : Choices()) {
        out << "_zvcam_" << choice.kind << "() {\n    local -a names=(\n";
        for (const std::string& word : choice.words) {
            out << "        " << ShellQuoted(word) << '\n';
        }
        out << "    )\n    compadd " << (choice.kind == "setting" ? "-S '' " : "") << "-a names\n}\n\n";
    }
    for (const Command& command : commands) {
        PrintZshFunction(out, command, commands);
    }
}

}  // namespace zvcam
