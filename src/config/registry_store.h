#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/fault.h"

struct sqlite3;

namespace zorvik {

// The predefined roots; the numbers are what the REG export and import pass around.
enum RegRoot : std::uint32_t {
  HKEY_CLASSES_ROOT = 0x80000000u,
  HKEY_CURRENT_USER = 0x80000001u,
  HKEY_LOCAL_MACHINE = 0x80000002u,
  HKEY_USERS = 0x80000003u,
  HKEY_PERFORMANCE_DATA = 0x80000004u,
  HKEY_CURRENT_CONFIG = 0x80000005u,
  HKEY_DYN_DATA = 0x80000006u,
};

// Value types the REG format tells apart; any other number is carried as bytes under its number.
constexpr std::uint32_t kRegString = 1;
constexpr std::uint32_t kRegBinary = 3;
constexpr std::uint32_t kRegDword = 4;
constexpr std::uint32_t kRegMultiString = 7;

struct RegValue {
  std::string name;  // empty: the key's unnamed value
  std::uint32_t type = kRegString;
  std::string data;  // bytes
};

// A failure of the SQLite file behind the store; code is SQLite's result code.
class StoreError : public Fault {
 public:
  StoreError(int code, const std::string& message, const std::string& what)
      : Fault(what), code_(code), message_(message) {}
  int code() const { return code_; }
  const std::string& message() const { return message_; }

 private:
  int code_;
  std::string message_;
};

// The hierarchical key-value store behind every setting: roots, nested keys, typed values, kept in a
// SQLite file. Key and value names compare without regard to ASCII case, as the registry did; values
// and subkeys enumerate in the order of their creation. Every write runs in a transaction (WAL mode,
// busy timeout), so that a kill leaves the file before or after a write and two processes writing the
// same tree lose nothing.
class RegistryStore {
 public:
  using KeyId = std::int64_t;
  static constexpr int kBusyTimeoutMs = 5000;

  // Opens or creates the store. A file that is not a SQLite database, a database of another program,
  // or a file locked past the timeout throws Fault and is left untouched. ":memory:" gives a scratch store.
  explicit RegistryStore(const std::string& path, int busyTimeoutMs = kBusyTimeoutMs);
  ~RegistryStore();
  RegistryStore(const RegistryStore&) = delete;
  RegistryStore& operator=(const RegistryStore&) = delete;

  // $ZORVIK_REGISTRY, else $XDG_CONFIG_HOME/zorvik/registry.sqlite, else ~/.config/zorvik/registry.sqlite.
  static std::string defaultPath();

  const std::string& path() const { return path_; }

  // Groups operations into one transaction: the outermost takes the write lock at once (so waits go
  // through the busy timeout), inner ones are savepoints. Destroyed without commit(): rolled back.
  class Transaction {
   public:
    enum class Mode { Write, Read };
    explicit Transaction(RegistryStore& store, Mode mode = Mode::Write);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

   private:
    RegistryStore& store_;
    Mode mode_;
    int level_;
    bool done_ = false;
  };

  // Key ids stay valid only inside one transaction. A path is split at backslashes; empty parts are
  // skipped. Unknown roots give no key (open) or a Fault (create).
  std::optional<KeyId> openKey(std::uint32_t root, std::string_view path);
  KeyId createKey(std::uint32_t root, std::string_view path);
  std::optional<RegValue> getValue(KeyId key, std::string_view name);
  std::vector<RegValue> values(KeyId key);
  std::vector<std::pair<KeyId, std::string>> subkeys(KeyId key);
  // Replaces type and data of an existing value (it keeps its place) or appends a new one.
  void setValue(KeyId key, std::string_view name, std::uint32_t type, std::string_view data);
  bool deleteValue(KeyId key, std::string_view name);
  // Deletes the key with everything below it.
  void deleteKey(KeyId key);

  // Each in a transaction of its own (or the caller's).
  std::optional<RegValue> getValue(std::uint32_t root, std::string_view path, std::string_view name);
  void setValue(std::uint32_t root, std::string_view path, std::string_view name, std::uint32_t type,
                std::string_view data);

 private:
  friend class Transaction;
  class Statement;
  void exec(const char* sql);
  [[noreturn]] void fail(int code, const std::string& doing);
  void initialise(int busyTimeoutMs);
  bool hasOurSchema();

  std::string path_;
  sqlite3* db_ = nullptr;
  int depth_ = 0;
  bool readOnlyTransaction_ = false;
};

// Returns the root of that name, compared in upper case; nothing for an unknown name.
std::optional<std::uint32_t> regRootByName(std::string_view name);
// The name of a root as files show it; empty for an unknown number.
std::string_view regRootName(std::uint32_t root);

}  // namespace zorvik
