// The registry against stores that hold settings elsewhere: one change made durable, one value
// read, a large store opened; and settings imported key by key.

#include "dqlib/platform/posix/registry.h"

#include <QtCore/QSettings>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <glib.h>
#include <memory>
#include <sqlite3.h>
#include <stdlib.h>
#include <string>
#include <vector>

#include "apps/dqtool/settings_changes.h"
#include "benchmarks/ratio.h"
#include "dqlib/platform/platform.h"

namespace {

using dq::HKEY;
using dq::kCurrentUser;
using dq::platform::posix::FileRegistry;

constexpr int kSets = 2'000;
constexpr int kSavedSets = 200;
constexpr int kReads = 100'000;
constexpr int kKeys = 100;
constexpr int kLargeStore = 100'000;
constexpr const char* kPath = "Software\\Velmora\\Tool\\Search";

/// A failure makes the figures worthless.
void Require(bool ok, const char* what) {
  if (ok) return;
  std::fprintf(stderr, "registry_bench: %s failed\n", what);
  std::exit(2);
}

std::string NameOf(int i) { return "Value " + std::to_string(i % kKeys); }

/// A directory on the disk that everything is kept in.
class Directory {
 public:
  Directory() {
    path_ = (std::filesystem::temp_directory_path() / "dqlib_bench_XXXXXX").string();
    Require(::mkdtemp(path_.data()) != nullptr, "mkdtemp");
  }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  ~Directory() {
    std::error_code ignored;  // what stays behind is the system's to clean
    std::filesystem::remove_all(path_, ignored);
  }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

/// A table of settings in a database that is kept as durable as the registry is.
class Database {
 public:
  explicit Database(const std::string& path) {
    Require(sqlite3_open(path.c_str(), &connection_) == SQLITE_OK, "sqlite3_open");
    Run("PRAGMA journal_mode=WAL");
    Run("PRAGMA synchronous=NORMAL");
    Run("CREATE TABLE s (k TEXT, n TEXT, t INTEGER, d BLOB, PRIMARY KEY (k, n)) WITHOUT ROWID");
    Require(sqlite3_prepare_v2(connection_, "INSERT OR REPLACE INTO s VALUES (?, ?, ?, ?)", -1,
                               &insert_, nullptr) == SQLITE_OK,
            "sqlite3_prepare");
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() {
    sqlite3_finalize(insert_);
    sqlite3_close(connection_);
  }
  void Set(const std::string& name, const std::string& data) {
    sqlite3_bind_text(insert_, 1, kPath, -1, SQLITE_STATIC);
    sqlite3_bind_text(insert_, 2, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
    sqlite3_bind_int(insert_, 3, dq::REGISTRY_STRING);
    sqlite3_bind_blob(insert_, 4, data.data(), static_cast<int>(data.size()), SQLITE_STATIC);
    Require(sqlite3_step(insert_) == SQLITE_DONE, "sqlite3_step");
    sqlite3_reset(insert_);
  }

 private:
  void Run(const char* statement) {
    Require(sqlite3_exec(connection_, statement, nullptr, nullptr, nullptr) == SQLITE_OK,
            statement);
  }
  sqlite3* connection_ = nullptr;
  sqlite3_stmt* insert_ = nullptr;
};

void CompareChanges(const Directory& directory) {
  FileRegistry registry(directory / "registry");
  const HKEY key = registry.CreateKey(kCurrentUser, kPath).value;
  Database database(directory / "settings.db");
  QSettings settings(QString::fromStdString(directory / "settings.ini"), QSettings::IniFormat);
  int round = 0;
  const auto change = [&round](int i) { return "text of round " + std::to_string(round + i); };
  const auto set = [&](int count) {
    for (int i = 0; i < count; ++i) {
      Require(registry.SetValue(key, NameOf(i), dq::REGISTRY_STRING, change(i)).ok(), "SetValue");
    }
    ++round;
  };
  bench::Ratio("registry: 2,000 values set", "SQLite, WAL, synchronous=NORMAL", 1.0)
      .Run([&] { set(kSets); },
           [&] {
             for (int i = 0; i < kSets; ++i) database.Set(NameOf(i), change(i));
             ++round;
           });
  bench::Ratio("registry: 200 values set", "QSettings, sync at each", 0)
      .Run([&] { set(kSavedSets); },
           [&] {
             for (int i = 0; i < kSavedSets; ++i) {
               settings.setValue(QString::fromStdString("Search/" + NameOf(i)),
                                 QString::fromStdString(change(i)));
               settings.sync();
             }
             ++round;
           });
  GKeyFile* const file = g_key_file_new();
  const std::string path = directory / "settings.key";
  bench::Ratio("registry: 200 values set", "GKeyFile, saved at each", 0)
      .Run([&] { set(kSavedSets); },
           [&] {
             for (int i = 0; i < kSavedSets; ++i) {
               g_key_file_set_string(file, "Search", NameOf(i).c_str(), change(i).c_str());
               Require(g_key_file_save_to_file(file, path.c_str(), nullptr) != 0, "GKeyFile");
             }
             ++round;
           });
  g_key_file_free(file);
}

void CompareReads(const Directory& directory) {
  FileRegistry registry(directory / "reads");
  QSettings settings(QString::fromStdString(directory / "reads.ini"), QSettings::IniFormat);
  const HKEY key = registry.CreateKey(kCurrentUser, kPath).value;
  std::vector<std::string> names;
  std::vector<QString> full_names;
  for (int i = 0; i < kKeys; ++i) {
    names.push_back(NameOf(i));
    full_names.push_back(QString::fromStdString("Velmora/Tool/Search/" + NameOf(i)));
    Require(registry.SetValue(key, names.back(), dq::REGISTRY_STRING, "some text").ok(),
            "SetValue");
    settings.setValue(full_names.back(), QStringLiteral("some text"));
  }
  settings.sync();
  char data[64];
  const auto read_peer = [&] {
    for (int i = 0; i < kReads; ++i) bench::Keep(settings.value(full_names[i % kKeys]));
  };
  bench::Ratio("registry: 100,000 values read, key open", "QSettings::value", 0.5)
      .Run(
          [&] {
            for (int i = 0; i < kReads; ++i) {
              bench::Keep(registry.ReadValue(key, names[i % kKeys], data));
            }
          },
          read_peer);
  bench::Ratio("registry: 100,000 values read, by full path", "QSettings::value", 1.0)
      .Run(
          [&] {
            for (int i = 0; i < kReads; ++i) {
              const HKEY opened = registry.OpenKey(kCurrentUser, kPath).value;
              bench::Keep(registry.ReadValue(opened, names[i % kKeys], data));
              registry.CloseKey(opened);
            }
          },
          read_peer);
}

void CompareOpening(const Directory& directory) {
  const std::string files = directory / "large";
  const std::string peer_file = directory / "large.ini";
  {
    FileRegistry registry(files);
    QSettings settings(QString::fromStdString(peer_file), QSettings::IniFormat);
    HKEY key = dq::kNoKey;
    for (int i = 0; i < kLargeStore; ++i) {
      const std::string section = "Section " + std::to_string(i / kKeys);
      const std::string text = "the text of value " + std::to_string(i);
      if (i % kKeys == 0) key = registry.CreateKey(kCurrentUser, "Software\\" + section).value;
      // With its zero, as texts are mostly set.
      const std::string_view data(text.c_str(), text.size() + 1);
      Require(registry.SetValue(key, NameOf(i), dq::REGISTRY_STRING, data).ok(), "SetValue");
      settings.setValue(QString::fromStdString(section + "/" + NameOf(i)),
                        QString::fromStdString(text));
    }
  }
  int opened = 0;
  bench::Ratio("registry: store of 100,000 values opened", "QSettings, 100,000 values", 2.0)
      .Run(
          [&] {
            FileRegistry registry(files);
            const HKEY key = registry.OpenKey(kCurrentUser, "Software\\Section 999").value;
            char data[64];
            Require(registry.ReadValue(key, NameOf(99), data).ok(), "ReadValue");
          },
          [&] {
            // The process keeps what it has read of a file of the same name.
            const std::string fresh = peer_file + std::to_string(++opened);
            std::filesystem::create_hard_link(peer_file, fresh);
            QSettings settings(QString::fromStdString(fresh), QSettings::IniFormat);
            Require(settings.contains(QStringLiteral("Section 999/Value 99")), "QSettings");
          },
          5);
}

/// Keys within keys against as many bytes of paths side by side.
void CompareImport(const Directory& directory) {
  constexpr std::size_t kLevels = 2'000;
  std::vector<dqtool::SettingsChange> nested;
  std::vector<dqtool::SettingsChange> flat;
  for (std::size_t level = 1; level <= kLevels; ++level) {
    std::string path = "Deep";
    for (std::size_t i = 1; i < level; ++i) path += "\\k";
    nested.push_back({.path = path});
    // Long names, because a path of one name may not be as long.
    std::string side = std::to_string(level);
    side.resize(path.size(), 'x');
    for (std::size_t i = 200; i + 1 < side.size(); i += 200) side[i] = '\\';
    flat.push_back({.path = side});
  }
  int imported = 0;
  const auto import = [&](const auto& changes) {
    // A second time there would be nothing to make.
    FileRegistry registry(directory / ("import " + std::to_string(++imported)));
    dq::platform::Platform services = dq::platform::Current();
    services.registry = &registry;
    const dq::platform::ScopedPlatform scope(services);
    Require(dqtool::MakeChanges(changes).refused.ok(), "import");
    Require(registry.Flush().ok(), "Flush");
  };
  bench::Ratio("settings: 2,000 nested keys imported", "the same bytes of flat keys", 10.0)
      .Run([&] { import(nested); }, [&] { import(flat); });
}

}  // namespace

int main() {
  const Directory directory;
  CompareChanges(directory);
  CompareReads(directory);
  CompareOpening(directory);
  CompareImport(directory);
  return bench::Finish();
}
