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

bool JournalReader::fill(std::size_t size) {
  while (bytes_.size() - at_ < size) {
    bytes_.erase(0, at_);
    at_ = 0;
    char part[65536];
    const ssize_t count = ::read(descriptor_, part, sizeof part);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes_.append(part, static_cast<std::size_t>(count));
  }
  return true;
}

bool JournalReader::next(Record& record) {
  if (!fill(sizeof(std::int64_t))) return false;
  std::size_t peek = at_;
  const auto size = static_cast<std::size_t>(numberAt(bytes_, peek));
  if (!fill(sizeof(std::int64_t) + size)) return false;
  at_ += sizeof(std::int64_t);
  const std::size_t end = at_ + size;
  record.kind = static_cast<Record::Kind>(numberAt(bytes_, at_));
  record.time = numberAt(bytes_, at_);
  record.fields.clear();
  while (at_ < end) {
    const std::int64_t length = numberAt(bytes_, at_);
    if (length == null) {
      record.fields.emplace_back();
      continue;
    }
    record.fields.emplace_back(bytes_.substr(at_, static_cast<std::size_t>(length)));
    at_ += static_cast<std::size_t>(length);
  }
  return true;
}

}  // namespace pelorino
