// The vocabulary's own files: an object map against the same data in a database.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sqlite3.h>
#include <stdlib.h>
#include <string>
#include <unordered_map>

#include "benchmarks/ratio.h"
#include "dqlib/dbvocab/object_info_map.h"

namespace {

constexpr int kObjects = 100'000;

/// A failure makes the figures worthless.
void Require(bool ok, const char* what) {
  if (ok) return;
  std::fprintf(stderr, "objects_bench: %s failed\n", what);
  std::exit(2);
}

/// A directory on the disk for both files.
class Directory {
 public:
  Directory() { Require(::mkdtemp(path_.data()) != nullptr, "mkdtemp"); }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  ~Directory() {
    std::remove((*this / "map").c_str());
    std::remove((*this / "map.db").c_str());
    std::remove(path_.c_str());
  }
  std::string operator/(const char* name) const { return path_ + "/" + name; }

 private:
  std::string path_ = "objects_bench_XXXXXX";
};

std::string KeyOf(int i) { return "ora" + std::to_string(i % 10) + "|" + std::to_string(i); }
std::string OwnerOf(int i) { return "OWNER_" + std::to_string(i % 40); }
std::string NameOf(int i) { return "CUSTOMER_ORDER_LINES_" + std::to_string(i); }

void MakeMap(const std::string& path) {
  dq::CDBObjectInfoMap map;
  for (int i = 0; i < kObjects; ++i) {
    auto object =
        std::make_unique<dq::CDBObjectInfo>(dq::OT_TABLE, OwnerOf(i).c_str(), NameOf(i).c_str());
    map.Insert(KeyOf(i).c_str(), object.release());
  }
  Require(map.Save(path.c_str()), "Save");
}

class Database {
 public:
  explicit Database(const std::string& path) {
    Require(sqlite3_open(path.c_str(), &connection_) == SQLITE_OK, "sqlite3_open");
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() {
    sqlite3_finalize(statement_);
    sqlite3_close(connection_);
  }
  void Run(const char* sql) {
    Require(sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql);
  }
  void Prepare(const char* sql) {
    Require(sqlite3_prepare_v2(connection_, sql, -1, &statement_, nullptr) == SQLITE_OK, sql);
  }
  void Bind(int column, const std::string& text) {
    sqlite3_bind_text(statement_, column, text.data(), static_cast<int>(text.size()),
                      SQLITE_TRANSIENT);
  }
  bool Step() {
    const int result = sqlite3_step(statement_);
    Require(result == SQLITE_ROW || result == SQLITE_DONE, "sqlite3_step");
    return result == SQLITE_ROW;
  }
  void Reset() { sqlite3_reset(statement_); }
  int Number(int column) { return sqlite3_column_int(statement_, column); }
  std::string Text(int column) {
    return {reinterpret_cast<const char*>(sqlite3_column_text(statement_, column)),
            static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
  }

 private:
  sqlite3* connection_ = nullptr;
  sqlite3_stmt* statement_ = nullptr;
};

void MakeDatabase(const std::string& path) {
  Database database(path);
  // As durable as a saved map.
  database.Run("PRAGMA synchronous=FULL");
  database.Run("BEGIN");
  database.Run("CREATE TABLE objects (key TEXT PRIMARY KEY, type INTEGER, owner TEXT, name TEXT)");
  database.Prepare("INSERT INTO objects VALUES (?, 35, ?, ?)");
  for (int i = 0; i < kObjects; ++i) {
    database.Bind(1, KeyOf(i));
    database.Bind(2, OwnerOf(i));
    database.Bind(3, NameOf(i));
    database.Step();
    database.Reset();
  }
  database.Run("COMMIT");
}

struct Row {
  int type = 0;
  std::string owner;
  std::string name;
};

}  // namespace

int main() {
  const Directory directory;
  const std::string map_path = directory / "map";
  const std::string database_path = directory / "map.db";
  MakeMap(map_path);
  MakeDatabase(database_path);
  bench::Ratio("object map: 100,000 entries loaded", "SQLite, into an unordered_map", 1.0)
      .Run(
          [&] {
            dq::CDBObjectInfoMap map;
            Require(map.Load(map_path.c_str()) && map.GetCount() == kObjects, "Load");
          },
          [&] {
            Database database(database_path);
            database.Prepare("SELECT key, type, owner, name FROM objects");
            std::unordered_map<std::string, std::unique_ptr<Row>> rows;
            while (database.Step()) {
              rows.emplace(database.Text(0),
                           std::make_unique<Row>(
                               Row{database.Number(1), database.Text(2), database.Text(3)}));
            }
            Require(rows.size() == kObjects, "SELECT");
          });
  bench::Ratio("object map: 100,000 entries saved to the disk", "SQLite, synchronous=FULL", 0)
      .Run([&] { MakeMap(map_path); },
           [&] {
             std::remove(database_path.c_str());
             MakeDatabase(database_path);
           });
  return bench::Finish();
}
