#pragma once

#include <pelorino/PLRExport.h>

#include <string>
#include <utility>

/// A social network: one of the shared ones below, or one that the host names. A name has 1 to 24
/// characters: a longer one is cut, an empty one cancels the call that uses it.
///
/// Threads: the shared ones, any.
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
  /// The one instance of this name. It is made on first use and never destroyed.
  static const PLRSocialNetwork& shared(const char* name);

  std::string name_;
};
