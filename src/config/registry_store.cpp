#include "config/registry_store.h"

#include <sqlite3.h>

#include <array>
#include <cstdlib>
#include <filesystem>

#include "config/xdg_paths.h"

namespace zorvik {

namespace {

// Marks the file as ours ("ZRVG"), so that another program's database is never taken over.
constexpr std::int64_t kApplicationId = 0x5A525647;
constexpr std::int64_t kSchemaVersion = 1;

struct RootName {
  std::uint32_t root;
  const char* name;
};
constexpr std::array<RootName, 7> kRoots{{
    {HKEY_CLASSES_ROOT, "HKEY_CLASSES_ROOT"},
    {HKEY_CURRENT_USER, "HKEY_CURRENT_USER"},
    {HKEY_LOCAL_MACHINE, "HKEY_LOCAL_MACHINE"},
    {HKEY_USERS, "HKEY_USERS"},
    {HKEY_PERFORMANCE_DATA, "HKEY_PERFORMANCE_DATA"},
    {HKEY_CURRENT_CONFIG, "HKEY_CURRENT_CONFIG"},
    {HKEY_DYN_DATA, "HKEY_DYN_DATA"},
}};

// Each root is a row whose id follows from its number; keys created later get higher ids.
std::optional<RegistryStore::KeyId> rootKey(std::uint32_t root) {
  if (root < HKEY_CLASSES_ROOT || root > HKEY_DYN_DATA) return std::nullopt;
  return static_cast<RegistryStore::KeyId>(root - HKEY_CLASSES_ROOT) + 1;
}
constexpr RegistryStore::KeyId kLastRootKey = 7;

std::string foldCase(std::string_view s) {
  std::string f(s);
  for (char& c : f)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return f;
}

std::vector<std::string_view> splitPath(std::string_view path) {
  std::vector<std::string_view> parts;
  while (!path.empty()) {
    size_t p = path.find('\\');
    std::string_view part = path.substr(0, p);
    if (!part.empty()) parts.push_back(part);
    if (p == std::string_view::npos) break;
    path.remove_prefix(p + 1);
  }
  return parts;
}

const char* kSchema =
    "CREATE TABLE keys(id INTEGER PRIMARY KEY, parent INTEGER, name BLOB NOT NULL, fold BLOB NOT NULL);"
    "CREATE UNIQUE INDEX keys_by_name ON keys(parent, fold);"
    "CREATE TABLE vals(id INTEGER PRIMARY KEY, key INTEGER NOT NULL, name BLOB NOT NULL, fold BLOB NOT NULL,"
    " type INTEGER NOT NULL, data BLOB NOT NULL);"
    "CREATE UNIQUE INDEX vals_by_name ON vals(key, fold);";

}  // namespace

std::optional<std::uint32_t> regRootByName(std::string_view name) {
  for (const auto& r : kRoots)
    if (foldCase(name) == foldCase(r.name)) return r.root;
  return std::nullopt;
}

std::string_view regRootName(std::uint32_t root) {
  for (const auto& r : kRoots)
    if (r.root == root) return r.name;
  return {};
}

class RegistryStore::Statement {
 public:
  Statement(RegistryStore& store, const char* sql) : store_(store) {
    int rc = sqlite3_prepare_v2(store.db_, sql, -1, &stmt_, nullptr);
    if (rc != SQLITE_OK) store.fail(rc, "preparing a query");
  }
  ~Statement() { sqlite3_finalize(stmt_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Statement& bind(int i, std::int64_t v) {
    check(sqlite3_bind_int64(stmt_, i, v));
    return *this;
  }
  Statement& bind(int i, std::string_view bytes) {
    // data() of a view is never null here (callers pass strings), so an empty view binds an empty blob.
    static const char kEmpty = 0;
    check(sqlite3_bind_blob64(stmt_, i, bytes.empty() ? &kEmpty : bytes.data(), bytes.size(),
                              SQLITE_TRANSIENT));
    return *this;
  }
  // True while rows come; false when done.
  bool step() {
    int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    store_.fail(rc, "reading or writing");
  }
  std::int64_t integer(int col) { return sqlite3_column_int64(stmt_, col); }
  std::string bytes(int col) {
    const void* p = sqlite3_column_blob(stmt_, col);
    int n = sqlite3_column_bytes(stmt_, col);
    return p == nullptr || n <= 0 ? std::string()
                                  : std::string(static_cast<const char*>(p), static_cast<size_t>(n));
  }

 private:
  void check(int rc) {
    if (rc != SQLITE_OK) store_.fail(rc, "binding a parameter");
  }
  RegistryStore& store_;
  sqlite3_stmt* stmt_ = nullptr;
};

RegistryStore::RegistryStore(const std::string& path, int busyTimeoutMs) : path_(path) {
  if (path != ":memory:") {
    std::error_code ec;  // a failure here shows up as a clearer failure to open just below
    std::filesystem::path parent = std::filesystem::path(path).parent_path();
    if (!parent.empty()) std::filesystem::create_directories(parent, ec);
  }
  int rc = sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  try {
    if (rc != SQLITE_OK) fail(rc, "opening");
    initialise(busyTimeoutMs);
  } catch (...) {
    sqlite3_close(db_);
    db_ = nullptr;
    throw;
  }
}

RegistryStore::~RegistryStore() {
  sqlite3_close(db_);
}

std::string RegistryStore::defaultPath() {
  if (const char* e = std::getenv("ZORVIK_REGISTRY"); e != nullptr && e[0] != '\0') return e;
  return xdgConfigHome() + "/zorvik/registry.sqlite";
}

void RegistryStore::fail(int code, const std::string& doing) {
  int primary = code & 0xFF;
  std::string message =
      db_ != nullptr && sqlite3_errcode(db_) == code ? sqlite3_errmsg(db_) : sqlite3_errstr(code);
  std::string what = "Settings store \"" + path_ + "\": ";
  if (primary == SQLITE_NOTADB)
    what += "the file is not a SQLite database; it was left as it is";
  else if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED)
    what += "the file is locked by another program (" + message + ")";
  else
    what += doing + " failed: " + message;
  throw StoreError(primary, message, what);
}

void RegistryStore::exec(const char* sql) {
  char* err = nullptr;
  int rc = sqlite3_exec(db_, sql, nullptr, nullptr, &err);
  sqlite3_free(err);
  if (rc != SQLITE_OK) fail(rc, "running \"" + std::string(sql).substr(0, 40) + "\"");
}

bool RegistryStore::hasOurSchema() {
  // These reads touch the file's header first: a foreign file fails here before anything is written.
  Statement app(*this, "PRAGMA application_id");
  std::int64_t appId = app.step() ? app.integer(0) : 0;
  Statement tables(*this, "SELECT count(*) FROM sqlite_schema");
  std::int64_t count = tables.step() ? tables.integer(0) : 0;
  if (appId == kApplicationId) {
    Statement version(*this, "PRAGMA user_version");
    if (version.step() && version.integer(0) > kSchemaVersion)
      throw StoreError(SQLITE_MISMATCH, "newer schema",
                       "Settings store \"" + path_ + "\" was written by a newer version of the program");
    return true;
  }
  if (appId != 0 || count != 0)
    throw StoreError(
        SQLITE_MISMATCH, "foreign database",
        "Settings store \"" + path_ + "\" is a database of another program; it was left as it is");
  return false;
}

void RegistryStore::initialise(int busyTimeoutMs) {
  sqlite3_busy_timeout(db_, busyTimeoutMs);
  sqlite3_extended_result_codes(db_, 0);
  bool ready = hasOurSchema();
  {
    // WAL lets readers go on while another process writes; an unsupported file system keeps the old
    // journal, which is slower but as safe.
    Statement wal(*this, "PRAGMA journal_mode=WAL");
    while (wal.step()) {
    }
  }
  exec("PRAGMA synchronous=NORMAL");
  if (ready) return;
  Transaction t(*this);
  if (!hasOurSchema()) {  // another process may have set it up while this one waited for the lock
    exec(kSchema);
    for (const auto& r : kRoots) {
      Statement insert(*this, "INSERT INTO keys(id, parent, name, fold) VALUES(?1, NULL, ?2, ?3)");
      insert.bind(1, *rootKey(r.root)).bind(2, r.name).bind(3, foldCase(r.name)).step();
    }
    exec(("PRAGMA application_id=" + std::to_string(kApplicationId)).c_str());
    exec(("PRAGMA user_version=" + std::to_string(kSchemaVersion)).c_str());
  }
  t.commit();
}

RegistryStore::Transaction::Transaction(RegistryStore& store, Mode mode)
    : store_(store), mode_(mode), level_(store.depth_) {
  if (level_ == 0) {
    // IMMEDIATE takes the write lock now, under the busy timeout, instead of failing at the first write.
    store_.exec(mode_ == Mode::Write ? "BEGIN IMMEDIATE" : "BEGIN");
    store_.readOnlyTransaction_ = mode_ == Mode::Read;
  } else {
    if (mode_ == Mode::Write && store_.readOnlyTransaction_)
      throw Fault("Settings store: a write was started inside a read");
    store_.exec(("SAVEPOINT z" + std::to_string(level_)).c_str());
  }
  ++store_.depth_;
}

void RegistryStore::Transaction::commit() {
  if (done_) return;
  store_.exec(level_ == 0 ? "COMMIT" : ("RELEASE z" + std::to_string(level_)).c_str());
  done_ = true;
  --store_.depth_;
}

RegistryStore::Transaction::~Transaction() {
  if (done_) return;
  // Errors are ignored: SQLite may already have rolled back on its own after a failure.
  if (level_ == 0) {
    sqlite3_exec(store_.db_, "ROLLBACK", nullptr, nullptr, nullptr);
  } else {
    std::string sp = "z" + std::to_string(level_);
    sqlite3_exec(store_.db_, ("ROLLBACK TO " + sp + "; RELEASE " + sp).c_str(), nullptr, nullptr, nullptr);
  }
  --store_.depth_;
}

std::optional<RegistryStore::KeyId> RegistryStore::openKey(std::uint32_t root, std::string_view path) {
  std::optional<KeyId> key = rootKey(root);
  if (!key) return std::nullopt;
  for (std::string_view part : splitPath(path)) {
    Statement q(*this, "SELECT id FROM keys WHERE parent=?1 AND fold=?2");
    q.bind(1, *key).bind(2, foldCase(part));
    if (!q.step()) return std::nullopt;
    key = q.integer(0);
  }
  return key;
}

RegistryStore::KeyId RegistryStore::createKey(std::uint32_t root, std::string_view path) {
  std::optional<KeyId> key = rootKey(root);
  if (!key) throw Fault("Settings store: there is no root " + std::to_string(root));
  Transaction t(*this);
  for (std::string_view part : splitPath(path)) {
    Statement q(*this, "SELECT id FROM keys WHERE parent=?1 AND fold=?2");
    q.bind(1, *key).bind(2, foldCase(part));
    if (q.step()) {
      key = q.integer(0);
      continue;
    }
    Statement insert(*this, "INSERT INTO keys(parent, name, fold) VALUES(?1, ?2, ?3)");
    insert.bind(1, *key).bind(2, part).bind(3, foldCase(part)).step();
    key = sqlite3_last_insert_rowid(db_);
  }
  t.commit();
  return *key;
}

std::optional<RegValue> RegistryStore::getValue(KeyId key, std::string_view name) {
  Statement q(*this, "SELECT name, type, data FROM vals WHERE key=?1 AND fold=?2");
  q.bind(1, key).bind(2, foldCase(name));
  if (!q.step()) return std::nullopt;
  return RegValue{q.bytes(0), static_cast<std::uint32_t>(q.integer(1)), q.bytes(2)};
}

std::vector<RegValue> RegistryStore::values(KeyId key) {
  Statement q(*this, "SELECT name, type, data FROM vals WHERE key=?1 ORDER BY id");
  q.bind(1, key);
  std::vector<RegValue> out;
  while (q.step()) out.push_back({q.bytes(0), static_cast<std::uint32_t>(q.integer(1)), q.bytes(2)});
  return out;
}

std::vector<std::pair<RegistryStore::KeyId, std::string>> RegistryStore::subkeys(KeyId key) {
  Statement q(*this, "SELECT id, name FROM keys WHERE parent=?1 ORDER BY id");
  q.bind(1, key);
  std::vector<std::pair<KeyId, std::string>> out;
  while (q.step()) out.emplace_back(q.integer(0), q.bytes(1));
  return out;
}

void RegistryStore::setValue(KeyId key, std::string_view name, std::uint32_t type, std::string_view data) {
  Transaction t(*this);
  Statement q(*this,
              "INSERT INTO vals(key, name, fold, type, data) VALUES(?1, ?2, ?3, ?4, ?5) "
              "ON CONFLICT(key, fold) DO UPDATE SET type=excluded.type, data=excluded.data");
  q.bind(1, key).bind(2, name).bind(3, foldCase(name)).bind(4, static_cast<std::int64_t>(type)).bind(5, data);
  q.step();
  t.commit();
}

bool RegistryStore::deleteValue(KeyId key, std::string_view name) {
  Transaction t(*this);
  Statement q(*this, "DELETE FROM vals WHERE key=?1 AND fold=?2");
  q.bind(1, key).bind(2, foldCase(name)).step();
  bool deleted = sqlite3_changes(db_) > 0;
  t.commit();
  return deleted;
}

void RegistryStore::deleteKey(KeyId key) {
  // Walked with a query rather than recursion or cascades, so that no depth of nesting is too deep.
  static const char* kBelow =
      "WITH RECURSIVE sub(id) AS (SELECT ?1 UNION ALL SELECT k.id FROM keys k JOIN sub ON k.parent=sub.id) ";
  Transaction t(*this);
  Statement vals(*this, (std::string(kBelow) + "DELETE FROM vals WHERE key IN (SELECT id FROM sub)").c_str());
  vals.bind(1, key).step();
  // A root stays: only what hangs below it goes.
  Statement keys(
      *this, (std::string(kBelow) + "DELETE FROM keys WHERE id IN (SELECT id FROM sub) AND id>?2").c_str());
  keys.bind(1, key).bind(2, kLastRootKey).step();
  t.commit();
}

std::optional<RegValue> RegistryStore::getValue(std::uint32_t root, std::string_view path,
                                                std::string_view name) {
  Transaction t(*this, Transaction::Mode::Read);
  std::optional<KeyId> key = openKey(root, path);
  std::optional<RegValue> v = key ? getValue(*key, name) : std::nullopt;
  t.commit();
  return v;
}

void RegistryStore::setValue(std::uint32_t root, std::string_view path, std::string_view name,
                             std::uint32_t type, std::string_view data) {
  Transaction t(*this);
  setValue(createKey(root, path), name, type, data);
  t.commit();
}

}  // namespace zorvik
