#include "EventText.h"

#include "Event.h"
#include "Logger.h"
#include "NumberText.h"
#include "Subscriptions.h"

namespace pelorino {
namespace {

// The fields that events share. All other fields stand between the two groups, in one part.
constexpr std::array<std::string_view, 4> firstFields = {"code", "timestamp", "sessionId", "level"};
constexpr std::array<std::string_view, 2> lastFields = {"inProgress", "inExperiments"};

std::size_t partIndex(std::string_view label) {
  for (std::size_t i = 0; i < firstFields.size(); ++i) {
    if (firstFields[i] == label) return i;
  }
  for (std::size_t i = 0; i < lastFields.size(); ++i) {
    if (lastFields[i] == label) return firstFields.size() + 1 + i;
  }
  return firstFields.size();
}

}  // namespace

// The odd blanks and line feeds below belong to the log's format.
std::string& FieldLines::beginLine(std::size_t deeper) {
  return out_.append(tabs_ + deeper, '\t').append(1, ' ');
}

std::string& FieldLines::beginLine(const Field& field) {
  return beginLine().append(field.label()).append(": ");
}

void FieldLines::operator()(const Field& field, bool value) {
  beginLine(field).append(value ? "true\n" : "false\n");
}

void FieldLines::operator()(const Field& field, std::int64_t value) {
  appendNumber(beginLine(field), value);
  out_ += '\n';
}

void FieldLines::operator()(const Field& field, double value) {
  appendNumber(beginLine(field), value);
  out_ += '\n';
}

void FieldLines::operator()(const Field& field, std::string_view value) {
  beginLine(field).append(value).append(1, '\n');
}

void FieldLines::operator()(const Field& field, const Decimal& value) {
  (*this)(field, value.text());
}

void FieldLines::operator()(const Field& field, const std::vector<std::string>& values) {
  beginLine(field);
  for (const std::string& value : values)
    out_.append(&value == values.data() ? "" : ", ").append(value);
  out_ += '\n';
}

void FieldLines::entry(const Field& field, std::string_view name, std::int64_t amount) {
  beginLine(1).append(field.entryName()).append(": ").append(name);
  out_.append(1, ' ').append(field.entryValue()).append(": ");
  appendNumber(out_, amount);
  out_ += '\n';
}

void FieldLines::entry(const Field&, std::string_view source, const Resources& resources) {
  out_.append("\t\tsource: ").append(source).append(" \n\t\tresources:\n");
  for (const auto& [name, amount] : resources) {
    out_.append("\t\t\tresource: ").append(name).append(" amount: ");
    appendNumber(out_, amount);
    out_ += '\n';
  }
}

void FieldLines::entry(const Field&, std::string_view key, const AnyCodable& value) {
  beginLine(1).append("parameter key: ").append(key);
  out_.append(" value: ").append(value.description()).append(1, '\n');
}

void FieldLines::entry(const Field& field, std::string_view key, const PeopleValueType& value) {
  entry(field, key, value.toAnyCodable());
}

void FieldLines::entry(const Field&, std::string_view key, const Decimal& value) {
  beginLine(1).append(key).append(": ").append(value.text()).append(1, '\n');
}

void FieldLines::element(std::int64_t, const RestoredTransaction& transaction) {
  beginLine(1).append("product ").append(transaction.productID).append(" \n");
  beginLine(1).append("transactionIds: \n ");
  for (const std::string& id : transaction.transactionIds) beginLine(2).append(id).append(" \n");
}

void FieldLines::element(std::int64_t number, const SubscriptionProduct& product) {
  appendNumber(beginLine(1).append("product "), number);
  out_ += " \n";
  FieldLines fields(out_, tabs_ + 2);
  SubscriptionProduct::describe(product, fields);
}

std::string& EventText::partOf(const Field& field) {
  return parts_.at(partIndex(field.label()));
}

std::string EventText::take() const {
  std::string text;
  for (const std::string& part : parts_) text += part;
  return text;
}

void logEncodingError(const Storable& event, const PLRError& error) {
  Logger::writeLog(PLRLogLevel::error, [&] {
    return "When trying to get json string from \n\t[" + event.description() +
           "] \n\tobject an error has occurred: " + error.description();
  });
}

}  // namespace pelorino
