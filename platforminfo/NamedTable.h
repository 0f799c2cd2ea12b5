#pragma once

#include <map>
#include <utility>

/// A table of this phone, ordered by key, that knows the name by which log lines call it. Taken as a map, it
/// is its rows: assigning new ones leaves the name.
template <typename Row>
class NamedTable : public std::map<int, Row> {
  public:
    using Rows = std::map<int, Row>;

    /// @param name a text that outlives the table.
    explicit NamedTable(const char* name, Rows rows = {}) : Rows(std::move(rows)), mName(name) {}
    using Rows::operator=;

    const char* name() const { return mName; }

    /// The row of a key. A missing one is added, with zeros and null texts, and every later look-up finds it.
    const Row& findOrAdd(int key) { return (*this)[key]; }

  private:
    const char* mName;
};
