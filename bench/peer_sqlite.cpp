// SQLite in memory: a table of values, found by the number of their node and their occurrence, with
// prepared statements and validation by hand. An access is a transaction by itself, as it is
// without further words.

#include <sqlite3.h>

#include <map>
#include <string>

#include "bench/floor_store.h"
#include "bench/peer_workloads.h"
#include "bench/value_check.h"

namespace bench {
namespace {

class Sqlite {
public:
    static constexpr char const* kName = "sqlite";
    static constexpr int kMostPlaces = kAllPlaces;
    struct Place {
        int node;
        int occurrence;
        ValueCheck const* check;
    };

    explicit Sqlite(PhoneData const& phone) {
        sqlite3_open(":memory:", &database);
        run("CREATE TABLE cell (node INTEGER, occurrence INTEGER, value, "
            "PRIMARY KEY (node, occurrence)) WITHOUT ROWID");
        inserting = prepare("INSERT INTO cell VALUES (?1, ?2, ?3)");
        reading = prepare("SELECT value FROM cell WHERE node = ?1 AND occurrence = ?2");
        writing = prepare("UPDATE cell SET value = ?3 WHERE node = ?1 AND occurrence = ?2");
        for (PhoneValue const& value : phone.flat())
            checks.try_emplace(value.node->type, *value.node->type);
    }
    Sqlite(Sqlite const&) = delete;
    Sqlite& operator=(Sqlite const&) = delete;
    ~Sqlite() {
        for (sqlite3_stmt* const statement : {inserting, reading, writing}) {
            sqlite3_finalize(statement);
        }
        sqlite3_close(database);
    }

    bool fill(PhoneData const& phone) {
        bool good = run("BEGIN");
        for (PhoneValue const& value : phone.flat()) good &= insert(value);
        return run("COMMIT") && good;
    }

    Place placeOf(PhoneValue const& value) const {
        return {value.node->order, value.flat, &checks.at(value.node->type)};
    }

    long number(Place const& place) {
        find(place);
        auto const number = static_cast<long>(sqlite3_column_int64(reading, 0));
        sqlite3_reset(reading);
        return number;
    }

    std::size_t length(Place const& place) {
        find(place);
        sqlite3_column_text(reading, 0);
        auto const length = static_cast<std::size_t>(sqlite3_column_bytes(reading, 0));
        sqlite3_reset(reading);
        return length;
    }

    std::string text(Place const& place) {
        std::string text;
        if (find(place)) text = reinterpret_cast<char const*>(sqlite3_column_text(reading, 0));
        sqlite3_reset(reading);
        return text;
    }

    bool set(Place const& place, long number) {
        if (!place.check->accepts(number)) return false;
        sqlite3_bind_int64(writing, 3, number);
        return change(writing, place);
    }

    bool set(Place const& place, char const* text) {
        if (!place.check->accepts(text)) return false;
        sqlite3_bind_text(writing, 3, text, -1, SQLITE_STATIC);
        return change(writing, place);
    }

private:
    bool run(char const* statement) {
        return sqlite3_exec(database, statement, nullptr, nullptr, nullptr) == SQLITE_OK;
    }

    sqlite3_stmt* prepare(char const* text) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v3(database, text, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
        return statement;
    }

    // Numbers as such, addresses included.
    bool insert(PhoneValue const& value) {
        PhoneType const& type = *value.node->type;
        switch (heldAs(type)) {
        case Held::number:
            sqlite3_bind_int64(inserting, 3, numberFrom(type, value.text));
            break;
        case Held::real:
            sqlite3_bind_double(inserting, 3, std::stod(value.text));
            break;
        case Held::text:
            sqlite3_bind_text(inserting, 3, value.text.c_str(), -1, SQLITE_STATIC);
            break;
        }
        return change(inserting, placeOf(value));
    }

    static void bind(sqlite3_stmt* statement, Place const& place) {
        sqlite3_bind_int(statement, 1, place.node);
        sqlite3_bind_int(statement, 2, place.occurrence);
    }

    // Executes a statement that changes one row.
    bool change(sqlite3_stmt* statement, Place const& place) {
        bind(statement, place);
        bool const done = sqlite3_step(statement) == SQLITE_DONE;
        sqlite3_reset(statement);
        return done && sqlite3_changes(database) == 1;
    }

    bool find(Place const& place) {
        bind(reading, place);
        return sqlite3_step(reading) == SQLITE_ROW;
    }

    std::map<PhoneType const*, ValueCheck> checks;
    sqlite3* database = nullptr;
    sqlite3_stmt* inserting = nullptr;
    sqlite3_stmt* reading = nullptr;
    sqlite3_stmt* writing = nullptr;
};

[[maybe_unused]] bool const added =
    addReads<Sqlite>() && addWrites<Sqlite>() && addMemory<Sqlite>();

} // namespace
} // namespace bench
