#pragma once

#include <pelorino/PLRExport.h>

#include <string>
#include <utility>

/// A social network: one of the shared ones, or one of the host's own. They differ in nothing but
/// the name, of which at most 24 characters are reported.
class PLR_EXPORT PLRSocialNetwork {
 public:
  explicit PLRSocialNetwork(std::string name) : name_(std::move(name)) {}

  [[nodiscard]] const std::string& name() const { return name_; }

  [[nodiscard]] static const PLRSocialNetwork& facebook() { return shared("fb"); }
  [[nodiscard]] static const PLRSocialNetwork& vkontakte() { return shared("vk"); }
  [[nodiscard]] static const PLRSocialNetwork& twitter() { return shared("tw"); }
  [[nodiscard]] static const PLRSocialNetwork& googleplus() { return shared("gp"); }
  [[nodiscard]] static const PLRSocialNetwork& whatsapp() { return shared("wp"); }
  [[nodiscard]] static const PLRSocialNetwork& viber() { return shared("vb"); }
  [[nodiscard]] static const PLRSocialNetwork& evernote() { return shared("en"); }
  [[nodiscard]] static const PLRSocialNetwork& googlemail() { return shared("gm"); }
  [[nodiscard]] static const PLRSocialNetwork& linkedin() { return shared("in"); }
  [[nodiscard]] static const PLRSocialNetwork& pinterest() { return shared("pi"); }
  [[nodiscard]] static const PLRSocialNetwork& qzone() { return shared("qq"); }
  [[nodiscard]] static const PLRSocialNetwork& reddit() { return shared("rt"); }
  [[nodiscard]] static const PLRSocialNetwork& renren() { return shared("rr"); }
  [[nodiscard]] static const PLRSocialNetwork& tumblr() { return shared("tb"); }

 private:
  /// The one instance of this name, made on first use and never destroyed.
  static const PLRSocialNetwork& shared(const char* name);

  std::string name_;
};
