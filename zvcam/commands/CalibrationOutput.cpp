#include "zvcam/commands/CalibrationOutput.h"

#include <ostream>

#include "analysis/CalibrationFiles.h"
#include "formats/DualCalibrationFile.h"
#include "formats/Hex.h"
#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/CalibrationView.h"
#include "zvcam/views/Text.h"

namespace zvcam {

void AddForce(CLI::App& command, CalibrationOutput& options) {
    command.add_flag("--force", options.force, "Write over a file that exists");
}

void AddCalibrationOutput(CLI::App& command, CalibrationOutput& options) {
    command.add_option("-o,--output", options.output, "The file to write; \"-\": standard output")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    AddForce(command, options);
}

std::string CheckFuseId(const std::string& text) {
    const auto bytes = formats::ParseHex(text);
    return bytes && bytes->size() <= formats::kLongestFuseId
               ? ""
               : "expected at most " + std::to_string(formats::kLongestFuseId) +
                     " bytes, each as two hexadecimal digits, got " +
                     (bytes ? Counted(bytes->size(), "byte") : "\"" + text + "\"");
}

int WriteCalibration(const CalibrationOutput& options, const std::vector<std::string>& inputs,
                     const std::vector<std::uint8_t>& bytes) {
    CheckOutputs({options.output}, inputs, options.force);
    WriteFile(options.output, bytes);
    const analysis::CalibrationContent content = analysis::ContentOfCalibrationFile(bytes);
    if (options.output != "-") {
        PrintOut([&](std::ostream& out) {
            PrintCalibrationFile(out, options.output, content, nullptr, OutputStyle());
        });
    }
    return content.good() ? kExitSuccess : kExitBad;
}

}  // namespace zvcam
