#include "zvcam/fleet/RowBytes.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <variant>

namespace zvcam {

namespace {

using analysis::FleetCell;
using analysis::FleetRow;

/// What a cell begins with: its alternative in the variant.
enum class CellKind : std::uint8_t { Nothing, Number, Text };

template <typename Number>
void Append(std::string& bytes, Number number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void AppendCell(std::string& bytes, const FleetCell& cell) {
    Append(bytes, static_cast<CellKind>(cell.index()));
    if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
        Append(bytes, *number);
    } else if (const auto* const text = std::get_if<std::string>(&cell)) {
        Append(bytes, text->size());
        bytes.append(*text);
    }
}

class Reader {
  public:
    explicit Reader(std::string_view bytes) : mBytes(bytes) {}

    bool atEnd() const { return mBytes.empty(); }

    std::string_view take(std::size_t size) {
        if (size > mBytes.size()) {
            throw std::runtime_error("the rows of a phone are damaged");
        }
        const std::string_view taken = mBytes.substr(0, size);
        mBytes.remove_prefix(size);
        return taken;
    }

    template <typename Number>
    Number take() {
        Number number;
        std::memcpy(&number, take(sizeof number).data(), sizeof number);
        return number;
    }

    FleetCell takeCell() {
        switch (take<CellKind>()) {
            case CellKind::Number:
                return take<std::int64_t>();
            case CellKind::Text:
                return std::string(take(take<std::size_t>()));
            default:
                return {};
        }
    }

  private:
    std::string_view mBytes;
};

}  // namespace

std::string RowBytes(const std::vector<FleetRow>& rows) {
    std::string bytes;
    for (const FleetRow& row : rows) {
        Append(bytes, static_cast<std::uint8_t>(row.table));
        for (const FleetCell& cell : row.cells) {
            AppendCell(bytes, cell);
        }
    }
    return bytes;
}

std::vector<FleetRow> ReadRowBytes(std::string_view bytes) {
    const auto tables = analysis::FleetTables();
    std::vector<FleetRow> rows;
    Reader reader(bytes);
    while (!reader.atEnd()) {
        FleetRow& row = rows.emplace_back(FleetRow{.table = reader.take<std::uint8_t>(), .cells = {}});
        if (row.table >= tables.size()) {
            throw std::runtime_error("the rows of a phone are damaged");
        }
        row.cells.reserve(tables[row.table].columns.size());
        for (std::size_t i = 0; i < tables[row.table].columns.size(); ++i) {
            row.cells.push_back(reader.takeCell());
        }
    }
    return rows;
}

}  // namespace zvcam
