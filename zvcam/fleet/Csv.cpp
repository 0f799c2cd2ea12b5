#include "zvcam/fleet/Csv.h"

#include "formats/PrintableText.h"

namespace zvcam {

std::string CsvCell(std::string_view text) {
    std::string printable = formats::Printable(text);
    if (printable.find_first_of(",\"") == std::string::npos) {
        return printable;
    }
    std::string cell = "\"";
    for (const char character : printable) {
        cell += character == '"' ? "\"\"" : std::string(1, character);
    }
    return cell + "\"";
}

}  // namespace zvcam
