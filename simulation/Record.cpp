#include "Record.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace pelorino {
namespace {

constexpr std::int64_t null = -1;

void append(std::string& bytes, std::int64_t number) {
  bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

std::int64_t numberAt(const std::string& bytes, std::size_t& at) {
  std::int64_t number = 0;
  std::memcpy(&number, bytes.data() + at, sizeof number);
  at += sizeof number;
  return number;
}

}  // namespace

const std::string& Record::text(std::size_t index) const {
  static const std::string& none = *new std::string;
  return index < fields.size() && fields[index] ? *fields[index] : none;
}

std::string Record::description() const {
  std::string line = std::to_string(time) + " " + static_cast<char>(kind);
  for (const Cell& field : fields) line += "  " + field.value_or("NULL");
  return line;
}

void Journal::write(const Record& record) const {
  std::string bytes(sizeof(std::int64_t), '\0');
  append(bytes, static_cast<std::int64_t>(record.kind));
  append(bytes, record.time);
  for (const Cell& field : record.fields) {
    append(bytes, field ? static_cast<std::int64_t>(field->size()) : null);
    if (field) bytes += *field;
  }
  const auto size = static_cast<std::int64_t>(bytes.size() - sizeof(std::int64_t));
  std::memcpy(bytes.data(), &size, sizeof size);
  for (std::size_t written = 0; written < bytes.size();) {
    const ssize_t count = ::write(descriptor_, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno != EINTR) throw std::runtime_error("the journal cannot be written");
    if (count > 0) written += static_cast<std::size_t>(count);
  }
}

bool JournalReader::next(Record& record) {
  std::int64_t size = 0;
  if (std::fread(&size, sizeof size, 1, file_.get()) != 1) return false;
  std::string bytes(static_cast<std::size_t>(size), '\0');
  if (std::fread(bytes.data(), bytes.size(), 1, file_.get()) != 1) return false;
  std::size_t at = 0;
  record.kind = static_cast<Record::Kind>(numberAt(bytes, at));
  record.time = numberAt(bytes, at);
  record.fields.clear();
  while (at < bytes.size()) {
    const std::int64_t length = numberAt(bytes, at);
    record.fields.emplace_back();
    if (length == null) continue;
    record.fields.back() = bytes.substr(at, static_cast<std::size_t>(length));
    at += static_cast<std::size_t>(length);
  }
  return true;
}

}  // namespace pelorino
