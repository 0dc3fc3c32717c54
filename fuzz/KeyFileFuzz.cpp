// The key store file: any bytes can be read, and what is written reads back.

#include "Fuzz.h"
#include "KeyFileFormat.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  const std::string_view text = fuzz::textOf(data, size);
  if (const auto values = KeyFileFormat::read(text)) {
    FUZZ_REQUIRE(KeyFileFormat::read(KeyFileFormat::write(*values)) == values);
  }

  FuzzedDataProvider input(data, size);
  KeyValues values;
  while (input.remaining_bytes() > 0) {
    std::string name = input.ConsumeRandomLengthString();
    values.insert_or_assign(std::move(name), input.ConsumeRandomLengthString());
  }
  const std::string written = KeyFileFormat::write(values);
  FUZZ_REQUIRE(KeyFileFormat::read(written) == values);
  // A line that was cut off is left out, and no other is touched.
  if (!values.empty()) {
    const auto read = KeyFileFormat::read(std::string_view(written).substr(0, written.size() - 1));
    FUZZ_REQUIRE(read && read->size() == values.size() - 1);
  }
  return 0;
}
