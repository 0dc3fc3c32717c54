#pragma once

#include <plist/plist.h>

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace pelorino {

/// Writes keyed archives as an earlier generation of the library left them.
class LegacyArchive final {
 public:
  using Reference = std::uint64_t;
  /// What an object holds: a plain value, a reference, or a list of references.
  using Value =
      std::variant<bool, std::int64_t, double, std::string, Reference, std::vector<Reference>>;
  using Fields = std::map<std::string, Value>;

  LegacyArchive() { add("$null"); }
  ~LegacyArchive() { plist_free(objects_); }
  LegacyArchive(const LegacyArchive&) = delete;
  LegacyArchive& operator=(const LegacyArchive&) = delete;

  Reference add(const Value& value) {
    plist_array_append_item(objects_, nodeOf(value));
    return plist_array_get_size(objects_) - 1;
  }

  Reference add(const std::string& className, const Fields& fields) {
    plist_t description = plist_new_dict();
    plist_dict_set_item(description, "$classname", plist_new_string(className.c_str()));
    plist_array_append_item(objects_, description);
    const Reference described = plist_array_get_size(objects_) - 1;
    plist_t object = plist_new_dict();
    plist_dict_set_item(object, "$class", plist_new_uid(described));
    for (const auto& [key, value] : fields) {
      plist_dict_set_item(object, key.c_str(), nodeOf(value));
    }
    plist_array_append_item(objects_, object);
    return plist_array_get_size(objects_) - 1;
  }

  Reference list(const std::vector<Value>& values) {
    return add("NSArray", {{"NS.objects", all(values)}});
  }

  Reference dictionary(const std::map<std::string, Value>& entries) {
    std::vector<Reference> keys;
    std::vector<Reference> values;
    for (const auto& [key, value] : entries) {
      keys.push_back(add(key));
      const auto* reference = std::get_if<Reference>(&value);
      values.push_back(reference != nullptr ? *reference : add(value));
    }
    return add("NSDictionary", {{"NS.keys", keys}, {"NS.objects", values}});
  }

  [[nodiscard]] std::string bytes(Reference root, bool asXml = false) const {
    plist_t top = plist_new_dict();
    plist_dict_set_item(top, "root", plist_new_uid(root));
    plist_t archive = plist_new_dict();
    plist_dict_set_item(archive, "$archiver", plist_new_string("NSKeyedArchiver"));
    plist_dict_set_item(archive, "$objects", plist_copy(objects_));
    plist_dict_set_item(archive, "$top", top);
    plist_dict_set_item(archive, "$version", plist_new_uint(100000));
    char* text = nullptr;
    std::uint32_t size = 0;
    (asXml ? plist_to_xml : plist_to_bin)(archive, &text, &size);
    std::string bytes(text, size);
    plist_to_bin_free(text);  // For both.
    plist_free(archive);
    return bytes;
  }

 private:
  std::vector<Reference> all(const std::vector<Value>& values) {
    std::vector<Reference> references;
    for (const Value& value : values) references.push_back(add(value));
    return references;
  }

  static plist_t nodeOf(const Value& value) {
    struct Maker {
      plist_t operator()(bool flag) const { return plist_new_bool(flag ? 1 : 0); }
      plist_t operator()(std::int64_t number) const {
        return plist_new_uint(static_cast<std::uint64_t>(number));
      }
      plist_t operator()(double number) const { return plist_new_real(number); }
      plist_t operator()(const std::string& text) const { return plist_new_string(text.c_str()); }
      plist_t operator()(Reference reference) const { return plist_new_uid(reference); }
      plist_t operator()(const std::vector<Reference>& references) const {
        plist_t list = plist_new_array();
        for (const Reference one : references) plist_array_append_item(list, plist_new_uid(one));
        return list;
      }
    };
    return std::visit(Maker(), value);
  }

  plist_t objects_ = plist_new_array();
};

/// The archive of a player named ann at level 7, with a card and marks.
inline std::string archiveOfAnn(bool asXml = false) {
  LegacyArchive archive;
  const auto preferences = archive.dictionary({{"flag", true},
                                               {"friends", archive.list({std::string("bob")})},
                                               {"name", std::string("Ann")},
                                               {"none", archive.add("NSNull", {})},
                                               {"ratio", 0.5},
                                               {"whole", 2.0},
                                               {"wins", std::int64_t{-3}}});
  const auto ann = archive.add(
      "DataStorage",
      {{"level", std::int64_t{7}},
       {"userId", archive.add(std::string("ann"))},
       {"prevId", archive.add(std::string("anna"))},
       {"playerPreferences", archive.add("PlayerPreferences", {{"preferences", preferences}})},
       {"transactionIds", archive.list({std::string("t1"), std::string("t2")})},
       {"tutorCompletedSteps", archive.list({std::int64_t{-1}, std::int64_t{3}})}});
  return archive.bytes(
      archive.add("UsersStorages", {{"activeUser", archive.add(std::string("a"))},
                                    {"dataStorages", archive.dictionary({{"a", ann}})},
                                    {"trackingAvailable", true}}),
      asXml);
}

}  // namespace pelorino
