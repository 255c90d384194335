#include "session/register_table.h"

namespace zorvik {

void RegisterTable::add(std::string name, std::function<void()> write, std::function<void()> echo) {
  for (Entry& e : entries_)
    if (e.name == name) {
      e.write = std::move(write);
      e.echo = std::move(echo);
      return;
    }
  entries_.push_back({std::move(name), std::move(write), std::move(echo)});
}

const RegisterTable::Entry* RegisterTable::find(std::string_view name) const {
  for (const Entry& e : entries_)
    if (e.name == name) return &e;
  return nullptr;
}

void RegisterTable::write(std::string_view name) const {
  if (const Entry* e = find(name); e && e->write) e->write();
}

void RegisterTable::echo(std::string_view name) const {
  if (const Entry* e = find(name); e && e->echo) e->echo();
}

void RegisterTable::clear() {
  *this = RegisterTable();
}

}  // namespace zorvik
